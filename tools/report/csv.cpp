#include "tools/report/csv.h"

#include <fmt/format.h>

#include <cmath>

#include "tools/report/quantities.h"

namespace kalorfix::tool::report {
namespace {

std::string quoted(const std::string& text) {
    if (text.find_first_of(",\"\n") == std::string::npos) return text;
    std::string out = "\"";
    for (const char c : text) {
        if (c == '"') out += '"';
        out += c;
    }
    return out + '"';
}

// An exact value has no deviation worth a number.
std::string deviation(const cases::Finding& finding) {
    return std::isfinite(finding.deviation) ? fmt::format("{}", finding.deviation) : std::string();
}

std::string_view verdict(const cases::Finding& finding) {
    switch (finding.verdict) {
        case cases::Verdict::met:
            return "met";
        case cases::Verdict::differs_as_declared:
            return "differs as declared";
        default:
            return "FAILED";
    }
}

}  // namespace

std::string csv(const Verification& verification) {
    std::string out =
        "function,case,file,line,inputs,output,expected,computed,deviation,permitted,declared,verdict,reason,"
        "source\n";
    for (const Section& section : verification.sections)
        for (const Block& block : section.blocks)
            for (const cases::Finding& f : block.findings)
                out += fmt::format("{},{},{},{},{},{},{},{},{},{},{},{},{},{}\n", section.subject.key,
                                   quoted(f.where->id), quoted(block.file->name), f.where->line,
                                   quoted(all_inputs(*f.where)), f.expected->column, f.expected->text,
                                   f.computed, deviation(f), f.permitted, f.declared, verdict(f),
                                   f.expected->declared ? quoted(f.expected->declared->reason) : "",
                                   quoted(block.table->source));
    return out;
}

}  // namespace kalorfix::tool::report
