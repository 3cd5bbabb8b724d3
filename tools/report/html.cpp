#include "tools/report/html.h"

#include <fmt/format.h>

#include <algorithm>
#include <fstream>
#include <set>

#include "tools/component_names.h"
#include "tools/composition_file.h"
#include "tools/identity.h"
#include "tools/range.h"
#include "tools/report/chart.h"
#include "tools/report/limits.h"
#include "tools/report/maps.h"
#include "tools/report/page_style.h"
#include "tools/report/prose.h"
#include "tools/report/quantities.h"
#include "tools/report/tables.h"
#include "tools/svg.h"

namespace kalorfix::tool::report {
namespace {

using svg::escape;

std::string document(const std::string& path, bool named_entries = false) {
    std::ifstream in(path);
    if (!in) throw InputError{path + ": cannot read this part of the report"};
    return "<div class=\"prose\">\n" + prose(in, named_entries) + "</div>\n";
}

// The document, and what the case files declare for reasons that it does not name.
std::string deliberate(const Verification& verification, const std::string& path) {
    std::string out = document(path, true);
    for (const Declaration& d : declarations(verification, false))
        if (const std::string id = fmt::format(" id=\"{}\"", entry_id(d.reason));
            out.find(id) == std::string::npos)
            out += fmt::format(
                "<p{}><b class=\"failed\">{}</b>: declared in the case files, not in this list.</p>\n", id,
                escape(d.reason));
    return out;
}

std::string identification(const Verification& verification, const Surroundings& around) {
    std::string out = "<table class=\"facts\">\n";
    const auto fact = [&out](const std::string& name, const std::string& value) {
        out += fmt::format("<tr><th>{}</th><td>{}</td></tr>\n", escape(name), value);
    };
    for (const auto& [name, value] : build_items(around.library)) fact(name, escape(value));
    fact("library", escape(around.library));
    fact("library, SHA-256", "<code>" + file_digest(around.library) + "</code>");
    fact("gas data", around.gas_data.empty() ? "none; no case needs it" : escape(around.gas_data));
    if (!around.gas_data.empty())
        fact("gas data, SHA-256", "<code>" + file_digest(around.gas_data) + "</code>");
    fact("case files", escape(verification.directory));
    fact("date", escape(around.date));
    out +=
        "</table>\n<h3>Case files</h3>\n<p>A figure below names its file and line; these are the files.</p>\n"
        "<table class=\"facts\">\n";
    for (const CaseFile& file : verification.files)
        fact(file.name, "<code>" + file_digest(verification.directory + "/" + file.name) + "</code>");
    return out + "</table>\n";
}

std::string anchor(const Section& section) { return "f-" + section.subject.key; }

std::string overview(const Verification& verification) {
    std::string rows;
    for (const Section& section : verification.sections) {
        const Statistics s = statistics(section);
        const bool any = s.worst != nullptr;
        rows += fmt::format(
            "<tr><td class=\"name\"><a href=\"#{}\">{}</a></td><td "
            "class=\"name\"><code>{}</code></td><td>{}</td><td>{}"
            "</td><td>{}</td><td>{}</td><td>{}</td><td class=\"name\">{}</td></tr>\n",
            escape(anchor(section)), escape(section.subject.title), escape(section.subject.key), s.cases,
            s.values, s.exact, any ? short_number(s.worst_ratio) : "-", any ? short_number(s.mean_ratio) : "-",
            verdict(s));
    }
    return "<table><thead><tr><th class=\"name\">subject</th><th class=\"name\">function</th><th>points</th>"
           "<th>values</th><th>exact</th><th>worst / permitted</th><th>mean / permitted</th>"
           "<th class=\"name\">verdict</th></tr></thead><tbody>\n" +
           rows + "</tbody></table>\n";
}

std::string chapter(const Section& section) {
    std::string out =
        fmt::format("<h2 id=\"{}\">{} <small><code>{}</code></small></h2>\n", escape(anchor(section)),
                    escape(section.subject.title), escape(section.subject.key));
    out += description_table(section) + "<h3>Worst and mean</h3>\n" + statistics_table(section);
    if (const std::string chart = deviation_chart(section); !chart.empty())
        out += "<h3>Deviations</h3>\n" + chart;
    out += "<h3>Values</h3>\n";
    for (const Block& block : section.blocks) out += value_table(block);
    return out;
}

// What the case files themselves show to be left out.
std::string never_compared(const Verification& verification) {
    std::string items;
    for (const auto& [name, procedure] : cases::procedures()) {
        std::set<std::string> compared, varied;
        for (const CaseFile& file : verification.files)
            for (const cases::Table& table : file.tables) {
                if (table.function != name) continue;
                for (const cases::Case& one : table.cases) {
                    for (const cases::Expected& expected : one.expected) compared.insert(expected.column);
                    for (const auto& [input, value] : one.inputs)
                        if (procedure.inputs.contains(input)) varied.insert(input);
                }
            }
        std::string without;
        for (const std::string& output : procedure.outputs)
            if (!compared.contains(output)) without += (without.empty() ? "" : ", ") + output;
        std::string untouched;
        for (const auto& [input, value] : procedure.inputs)
            if (!varied.contains(input)) untouched += (untouched.empty() ? "" : ", ") + input;
        if (compared.empty())
            items += fmt::format("<li><code>{}</code>: no case at all.</li>\n", name);
        else if (!without.empty() || !untouched.empty())
            items += fmt::format("<li><code>{}</code>: {}{}{}</li>\n", name,
                                 without.empty() ? "" : "outputs never compared: " + without + ". ",
                                 untouched.empty() ? "" : "inputs left at their default: " + untouched,
                                 untouched.empty() ? "" : ".");
    }
    return items.empty()
               ? items
               : "<h3>Found in the case files</h3>\n<div class=\"prose\"><ul>\n" + items + "</ul></div>\n";
}

std::string gas_maps(const Surroundings& around) {
    const host::Library library(around.library);
    std::string out = "<h2>Maps: compressibility</h2>\n<p>K of the four methods on one gas (";
    const GivenComposition gas = read_composition(around.gas_file);
    std::string parts;
    for (std::size_t k = 0; k < gas.x.size(); ++k)
        if (gas.x[k] > 0.0)
            parts += fmt::format("{}{} {:g}", parts.empty() ? "" : ", ", component_names[k], gas.x[k]);
    out += parts + (gas.volume_fractions ? "; volume fractions" : "; mole per cent") +
           ") over temperature and absolute pressure, and how the others differ from AGA8-92DC. These are "
           "computed for "
           "the picture, not compared with anything. Grey: refused (K of 0.9999 or more among others).</p>\n";
    return out + compressibility_maps(library, gas);
}

// The verdict of the whole.
std::string outcome(const Verification& verification) {
    std::size_t values = 0, differing = 0;
    for (const Section& section : verification.sections) {
        const Statistics s = statistics(section);
        values += s.values;
        differing += s.differing;
    }
    const std::size_t failed = failures(verification);
    std::string out =
        failed == 0
            ? fmt::format(
                  "<div class=\"outcome\">MET: {} of {} values within their permitted deviation</div>\n",
                  values - differing, values)
            : fmt::format("<div class=\"outcome bad\">FAILED: {} of {} values</div>\n", failed, values);
    if (differing > 0)
        out += fmt::format(
            "<div class=\"outcome declared\"><a class=\"declared\" href=\"#declared\">{} printed values differ "
            "as "
            "declared</a></div>\n",
            differing);
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
    out += outcome(verification) + overview(verification);
    out +=
        "<p class=\"note\">A point is a row of a case file. Worst and mean: deviation over permitted or, where "
        "a "
        "value differs as declared, declared deviation; exact values (statuses, phases, zeros) have none and "
        "must "
        "agree.</p>\n" +
        declaration_table(verification) +
        "<p class=\"note\">Further: <a href=\"#identification\">identification</a>, <a "
        "href=\"#limits\">limits</a>, "
        "<a href=\"#deviations\">deliberate deviations</a>, <a href=\"#open\">what is not verified</a>.</p>\n";
    out +=
        "<h2 id=\"identification\" class=\"flow\">Identification</h2>\n" + identification(verification, around);
    for (const Section& section : verification.sections) out += chapter(section);
    out +=
        "<h2 id=\"limits\">Limits from both sides</h2>\n<p>Each limit with a state just inside and one just "
        "outside, and "
        "the status obtained.</p>\n" +
        limit_tables(verification);
    if (const std::string map = density_map(host::Library(around.library), verification); !map.empty())
        out +=
            "<h2>Map: density of water and steam</h2>\n<p>The compared states over temperature and pressure "
            "(logarithmic), "
            "shaded by the relative deviation of the density from the value of the source.</p>\n" +
            map;
    if (!around.gas_data.empty()) out += gas_maps(around);
    out += "<h2 id=\"deviations\">Deliberate deviations</h2>\n" + deliberate(verification, around.deviations);
    out += "<h2 id=\"open\">What is not verified</h2>\n" + document(around.not_verified) +
           never_compared(verification);
    return out + fmt::format("<footer>kalorfix verify, {}</footer>\n</body>\n</html>\n", escape(around.date));
}

}  // namespace kalorfix::tool::report
