// SPDX-License-Identifier: MIT
#include "tools/report/html.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "tools/identity.h"
#include "tools/report/machine.h"
#include "tools/report/page_parts.h"
#include "tools/report/quantities.h"
#include "tools/text.h"

namespace kalorfix::tool::report {
namespace {

using cases::Origin;

Html code(std::string_view text) { return {fmt::format("<code>{}</code>", escape(text))}; }

std::string anchor(const Section& section) { return escape("f-" + section.subject.key); }

// A number of those that only values with a permitted deviation have.
std::string figure(const Wording& w, const Statistics& s, double value) {
    return s.worst ? w.number(short_number(value)) : "-";
}

std::string heading(std::string_view level, std::string_view text, std::string_view id = {}) {
    return fmt::format("<{0}{2}>{1}</{0}>\n", level, escape(text),
                       id.empty() ? "" : fmt::format(" id=\"{}\"", id));
}
std::string paragraph(std::string_view text, std::string_view kind) {
    return fmt::format("<p class=\"{}\">{}</p>\n", kind, escape(text));
}

Html link(const Section& section, Language language) {
    return {fmt::format("<a href=\"#{}\">{}</a>", anchor(section), escape(section.subject.name(language)))};
}

struct OriginTitle {
    Origin origin;
    Text text;
};
constexpr OriginTitle origins[] = {{Origin::printed, "printed in a publication"},
                                   {Origin::program, "computed by another program"},
                                   {Origin::own, "own independent evaluation"},
                                   {Origin::limit, "status or limit"},
                                   {Origin::not_stated, "not stated by the case file"}};

std::vector<const Value*> of_origin(Values values, Origin origin) {
    std::vector<const Value*> found;
    for (const Value& value : values)
        if (value.origin() == origin) found.push_back(&value);
    return found;
}

// ---- Summaries ------------------------------------------------------------------------------------------------

std::string by_origin(const Wording& w, const Verification& verification) {
    Table table({{w("origin"), {}, true},
                 {w("values")},
                 {w("met exactly or within tolerance")},
                 {w("differ as declared")},
                 {w("failed")},
                 {w("worst / permitted")},
                 {w("verdict"), {}, true}});
    for (const auto& [origin, text] : origins) {
        std::vector<const Value*> values;
        for (const Section& section : verification.sections)
            for (const Value* value : of_origin(section.values, origin)) values.push_back(value);
        if (values.empty()) continue;
        const Statistics s = statistics(values);
        table.row({w(text), s.values, s.values - s.differing - s.failed, s.differing, s.failed,
                   figure(w, s, s.worst_ratio), verdict(w, s.failed == 0)});
    }
    return table.html();
}

std::string by_publication(const Wording& w, const Verification& verification) {
    Table table({{w("publication"), {}, true},
                 {w("subject"), {}, true},
                 {w("values")},
                 {w("met exactly or within tolerance")},
                 {w("differ as declared")},
                 {w("failed")},
                 {w("worst / permitted")}});
    for (const Section& section : verification.sections)
        for (const Values& values : section.tables()) {
            const std::vector<const Value*> printed = of_origin(values, Origin::printed);
            if (printed.empty()) continue;
            const Statistics s = statistics(printed);
            table.row({Html{source_text(w, values.front().table->source)}, link(section, w.language), s.values,
                       s.values - s.differing - s.failed, s.differing, s.failed, figure(w, s, s.worst_ratio)});
        }
    const std::string rows = table.html();
    return rows.empty() ? rows : heading("h3", w("Printed values, by publication")) + rows;
}

std::string by_function(const Wording& w, const Verification& verification) {
    Table table({{w("subject"), {}, true},
                 {w("function"), {}, true},
                 {w("points")},
                 {w("values")},
                 {w("exact")},
                 {w("worst / permitted")},
                 {w("mean / permitted")},
                 {w("verdict"), {}, true}});
    for (const Section& section : verification.sections) {
        const Statistics s = statistics(section);
        table.row({link(section, w.language), code(section.subject.key), s.cases, s.values, s.exact,
                   figure(w, s, s.worst_ratio), figure(w, s, s.mean_ratio), verdict(w, s)});
    }
    return table.html();
}

// What the case files declare, by reason, with a link to the entry; nothing when they declare nothing.
std::string declaration_table(const Wording& w, const Verification& verification) {
    Table table({{w("reason"), {}, true},
                 {w("source"), {}, true},
                 {w("values")},
                 {w("differ")},
                 {w("largest")},
                 {w("largest at"), {}, true}});
    for (const Declaration& d : declarations(verification, true))
        table.row({Html{fmt::format("<a class=\"declared\" href=\"#{}\">{}</a>", entry_id(d.reason),
                                    escape(translated(w.language, d.reason)))},
                   Html{source_text(w, d.source)}, d.values, d.differing,
                   d.at ? w.number(percent(d.largest)) : std::string("-"),
                   d.at ? d.at->place() : std::string("-")});
    const std::string rows = table.html();
    if (rows.empty()) return rows;
    return heading("h3", w("Printed values that differ as declared"), "declared") +
           paragraph(w("Where the library departs from a standard on purpose, the case file states the printed "
                       "value with "
                       "its own tolerance, and by how much the result may differ for the reason given."),
                     "note") +
           rows;
}

std::string identification(const Wording& w, const Verification& verification, const Surroundings& around) {
    Facts facts, digests;
    for (const auto& [name, value] : build_items(around.library))
        facts.emplace_back(translated(w.language, name), value);
    facts.emplace_back(w("library"), around.library);
    facts.emplace_back(w("library") + ", SHA-256", code(file_digest(around.library)));
    facts.emplace_back(w("gas data"), around.gas_data.empty() ? w("none; no case needs it") : around.gas_data);
    if (!around.gas_data.empty())
        facts.emplace_back(w("gas data") + ", SHA-256", code(file_digest(around.gas_data)));
    facts.emplace_back(w("case files"), verification.directory);
    facts.emplace_back(w("machine"), machine_name());
    facts.emplace_back(w("processor"), processor_name());
    facts.emplace_back(w("date and time"), around.date);
    for (const CaseFile& file : verification.files)
        digests.emplace_back(file.name, code(file_digest(verification.directory + "/" + file.name)));
    return facts_table(facts) + heading("h3", w("Case files")) +
           paragraph(w("A figure below names its file and line; these are the files."), "note") +
           facts_table(digests);
}

std::string methods(const Wording& w, const Verification& verification) {
    Table table({{w("subject"), {}, true},
                 {w("method"), {}, true},
                 {w("document, edition"), {}, true},
                 {w("in force"), {}, true},
                 {w("accepted range"), {}, true},
                 {w("range of the document"), {}, true}},
                "texts");
    for (const Section& section : verification.sections) {
        const Subject& s = section.subject;
        table.row({link(section, w.language), w(s.method), w(s.document), w(s.in_force), w(s.accepted),
                   w(s.documented)});
    }
    return table.html() + paragraph(w("In force: no register of standards was consulted. \"Not checked\" "
                                      "stands for that; a later edition is "
                                      "named where the data of this project quote one."),
                                    "note");
}

// ---- Chapters -------------------------------------------------------------------------------------------------

bool refused(const cases::Finding& finding) {
    return std::ranges::find(finding.where->expected, "refused", &cases::Expected::text) !=
           finding.where->expected.end();
}

// Of the numeric inputs that vary, in states that are computed: what the points cover.
std::string covered(const Wording& w, const Section& section) {
    std::map<std::string, std::pair<double, double>> extents;
    for (const Value& f : section.values)
        for (const auto& [name, value] : f.where->inputs) {
            if (!std::isfinite(value) || quantity(name).unit.empty() || !component(name).empty()) continue;
            if (refused(f)) continue;
            auto [at, fresh] = extents.try_emplace(name, value, value);
            at->second = {std::fmin(at->second.first, value), std::fmax(at->second.second, value)};
        }
    std::erase_if(extents, [](const auto& one) { return one.second.first == one.second.second; });
    const auto text = [&w](const auto& one) {
        const Quantity q = quantity(one.first);
        return fmt::format("{} {}..{} {}", q.symbol, w.number(fmt::format("{:.6g}", one.second.first)),
                           w.number(fmt::format("{:.6g}", one.second.second)), translated(w.language, q.unit));
    };
    return joined(extents, text, "; ");
}

std::string sources(const Wording& w, const Section& section) {
    Table table({{w("source"), {}, true},
                 {w("origin"), {}, true},
                 {w("cases")},
                 {w("values")},
                 {w("worst / permitted")},
                 {w("verdict"), {}, true}});
    for (const Values& values : section.tables())
        for (const auto& [origin, text] : origins) {
            const std::vector<const Value*> here = of_origin(values, origin);
            if (here.empty()) continue;
            const Statistics s = statistics(here);
            table.row({Html{fmt::format("{} <small>{}:{}</small>", source_text(w, values.front().table->source),
                                        escape(values.front().file->name), values.front().table->line)},
                       w(text), s.cases, s.values, figure(w, s, s.worst_ratio), verdict(w, s)});
        }
    return table.html();
}

// Worst and mean of each output.
std::string statistics_table(const Wording& w, const Section& section) {
    Table table({{w("output"), {}, true},
                 {w("unit"), {}, true},
                 {w("values")},
                 {w("exact")},
                 {w("worst deviation")},
                 {w("mean")},
                 {w("worst / permitted")},
                 {w("mean / permitted")},
                 {w("worst / permitted at"), {}, true},
                 {w("verdict"), {}, true}});
    for (const std::string& output : section.outputs()) {
        const Statistics s = statistics(section, output);
        const Quantity q = quantity(output);
        table.row({symbol_text(w, output), translated(w.language, q.unit), s.values, s.exact,
                   figure(w, s, s.worst_deviation), figure(w, s, s.mean_deviation), figure(w, s, s.worst_ratio),
                   figure(w, s, s.mean_ratio),
                   s.worst ? s.worst->where->id + ", " + s.worst->place() : std::string("-"), verdict(w, s)});
    }
    return table.html();
}

// Printed values stand on the paper too, the others on the screen, folded away, unless one of them is not met.
std::string value_tables(const Wording& w, const Section& section) {
    std::string printed, others;
    std::size_t count = 0;
    for (const Values& values : section.tables()) {
        std::vector<Value> shown, rest;
        bool any = false;
        for (const Value& value : values) {
            const bool on_paper = value.origin() == Origin::printed || !value.passed();
            any = any || on_paper;
            (on_paper || is_word(*value.expected) ? shown : rest).push_back(value);
        }
        if (!any) rest.assign(values.begin(), values.end());
        count += rest.size();
        if (any) printed += value_table(w, shown);
        if (!rest.empty()) others += value_table(w, rest);
    }
    std::string out;
    if (!printed.empty()) out += heading("h3", w("Printed values")) + printed;
    if (!others.empty())
        out += fmt::format(
            "<details><summary><b>{}</b>: {}</summary>\n{}</details>\n", escape(w("Other values")),
            escape(w("{} values, on the screen and in the CSV of kalorfix verify --csv", count)), others);
    return out;
}

std::string chapter(const Wording& w, const Section& section) {
    const Statistics s = statistics(section);
    std::string out = fmt::format("<h2 id=\"{}\">{} <small>{}</small></h2>\n", anchor(section),
                                  escape(section.subject.name(w.language)), code(section.subject.key).text);
    out += facts_table(
        {{w("Covered by points"), covered(w, section)},
         {w("Points"), w("{} cases, {} values compared; {} of them exactly", s.cases, s.values, s.exact)}});
    out += sources(w, section) + heading("h3", w("Worst and mean")) + statistics_table(w, section);
    if (const std::string chart = deviation_chart(w, section); !chart.empty())
        out += heading("h3", w("Deviations")) + chart;
    return out + value_tables(w, section);
}

// ---- What is left ---------------------------------------------------------------------------------------------

// The document, and what the case files declare for reasons that it does not name.
std::string deliberate(const Wording& w, const Verification& verification, const std::string& path) {
    std::string out = markdown(path, true, true);
    for (const Declaration& d : declarations(verification, false))
        if (const std::string id = fmt::format(" id=\"{}\"", entry_id(d.reason));
            out.find(id) == std::string::npos)
            out += fmt::format("<p{}><b class=\"failed\">{}</b>: {}</p>\n", id, escape(d.reason),
                               escape(w("declared in the case files, not in this list.")));
    return out;
}

// What the case files themselves show to be left out.
std::string never_compared(const Wording& w, const Verification& verification) {
    std::string items;
    for (const auto& [name, procedure] : cases::procedures()) {
        std::set<std::string_view> compared, varied;
        for (const CaseFile& file : verification.files)
            for (const cases::Table& table : file.tables) {
                if (table.function != name) continue;
                for (const cases::Case& one : table.cases) {
                    for (const cases::Expected& expected : one.expected) compared.insert(expected.column);
                    for (const auto& [input, value] : one.inputs) varied.insert(input);
                }
            }
        std::vector<std::string_view> without, untouched;
        for (const std::string_view output : words(procedure.outputs))
            if (!compared.contains(output)) without.push_back(output);
        for (const auto& [input, value] : procedure.inputs)
            if (!varied.contains(input)) untouched.push_back(input);
        std::string text;
        if (compared.empty()) {
            text = " " + w("no case at all.");
        } else {
            if (!without.empty()) text += " " + w("outputs never compared: {}.", joined(without));
            if (!untouched.empty()) text += " " + w("inputs left at their default: {}.", joined(untouched));
        }
        if (!text.empty()) items += fmt::format("<li><code>{}</code>:{}</li>\n", name, escape(text));
    }
    if (items.empty()) return items;
    return heading("h3", w("Found in the case files")) + "<div class=\"prose\"><ul>\n" + items +
           "</ul></div>\n";
}

// The verdict of the whole.
std::string outcome(const Wording& w, const Statistics& s) {
    std::string out =
        fmt::format("<div class=\"outcome{}\">{}</div>\n", s.failed > 0 ? " bad" : "",
                    escape(s.failed > 0 ? w("FAILED: {} of {} values", s.failed, s.values)
                                        : w("MET: {} of {} values within their permitted deviation",
                                            s.values - s.differing, s.values)));
    if (s.differing > 0)
        out += fmt::format(
            "<div class=\"outcome declared\"><a class=\"declared\" href=\"#declared\">{}</a></div>\n",
            escape(w("{} printed values differ as declared", s.differing)));
    return out;
}

}  // namespace

std::string source_text(const Wording& w, const std::string& source) {
    const std::string_view text = of_case_file(w.language, source);
    return text.empty() ? "<span lang=\"en\">" + escape(source) + "</span>" : escape(text);
}

std::string html(const Verification& verification, const Surroundings& around) {
    const Wording w{around.language};
    std::string body = heading("h1", w("Verification report of kalorfix.so"));
    body += paragraph(w("Type test of the software") + ", " + around.date, "lead");
    body += paragraph(w("This is a type test of the software: it compares what the library file named below "
                        "computes with known values, "
                        "on the machine named below. It says nothing of an installed device, its transmitters, "
                        "a pipe or a plate; for "
                        "a device there is kalorfix protocol."),
                      "purpose");
    body +=
        outcome(w, totals(verification)) + heading("h3", w("Summary by origin of the expected value")) +
        by_origin(w, verification) + by_publication(w, verification) + heading("h3", w("Summary by function")) +
        by_function(w, verification) +
        paragraph(
            w("Exact values (statuses, phases, zeros) must agree and have no worst or mean. Worst and mean: "
              "deviation over permitted or, where a value differs as declared, declared deviation. Names of "
              "cases and inputs are quoted as the case files have them."),
            "note") +
        declaration_table(w, verification) + heading("h2", w("Identification"), "identification") +
        identification(w, verification, around) + heading("h2", w("Methods and ranges"), "methods") +
        methods(w, verification);
    for (const Section& section : verification.sections) body += chapter(w, section);
    body += heading("h2", w("Limits from both sides"), "limits") +
            paragraph(w("Each limit with a state just inside and one just outside, and the status obtained."),
                      "note") +
            limit_tables(w, verification) + heading("h2", w("Deliberate deviations"), "deviations") +
            deliberate(w, verification, around.deviations) + heading("h2", w("What is not verified"), "open") +
            markdown(around.not_verified, false, false) + never_compared(w, verification) +
            fmt::format("<footer>kalorfix verify, {}</footer>\n", escape(around.date));
    return html::page(language_code(w.language), w("Verification report of kalorfix.so") + ", " + around.date,
                      page_style, body);
}

}  // namespace kalorfix::tool::report
