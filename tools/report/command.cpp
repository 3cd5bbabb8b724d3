#include "tools/report/command.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <ctime>
#include <filesystem>

#include "tools/gasdat/gas_file.h"
#include "tools/range.h"
#include "tools/report/csv.h"
#include "tools/report/html.h"
#include "tools/report/summary.h"
#include "tools/runtime.h"

namespace kalorfix::tool::report {
namespace {

namespace fs = std::filesystem;

// Beside the program in a build directory, one level up in an installation.
std::string shared(const std::string& name) {
    std::error_code failed;
    const fs::path directory = fs::read_symlink("/proc/self/exe", failed).parent_path();
    for (const char* place : {"share/kalorfix", "../share/kalorfix"})
        if (const fs::path file = directory / place / name; fs::exists(file, failed))
            return file.lexically_normal().string();
    return (directory / "share/kalorfix" / name).string();
}

std::string now() { return fmt::format("{:%Y-%m-%d %H:%M} UTC", fmt::gmtime(std::time(nullptr))); }

// Before the long work: a place that cannot be written is better known at once.
void require_place(const char* option, const std::string& file) {
    if (file.empty()) return;
    std::error_code failed;
    const fs::path directory = fs::absolute(file).parent_path();
    if (!fs::is_directory(directory, failed))
        throw InputError{fmt::format("{} {}: there is no directory {}", option, file, directory.string())};
    if (fs::is_directory(file, failed))
        throw InputError{fmt::format("{} {}: is a directory; give the name of a file", option, file)};
}

}  // namespace

void describe(CLI::App& app, Command& command) {
    command.top = app.add_subcommand("verify", "Compare the library with every case file; reports.");
    command.top->fallthrough();
    command.top->add_option("--html", command.html_file, "write the report as one page, for screen and paper")
        ->option_text("FILE");
    command.top->add_option("--csv", command.csv_file, "write every compared value as a line")
        ->option_text("FILE");
    command.top
        ->add_option(
            "--cases", command.cases_directory,
            "directory of case files, *.txt (default:\nshare/kalorfix/cases of the build or installation)")
        ->option_text("DIR");
    command.top->footer(
        "Prints a line a function: points, values, worst and mean deviation over the\n"
        "permitted deviation, verdict, and how many printed values differ as their\n"
        "cases declare. Exit status 1 when a value neither is met nor differs so.");
}

int run(const Command& command, const std::string& library, const std::string& gas_data) {
    require_place("--html", command.html_file);
    require_place("--csv", command.csv_file);
    const std::string directory = command.cases_directory.empty() ? shared("cases") : command.cases_directory;
    std::vector<CaseFile> files = read_cases(directory);
    if (gas_data.empty() && need_gas_data(files))
        throw InputError{
            "--gas-data: there is no gas.dat beside the library, and some cases need it; give the file"};
    const host::Runtime runtime(gas_data);
    const Verification verification = verify(library, directory, std::move(files));
    std::string page, lines;
    if (!command.html_file.empty()) {
        const std::string opened = host::Library(library).path();
        const std::string data =
            gas_data.empty() ? gas_data : fs::absolute(gas_data).lexically_normal().string();
        page = html(verification, {opened, data, now(), shared("examples/natural_gas.csv"),
                                   shared("deviations.md"), shared("not_verified.md")});
    }
    if (!command.csv_file.empty()) lines = csv(verification);
    if (!page.empty()) gasdat::write_whole(command.html_file, page);
    if (!lines.empty()) gasdat::write_whole(command.csv_file, lines);
    print_summary(verification);
    return failures(verification) == 0 ? 0 : 1;
}

}  // namespace kalorfix::tool::report
