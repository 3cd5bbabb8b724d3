// SPDX-License-Identifier: MIT
#include "tools/protocol/page.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "tools/names.h"
#include "tools/text.h"

namespace kalorfix::tool::protocol {
namespace {

using html::Cell;
using html::Column;
using html::escape;
using html::Html;
using html::Table;

constexpr std::string_view style = R"css(
* { box-sizing: border-box; }
body { margin: 0 auto; max-width: 900px; padding: 24px; color: #111; background: #fff;
  font: 13px/1.35 "Liberation Sans", "DejaVu Sans", Arial, sans-serif; overflow-wrap: anywhere; }
h1 { font-size: 19px; margin: 0 0 2px; } h1 small { display: block; font-size: 14px; font-weight: 400; }
h2 { font-size: 14px; margin: 16px 0 4px; } p { margin: 4px 0; }
.blank { display: inline-block; min-width: 5em; border-bottom: 1px solid #111; }
table { border-collapse: collapse; width: 100%; font-variant-numeric: tabular-nums; }
.facts th { text-align: left; font-weight: 400; color: #444; width: 33%; padding: 1px 8px 1px 0; vertical-align: top; }
.facts td { padding: 1px 0; border-bottom: 1px solid #bbb; height: 1.5em; } .facts code { font-size: 10px; }
.numbers { font-size: 11.5px; } .numbers th, .numbers td { border: 1px solid #888; padding: 1px 5px; text-align: right; }
.numbers th { font-weight: 600; vertical-align: bottom; overflow-wrap: normal; } .numbers th small { display: block; font-weight: 400; }
.numbers td { white-space: nowrap; } .numbers .name { text-align: left; } .scroll { overflow-x: auto; }
.note { color: #333; font-size: 11.5px; } .outcome { border: 1.5px solid #111; padding: 6px 10px; margin: 8px 0; font-weight: 600; }
.sign { display: grid; grid-template-columns: 1.5fr 1fr 1.4fr 1fr 1fr; gap: 20px 10px; margin-top: 24px; }
.sign span { border-bottom: 1px solid #111; min-height: 2em; display: flex; align-items: flex-end; }
.sign b { font-weight: 400; align-self: end; } .sign small { margin-top: -18px; color: #444; text-align: center; }
@media (max-width: 600px) { body { padding: 12px; } .facts th { width: 40%; } .sign { grid-template-columns: 1fr 1fr; } .sign b, .sign i { grid-column: 1 / 3; }
  .sign i { display: none; } .sign small { order: 0; } }
@page { size: A4 portrait; margin: 12mm 12mm 12mm 18mm; }
@media print { body { max-width: none; padding: 0; font-size: 9.2pt; } .numbers { font-size: 7.6pt; } .numbers th, .numbers td { padding: 0.7pt 2.5pt; }
  .second { break-before: page; } tr, .sign, .outcome { break-inside: avoid; } .scroll { overflow: visible; } .facts { font-size: 8pt; } .facts td { height: auto; padding: 0; } .facts code { font-size: 7pt; }
  .numbers { line-height: 1.2; }
  .numbers.many { font-size: 6.6pt; } .note { font-size: 8pt; } }
)css";

// Words and numbers as a language writes them.
struct Writer : Wording {
    [[nodiscard]] std::string of(double value) const { return number(fmt::format("{:#.7g}", value)); }
    [[nodiscard]] std::string plain_of(double value) const { return number(fmt::format("{:.6g}", value)); }
};

// Two digits behind the first of the limit.
std::string deviation_text(double value, double limit_pct) {
    const int decimals =
        limit_pct > 0.0 ? std::clamp(2 - static_cast<int>(std::floor(std::log10(limit_pct))), 2, 9) : 7;
    return fmt::format("{:+.{}f}", value, decimals);
}

std::string medium_of(const Writer& w, const metering::Medium& medium) {
    const auto* const gas = std::get_if<metering::Gas>(&medium);
    if (!gas) return w("water and steam, IAPWS-95");
    std::string text =
        Text("natural gas, {}").filled(w.language, translated(w.language, method_name(gas->method)));
    if (is_by_density(gas->method))
        text += "; " +
                Text("density at 20 degC and 101.325 kPa: {} kg/m3").filled(w.language, w.plain_of(gas->rho_c));
    const double whole = gas->volume_fractions ? 100.0 : 1.0;
    for (std::size_t i = 0; i < components.size(); ++i)
        if (gas->x[i] != 0.0)
            text +=
                fmt::format("; {} {} %", translated(w.language, components[i]), w.plain_of(gas->x[i] * whole));
    return text;
}

std::string head_of(const Writer& w, const Sheet& sheet) {
    const Head& head = sheet.head;
    const auto given = [](const std::string& text) { return Html{text.empty() ? "&nbsp;" : escape(text)}; };
    const metering::Pipeline& pipe = sheet.point.point.pipe;
    html::Facts facts{{w("Object"), given(head.object)},
                      {w("Device"), given(head.device)},
                      {w("Serial number"), given(head.serial)},
                      {w("Software, version"), given(head.software)},
                      {w("Software, checksum"), given(head.checksum)},
                      {w("Date"), given(head.date)}};
    facts.emplace_back(
        w("Metering point"),
        fmt::format("{}; {}; {}", sheet.point.name,
                    translated(w.language, devices[static_cast<std::size_t>(pipe.device - 1)].title),
                    Text("pipe {} mm, device {} mm at 20 degC")
                        .filled(w.language, w.plain_of(pipe.D20_mm), w.plain_of(pipe.d20_mm))));
    facts.emplace_back("", medium_of(w, sheet.point.point.medium));
    facts.insert(facts.end(), sheet.reference.begin(), sheet.reference.end());
    return fmt::format("<h1>{} {}<small>{}</small></h1>\n{}", escape(w("Protocol No.")),
                       head.number.empty() ? "<span class=\"blank\">&nbsp;</span>" : escape(head.number),
                       escape(w("Check of the computations of a flow computer")), html::facts_table(facts));
}

std::string points_table(const Writer& w, const Sheet& sheet) {
    const bool gas = metering::is_gas(sheet.point.point.medium);
    std::vector<Column> columns{{w("No.")},
                                {w("temperature"), w("degC")},
                                {w("absolute pressure"), w("MPa")},
                                {w("differential pressure"), w("kPa")},
                                {w("density"), w("kg/m3")}};
    if (gas) columns.push_back({w("compressibility coefficient")});
    for (const Shown& one : shown_by(sheet.point.point.medium)) columns.push_back({w(one.title), w(one.unit)});
    Table table(columns, "numbers");
    for (std::size_t k = 0; k < sheet.points.size(); ++k) {
        const Point& point = sheet.points[k];
        std::vector<Cell> cells{k + 1, w.plain_of(point.at.t_C), w.plain_of(point.at.p_Pa * 1e-6),
                                w.plain_of(point.at.dp_Pa * 1e-3)};
        if (point.refused.empty()) {
            cells.emplace_back(w.of(point.medium.rho));
            if (gas) cells.emplace_back(w.number(fmt::format("{:.6f}", point.medium.K)));
            for (const Compared& value : point.values) cells.emplace_back(w.of(value.reference));
        } else {
            cells.emplace_back(w("refused by the reference"));
            cells.resize(columns.size(), Cell(std::string()));
        }
        table.row(cells);
    }
    return table.html();
}

std::string verdict_text(const Writer& w, Verdict verdict) {
    switch (verdict) {
        case Verdict::met: return w("met");
        case Verdict::not_met: return w("NOT MET");
        case Verdict::refused: return w("refused by the reference");
        case Verdict::no_value: break;
    }
    return w("no value");
}

// The worst of a point: what is not met, then what is missing.
Verdict verdict_of(const Sheet& sheet, const Point& point) {
    Verdict worst = Verdict::met;
    for (std::size_t k = 0; k < point.values.size(); ++k)
        if (const Verdict one = point.values[k].verdict;
            sheet.shown[k] && one != Verdict::met && worst != Verdict::not_met)
            worst = one;
    return worst;
}

std::string device_table(const Writer& w, const Sheet& sheet) {
    const std::vector<Shown>& shown = shown_by(sheet.point.point.medium);
    std::vector<Column> columns{{w("No.")}};
    for (std::size_t k = 0; k < shown.size(); ++k) {
        if (!sheet.shown[k]) continue;
        columns.push_back({w(shown[k].title) + ", " + w("reference"), w(shown[k].unit)});
        columns.push_back({w("device"), w(shown[k].unit)});
        columns.push_back({w("deviation, %")});
    }
    if (sheet.with_device) columns.push_back({w("verdict"), {}, true});
    constexpr std::size_t wide_from = 11;
    Table table(columns, columns.size() > wide_from ? "numbers many" : "numbers");
    for (std::size_t i = 0; i < sheet.points.size(); ++i) {
        const Point& point = sheet.points[i];
        std::vector<Cell> cells{i + 1};
        for (std::size_t k = 0; k < shown.size(); ++k) {
            if (!sheet.shown[k]) continue;
            const Compared& value = point.values[k];
            const bool compared = value.verdict == Verdict::met || value.verdict == Verdict::not_met;
            cells.emplace_back(point.refused.empty() ? w.of(value.reference) : std::string("-"));
            cells.emplace_back(value.device ? w.number(fmt::format("{:.8g}", *value.device)) : std::string());
            cells.emplace_back(compared ? w.number(deviation_text(value.deviation_pct, sheet.limit_pct))
                                        : std::string());
        }
        if (sheet.with_device) cells.emplace_back(verdict_text(w, verdict_of(sheet, point)));
        table.row(cells);
    }
    return table.html();
}

std::string signatures(const Writer& w, const Head& head) {
    std::string out = "<div class=\"sign\">\n";
    const auto line = [&](const std::string& who, const std::string& name) {
        out += fmt::format("<b>{}</b><span></span><span>{}</span><span></span><span></span>\n", escape(who),
                           escape(name));
        out += fmt::format("<i></i><small>{}</small><small>{}</small><small>{}</small><small>{}</small>\n",
                           escape(w("position")), escape(w("name")), escape(w("signature")), escape(w("date")));
    };
    line(w("Checked by"), head.inspector);
    line(w("Representative of the object"), head.representative);
    return out + "</div>\n";
}

// Why the reference has no results, point by point; the words of the library are English.
std::string refusals(const Writer& w, const std::vector<Point>& points) {
    constexpr std::size_t most_lines = 6;
    std::string text;
    std::size_t found = 0;
    for (std::size_t k = 0; k < points.size(); ++k)
        if (!points[k].refused.empty() && ++found <= most_lines)
            text +=
                fmt::format("<p class=\"note\">{} {}: {}: <span lang=\"en\">{}</span></p>\n", escape(w("No.")),
                            k + 1, escape(w("refused by the reference")), escape(points[k].refused));
    if (found > most_lines)
        text += fmt::format("<p class=\"note\">{}</p>\n",
                            escape(Text("{} more points are refused; the CSV has the reasons")
                                       .filled(w.language, found - most_lines)));
    return text;
}

std::string paragraph(const std::string& text) { return "<p class=\"note\">" + escape(text) + "</p>\n"; }

}  // namespace

std::string conclusion(const Sheet& sheet, Language language) {
    if (!sheet.with_device) return {};
    const Writer w{{language}};
    const Summary s = summarize(sheet.points, sheet.shown);
    const std::string limit = w.plain_of(sheet.limit_pct),
                      largest = w.number(deviation_text(s.largest_pct, sheet.limit_pct));
    if (s.not_met > 0)
        return Text("NOT MET: {} of {} values lie outside ±{} %; the largest deviation is {} %.")
            .filled(language, s.not_met, s.values, limit, largest);
    if (s.open > 0 || s.values == 0)
        return Text(
                   "NOT COMPLETE: {} values are missing or could not be compared; of the others {} of {} lie "
                   "within ±{} %.")
            .filled(language, s.open, s.met, s.values, limit);
    return Text("MET: {} values of {} points lie within ±{} %; the largest deviation is {} %.")
        .filled(language, s.values, sheet.points.size(), limit, largest);
}

std::string html_of(const Sheet& sheet) {
    const Writer w{{sheet.language}};
    std::string body =
        head_of(w, sheet) + "<h2>" + escape(w("Points and reference results")) + "</h2>\n" +
        points_table(w, sheet) + refusals(w, sheet.points) +
        paragraph(
            w("Absolute pressure is that of the transmitter. Standard volume: at 20 degC and 101.325 kPa.")) +
        "<h2 class=\"second\">" + escape(w("Results of the device")) + "</h2>\n" + device_table(w, sheet);
    if (sheet.with_device) {
        body +=
            paragraph(Text("Deviation: device less reference, in per cent of the reference; permitted: ±{} %.")
                          .filled(sheet.language, w.plain_of(sheet.limit_pct)));
        body += "<h2>" + escape(w("Conclusion")) + "</h2>\n<p class=\"outcome\">" +
                escape(conclusion(sheet, sheet.language)) + "</p>\n";
    } else {
        body += paragraph(w("No results of a device are compared here: columns to fill in by hand."));
    }
    body += paragraph(w("Limit, points and head are the inspector's; no document is on record here that "
                        "prescribes them.")) +
            signatures(w, sheet.head);
    return html::page(language_code(sheet.language),
                      w("Check of the computations of a flow computer, protocol No. {}", sheet.head.number),
                      style, body);
}

std::string csv_of(const Sheet& sheet) {
    const Head& head = sheet.head;
    std::string out;
    for (const auto& [name, text] :
         std::vector<std::pair<std::string, std::string>>{{"number", head.number},
                                                          {"object", head.object},
                                                          {"device", head.device},
                                                          {"serial", head.serial},
                                                          {"software", head.software},
                                                          {"checksum", head.checksum},
                                                          {"date", head.date},
                                                          {"station", sheet.station},
                                                          {"conclusion", conclusion(sheet, Language::english)}})
        if (!text.empty()) out += "# " + name + ": " + printable(text) + "\n";
    const std::vector<Shown>& shown = shown_by(sheet.point.point.medium);
    out += "point,t_C,p_Pa,dp_Pa,rho_kg_m3";
    for (std::size_t k = 0; k < shown.size(); ++k)
        out += fmt::format(",{0}{1}", shown[k].column,
                           sheet.with_device && sheet.shown[k]
                               ? fmt::format(",device_{0},deviation_{0}_pct,verdict_{0}", shown[k].column)
                               : "");
    out += ",limit_pct,refused\n";
    const Writer w{{Language::english}};
    for (std::size_t i = 0; i < sheet.points.size(); ++i) {
        const Point& point = sheet.points[i];
        const bool good = point.refused.empty();
        const auto cell = [](bool there, double value) {
            return there ? fmt::format(",{}", value) : std::string(",");
        };
        out += fmt::format("{},{},{},{}", i + 1, point.at.t_C, point.at.p_Pa, point.at.dp_Pa) +
               cell(good, point.medium.rho);
        for (std::size_t k = 0; k < shown.size(); ++k) {
            const Compared& value = point.values[k];
            out += cell(good, value.reference);
            if (!sheet.with_device || !sheet.shown[k]) continue;
            const bool compared = value.verdict == Verdict::met || value.verdict == Verdict::not_met;
            out += cell(value.device.has_value(), value.device.value_or(0.0)) +
                   cell(compared, value.deviation_pct) + "," + verdict_text(w, value.verdict);
        }
        out += sheet.with_device ? fmt::format(",{}", sheet.limit_pct) : ",";
        out += "," + csv_text(point.refused) + "\n";
    }
    return out;
}

}  // namespace kalorfix::tool::protocol
