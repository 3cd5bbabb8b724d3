// The command-line tool: it opens kalorfix.so as a host does.
#include <cstdio>
#include <filesystem>
#include <iostream>

#include "tools/commands.h"
#include "tools/host.h"

namespace tool = kalorfix::tool;

namespace {

constexpr int bad_input = 2;

// One line whatever the user typed, and no failure of its own when nobody listens to standard error.
int complain(std::string what) {
    for (char& c : what)
        if (const auto code = static_cast<unsigned char>(c); code < ' ' || code == 0x7F) c = '?';
    std::fprintf(stderr, "kalorfix: %s\n", what.c_str());
    return bad_input;
}

// Output may fail as late as here, on a full disk for one.
int finish(int status) {
    std::cout.flush();
    if (!std::cout || std::fflush(stdout) != 0 || std::ferror(stdout))
        return complain("cannot write the output");
    return status;
}

int run(int argc, char** argv) {
    std::string library, gas_data;
    const tool::Command program{
        "kalorfix",
        "Flow of natural gas, water and steam by differential pressure, and the\nproperties behind it.",
        "kalorfix COMMAND --help states units and limits.",
        {{"--lib", "FILE",
          "library to open (default: kalorfix.so beside this program or\n"
          "in ../lib or ../lib/<triplet>, else where the system finds it)",
          &library},
         {"--gas-data", "FILE", "gas data file (default: gas.dat beside the library\nor in ../share/kalorfix)",
          &gas_data}},
        {tool::demo_command(), tool::water_command(), tool::gas_command(), tool::gasdat_command(),
         tool::verify_command(), tool::run_command(), tool::id_command()}};
    int status = bad_input;
    const tool::Command* const command =
        chosen_command(program, "kalorfix " KALORFIX_VERSION, argc, argv, status);
    if (!command) return finish(status);
    // A name without a slash would be looked for along the loader's path instead of here.
    if (!library.empty()) library = std::filesystem::absolute(library).string();
    library = kalorfix::host::library_file(library);
    if (gas_data.empty()) gas_data = kalorfix::host::gas_data_of(library);
    return finish(command->run({library, gas_data}));
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        return complain(error.what());
    }
}
