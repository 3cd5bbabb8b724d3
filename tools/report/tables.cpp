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

std::string composition(const cases::Values& inputs, const Layout& shape) {
    std::vector<std::string> parts;
    for (const auto& [name, value] : inputs)
        if (const std::string_view part = component(name);
            !part.empty() && value != 0.0 && !shape.fixed.contains(name))
            parts.push_back(fmt::format("{} {:.8g}", part, value));
    return parts.empty() ? "-" : joined(parts);
}

std::string fixed_line(const Layout& shape) {
    std::vector<std::string> parts;
    for (const auto& [name, value] : shape.fixed) {
        if (!component(name).empty() && value == 0.0) continue;
        const Quantity q = quantity(name);
        parts.push_back(fmt::format("{} {}{}", q.symbol, input_text(name, value), q.unit_behind()));
    }
    if (parts.empty()) return {};
    return fmt::format("<p class=\"fixed\"><b>All cases:</b> {}</p>\n", escape(joined(parts, {}, "; ")));
}

using Findings = std::vector<const Value*>;

// Statuses and phases of one case in one cell.
Html obtained(const Findings& found) {
    Html words;
    for (const Value* f : found) {
        if (!is_word(*f->expected)) continue;
        words.text += fmt::format("{}{} <b>{}</b>", words.text.empty() ? "" : ", ", escape(f->expected->column),
                                  escape(computed_word(*f)));
        if (!f->passed())
            words.text +=
                fmt::format(" <b class=\"failed\">FAILED, expected {}</b>", escape(f->expected->text));
    }
    return words.text.empty() ? Html{"-"} : words;
}

Html value_verdict(const cases::Finding& f) {
    if (f.verdict != cases::Verdict::differs_as_declared) return verdict(f.passed());
    const cases::Deviation& declared = *f.expected->declared;
    return {fmt::format("<a class=\"declared\" href=\"#{}\">differs as declared, at most {}</a>",
                        entry_id(declared.reason), bound_text(declared.bound))};
}

// A line for each number of a case; the inputs and what was obtained in words stand in the first.
void add_case(Table& table, const Findings& found, const Layout& shape) {
    const cases::Case& one = *found.front()->where;
    std::vector<Cell> cells{one.id, std::to_string(one.line)};
    for (const std::string& name : shape.columns) {
        const auto given = one.inputs.find(name);
        cells.emplace_back(given == one.inputs.end() ? "-" : input_text(name, given->second));
    }
    if (shape.composition) cells.emplace_back(composition(one.inputs, shape));
    cells.emplace_back(obtained(found));
    const std::size_t inputs = cells.size();
    for (const Value* f : found) {
        if (is_word(*f->expected)) continue;
        const Quantity q = quantity(f->expected->column);
        const bool exact = f->is_exact();
        const std::string given = f->expected->text, digits = with_digits_of(f->expected->value, f->permitted);
        for (const Cell& cell :
             std::vector<Cell>{q.symbol + q.unit_behind(), given.size() <= digits.size() ? given : digits,
                               with_digits_of(f->computed, f->permitted),
                               exact && f->passed() ? "0" : short_number(f->deviation),
                               exact ? "exact" : short_number(f->permitted), value_verdict(*f)})
            cells.push_back(cell);
        table.row(cells);
        cells.assign(inputs, "");
    }
    if (cells.front().html.empty()) return;
    if (shape.numbers) cells.resize(inputs + 5, "");
    cells.emplace_back(verdict(std::ranges::all_of(found, [](const auto* f) { return f->passed(); })));
    table.row(cells);
}

// ---- Limits from both sides -----------------------------------------------------------------------------------

constexpr std::string_view inside = "-in", outside = "-out";

// What a case near a limit gave.
struct Side {
    const cases::Case* where = nullptr;
    std::string obtained;
    bool passed = true;

    void take(const cases::Finding& finding) {
        where = finding.where;
        passed = passed && finding.passed();
        if (is_word(*finding.expected))
            obtained +=
                (obtained.empty() ? "" : ", ") + finding.expected->column + " " + computed_word(finding);
    }
};

struct Limit {
    std::string name;
    Side in{}, out{};
};

std::vector<Limit> limits_of(Values values) {
    std::vector<Limit> found;
    for (const Value& finding : values)
        for (const std::string_view ending : {inside, outside}) {
            const std::string& id = finding.where->id;
            if (!id.ends_with(ending)) continue;
            const std::string name = id.substr(0, id.size() - ending.size());
            auto limit = std::ranges::find(found, name, &Limit::name);
            if (limit == found.end()) limit = found.insert(found.end(), Limit{name});
            (ending == inside ? limit->in : limit->out).take(finding);
        }
    return found;
}

// The inputs that differ, with their values on one side.
std::string apart(const Limit& limit, const Side& side) {
    std::vector<std::string> parts;
    for (const auto& [name, value] : side.where->inputs) {
        const auto in = limit.in.where->inputs.find(name), out = limit.out.where->inputs.find(name);
        if (in != limit.in.where->inputs.end() && out != limit.out.where->inputs.end() &&
            in->second == out->second)
            continue;
        const Quantity q = quantity(name);
        parts.push_back(fmt::format("{} = {}{}", q.symbol, input_text(name, value), q.unit_behind()));
    }
    return joined(parts);
}

}  // namespace

std::string value_table(Values values) {
    constexpr std::size_t wide_from = 7;
    const cases::Table& source = *values.front().table;
    const Layout shape = layout(values);
    std::string headings = "<case,line";
    for (const std::string& name : shape.columns)
        headings +=
            fmt::format(",{}{}|{}", name == "device" ? "<" : "", quantity(name).symbol, quantity(name).unit);
    headings += fmt::format("{},<obtained{},<verdict", shape.composition ? ",<composition|as given" : "",
                            shape.numbers ? ",<output,expected,computed,deviation,permitted" : "");
    Table table(headings, shape.columns.size() > wide_from ? "values wide" : "values");
    Findings found;
    for (const Value& value : values) {
        if (!found.empty() && found.front()->where != value.where) {
            add_case(table, found, shape);
            found.clear();
        }
        found.push_back(&value);
    }
    add_case(table, found, shape);
    const std::string notes = escape(joined(source.notes, {}, "; "));
    return fmt::format("<h4>{}<span class=\"trace\">{}:{}</span></h4>\n{}{}{}", escape(source.source),
                       escape(values.front().file->name), source.line,
                       notes.empty() ? notes : "<p class=\"note\">" + notes + "</p>\n", fixed_line(shape),
                       table.html());
}

std::string limit_tables(const Verification& verification) {
    std::string out;
    for (const Section& section : verification.sections)
        for (const Values& values : section.tables()) {
            Table table("<limit,<inside,<obtained,line,<outside,<obtained,line,<verdict", "values");
            const auto bold = [](const Side& side) { return Html{"<b>" + escape(side.obtained) + "</b>"}; };
            for (const Limit& limit : limits_of(values)) {
                const auto& [name, in, out_of] = limit;
                if (!in.where || !out_of.where) continue;
                table.row({name, apart(limit, in), bold(in), std::to_string(in.where->line),
                           apart(limit, out_of), bold(out_of), std::to_string(out_of.where->line),
                           verdict(in.passed && out_of.passed)});
            }
            if (const std::string rows = table.html(); !rows.empty())
                out += fmt::format("<h4>{}<span class=\"trace\">{}, {}:{}</span></h4>\n{}",
                                   escape(values.front().table->source), escape(section.subject.key),
                                   escape(values.front().file->name), values.front().table->line, rows);
        }
    return out.empty() ? "<p>The case files hold no pairs of cases on the two sides of a limit.</p>\n" : out;
}

}  // namespace kalorfix::tool::report
