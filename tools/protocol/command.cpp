// SPDX-License-Identifier: MIT
// `kalorfix protocol`: the form that an inspector signs.
#include <fmt/chrono.h>
#include <fmt/format.h>

#include <algorithm>
#include <ctime>
#include <memory>

#include "tools/commands.h"
#include "tools/identity.h"
#include "tools/output_file.h"
#include "tools/protocol/page.h"
#include "tools/runtime.h"
#include "tools/separate_files.h"
#include "tools/spreadsheet.h"
#include "tools/text.h"

namespace kalorfix::tool {
namespace protocol {
namespace {

using metering::Measure;

struct Request : PointRequest {
    std::string points, readings, limit, t, p, dp, decimal, language = "en", html_file, csv_file;
    Head head{};
};

// A form has room for so much.
void check_head(const Request& request) {
    constexpr std::ptrdiff_t longest = 80;
    const auto letters = [](const std::string& text) {
        return std::ranges::count_if(text,
                                     [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; });
    };
    const Head& h = request.head;
    for (const std::string* text : {&h.number, &h.object, &h.device, &h.serial, &h.software, &h.checksum,
                                    &h.date, &h.inspector, &h.representative})
        if (letters(*text) > longest)
            throw InputError("the form has room for ", longest, " letters of a text, not for ", quoted(*text));
}

std::vector<State> points_of(const host::Library& library, const metering::Point& point,
                             const Request& request) {
    if (!request.points.empty()) {
        if (!request.t.empty() || !request.p.empty() || !request.dp.empty())
            throw InputError("--points: takes the place of --t, --p and --dp");
        return read_points(request.points, decimal_mark(request.decimal));
    }
    if (request.t.empty() || request.p.empty())
        throw InputError(
            "--t, --p: give the ranges that the device will meet, such as --t 0:40 --p 1:6MPa --dp 0:40kPa, "
            "or the points in a file by --points");
    Ranges ranges{read_span("--t", request.t, Measure::temperature, "C"),
                  read_span("--p", request.p, Measure::pressure, "MPa"),
                  {}};
    if (!(ranges.p_Pa.first > 0.0)) throw InputError("--p: must be above 0");
    if (!request.dp.empty()) ranges.dp_Pa = read_span("--dp", request.dp, Measure::pressure, "kPa");
    return default_points(library, point, ranges);
}

html::Facts reference_of(const Installation& files, const host::Library& library, const Request& request,
                         const DescribedPoint& point, Language language) {
    const auto code = [](const std::string& text) {
        return html::Html{"<code>" + html::escape(text) + "</code>"};
    };
    const auto word = [&](Text text) { return std::string(text.in(language)); };
    std::string version = "-";
    for (const auto& [name, value] : build_items(library.path()))
        if (name == "version") version = value;
    html::Facts facts{
        {word("Reference"), Text("kalorfix {}, independent of the device").filled(language, version)},
        {word("Library, SHA-256"), code(file_digest(library.path()))}};
    if (const auto* gas = std::get_if<metering::Gas>(&point.point.medium); gas && !is_by_density(gas->method))
        facts.emplace_back(word("Gas data, SHA-256"), code(file_digest(files.gas_data)));
    facts.emplace_back(word("Station file"), request.station);
    facts.emplace_back(word("Station file, SHA-256"), code(file_digest(request.station)));
    return facts;
}

int run(const Installation& files, const Request& request) {
    check_head(request);
    const std::optional<Language> language = language_of(request.language);
    if (!language) throw InputError("--lang: there are en and ru, not ", quoted(request.language));
    const Limits percent{0.0, 100.0, "%"};
    if (request.readings.empty() != request.limit.empty())
        throw InputError(
            "--readings, --limit: give both, such as --readings device.csv --limit 0.05, or neither");
    const std::optional<double> limit = number_within(request.limit, percent);
    if (!request.limit.empty() && !limit)
        throw InputError("--limit: ", expected_within(request.limit, percent));
    keep_apart({{"STATION", request.station},
                {"--points", request.points},
                {"--readings", request.readings},
                {"--lib", files.library},
                {"--gas-data", files.gas_data}},
               {{"--html", request.html_file}, {"--csv", request.csv_file}});
    const host::Runtime runtime(files.gas_data);
    const host::Library library(files.library);
    Sheet sheet{.language = *language, .head = request.head, .station = request.station};
    sheet.point = read_point(library, request);
    sheet.station += ", " + sheet.point.name;
    const metering::Point& point = sheet.point.point;
    require_gas_data(files, point);
    library->Init();
    for (const State& at : points_of(library, point, request))
        sheet.points.push_back(compute(library, point, at));
    const std::vector<Shown>& shown = shown_by(point.medium);
    // To fill in by hand: all flows but the volume flow at working conditions of a gas.
    for (const Shown& one : shown)
        sheet.shown.push_back(one.kind != metering::Flow::volume || !metering::is_gas(point.medium));
    if (limit) {
        const Device device =
            read_device(request.readings, sheet.points.size(), shown, decimal_mark(request.decimal));
        sheet.with_device = true;
        sheet.shown = device.shown;
        sheet.limit_pct = *limit;
        for (std::size_t k = 0; k < sheet.points.size(); ++k) compare(sheet.points[k], device.at[k], *limit);
    }
    sheet.reference = reference_of(files, library, request, sheet.point, *language);
    if (sheet.head.date.empty())
        sheet.head.date =
            fmt::format(fmt::runtime(*language == Language::russian ? "{:%d.%m.%Y}" : "{:%Y-%m-%d}"),
                        fmt::localtime(std::time(nullptr)));
    if (!request.html_file.empty()) write_file(request.html_file, html_of(sheet));
    if (!request.csv_file.empty()) write_file(request.csv_file, csv_of(sheet));
    if (request.html_file.empty() && request.csv_file.empty())
        fmt::print("{}", csv_of(sheet));
    else if (sheet.with_device)
        fmt::print("{}\n", conclusion(sheet, Language::english));
    else
        fmt::print("{} points, to fill in\n", sheet.points.size());
    const Summary s = summarize(sheet.points, sheet.shown);
    return sheet.with_device && (s.not_met > 0 || s.open > 0 || s.values == 0) ? 1 : 0;
}

}  // namespace
}  // namespace protocol

Command protocol_command() {
    const auto r = std::make_shared<protocol::Request>();
    return {
        "protocol",
        "The check of a device as a form to sign: points, reference\nresults, deviations, verdict.",
        "Without --points three temperatures, pressures and differential pressures within --t, --p\n"
        "and --dp, as far as the library accepts them: 27 points. POINTS.csv has columns such as\n"
        "t_C, p_MPa (absolute) and dp_kPa, DEVICE.csv a column point (1, 2, ...) and, of q_m_t_h,\n"
        "q_v_m3_h, q_c_m3_h and q_e_GJ_h (water: q_h_GJ_h), those that the device shows, in these\n"
        "units or in others (q_m_kg_s). Without readings of a device the form has empty columns.\n"
        "A protocol is of one channel with a differential pressure and of its flows: there is none of\n"
        "a meter, nor of totals (kalorfix audit).\n\n"
        "Examples:\n"
        "  kalorfix protocol station.ini 'GAS 2' --t 0:40 --p 1:6MPa --dp 0:40kPa --html form.html\n"
        "  kalorfix protocol station.ini 'GAS 2' --points points.csv --readings device.csv \\\n"
        "      --limit 0.05 --object 'Station 4' --serial 1234 --lang ru --html protocol.html\n\n"
        "The form is for two pages A4. Without --html and --csv the CSV is printed. Exit status 1\n"
        "when a value is not met or missing; 2 for bad input.",
        {{"STATION", "STATION.ini", "station file that describes the metering point", &r->station, true},
         {"CHANNEL", "CHANNEL", "its channel, such as 'GAS 2'; may be left out\nwhere there is but one",
          &r->channel},
         {"--points", "POINTS.csv", "the points, at most 30", &r->points},
         {"--t", "LOW:HIGH", "temperatures", &r->t},
         {"--p", "LOW:HIGH", "absolute pressures, as measured", &r->p},
         {"--dp", "LOW:HIGH", "differential pressures (all that are accepted)", &r->dp},
         {"--readings", "DEVICE.csv", "what the device showed at the points", &r->readings},
         {"--decimal", "MARK", "comma or point in these files, where 1,234 can be\n1234 as well", &r->decimal},
         {"--limit", "PERCENT", "permitted deviation", &r->limit},
         {"--html", "FILE", "write the form", &r->html_file},
         {"--csv", "FILE", "write its numbers with all digits", &r->csv_file},
         {"--lang", "en|ru", "language of the form (en)", &r->language},
         {"--number", "TEXT", "of the protocol", &r->head.number},
         {"--object", "TEXT", "where the device is installed", &r->head.object},
         {"--device", "TEXT", "its type", &r->head.device},
         {"--serial", "TEXT", "its serial number", &r->head.serial},
         {"--software", "TEXT", "version of its software", &r->head.software},
         {"--checksum", "TEXT", "checksum of its software", &r->head.checksum},
         {"--date", "TEXT", "of the check (today)", &r->head.date},
         {"--inspector", "NAME", "who checks", &r->head.inspector},
         {"--representative", "NAME", "who signs for the object", &r->head.representative}},
        {},
        [r](const Installation& files) { return protocol::run(files, *r); }};
}

}  // namespace kalorfix::tool
