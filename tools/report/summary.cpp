#include "tools/report/summary.h"

#include <fmt/format.h>

#include "tools/report/quantities.h"

namespace kalorfix::tool::report {
namespace {

void print_row(const Section& section) {
    const Statistics s = statistics(section);
    const bool any = s.worst != nullptr;
    fmt::print("{:<21} {:>6} {:>7} {:>6} {:>6} {:>6} {:>6}  {:<7} {}\n", section.subject.key, s.cases, s.values,
               s.exact, s.differing, any ? short_number(s.worst_ratio) : "-",
               any ? short_number(s.mean_ratio) : "-", s.failed == 0 ? "met" : "FAILED",
               any ? fmt::format("{}:{}", s.worst_file->name, s.worst->where->line) : "");
}

void print_failures(const Verification& verification) {
    constexpr std::size_t most_lines = 40;
    std::size_t shown = 0;
    for (const Section& section : verification.sections)
        for (const Block& block : section.blocks)
            for (const cases::Finding& f : block.findings) {
                if (f.passed() || ++shown > most_lines) continue;
                fmt::print("FAILED {}:{}: {}: {} expected {}, computed {}, permitted deviation {}{}\n",
                           block.file->name, f.where->line, f.where->id, f.expected->column, f.expected->text,
                           f.computed, short_number(f.permitted),
                           f.expected->declared
                               ? fmt::format(", declared at most {}", bound_text(f.expected->declared->bound))
                               : "");
            }
    if (shown > most_lines) fmt::print("... and {} more\n", shown - most_lines);
}

}  // namespace

void print_summary(const Verification& verification) {
    std::size_t points = 0, values = 0;
    fmt::print("{:<21} {:>6} {:>7} {:>6} {:>6} {:>6} {:>6}  {:<7} {}\n", "function", "points", "values",
               "exact", "differ", "worst", "mean", "verdict", "worst at");
    for (const Section& section : verification.sections) {
        print_row(section);
        const Statistics s = statistics(section);
        points += s.cases;
        values += s.values;
    }
    const std::size_t failed = failures(verification);
    fmt::print("worst, mean: deviation over permitted or declared deviation; exact values have none\n");
    std::size_t differing = 0;
    for (const Declaration& d : declarations(verification, false)) {
        differing += d.differing;
        fmt::print("differ as declared, {}: {} of {} values{}\n", d.reason, d.differing, d.values,
                   d.at == nullptr ? ""
                                   : fmt::format(", largest {} at {}:{}", percent(d.largest), d.file->name,
                                                 d.at->where->line));
    }
    print_failures(verification);
    fmt::print("{}: {} points, {} values from {} files, {} differ as declared, {} failed\n",
               failed == 0 ? "MET" : "FAILED", points, values, verification.files.size(), differing, failed);
}

}  // namespace kalorfix::tool::report
