#include "tools/report/html.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "tools/identity.h"
#include "tools/report/page_parts.h"
#include "tools/report/quantities.h"
#include "tools/text.h"

namespace kalorfix::tool::report {
namespace {

using Facts = std::vector<std::pair<std::string, Cell>>;

Html code(std::string_view text) { return {fmt::format("<code>{}</code>", escape(text))}; }

std::string anchor(const Section& section) { return escape("f-" + section.subject.key); }

// A number of those that only values with a permitted deviation have.
std::string figure(const Statistics& s, double value) { return s.worst ? short_number(value) : "-"; }

// The document, and what the case files declare for reasons that it does not name.
std::string deliberate(const Verification& verification, const std::string& path) {
    std::string out = markdown(path, true);
    for (const Declaration& d : declarations(verification, false))
        if (const std::string id = fmt::format(" id=\"{}\"", entry_id(d.reason));
            out.find(id) == std::string::npos)
            out += fmt::format(
                "<p{}><b class=\"failed\">{}</b>: declared in the case files, not in this list.</p>\n", id,
                escape(d.reason));
    return out;
}

std::string identification(const Verification& verification, const Surroundings& around) {
    Facts facts, digests;
    for (const auto& [name, value] : build_items(around.library)) facts.emplace_back(name, value);
    facts.emplace_back("library", around.library);
    facts.emplace_back("library, SHA-256", code(file_digest(around.library)));
    facts.emplace_back("gas data", around.gas_data.empty() ? "none; no case needs it" : around.gas_data);
    if (!around.gas_data.empty()) facts.emplace_back("gas data, SHA-256", code(file_digest(around.gas_data)));
    facts.emplace_back("case files", verification.directory);
    facts.emplace_back("date", around.date);
    for (const CaseFile& file : verification.files)
        digests.emplace_back(file.name, code(file_digest(verification.directory + "/" + file.name)));
    return facts_table(facts) +
           "<h3>Case files</h3>\n<p>A figure below names its file and line; these are the files.</p>\n" +
           facts_table(digests);
}

std::string overview(const Verification& verification) {
    Table table("<subject,<function,points,values,exact,worst / permitted,mean / permitted,<verdict");
    for (const Section& section : verification.sections) {
        const Statistics s = statistics(section);
        table.row({Html{fmt::format("<a href=\"#{}\">{}</a>", anchor(section), escape(section.subject.title))},
                   code(section.subject.key), s.cases, s.values, s.exact, figure(s, s.worst_ratio),
                   figure(s, s.mean_ratio), verdict(s)});
    }
    return table.html();
}

// What the case files declare, by reason, with a link to the entry; nothing when they declare nothing.
std::string declaration_table(const Verification& verification) {
    Table table("<reason,<source,values,differ,largest,<largest at");
    for (const Declaration& d : declarations(verification, true))
        table.row({Html{fmt::format("<a class=\"declared\" href=\"#{}\">{}</a>", entry_id(d.reason),
                                    escape(d.reason))},
                   d.source, d.values, d.differing, d.at ? percent(d.largest) : "-",
                   d.at ? d.at->place() : "-"});
    const std::string rows = table.html();
    if (rows.empty()) return rows;
    return "<h3 id=\"declared\">Printed values that differ as declared</h3>\n<p>Where the library departs from "
           "a "
           "standard on purpose, the case file states the printed value with its own tolerance, and by how "
           "much "
           "the result may differ for the reason given.</p>\n" +
           rows;
}

bool refused(const cases::Finding& finding) {
    return std::ranges::find(finding.where->expected, "refused", &cases::Expected::text) !=
           finding.where->expected.end();
}

// Of the numeric inputs that vary, in states that are computed: what the points cover.
std::string covered(const Section& section) {
    std::map<std::string, std::pair<double, double>> extents;
    for (const Value& f : section.values)
        for (const auto& [name, value] : f.where->inputs) {
            if (!std::isfinite(value) || quantity(name).unit.empty() || !component(name).empty()) continue;
            if (refused(f)) continue;
            auto [at, fresh] = extents.try_emplace(name, value, value);
            at->second = {std::fmin(at->second.first, value), std::fmax(at->second.second, value)};
        }
    std::erase_if(extents, [](const auto& one) { return one.second.first == one.second.second; });
    const auto text = [](const auto& one) {
        const Quantity q = quantity(one.first);
        return fmt::format("{} {:.6g}..{:.6g} {}", q.symbol, one.second.first, one.second.second, q.unit);
    };
    return joined(extents, text, "; ");
}

std::string description(const Section& section) {
    const Statistics s = statistics(section);
    const auto source = [](const Values& values) {
        std::set<const cases::Case*> here;
        for (const Value& value : values) here.insert(value.where);
        return fmt::format("<li>{} <small>({}:{}, {} {})</small></li>", escape(values.front().table->source),
                           escape(values.front().file->name), values.front().table->line, here.size(),
                           here.size() == 1 ? "case" : "cases");
    };
    return facts_table({{"Method", section.subject.method},
                        {"Document, edition", section.subject.document},
                        {"Range of use", section.subject.range},
                        {"Covered by points", covered(section)},
                        {"Points", fmt::format("{} cases, {} values compared; {} of them exactly", s.cases,
                                               s.values, s.exact)},
                        {"Sources", Html{"<ul>" + joined(section.tables(), source, "") + "</ul>"}}});
}

// Worst and mean of each output.
std::string statistics_table(const Section& section) {
    Table table(
        "<output,<unit,values,exact,worst deviation,mean,worst / permitted,mean / permitted,"
        "<worst / permitted at,<verdict");
    for (const std::string& output : section.outputs()) {
        const Statistics s = statistics(section, output);
        const Quantity q = quantity(output);
        table.row({q.symbol, q.unit, s.values, s.exact, figure(s, s.worst_deviation),
                   figure(s, s.mean_deviation), figure(s, s.worst_ratio), figure(s, s.mean_ratio),
                   s.worst ? s.worst->where->id + ", " + s.worst->place() : "-", verdict(s)});
    }
    return table.html();
}

std::string chapter(const Section& section) {
    std::string out = fmt::format("<h2 id=\"{}\">{} <small>{}</small></h2>\n", anchor(section),
                                  escape(section.subject.title), code(section.subject.key).text);
    out += description(section) + "<h3>Worst and mean</h3>\n" + statistics_table(section);
    if (const std::string chart = deviation_chart(section); !chart.empty())
        out += "<h3>Deviations</h3>\n" + chart;
    out += "<h3>Values</h3>\n";
    for (const Values& values : section.tables()) out += value_table(values);
    return out;
}

// What the case files themselves show to be left out.
std::string never_compared(const Verification& verification) {
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
            text = " no case at all.";
        } else {
            if (!without.empty()) text += " outputs never compared: " + joined(without) + ".";
            if (!untouched.empty()) text += " inputs left at their default: " + joined(untouched) + ".";
        }
        if (!text.empty()) items += fmt::format("<li><code>{}</code>:{}</li>\n", name, text);
    }
    if (items.empty()) return items;
    return "<h3>Found in the case files</h3>\n<div class=\"prose\"><ul>\n" + items + "</ul></div>\n";
}

// The verdict of the whole.
std::string outcome(const Statistics& s) {
    std::string out =
        s.failed > 0
            ? fmt::format("<div class=\"outcome bad\">FAILED: {} of {} values</div>\n", s.failed, s.values)
            : fmt::format(
                  "<div class=\"outcome\">MET: {} of {} values within their permitted deviation</div>\n",
                  s.values - s.differing, s.values);
    if (s.differing > 0)
        out += fmt::format(
            "<div class=\"outcome declared\"><a class=\"declared\" href=\"#declared\">{} printed values differ "
            "as declared</a></div>\n",
            s.differing);
    return out;
}

}  // namespace

std::string html(const Verification& verification, const Surroundings& around) {
    std::string out = fmt::format(
        "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
        "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
        "<title>kalorfix: verification report, {0}</title>\n<style>{1}</style>\n</head>\n<body>\n"
        "<h1>Verification report of kalorfix.so</h1>\n<p class=\"lead\">{0}</p>\n",
        escape(around.date), page_style);
    out +=
        outcome(totals(verification)) + overview(verification) +
        "<p class=\"note\">A point is a row of a case file. Worst and mean: deviation over permitted or, where "
        "a "
        "value differs as declared, declared deviation; exact values (statuses, phases, zeros) have none and "
        "must agree.</p>\n" +
        declaration_table(verification) +
        "<p class=\"note\">Further: <a href=\"#identification\">identification</a>, <a "
        "href=\"#limits\">limits</a>, <a href=\"#deviations\">deliberate deviations</a>, <a "
        "href=\"#open\">what is "
        "not verified</a>.</p>\n<h2 id=\"identification\" class=\"flow\">Identification</h2>\n" +
        identification(verification, around);
    for (const Section& section : verification.sections) out += chapter(section);
    return out +
           "<h2 id=\"limits\">Limits from both sides</h2>\n<p>Each limit with a state just inside and one just "
           "outside, and the status obtained.</p>\n" +
           limit_tables(verification) + "<h2 id=\"deviations\">Deliberate deviations</h2>\n" +
           deliberate(verification, around.deviations) + "<h2 id=\"open\">What is not verified</h2>\n" +
           markdown(around.not_verified, false) + never_compared(verification) +
           fmt::format("<footer>kalorfix verify, {}</footer>\n</body>\n</html>\n", escape(around.date));
}

}  // namespace kalorfix::tool::report
