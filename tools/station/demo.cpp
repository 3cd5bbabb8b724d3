// SPDX-License-Identifier: MIT
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "tools/commands.h"
#include "tools/output_file.h"
#include "tools/runtime.h"
#include "tools/station/run.h"
#include "tools/text.h"

namespace kalorfix::tool {
namespace station {
namespace {

struct BuiltIn {
    const char *name, *keys;
    double t_C, p_Pa, dp_Pa;
};
constexpr BuiltIn channels[] = {
    {"HEAT 1", "device=nozzle_isa1932 D20_mm=300 d20_mm=180 roughness_mm=0.1 phase=from_state", 300, 1.2e6,
     40000},
    {"HEAT 2",
     "device=orifice_corner D20_mm=200 d20_mm=110 roughness_mm=0.05 edge_radius_mm=0.05 check_interval_years=1 "
     "phase=from_state",
     90, 0.8e6, 25000},
    {"GAS 1",
     "device=orifice_flange D20_mm=250 d20_mm=150 roughness_mm=0.05 edge_radius_mm=0.05 check_interval_years=1 "
     "method=gerg91 rho_c_kg_m3=0.6799 nitrogen_pct=0.8858 carbon_dioxide_pct=0.0668",
     8, 1.2e6, 16000},
    {"GAS 2",
     "device=orifice_flange D20_mm=400 d20_mm=220 roughness_mm=0.05 edge_radius_mm=0.05 check_interval_years=1 "
     "method=aga8 x_methane_pct=96.5 x_ethane_pct=1.8 x_propane_pct=0.45 x_n-butane_pct=0.1 x_i-butane_pct=0.1 "
     "x_n-pentane_pct=0.03 x_i-pentane_pct=0.05 x_hexanes_pct=0.07 x_nitrogen_pct=0.3 x_carbon_dioxide_pct=0.6 "
     "standard_volume_exponent=1",
     15, 5.5e6, 25000}};
constexpr int cycle_s = 5, hour_s = 3600;

std::string station_text() {
    std::string text;
    for (const BuiltIn& one : channels)
        text += fmt::format("[{}]\npipe_material=7\ndevice_material=32\n{}\n", one.name,
                            joined(words(one.keys), {}, "\n"));
    return text;
}

// An hour of cycles with differential pressures that swing by a tenth.
std::string readings_text() {
    std::string text = "time_s,channel,t_C,p_Pa,dp_Pa\n";
    for (int second = 0; second <= hour_s; second += cycle_s) {
        const double swing = 1.0 + 0.1 * std::sin(2.0 * std::numbers::pi * second / hour_s);
        for (const BuiltIn& one : channels)
            text += fmt::format("{},{},{},{},{}\n", second, one.name, one.t_C, one.p_Pa, one.dp_Pa * swing);
    }
    return text;
}

// The first cycle of each channel as a sheet, and its hour beside the sums that this program keeps for itself.
class Sheets : public Results {
public:
    Sheets(const Station& station, TimeKind kind, OutputFile& out, bool has_gas_data, bool& all_computed)
        : Results(station, kind, out),
          hours_(station.channels.size()),
          has_gas_data_(has_gas_data),
          all_computed_(all_computed) {}

    void cycle(const Cycle& cycle) override {
        Hour& hour = hours_[cycle.row.channel];
        for (std::size_t k = 0; k < most_integrators && !hour.sheet.empty(); ++k)
            hour.sums[k] += static_cast<double>(cycle.outcome.q[k]) * cycle_s / hour_s;
        if (!hour.sheet.empty()) return;
        Outcome outcome = cycle.outcome;
        if (!has_gas_data_ && cycle.channel.needs_gas_data()) outcome.reason = "there is no gas data file";
        hour.sheet = sheet({cycle.channel, cycle.row, outcome, cycle.registers});
    }

    void end(const RunEnd& end) override {
        for (std::size_t i = 0; i < hours_.size(); ++i) {
            const bool good = end.summaries[i].refused == 0;
            all_computed_ = all_computed_ && good;
            out_.write(hours_[i].sheet);
            if (good) write_totals(station_.channels[i], end.registers[i].reg, hours_[i].sums);
            out_.write("\n");
        }
    }

private:
    using Sums = std::array<double, most_integrators>;
    struct Hour {
        std::string sheet;
        Sums sums{};
    };

    void write_totals(const Channel& channel, const Registers& registers, const Sums& sums) {
        out_.write(sheet_step(
            "totals",
            fmt::format("an hour of {} cycles, simulated clock, dp swinging by 10 %", hour_s / cycle_s)));
        // What is paid for.
        const std::array<std::size_t, 2> shown =
            channel.is_gas() ? std::array<std::size_t, 2>{2, 3} : std::array<std::size_t, 2>{0, 2};
        for (const std::size_t k : shown) {
            const Integrator& one = integrator(channel.medium, k);
            std::string name(one.name);
            std::ranges::replace(name, '_', ' ');
            const double unit = std::pow(10.0, channel.accounting[k].exponent);
            const double result = static_cast<double>(registers[k].interval[0].result) * unit;
            out_.write(sheet_row(name + " of the hour", fmt::format("{:#.7g}", result), one.unit));
            out_.write(sheet_row("sum over the cycles", fmt::format("{:#.7g}", sums[k]), one.unit));
        }
    }

    std::vector<Hour> hours_;
    bool has_gas_data_;
    bool& all_computed_;
};

// 0, 1 when a cycle is refused, or the status of an interrupted run.
int run_built_in(const Installation& files) {
    const host::TemporaryDirectory place;
    RunRequest request{.station_file = place.path() + "/station.ini",
                       .readings = place.path() + "/readings.csv"};
    write_file(request.station_file, station_text());
    write_file(request.readings, readings_text());
    bool all_computed = true;
    const int status = run(files, request, [&](const Station& station, TimeKind kind, OutputFile& out) {
        return std::make_unique<Sheets>(station, kind, out, !files.gas_data.empty(), all_computed);
    });
    return status != 0 ? status : all_computed ? 0 : 1;
}

int run_example_day(const Installation& files) {
    // In the source tree that this program was built in, or in its installation.
    const auto example = [](const char* name) {
        return host::near_program({"../../examples", "../share/kalorfix/examples"}, name);
    };
    const RunRequest request{
        .station_file = example("station.ini"), .readings = example("readings_day.csv"), .format = "days"};
    const bool here = !request.station_file.empty() && !request.readings.empty();
    if (!here || files.gas_data.empty()) {
        fmt::print("No day of a station: the {} not here\n", here ? "gas data file is" : "examples are");
        return 0;
    }
    fmt::print(
        "A day of a station, a cycle every two minutes: kalorfix run examples/station.ini "
        "examples/readings_day.csv\n");
    return run(files, request);
}

int run_both(const Installation& files) {
    const int built_in = run_built_in(files);
    if (built_in > 1) return built_in;
    const int day = run_example_day(files);
    return built_in != 0 ? built_in : day;
}

}  // namespace
}  // namespace station

Command demo_command() {
    return {"demo",
            "Steam, water and gas channels on built-in input, step by step,\nand the day of a station.",
            "Every step of a channel's cycle with its status and its results, units beside\n"
            "them, and the totals of a simulated hour. Then the day of the station in examples/.\n"
            "Exit status 1 when a step of the channels is refused.",
            {},
            {},
            &station::run_both};
}

}  // namespace kalorfix::tool
