#include "tools/demo.h"

#include <fmt/format.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <stdexcept>

#include "tools/channel.h"
#include "tools/simulated_clock.h"

namespace kalorfix::tool {
namespace {

namespace fs = std::filesystem;

struct DemoChannel {
    const char* title;
    HeatPipeline pipeline;
    HeatReading reading;
};

// Expansion of pipe and device by the material codes 7 and 32.
constexpr DemoChannel channels[] = {
    {"Superheated steam", {4, 7, 32, 300.0F, 180.0F, 0.1F, 0.0F, 1.0F}, {300.0F, 1.2e6F, 40000.0F}},
    {"Hot water", {1, 7, 32, 200.0F, 110.0F, 0.05F, 0.05F, 1.0F}, {90.0F, 0.8e6F, 25000.0F}},
};

void row(const char* label, const std::string& value, const char* unit = "") {
    fmt::print("    {:<34}{:>14}{}{}\n", label, value, *unit ? "  " : "", unit);
}

template <class Number>
std::string fixed(Number value, int digits) {
    return fmt::format("{:.{}f}", value, digits);
}

void step(const char* name, const std::string& outcome) { fmt::print("  {:<12}{}\n", name, outcome); }

// Only an orifice plate has an edge that grows blunt.
bool has_edge(const HeatPipeline& pipeline) { return pipeline.device <= 3; }

void print_input(int channel, const DemoChannel& c) {
    fmt::print("Channel {}: {}, {}\n", channel, c.title, device_name(c.pipeline.device));
    row("pipe at 20 degC", fixed(c.pipeline.D20_mm, 1), "mm");
    row("device at 20 degC", fixed(c.pipeline.d20_mm, 1), "mm");
    row("material codes, pipe and device",
        fmt::format("{}, {}", c.pipeline.pipe_material, c.pipeline.device_material));
    row("roughness of the pipe", fixed(c.pipeline.roughness_mm, 3), "mm");
    if (has_edge(c.pipeline)) {
        row("initial radius of the edge", fixed(c.pipeline.edge_radius_mm, 3), "mm");
        row("interval between checks", fixed(c.pipeline.interval_years, 1), "years");
    }
    row("temperature", fixed(c.reading.t_C, 2), "degC");
    row("absolute pressure", fixed(c.reading.p_Pa / 1e6F, 4), "MPa");
    row("differential pressure", fixed(c.reading.dp_Pa / 1e3F, 3), "kPa");
}

void print_state(const HeatResult& r) {
    step("state", phase_name(r.phase));
    row("saturation pressure at t", std::isnan(r.ps_MPa) ? "-" : fixed(r.ps_MPa, 5), "MPa");
    row("saturation temperature at p", fixed(r.ts_C, 3), "degC");
}

void print_properties(const HeatResult& r) {
    step("properties", "computed");
    row("density", fixed(r.rho, 4), "kg/m3");
    row("dynamic viscosity", fixed(r.mu_uPas, 3), "uPa s");
    row("specific enthalpy", fixed(r.h_kJ_kg, 3), "kJ/kg");
    row("isentropic exponent", fmt::format("{:#.6g}", r.kappa));
}

void print_geometry(const HeatResult& r) {
    step("geometry", "within the limits of the device");
    row("pipe at working temperature", fixed(r.D_mm, 4), "mm");
    row("device at working temperature", fixed(r.d_mm, 4), "mm");
    row("diameter ratio", fixed(r.beta, 6));
    row("velocity-of-approach factor", fixed(r.E, 6));
    row("correction for edge bluntness", fixed(r.K_p, 6));
}

void print_flow(const HeatResult& r) {
    step("flow", "solved");
    row("Reynolds number", fmt::format("{:.5e}", r.Re));
    row("discharge coefficient", fixed(r.C, 6));
    row("correction for roughness", fixed(r.K_sh, 6));
    row("expansibility factor", fixed(r.epsilon, 6));
    row("mass flow", fixed(r.q_m_th, 4), "t/h");
    row("volume flow", fixed(r.q_v_m3h, 3), "m3/h");
    row("heat flow", fixed(r.q_h_GJh, 4), "GJ/h");
    row("heat flow", fixed(r.q_h_GJh / 3.6F, 4), "MW");
}

// An hour of cycles with a differential pressure that swings by a tenth; what the registers show beside the sum that this
// program keeps for itself.
bool simulate_hour(const host::Library& library, int channel, const DemoChannel& c, SimulatedClock& clock) {
    constexpr int cycle_s = 5, hour_s = 3600;
    Register mass{1}, heat{3};
    double mass_t = 0.0, heat_GJ = 0.0;
    for (int second = 0; second <= hour_s; second += cycle_s) {
        if (second > 0) clock.advance(cycle_s);
        HeatReading reading = c.reading;
        const double swing = 1.0 + 0.1 * std::sin(2.0 * std::numbers::pi * second / hour_s);
        reading.dp_Pa = static_cast<float>(static_cast<double>(reading.dp_Pa) * swing);
        const HeatResult r = run_cycle(library, channel, reading);
        if (!r.refused.empty() || !totalise(library, channel, mass) || !totalise(library, channel, heat)) {
            step("totals",
                 r.refused.empty() ? "refused: no flow to add, or a register out of range" : r.refused);
            return false;
        }
        if (second == 0) continue;
        mass_t += static_cast<double>(r.q_m_th) * cycle_s / hour_s;
        heat_GJ += static_cast<double>(r.q_h_GJh) * cycle_s / hour_s;
    }
    step("totals", fmt::format("an hour of {} cycles, simulated clock, dp swinging by 10 %", hour_s / cycle_s));
    row("mass of the hour", fixed(mass.hour_result, 4), "t");
    row("sum over the cycles", fixed(mass_t, 4), "t");
    row("heat of the hour", fixed(heat.hour_result, 4), "GJ");
    row("sum over the cycles", fixed(heat_GJ, 4), "GJ");
    return true;
}

bool show(const host::Library& library, int channel, const DemoChannel& c, SimulatedClock& clock) {
    print_input(channel, c);
    if (!set_up(library, channel, c.pipeline)) {
        step("set-up", "refused: a pipeline constant is out of range");
        return false;
    }
    step("set-up", "pipeline constants accepted");
    const HeatResult r = run_cycle(library, channel, c.reading);
    if (!r.refused.empty()) {
        step("refused", r.refused);
        return false;
    }
    print_state(r);
    print_properties(r);
    print_geometry(r);
    print_flow(r);
    return simulate_hour(library, channel, c, clock);
}

void set_directory(const char* variable, const fs::path& path) { setenv(variable, path.c_str(), 1); }

}  // namespace

DemoRuntime::DemoRuntime() {
    std::string name = (fs::temp_directory_path() / "kalorfix-demo-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("cannot make a temporary directory: " + name);
    root_ = name;
    fs::create_directories(root_ + "/settings");
    fs::create_directories(root_ + "/system");
    fs::create_directories(root_ + "/sram/dat");
    std::ofstream(root_ + "/settings/tornkntr.ini") << "[TORNOL]\nNum_gas_trub = 2 : pipelines\n";
    // A stamp of this very second: the controller was never down.
    const auto now = static_cast<std::uint32_t>(std::time(nullptr));
    std::string stamp(12, '\0');
    for (std::size_t k = 0; k < 4; ++k) stamp[k] = static_cast<char>(now >> (8 * k) & 0xFFU);
    std::ofstream(root_ + "/sram/dat/timewait.dat", std::ios::binary) << stamp;
    // The library reads its directories when it is loaded.
    set_directory("SETTINGS", root_ + "/settings");
    set_directory("SYSTEM", root_ + "/system");
    set_directory("PATHDB", root_ + "/sram");
}

DemoRuntime::~DemoRuntime() {
    std::error_code ignored;
    fs::remove_all(root_, ignored);
}

bool demo(const host::Library& library) {
    SimulatedClock clock;
    if (library->Init() != 1) {
        step("Init", "refused");
        return false;
    }
    int channel = 0;
    bool good = true;
    for (const DemoChannel& c : channels) {
        if (channel > 0) fmt::print("\n");
        good = show(library, ++channel, c, clock) && good;
    }
    library->Done();
    return good;
}

}  // namespace kalorfix::tool
