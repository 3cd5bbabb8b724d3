#include "tools/station/command.h"

#include <charconv>
#include <map>

namespace kalorfix::tool::station {
namespace {

constexpr double most_downtime_min = 500000.0;

std::string store_format(const std::string& text, RunRequest& request) {
    static const std::map<std::string, Format> formats{{"table", Format::table},
                                                       {"csv", Format::csv},
                                                       {"json", Format::json},
                                                       {"hours", Format::hours},
                                                       {"days", Format::days}};
    const auto found = formats.find(text);
    if (found == formats.end()) return "there are table, csv, json, hours and days, not '" + text + "'";
    request.format = found->second;
    return {};
}

std::string store_downtime(const std::string& text, RunRequest& request) {
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, request.downtime_min);
    if (error == std::errc() && stop == end && 0.0 <= request.downtime_min &&
        request.downtime_min <= most_downtime_min)
        return {};
    return "expected minutes within 0..500000, not '" + text + "'";
}

}  // namespace

CLI::App* add_command(CLI::App& app, RunRequest& request) {
    CLI::App* const run =
        app.add_subcommand("run", "A station over a file of readings: flows, totals, hours, days.");
    run->fallthrough();
    run->add_option("STATION", request.station_file, "station file: a section a channel")
        ->option_text("STATION.ini");
    run->add_option("READINGS", request.readings,
                    "measured values: a row a cycle and channel; -\nis standard input")
        ->option_text("READINGS.csv|-");
    run->add_option_function<std::string>(
           "--format", [](const std::string&) {},
           "table (default on a terminal), csv (default\nelsewhere), json (a line each), hours, days "
           "(what\nclosed, and the registers)")
        ->option_text("FORMAT")
        ->check([&request](const std::string& text) { return store_format(text, request); }, "", "");
    run->add_option("--out", request.out, "file for the results, complete or not there at all")
        ->option_text("FILE");
    run->add_option("--registers", request.registers_file, "file for the registers; else they end the results")
        ->option_text("FILE");
    run->add_option("--continue", request.continue_file,
                    "go on from the registers that a run left, in their\nfile or in "
                    "its table or CSV")
        ->option_text("FILE");
    run->add_option_function<std::string>(
           "--downtime", [](const std::string&) {},
           "minutes before the first reading in which the\ncontroller was down, filled "
           "with the substitute flows")
        ->option_text("MINUTES")
        ->check([&request](const std::string& text) { return store_downtime(text, request); }, "", "");
    run->footer(
        "STATION.ini has a section [GAS N] or [HEAT N] for each channel, N from 1 to 20000;\n"
        "examples/station.ini explains every key. A wrong, unknown, missing or repeated key\n"
        "is named with its line and what is accepted.\n\n"
        "READINGS.csv begins with a heading: time_s (seconds) or time (2026-03-01T06:00:00);\n"
        "channel (GAS 1); t_C or t_K; p_Pa, p_kPa or p_MPa, absolute; dp_Pa or dp_kPa; for\n"
        "meters q_t_h or q_m3_h; for external flows mass_t_h, volume_m3_h,\n"
        "standard_volume_m3_h, energy_GJ_h, heat_GJ_h. Rows are in the order of time.\n\n"
        "Results: state, properties, geometry, factors, flows and registers of each cycle, the\n"
        "amount of each hour and day where it closes. A refused cycle names the step and the\n"
        "first limit that it broke; its time is passed over.\n\n"
        "Exit status 0; 2 for bad input, which leaves nothing written; 130 when interrupted:\n"
        "what was computed is kept, with the registers to go on from.");
    return run;
}

}  // namespace kalorfix::tool::station
