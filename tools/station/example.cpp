#include "tools/station/example.h"

#include <fmt/format.h>

#include <array>
#include <filesystem>

#include "tools/host.h"
#include "tools/output_file.h"
#include "tools/text.h"

namespace kalorfix::tool::station {

void write_example(const std::string& directory) {
    namespace fs = std::filesystem;
    struct Example {
        const char* name;
        const char* what;
        std::string content{};
    };
    std::array<Example, 3> files{{{"station.ini", "the channels, each key with a comment"},
                                  {"readings_day.csv", "a day of readings, one in two minutes"},
                                  {"natural_gas.csv", "the composition of GAS 2"}}};
    std::error_code failed;
    for (Example& file : files) {
        const std::string source =
            host::near_program({"../../examples", "../share/kalorfix/examples"}, file.name);
        std::optional<std::string> content = source.empty() ? std::nullopt : content_of(source);
        if (!content) throw InputError("--example: this installation holds no examples");
        file.content = std::move(*content);
        if (fs::exists(fs::path(directory) / file.name, failed))
            throw InputError("--example ", directory, ": ", file.name,
                             " stands there already; give a new directory");
    }
    fs::create_directories(directory, failed);
    if (failed) throw InputError("--example ", directory, ": cannot make this directory: ", failed.message());
    for (const Example& file : files) {
        const std::string path = (fs::path(directory) / file.name).string();
        write_file(path, file.content);
        fmt::print("{}: {}\n", path, file.what);
    }
    fmt::print("Now: kalorfix run {0}/station.ini {0}/readings_day.csv --format hours\n", directory);
}

}  // namespace kalorfix::tool::station
