// SPDX-License-Identifier: MIT
// Runs the fuzz harness over the files of a directory, without a fuzzer.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(argc > 1 ? argv[1] : ".")) {
        std::ifstream in(entry.path(), std::ios::binary);
        const std::string content{std::istreambuf_iterator<char>(in), {}};
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(content.data()), content.size());
        ++count;
    }
    std::printf("%d inputs replayed\n", count);
    return count > 0 ? 0 : 1;
}
