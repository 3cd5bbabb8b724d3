#include <fmt/chrono.h>
#include <fmt/format.h>

#include <ctime>
#include <filesystem>
#include <memory>
#include <optional>

#include "tools/commands.h"
#include "tools/output_file.h"
#include "tools/report/html.h"
#include "tools/report/summary.h"
#include "tools/runtime.h"
#include "tools/text.h"

namespace kalorfix::tool {
namespace report {
namespace {

namespace fs = std::filesystem;

struct Request {
    std::string html_file, csv_file, cases_directory;
};

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

int run(const Installation& files, const Request& request) {
    const std::string directory = request.cases_directory.empty() ? shared("cases") : request.cases_directory;
    std::vector<CaseFile> case_files = read_cases(directory);
    if (files.gas_data.empty() && need_gas_data(case_files))
        throw InputError(
            "--gas-data: there is no gas.dat beside the library, and some cases need it; give the file");
    // Before the long work: a place that cannot be written is better known at once.
    std::optional<OutputFile> page, lines;
    if (!request.html_file.empty()) page.emplace(request.html_file);
    if (!request.csv_file.empty()) lines.emplace(request.csv_file);
    const host::Runtime runtime(files.gas_data);
    const Verification verification = verify(files.library, directory, std::move(case_files));
    if (page) {
        const std::string opened = host::Library(files.library).path();
        const std::string data =
            files.gas_data.empty() ? "" : fs::absolute(files.gas_data).lexically_normal().string();
        page->write(
            html(verification, {opened, data, now(), shared("deviations.md"), shared("not_verified.md")}));
    }
    if (lines) lines->write(csv(verification));
    if (page) page->finish();
    if (lines) lines->finish();
    print_summary(verification);
    return failures(verification) == 0 ? 0 : 1;
}

}  // namespace
}  // namespace report

Command verify_command() {
    const auto request = std::make_shared<report::Request>();
    return {"verify",
            "Compare the library with every case file; reports.",
            "Prints a line a function: points, values, worst and mean deviation over the\n"
            "permitted deviation, verdict, and how many printed values differ as their\n"
            "cases declare. Exit status 1 when a value neither is met nor differs so.",
            {{"--html", "FILE", "write the report as one page, for screen and paper", &request->html_file},
             {"--csv", "FILE", "write every compared value as a line", &request->csv_file},
             {"--cases", "DIR",
              "directory of case files, *.txt (default:\nshare/kalorfix/cases of the build or installation)",
              &request->cases_directory}},
            {},
            [request](const Installation& files) { return report::run(files, *request); }};
}

}  // namespace kalorfix::tool
