// The text cases under a locale with a decimal comma, for C and for C++ streams: they are read as they are written, and met.
#include <clocale>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <locale>

#include "tools/cases/procedures.h"
#include "tools/runtime.h"

namespace cases = kalorfix::cases;
namespace fs = std::filesystem;

namespace {

// The number of values that are not met; counts all of them in `compared`.
int not_met(const kalorfix::host::Library& library, const fs::path& file, int& compared) {
    int failures = 0;
    std::ifstream in(file);
    for (const cases::Table& table : cases::read_tables(in, file.filename().string()))
        for (const cases::Finding& finding : cases::run(library, table)) {
            ++compared;
            if (finding.passed()) continue;
            ++failures;
            std::printf("%s:%d: %s %s\n", file.filename().c_str(), finding.where->line,
                        finding.where->id.c_str(), finding.expected->column.c_str());
        }
    return failures;
}

int run(const char* library_file, const char* gas_data, const char* directory) {
    std::locale::global(std::locale(""));
    if (!std::setlocale(LC_ALL, "") || std::strcmp(std::localeconv()->decimal_point, ",") != 0 ||
        std::use_facet<std::numpunct<char>>(std::locale()).decimal_point() != ',') {
        std::puts("the locale has no decimal comma");
        return 1;
    }
    const kalorfix::host::Runtime runtime(gas_data);
    const kalorfix::host::Library library(library_file);
    int compared = 0, failures = 0;
    for (const auto& entry : fs::directory_iterator(directory))
        if (entry.path().extension() == ".txt") failures += not_met(library, entry.path(), compared);
    std::printf("%d values compared, %d not met\n", compared, failures);
    return failures != 0 || compared < 1000;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 4) return 1;
    try {
        return run(argv[1], argv[2], argv[3]);
    } catch (const std::exception& error) {
        std::puts(error.what());
        return 1;
    }
}
