#include "tools/demo.h"

#include <fmt/format.h>

#include <array>
#include <cmath>
#include <numbers>

#include "tools/channel.h"
#include "tools/component_names.h"
#include "tools/simulated_clock.h"

namespace kalorfix::tool {
namespace {

struct DemoChannel {
    const char* title;
    Medium medium;
    Pipeline pipeline;
    Reading reading;
    GasKind gas;
};

constexpr GasKind not_gas{};
constexpr short gerg91 = 1, aga8 = 2;

// Expansion of pipe and device by the material codes 7 and 32.
constexpr DemoChannel channels[] = {
    {"Superheated steam",
     Medium::heat_carrier,
     {4, 7, 32, 300.0F, 180.0F, 0.1F, 0.0F, 1.0F},
     {300.0F, 1.2e6F, 40000.0F},
     not_gas},
    {"Hot water",
     Medium::heat_carrier,
     {1, 7, 32, 200.0F, 110.0F, 0.05F, 0.05F, 1.0F},
     {90.0F, 0.8e6F, 25000.0F},
     not_gas},
    {"Natural gas by density",
     Medium::gas,
     {3, 7, 32, 250.0F, 150.0F, 0.05F, 0.05F, 1.0F},
     {8.0F, 1.2e6F, 16000.0F},
     {gerg91, 0.6799F, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0.8858F, 0.0668F, 0, 0, 0}}},
    {"Natural gas by composition",
     Medium::gas,
     {3, 7, 32, 400.0F, 220.0F, 0.05F, 0.05F, 1.0F},
     {15.0F, 5.5e6F, 25000.0F},
     {aga8, 0.0F, {96.5F, 1.8F, 0.45F, 0.1F, 0.1F, 0.03F, 0.05F, 0.07F, 0, 0, 0.3F, 0.6F, 0, 0, 0}}},
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
bool has_edge(const Pipeline& pipeline) { return pipeline.device <= 3; }

void print_gas(const GasKind& gas) {
    row("compressibility by", method_name(gas.method));
    if (gas.rho_c > 0.0F) row("density at standard conditions", fixed(gas.rho_c, 4), "kg/m3");
    for (std::size_t i = 0; i < component_names.size(); ++i)
        if (gas.x[i] != 0.0F) row(component_names[i].data(), fixed(gas.x[i], 4), "mol %");
}

void print_input(int channel, const DemoChannel& c) {
    fmt::print("{} channel {}: {}, {}\n", c.medium == Medium::gas ? "Gas" : "Heat-carrier", channel, c.title,
               device_name(c.pipeline.device));
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
    if (c.medium == Medium::gas) print_gas(c.gas);
}

void print_state(const HeatResult& r) {
    step("state", phase_name(r.phase));
    row("saturation pressure at t", std::isnan(r.ps_MPa) ? "-" : fixed(r.ps_MPa, 5), "MPa");
    row("saturation temperature at p", fixed(r.ts_C, 3), "degC");
}

void print_state(const GasResult& r) {
    step("state", "computed");
    row("sum of the composition as given", fixed(r.sum, 4), "mol %");
    row("compressibility coefficient K", fixed(r.K, 6));
    row("density at standard conditions", fixed(r.rho_c, 5), "kg/m3");
}

void print_properties(const CycleResult& r) {
    step("properties", "computed");
    row("density", fixed(r.rho, 4), "kg/m3");
    row("dynamic viscosity", fixed(r.mu_uPas, 3), "uPa s");
    row("isentropic exponent", fmt::format("{:#.6g}", r.kappa));
}

void print_heat(const HeatResult& r) { row("specific enthalpy", fixed(r.h_kJ_kg, 3), "kJ/kg"); }

void print_heat(const GasResult& r) {
    row("lower heat of combustion", fixed(r.lower_heat, 4), "MJ/m3 at 20 degC");
    row("higher heat of combustion", fixed(r.higher_heat, 4), "MJ/m3 at 20 degC");
}

void print_geometry(const CycleResult& r) {
    step("geometry", "within the limits of the device");
    row("pipe at working temperature", fixed(r.D_mm, 4), "mm");
    row("device at working temperature", fixed(r.d_mm, 4), "mm");
    row("diameter ratio", fixed(r.beta, 6));
    row("velocity-of-approach factor", fixed(r.E, 6));
    row("correction for edge bluntness", fixed(r.K_p, 6));
}

void print_flow(const CycleResult& r) {
    step("flow", "solved");
    row("Reynolds number", fmt::format("{:.5e}", r.Re));
    row("discharge coefficient", fixed(r.C, 6));
    row("correction for roughness", fixed(r.K_sh, 6));
    row("expansibility factor", fixed(r.epsilon, 6));
    row("mass flow", fixed(r.q_m_th, 4), "t/h");
    row("volume flow", fixed(r.q_v_m3h, 3), "m3/h");
}

void print_energy(const HeatResult& r) {
    row("heat flow", fixed(r.q_h_GJh, 4), "GJ/h");
    row("heat flow", fixed(r.q_h_GJh / 3.6F, 4), "MW");
}

void print_energy(const GasResult& r) {
    row("volume flow at standard conditions", fixed(r.q_c_m3h, 2), "m3/h");
    row("energy flow, lower heat", fixed(r.q_e_GJh, 4), "GJ/h");
}

void run(const host::Library& library, int channel, const DemoChannel&, const Reading& reading, HeatResult& r) {
    r = run_cycle(library, channel, reading);
}

void run(const host::Library& library, int channel, const DemoChannel& c, const Reading& reading,
         GasResult& r) {
    r = run_cycle(library, channel, c.gas, reading);
}

// The quantities whose registers are compared with the sums that this program keeps for itself.
template <class Result>
struct Quantity {
    const char* name;
    const char* unit;
    unsigned short integrator;
    float Result::*flow;
};
template <class Result>
constexpr std::array<Quantity<Result>, 2> quantities;
template <>
constexpr std::array<Quantity<HeatResult>, 2> quantities<HeatResult>{
    {{"mass of the hour", "t", 1, &HeatResult::q_m_th}, {"heat of the hour", "GJ", 3, &HeatResult::q_h_GJh}}};
template <>
constexpr std::array<Quantity<GasResult>, 2> quantities<GasResult>{
    {{"standard volume of the hour", "m3", 3, &GasResult::q_c_m3h},
     {"energy of the hour", "GJ", 4, &GasResult::q_e_GJh}}};

// An hour of cycles with a differential pressure that swings by a tenth.
template <class Result>
bool simulate_hour(const host::Library& library, int channel, const DemoChannel& c, SimulatedClock& clock) {
    constexpr int cycle_s = 5, hour_s = 3600;
    constexpr const auto& totals = quantities<Result>;
    std::array<Register, 2> registers{{{totals[0].integrator}, {totals[1].integrator}}};
    std::array<double, 2> sums{};
    for (int second = 0; second <= hour_s; second += cycle_s) {
        if (second > 0) clock.advance(cycle_s);
        Reading reading = c.reading;
        const double swing = 1.0 + 0.1 * std::sin(2.0 * std::numbers::pi * second / hour_s);
        reading.dp_Pa = static_cast<float>(static_cast<double>(reading.dp_Pa) * swing);
        Result r;
        run(library, channel, c, reading, r);
        bool good = r.refused.empty();
        for (Register& one : registers) good = good && totalise(library, c.medium, channel, one);
        if (!good) {
            step("totals",
                 r.refused.empty() ? "refused: no flow to add, or a register out of range" : r.refused);
            return false;
        }
        for (std::size_t k = 0; k < sums.size() && second > 0; ++k)
            sums[k] += static_cast<double>(r.*totals[k].flow) * cycle_s / hour_s;
    }
    step("totals", fmt::format("an hour of {} cycles, simulated clock, dp swinging by 10 %", hour_s / cycle_s));
    for (std::size_t k = 0; k < sums.size(); ++k) {
        row(totals[k].name, fixed(registers[k].hour_result, 4), totals[k].unit);
        row("sum over the cycles", fixed(sums[k], 4), totals[k].unit);
    }
    return true;
}

template <class Result>
bool show(const host::Library& library, int channel, const DemoChannel& c, SimulatedClock& clock) {
    print_input(channel, c);
    if (!set_up(library, c.medium, channel, c.pipeline)) {
        step("set-up", "refused: a pipeline constant is out of range");
        return false;
    }
    step("set-up", "pipeline constants accepted");
    Result r;
    run(library, channel, c, c.reading, r);
    if (!r.refused.empty()) {
        step("refused", r.refused);
        return false;
    }
    print_state(r);
    print_properties(r);
    print_heat(r);
    print_geometry(r);
    print_flow(r);
    print_energy(r);
    return simulate_hour<Result>(library, channel, c, clock);
}

}  // namespace

bool demo(const host::Library& library) {
    SimulatedClock clock;
    if (library->Init() != 1) {
        step("Init", "refused");
        return false;
    }
    int gas_channel = 0;
    int heat_channel = 0;
    bool good = true;
    for (const DemoChannel& c : channels) {
        if (&c != channels) fmt::print("\n");
        good = (c.medium == Medium::gas ? show<GasResult>(library, ++gas_channel, c, clock)
                                        : show<HeatResult>(library, ++heat_channel, c, clock)) &&
               good;
    }
    library->Done();
    return good;
}

}  // namespace kalorfix::tool
