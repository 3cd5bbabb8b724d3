#include "tools/report/summary.h"

#include <fmt/format.h>

#include <cmath>

#include "tools/report/quantities.h"

namespace kalorfix::tool::report {
namespace {

constexpr const char* row_layout = "{:<21} {:>6} {:>7} {:>6} {:>6} {:>6} {:>6}  {:<7} {}\n";

void print_row(const Section& section, const Statistics& s) {
    const auto figure = [&s](double value) { return s.worst ? short_number(value) : "-"; };
    fmt::print(fmt::runtime(row_layout), section.subject.key, s.cases, s.values, s.exact, s.differing,
               figure(s.worst_ratio), figure(s.mean_ratio), s.failed == 0 ? "met" : "FAILED",
               s.worst ? place(*s.worst_file, *s.worst->where) : "");
}

void print_failures(const Verification& verification) {
    constexpr std::size_t most_lines = 40;
    std::size_t shown = 0;
    for_each_finding(verification, [&](const Section&, const Block& block, const cases::Finding& f) {
        if (f.passed() || ++shown > most_lines) return;
        fmt::print("FAILED {}: {}: {} expected {}, computed {}, permitted deviation {}{}\n",
                   place(*block.file, *f.where), f.where->id, f.expected->column, f.expected->text, f.computed,
                   short_number(f.permitted),
                   f.expected->declared
                       ? fmt::format(", declared at most {}", bound_text(f.expected->declared->bound))
                       : "");
    });
    if (shown > most_lines) fmt::print("... and {} more\n", shown - most_lines);
}

std::string quoted_cell(const std::string& text) {
    if (text.find_first_of(",\"\n") == std::string::npos) return text;
    std::string out = "\"";
    for (const char c : text) {
        if (c == '"') out += '"';
        out += c;
    }
    return out + '"';
}

std::string_view verdict_word(cases::Verdict verdict) {
    if (verdict == cases::Verdict::met) return "met";
    return verdict == cases::Verdict::differs_as_declared ? "differs as declared" : "FAILED";
}

}  // namespace

void print_summary(const Verification& verification) {
    std::size_t points = 0, values = 0, differing = 0;
    fmt::print(fmt::runtime(row_layout), "function", "points", "values", "exact", "differ", "worst", "mean",
               "verdict", "worst at");
    for (const Section& section : verification.sections) {
        const Statistics s = statistics(section);
        print_row(section, s);
        points += s.cases;
        values += s.values;
    }
    fmt::print("worst, mean: deviation over permitted or declared deviation; exact values have none\n");
    for (const Declaration& d : declarations(verification, false)) {
        differing += d.differing;
        fmt::print(
            "differ as declared, {}: {} of {} values{}\n", d.reason, d.differing, d.values,
            d.at ? fmt::format(", largest {} at {}", percent(d.largest), place(*d.file, *d.at->where)) : "");
    }
    print_failures(verification);
    const std::size_t failed = failures(verification);
    fmt::print("{}: {} points, {} values from {} files, {} differ as declared, {} failed\n",
               failed == 0 ? "MET" : "FAILED", points, values, verification.files.size(), differing, failed);
}

std::string csv(const Verification& verification) {
    std::string out =
        "function,case,file,line,inputs,output,expected,computed,deviation,permitted,declared,verdict,reason,"
        "source\n";
    for_each_finding(verification, [&](const Section& section, const Block& block, const cases::Finding& f) {
        // An exact value has no deviation worth a number.
        out += fmt::format("{},{},{},{},{},{},{},{},{},{},{},{},{},{}\n", section.subject.key,
                           quoted_cell(f.where->id), quoted_cell(block.file->name), f.where->line,
                           quoted_cell(all_inputs(*f.where)), f.expected->column, f.expected->text, f.computed,
                           std::isfinite(f.deviation) ? fmt::format("{}", f.deviation) : "", f.permitted,
                           f.declared, verdict_word(f.verdict),
                           f.expected->declared ? quoted_cell(f.expected->declared->reason) : "",
                           quoted_cell(block.table->source));
    });
    return out;
}

}  // namespace kalorfix::tool::report
