#include "tools/report/limits.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <string_view>
#include <vector>

#include "tools/report/quantities.h"
#include "tools/report/tables.h"
#include "tools/svg.h"

namespace kalorfix::tool::report {
namespace {

using svg::escape;

constexpr std::string_view inside = "-in", outside = "-out";

// What a case near a limit gave.
struct Side {
    const cases::Case* where = nullptr;
    std::string obtained;
    bool passed = true;
};

struct Limit {
    std::string name;
    Side in, out;
};

std::string name_of(const std::string& id, std::string_view ending) {
    return id.size() > ending.size() && id.ends_with(ending) ? id.substr(0, id.size() - ending.size())
                                                             : std::string();
}

void take(Side& side, const cases::Finding& finding) {
    side.where = finding.where;
    side.passed = side.passed && finding.passed();
    if (is_word(*finding.expected))
        side.obtained +=
            (side.obtained.empty() ? "" : ", ") + finding.expected->column + " " + computed_word(finding);
}

std::vector<Limit> limits_of(const Block& block) {
    std::vector<Limit> found;
    for (const cases::Finding& finding : block.findings)
        for (const std::string_view ending : {inside, outside}) {
            const std::string name = name_of(finding.where->id, ending);
            if (name.empty()) continue;
            auto limit =
                std::find_if(found.begin(), found.end(), [&](const Limit& l) { return l.name == name; });
            if (limit == found.end()) limit = found.insert(found.end(), Limit{name, {}, {}});
            take(ending == inside ? limit->in : limit->out, finding);
        }
    return found;
}

// The inputs that differ, with their values on one side.
std::string apart(const Limit& limit, const Side& side) {
    std::string text;
    for (const auto& [name, value] : side.where->inputs) {
        const auto in = limit.in.where->inputs.find(name), out = limit.out.where->inputs.find(name);
        if (in != limit.in.where->inputs.end() && out != limit.out.where->inputs.end() &&
            in->second == out->second)
            continue;
        const Quantity q = quantity(name);
        text += fmt::format("{}{} = {}{}{}", text.empty() ? "" : ", ", q.symbol, input_text(name, value),
                            q.unit.empty() ? "" : " ", q.unit);
    }
    return text;
}

std::string cells(const Limit& limit, const Side& side) {
    return fmt::format("<td class=\"name\">{}</td><td class=\"name\"><b>{}</b></td><td>{}</td>",
                       escape(apart(limit, side)), escape(side.obtained), side.where->line);
}

}  // namespace

std::string limit_tables(const Verification& verification) {
    std::string out;
    for (const Section& section : verification.sections)
        for (const Block& block : section.blocks) {
            std::string rows;
            for (const Limit& limit : limits_of(block)) {
                if (!limit.in.where || !limit.out.where) continue;
                rows += fmt::format("<tr><td class=\"name id\">{}</td>{}{}<td class=\"name\">{}</td></tr>\n",
                                    escape(limit.name), cells(limit, limit.in), cells(limit, limit.out),
                                    verdict(limit.in.passed && limit.out.passed));
            }
            if (rows.empty()) continue;
            out += fmt::format(
                "<h4>{}<span class=\"trace\">{}, {}:{}</span></h4>\n<table class=\"values\"><thead><tr>"
                "<th class=\"name\">limit</th><th class=\"name\">inside</th><th class=\"name\">obtained</th>"
                "<th>line</th><th class=\"name\">outside</th><th class=\"name\">obtained</th><th>line</th>"
                "<th class=\"name\">verdict</th></tr></thead><tbody>\n{}</tbody></table>\n",
                escape(block.table->source), escape(section.subject.key), escape(block.file->name),
                block.table->line, rows);
        }
    return out.empty() ? "<p>The case files hold no pairs of cases on the two sides of a limit.</p>\n" : out;
}

}  // namespace kalorfix::tool::report
