// SPDX-License-Identifier: MIT
// Packs the readable gas data into the file that the library loads; for the build, where the command-line tool may be absent.
#include <cstdio>
#include <exception>

#include "tools/gasdat/gas_file.h"
#include "tools/output_file.h"

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: pack_gas_data DIRECTORY FILE\n", stderr);
        return 2;
    }
    try {
        namespace gasdat = kalorfix::tool::gasdat;
        kalorfix::tool::write_file(argv[2], gasdat::packed(gasdat::read_sheets(argv[1])));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "pack_gas_data: %s\n", error.what());
        return 2;
    }
    return 0;
}
