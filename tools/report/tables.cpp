// SPDX-License-Identifier: MIT
#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "tools/report/html.h"
#include "tools/report/page_parts.h"
#include "tools/report/quantities.h"
#include "tools/text.h"

namespace kalorfix::tool::report {
namespace {

// What the rows of a table share stands once above them; a composition is one column.
struct Layout {
    std::vector<std::string> columns;
    std::map<std::string, double> fixed;
    bool composition = false, numbers = false;
};

bool alike(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

Layout layout(Values values) {
    Layout result;
    cases::Values every;
    for (const Value& f : values) every.insert(f.where->inputs.begin(), f.where->inputs.end());
    const bool one_case = values.back().where == values.front().where;
    for (const auto& [name, value] : every) {
        const auto has_it = [name = name, value = value](const Value& f) {
            const auto other = f.where->inputs.find(name);
            return other != f.where->inputs.end() && alike(other->second, value);
        };
        const bool same = std::ranges::all_of(values, has_it);
        if (same || one_case)
            result.fixed.emplace(name, value);
        else if (component(name).empty())
            result.columns.push_back(name);
        else
            result.composition = true;
    }
    for (const Value& f : values) result.numbers = result.numbers || !is_word(*f.expected);
    return result;
}

std::string unit_behind(const Wording& w, const Quantity& q) {
    return q.unit.empty() ? "" : " " + std::string(translated(w.language, q.unit));
}

std::string composition(const Wording& w, const cases::Values& inputs, const Layout& shape) {
    std::vector<std::string> parts;
    for (const auto& [name, value] : inputs)
        if (const std::string_view part = component(name);
            !part.empty() && value != 0.0 && !shape.fixed.contains(name))
            parts.push_back(
                fmt::format("{} {}", translated(w.language, part), w.number(fmt::format("{:.8g}", value))));
    return parts.empty() ? "-" : joined(parts);
}

std::string fixed_line(const Wording& w, const Layout& shape) {
    std::vector<std::string> parts;
    for (const auto& [name, value] : shape.fixed) {
        if (!component(name).empty() && value == 0.0) continue;
        const Quantity q = quantity(name);
        parts.push_back(
            fmt::format("{} {}{}", symbol_text(w, name), input_text(w, name, value), unit_behind(w, q)));
    }
    if (parts.empty()) return {};
    return fmt::format("<p class=\"fixed\"><b>{}</b> {}</p>\n", escape(w("All cases:")),
                       escape(joined(parts, {}, "; ")));
}

using Findings = std::vector<const Value*>;

// Statuses and phases of one case in one cell.
Html obtained(const Wording& w, const Findings& found) {
    Html words;
    for (const Value* f : found) {
        if (!is_word(*f->expected)) continue;
        words.text +=
            fmt::format("{}{}: <b>{}</b>", words.text.empty() ? "" : ", ",
                        escape(word_text(w, f->expected->column)), escape(word_text(w, computed_word(*f))));
        if (!f->passed())
            words.text += fmt::format(" <b class=\"failed\">{}</b>",
                                      escape(w("FAILED, expected {}", word_text(w, f->expected->text))));
    }
    return words.text.empty() ? Html{"-"} : words;
}

Html value_verdict(const Wording& w, const cases::Finding& f) {
    if (f.verdict != cases::Verdict::differs_as_declared) return verdict(w, f.passed());
    const cases::Deviation& declared = *f.expected->declared;
    return {fmt::format("<a class=\"declared\" href=\"#{}\">{}</a>", entry_id(declared.reason),
                        escape(w("differs as declared, at most {}", w.number(bound_text(declared.bound)))))};
}

// A line for each number of a case; the inputs and what was obtained in words stand in the first.
void add_case(const Wording& w, Table& table, const Findings& found, const Layout& shape) {
    const cases::Case& one = *found.front()->where;
    std::vector<Cell> cells{one.id, std::to_string(one.line)};
    for (const std::string& name : shape.columns) {
        const auto given = one.inputs.find(name);
        cells.emplace_back(given == one.inputs.end() ? std::string("-") : input_text(w, name, given->second));
    }
    if (shape.composition) cells.emplace_back(composition(w, one.inputs, shape));
    cells.emplace_back(obtained(w, found));
    const std::size_t inputs = cells.size();
    for (const Value* f : found) {
        if (is_word(*f->expected)) continue;
        const Quantity q = quantity(f->expected->column);
        const bool exact = f->is_exact();
        const std::string given = f->expected->text, digits = with_digits_of(f->expected->value, f->permitted);
        for (const Cell& cell :
             std::vector<Cell>{symbol_text(w, f->expected->column) + unit_behind(w, q),
                               w.number(given.size() <= digits.size() ? given : digits),
                               w.number(with_digits_of(f->computed, f->permitted)),
                               exact && f->passed() ? std::string("0") : w.number(short_number(f->deviation)),
                               exact ? w("exact") : w.number(short_number(f->permitted)), value_verdict(w, *f)})
            cells.push_back(cell);
        table.row(cells);
        cells.assign(inputs, std::string());
    }
    if (cells.front().html.empty()) return;
    if (shape.numbers) cells.resize(inputs + 5, std::string());
    cells.emplace_back(verdict(w, std::ranges::all_of(found, [](const auto* f) { return f->passed(); })));
    table.row(cells);
}

// ---- Limits from both sides -----------------------------------------------------------------------------------

constexpr std::string_view inside = "-in", outside = "-out";

// What a case near a limit gave.
struct Side {
    const cases::Case* where = nullptr;
    std::string obtained;
    bool passed = true;

    void take(const Wording& w, const cases::Finding& finding) {
        where = finding.where;
        passed = passed && finding.passed();
        if (is_word(*finding.expected))
            obtained += (obtained.empty() ? "" : ", ") + word_text(w, finding.expected->column) + ": " +
                        word_text(w, computed_word(finding));
    }
};

struct Limit {
    std::string name;
    Side in{}, out{};
};

std::vector<Limit> limits_of(const Wording& w, Values values) {
    std::vector<Limit> found;
    for (const Value& finding : values)
        for (const std::string_view ending : {inside, outside}) {
            const std::string& id = finding.where->id;
            if (!id.ends_with(ending)) continue;
            const std::string name = id.substr(0, id.size() - ending.size());
            auto limit = std::ranges::find(found, name, &Limit::name);
            if (limit == found.end()) limit = found.insert(found.end(), Limit{name});
            (ending == inside ? limit->in : limit->out).take(w, finding);
        }
    return found;
}

// The inputs that differ, with their values on one side.
std::string apart(const Wording& w, const Limit& limit, const Side& side) {
    std::vector<std::string> parts;
    for (const auto& [name, value] : side.where->inputs) {
        const auto in = limit.in.where->inputs.find(name), out = limit.out.where->inputs.find(name);
        if (in != limit.in.where->inputs.end() && out != limit.out.where->inputs.end() &&
            in->second == out->second)
            continue;
        const Quantity q = quantity(name);
        parts.push_back(
            fmt::format("{} = {}{}", symbol_text(w, name), input_text(w, name, value), unit_behind(w, q)));
    }
    return joined(parts);
}

}  // namespace

std::string value_table(const Wording& w, Values values) {
    constexpr std::size_t wide_from = 7;
    const cases::Table& source = *values.front().table;
    const Layout shape = layout(values);
    std::vector<Column> columns{{w("case"), {}, true}, {w("line")}};
    for (const std::string& name : shape.columns) {
        const Quantity q = quantity(name);
        columns.push_back(
            {symbol_text(w, name), std::string(translated(w.language, q.unit)), name == "device"});
    }
    if (shape.composition) columns.push_back({w("composition"), w("as given"), true, true});
    columns.push_back({w("obtained"), {}, true});
    if (shape.numbers) {
        columns.push_back({w("output"), {}, true});
        for (const Text text : {Text("expected"), Text("computed"), Text("deviation"), Text("permitted")})
            columns.push_back({w(text)});
    }
    columns.push_back({w("verdict"), {}, true});
    Table table(columns, shape.columns.size() > wide_from ? "values wide" : "values");
    Findings found;
    for (const Value& value : values) {
        if (!found.empty() && found.front()->where != value.where) {
            add_case(w, table, found, shape);
            found.clear();
        }
        found.push_back(&value);
    }
    add_case(w, table, found, shape);
    const auto note = [&w](const std::string& text) { return source_text(w, text); };
    const std::string notes = joined(source.notes, note, "; ");
    return fmt::format("<h4>{}<span class=\"trace\">{}:{}</span></h4>\n{}{}{}", source_text(w, source.source),
                       escape(values.front().file->name), source.line,
                       notes.empty() ? notes : "<p class=\"note\">" + notes + "</p>\n", fixed_line(w, shape),
                       table.html());
}

std::string limit_tables(const Wording& w, const Verification& verification) {
    std::string out;
    std::size_t count = 0, failed = 0;
    for (const Section& section : verification.sections)
        for (const Values& values : section.tables()) {
            Table table({{w("limit"), {}, true},
                         {w("inside"), {}, true},
                         {w("obtained"), {}, true},
                         {w("line")},
                         {w("outside"), {}, true},
                         {w("obtained"), {}, true},
                         {w("line")},
                         {w("verdict"), {}, true}},
                        "values limits");
            const auto bold = [](const Side& side) { return Html{"<b>" + escape(side.obtained) + "</b>"}; };
            for (const Limit& limit : limits_of(w, values)) {
                const auto& [name, in, out_of] = limit;
                if (!in.where || !out_of.where) continue;
                ++count;
                if (!in.passed || !out_of.passed) ++failed;
                table.row({name, apart(w, limit, in), bold(in), std::to_string(in.where->line),
                           apart(w, limit, out_of), bold(out_of), std::to_string(out_of.where->line),
                           verdict(w, in.passed && out_of.passed)});
            }
            if (const std::string rows = table.html(); !rows.empty())
                out += fmt::format("<h4>{}<span class=\"trace\">{}, {}:{}</span></h4>\n{}",
                                   source_text(w, values.front().table->source), escape(section.subject.key),
                                   escape(values.front().file->name), values.front().table->line, rows);
        }
    if (out.empty())
        return "<p>" + escape(w("The case files hold no pairs of cases on the two sides of a limit.")) +
               "</p>\n";
    const std::string counts = failed == 0 ? w("{} limits, all met from both sides", count)
                                           : w("{} limits, of which not met: {}", count, failed);
    return fmt::format("<p><b>{}</b></p>\n{}", escape(counts), out);
}

}  // namespace kalorfix::tool::report
