#include "tools/report/tables.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "tools/report/prose.h"
#include "tools/report/quantities.h"
#include "tools/svg.h"

namespace kalorfix::tool::report {
namespace {

using svg::escape;

std::string heading(const std::string& symbol, const std::string& unit) {
    return unit.empty() ? fmt::format("<th>{}</th>", escape(symbol))
                        : fmt::format("<th>{} <small>{}</small></th>", escape(symbol), escape(unit));
}

// What the rows of a table share stands once above them; a composition is one column.
struct Layout {
    std::vector<std::string> columns;
    std::vector<std::pair<std::string, double>> fixed;
    bool composition = false;
    bool numbers = false;
};

bool alike(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

Layout layout(const Block& block) {
    Layout result;
    cases::Values every;
    for (const cases::Finding& f : block.findings) every.insert(f.where->inputs.begin(), f.where->inputs.end());
    for (const auto& [name, value] : every) {
        const bool same = std::all_of(block.findings.begin(), block.findings.end(),
                                      [&, &key = name, &shared = value](const cases::Finding& f) {
                                          const auto other = f.where->inputs.find(key);
                                          return other != f.where->inputs.end() && alike(other->second, shared);
                                      });
        const bool one_case = block.findings.back().where == block.findings.front().where;
        if (same || one_case)
            result.fixed.emplace_back(name, value);
        else if (component(name).empty())
            result.columns.push_back(name);
        else
            result.composition = true;
    }
    for (const cases::Finding& f : block.findings) result.numbers = result.numbers || !is_word(*f.expected);
    return result;
}

std::string composition(const cases::Values& inputs, const Layout& shape) {
    std::string text;
    for (const auto& [name, value] : inputs) {
        const std::string_view part = component(name);
        const auto shared = std::find_if(shape.fixed.begin(), shape.fixed.end(),
                                         [&, &key = name](const auto& f) { return f.first == key; });
        if (part.empty() || value == 0.0 || shared != shape.fixed.end()) continue;
        text += fmt::format("{}{} {:.8g}", text.empty() ? "" : ", ", part, value);
    }
    return text.empty() ? "-" : text;
}

std::string fixed_line(const Layout& shape) {
    std::string text;
    for (const auto& [name, value] : shape.fixed) {
        if (!component(name).empty() && value == 0.0) continue;
        const Quantity q = quantity(name);
        const std::string separator = text.empty() ? "" : "; ";
        text += fmt::format("{}{} {}{}{}", separator, q.symbol, input_text(name, value),
                            q.unit.empty() ? "" : " ", q.unit);
    }
    return text.empty() ? text : fmt::format("<p class=\"fixed\"><b>All cases:</b> {}</p>\n", escape(text));
}

// Statuses and phases of one case in one cell.
std::string words(const std::vector<const cases::Finding*>& found) {
    std::string text;
    for (const cases::Finding* f : found) {
        if (!is_word(*f->expected)) continue;
        text += fmt::format("{}{} <b>{}</b>", text.empty() ? "" : ", ", escape(f->expected->column),
                            escape(computed_word(*f)));
        if (!f->passed())
            text += fmt::format(" <b class=\"failed\">FAILED, expected {}</b>", escape(f->expected->text));
    }
    return text.empty() ? "-" : text;
}

std::string value_verdict(const cases::Finding& f) {
    if (f.verdict != cases::Verdict::differs_as_declared) return verdict(f.passed());
    const cases::Deviation& declared = *f.expected->declared;
    return fmt::format("<a class=\"declared\" href=\"#{}\">differs as declared, at most {}</a>",
                       entry_id(declared.reason), bound_text(declared.bound));
}

std::string number_cells(const cases::Finding& f) {
    const Quantity q = quantity(f.expected->column);
    const bool exact = is_exact(f);
    return fmt::format(
        "<td class=\"name\">{}{}</td><td>{}</td><td>{}</td><td>{}</td><td>{}</td><td class=\"name\">{}</td>",
        escape(q.symbol), q.unit.empty() ? "" : fmt::format(" <small>{}</small>", escape(q.unit)),
        escape(expected_text(f)), escape(computed_text(f)),
        exact && f.passed() ? "0" : short_number(f.deviation), exact ? "exact" : short_number(f.permitted),
        value_verdict(f));
}

std::string row(const std::vector<const cases::Finding*>& found, const Layout& shape) {
    const cases::Case& one = *found.front()->where;
    std::vector<const cases::Finding*> numbers;
    for (const cases::Finding* f : found)
        if (!is_word(*f->expected)) numbers.push_back(f);
    const std::size_t lines = std::max<std::size_t>(numbers.size(), 1);
    const std::string span = lines > 1 ? fmt::format(" rowspan=\"{}\"", lines) : "";

    std::string out =
        fmt::format("<tr><td class=\"name id\"{0}>{1}</td><td{0}>{2}</td>", span, escape(one.id), one.line);
    for (const std::string& name : shape.columns) {
        const auto given = one.inputs.find(name);
        const std::string text = given == one.inputs.end() ? "-" : input_text(name, given->second);
        out += fmt::format("<td{}{}>{}</td>", name == "device" ? " class=\"name\"" : "", span, escape(text));
    }
    if (shape.composition)
        out += fmt::format("<td class=\"mixture\"{}>{}</td>", span, escape(composition(one.inputs, shape)));
    out += fmt::format("<td class=\"name\"{}>{}</td>", span, words(found));
    if (!shape.numbers) {
        const bool passed = std::all_of(found.begin(), found.end(), [](const auto* f) { return f->passed(); });
        return out + fmt::format("<td class=\"name\">{}</td></tr>\n", verdict(passed));
    }
    if (numbers.empty()) {
        const bool passed = std::all_of(found.begin(), found.end(), [](const auto* f) { return f->passed(); });
        return out + fmt::format("<td colspan=\"5\"></td><td class=\"name\">{}</td></tr>\n", verdict(passed));
    }
    for (std::size_t k = 0; k < numbers.size(); ++k)
        out += (k > 0 ? "<tr>" : "") + number_cells(*numbers[k]) + "</tr>\n";
    return out;
}

std::string head(const Layout& shape) {
    std::string out = "<thead><tr><th class=\"name\">case</th><th>line</th>";
    for (const std::string& name : shape.columns) out += heading(quantity(name).symbol, quantity(name).unit);
    if (shape.composition) out += "<th class=\"name\">composition <small>as given</small></th>";
    out += "<th class=\"name\">obtained</th>";
    if (shape.numbers)
        out +=
            "<th "
            "class=\"name\">output</th><th>expected</th><th>computed</th><th>deviation</th><th>permitted</th>";
    return out + "<th class=\"name\">verdict</th></tr></thead>\n";
}

bool refused(const cases::Finding& finding) {
    const std::vector<cases::Expected>& expected = finding.where->expected;
    return std::any_of(expected.begin(), expected.end(),
                       [](const cases::Expected& e) { return e.text == "refused"; });
}

// Of the numeric inputs that vary, in states that are computed: what the points cover.
std::string covered(const Section& section) {
    std::map<std::string, std::pair<double, double>> extents;
    for (const Block& block : section.blocks)
        for (const cases::Finding& f : block.findings)
            for (const auto& [name, value] : f.where->inputs) {
                if (!std::isfinite(value) || quantity(name).unit.empty() || !component(name).empty()) continue;
                if (refused(f)) continue;
                auto [at, fresh] = extents.try_emplace(name, value, value);
                at->second = {std::fmin(at->second.first, value), std::fmax(at->second.second, value)};
            }
    std::string text;
    for (const auto& [name, extent] : extents) {
        if (extent.first == extent.second) continue;
        text += fmt::format("{}{} {:.6g}..{:.6g} {}", text.empty() ? "" : "; ", quantity(name).symbol,
                            extent.first, extent.second, quantity(name).unit);
    }
    return text;
}

}  // namespace

std::string verdict(bool passed) {
    return passed ? "<span class=\"met\">met</span>" : "<b class=\"failed\">FAILED</b>";
}

std::string verdict(const Statistics& s) {
    const std::string outcome = verdict(s.failed == 0);
    return s.differing == 0
               ? outcome
               : fmt::format("{}; <a class=\"declared\" href=\"#declared\">{} differ as declared</a>", outcome,
                             s.differing);
}

std::string declaration_table(const Verification& verification) {
    std::string rows;
    for (const Declaration& d : declarations(verification, true))
        rows += fmt::format(
            "<tr><td class=\"name\"><a class=\"declared\" href=\"#{}\">{}</a></td><td class=\"name\">{}</td>"
            "<td>{}</td><td>{}</td><td>{}</td><td class=\"name\">{}</td></tr>\n",
            entry_id(d.reason), escape(d.reason), escape(d.source), d.values, d.differing,
            d.at == nullptr ? "-" : percent(d.largest),
            d.at == nullptr ? "-" : escape(fmt::format("{}:{}", d.file->name, d.at->where->line)));
    if (rows.empty()) return rows;
    return "<h3 id=\"declared\">Printed values that differ as declared</h3>\n<p>Where the library departs from "
           "a "
           "standard on purpose, the case file states the printed value with its own tolerance, and by how "
           "much the "
           "result may differ for the reason given.</p>\n"
           "<table><thead><tr><th class=\"name\">reason</th><th "
           "class=\"name\">source</th><th>values</th><th>differ</th>"
           "<th>largest</th><th class=\"name\">largest at</th></tr></thead><tbody>\n" +
           rows + "</tbody></table>\n";
}

std::string description_table(const Section& section) {
    const Statistics s = statistics(section);
    std::string out = "<table class=\"facts\">\n";
    const auto fact = [&out](const char* name, const std::string& value) {
        if (!value.empty()) out += fmt::format("<tr><th>{}</th><td>{}</td></tr>\n", name, value);
    };
    fact("Method", escape(section.subject.method));
    fact("Document, edition", escape(section.subject.document));
    fact("Range of use", escape(section.subject.range));
    fact("Covered by points", escape(covered(section)));
    fact("Points", fmt::format("{} cases, {} values compared; {} of them exactly", s.cases, s.values, s.exact));
    std::string sources;
    for (const Block& block : section.blocks) {
        const auto cases_here = [&] {
            std::size_t n = 0;
            for (std::size_t k = 0; k < block.findings.size(); ++k)
                if (k == 0 || block.findings[k].where != block.findings[k - 1].where) ++n;
            return n;
        }();
        sources += fmt::format("<li>{} <small>({}:{}, {} {})</small></li>", escape(block.table->source),
                               escape(block.file->name), block.table->line, cases_here,
                               cases_here == 1 ? "case" : "cases");
    }
    fact("Sources", "<ul>" + sources + "</ul>");
    return out + "</table>\n";
}

std::string statistics_table(const Section& section) {
    std::string rows;
    for (const std::string& output : outputs(section)) {
        const Statistics s = statistics(section, output);
        const Quantity q = quantity(output);
        const bool any = s.worst != nullptr;
        rows += fmt::format(
            "<tr><td class=\"name\">{}</td><td "
            "class=\"name\">{}</td><td>{}</td><td>{}</td><td>{}</td><td>{}</td>"
            "<td>{}</td><td>{}</td><td class=\"name\">{}</td><td class=\"name\">{}</td></tr>\n",
            escape(q.symbol), escape(q.unit), s.values, s.exact, any ? short_number(s.worst_deviation) : "-",
            any ? short_number(s.mean_deviation) : "-", any ? short_number(s.worst_ratio) : "-",
            any ? short_number(s.mean_ratio) : "-",
            any ? escape(fmt::format("{}, {}:{}", s.worst->where->id, s.worst_file->name, s.worst->where->line))
                : "-",
            verdict(s));
    }
    return "<table><thead><tr><th class=\"name\">output</th><th "
           "class=\"name\">unit</th><th>values</th><th>exact</th>"
           "<th>worst deviation</th><th>mean</th><th>worst / permitted</th><th>mean / permitted</th>"
           "<th class=\"name\">worst / permitted at</th><th class=\"name\">verdict</th></tr></thead>\n<tbody>" +
           rows + "</tbody></table>\n";
}

std::string value_table(const Block& block) {
    constexpr std::size_t wide_from = 7;
    const Layout shape = layout(block);
    std::string out = fmt::format("<h4>{}<span class=\"trace\">{}:{}</span></h4>\n",
                                  escape(block.table->source), escape(block.file->name), block.table->line);
    std::string notes;
    for (const std::string& note : block.table->notes) notes += (notes.empty() ? "" : "; ") + escape(note);
    if (!notes.empty()) out += "<p class=\"note\">" + notes + "</p>\n";
    out += fixed_line(shape) +
           (shape.columns.size() > wide_from ? "<table class=\"values wide\">" : "<table class=\"values\">") +
           head(shape) + "<tbody>\n";
    std::vector<const cases::Finding*> found;
    for (const cases::Finding& f : block.findings) {
        if (!found.empty() && found.front()->where != f.where) {
            out += row(found, shape);
            found.clear();
        }
        found.push_back(&f);
    }
    if (!found.empty()) out += row(found, shape);
    return out + "</tbody></table>\n";
}

}  // namespace kalorfix::tool::report
