// SPDX-License-Identifier: MIT
#include <fmt/chrono.h>
#include <fmt/format.h>

#include <cmath>
#include <ctime>
#include <filesystem>
#include <memory>
#include <optional>

#include "tools/commands.h"
#include "tools/gasdat/gas_file.h"
#include "tools/output_file.h"
#include "tools/report/html.h"
#include "tools/report/quantities.h"
#include "tools/runtime.h"
#include "tools/separate_files.h"
#include "tools/text.h"

namespace kalorfix::tool {
namespace report {
namespace {

namespace fs = std::filesystem;

struct Request {
    std::string html_file, csv_file, cases_directory, language = "en";
};

constexpr const char* row_layout = "{:<21} {:>6} {:>7} {:>6} {:>6} {:>6} {:>6}  {:<7} {}\n";

void print_failures(const Verification& verification) {
    constexpr std::size_t most_lines = 40;
    std::size_t shown = 0;
    for (const Section& section : verification.sections)
        for (const Value& f : section.values) {
            if (f.passed() || ++shown > most_lines) continue;
            const auto& declared = f.expected->declared;
            fmt::print("{}\n", printable(fmt::format(
                                   "FAILED {}: {}: {} expected {}, computed {}, permitted deviation {}{}",
                                   f.place(), f.where->id, f.expected->column, f.expected->text, f.computed,
                                   short_number(f.permitted),
                                   declared ? ", declared at most " + bound_text(declared->bound) : "")));
        }
    if (shown > most_lines) fmt::print("... and {} more\n", shown - most_lines);
}

std::string_view verdict_word(cases::Verdict verdict) {
    if (verdict == cases::Verdict::met) return "met";
    return verdict == cases::Verdict::differs_as_declared ? "differs as declared" : "FAILED";
}

void print_summary(const Verification& verification) {
    fmt::print(fmt::runtime(row_layout), "function", "points", "values", "exact", "differ", "worst", "mean",
               "verdict", "worst at");
    for (const Section& section : verification.sections) {
        const Statistics s = statistics(section);
        const auto figure = [&s](double value) { return s.worst ? short_number(value) : "-"; };
        fmt::print(fmt::runtime(row_layout), section.subject.key, s.cases, s.values, s.exact, s.differing,
                   figure(s.worst_ratio), figure(s.mean_ratio), s.failed == 0 ? "met" : "FAILED",
                   s.worst ? printable(s.worst->place()) : "");
    }
    fmt::print("worst, mean: deviation over permitted or declared deviation; exact values have none\n");
    for (const Declaration& d : declarations(verification, false))
        fmt::print("differ as declared, {}: {} of {} values{}\n", printable(d.reason), d.differing, d.values,
                   d.at ? printable(fmt::format(", largest {} at {}", percent(d.largest), d.at->place())) : "");
    print_failures(verification);
    const Statistics all = totals(verification);
    fmt::print("{}: {} points, {} values from {} files, {} differ as declared, {} failed\n",
               all.failed == 0 ? "MET" : "FAILED", all.cases, all.values, verification.files.size(),
               all.differing, all.failed);
}

std::string_view origin_word(cases::Origin origin) {
    constexpr std::string_view words[] = {"printed", "program", "own", "limit", "not stated"};
    return words[static_cast<std::size_t>(origin)];
}

std::string csv(const Verification& verification) {
    std::string out =
        "function,case,file,line,inputs,output,expected,computed,deviation,permitted,declared,verdict,reason,"
        "origin,source\n";
    for (const Section& section : verification.sections)
        for (const Value& f : section.values)
            // An exact value has no deviation worth a number.
            out += fmt::format("{},{},{},{},{},{},{},{},{},{},{},{},{},{},{}\n", section.subject.key,
                               csv_text(f.where->id), csv_text(f.file->name), f.where->line,
                               csv_text(all_inputs(*f.where)), f.expected->column, f.expected->text, f.computed,
                               std::isfinite(f.deviation) ? fmt::format("{}", f.deviation) : "", f.permitted,
                               f.declared, verdict_word(f.verdict),
                               f.expected->declared ? csv_text(f.expected->declared->reason) : "",
                               origin_word(f.origin()), csv_text(f.table->source));
    return out;
}

// Beside the program in a build directory, one level up in an installation.
std::string shared(const char* name) {
    return host::near_program({"share/kalorfix", "../share/kalorfix"}, name);
}

std::string now() { return fmt::format("{:%Y-%m-%d %H:%M} UTC", fmt::gmtime(std::time(nullptr))); }

int run(const Installation& files, const Request& request) {
    const std::optional<Language> language = language_of(request.language);
    if (!language) throw InputError("--lang: there are en and ru, not ", tool::quoted(request.language));
    const std::string directory = request.cases_directory.empty() ? shared("cases") : request.cases_directory;
    std::vector<CaseFile> case_files = read_cases(directory);
    if (need_gas_data(case_files)) gasdat::require_gas_data(files.gas_data);
    std::vector<NamedFile> inputs{{"--lib", files.library}, {"--gas-data", files.gas_data}};
    for (const CaseFile& file : case_files)
        inputs.push_back({"the cases", (fs::path(directory) / file.name).string()});
    keep_apart(inputs, {{"--html", request.html_file}, {"--csv", request.csv_file}});
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
        const bool russian = *language == Language::russian;
        page->write(html(verification, {opened, data, now(), *language,
                                        shared(russian ? "ru/deviations.md" : "deviations.md"),
                                        shared(russian ? "ru/not_verified.md" : "not_verified.md")}));
    }
    if (lines) lines->write(csv(verification));
    for (auto* const file : {&page, &lines})
        if (*file) (*file)->complete();
    for (auto* const file : {&page, &lines})
        if (*file) (*file)->finish();
    print_summary(verification);
    return totals(verification).failed == 0 ? 0 : 1;
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
             {"--lang", "en|ru", "language of the page (en)", &request->language},
             {"--cases", "DIR",
              "directory of case files, *.txt (default:\nshare/kalorfix/cases of the build or installation)",
              &request->cases_directory}},
            {},
            [request](const Installation& files) { return report::run(files, *request); }};
}

}  // namespace kalorfix::tool
