// SPDX-License-Identifier: MIT
#include "tools/metering/refusal.h"

#include <fmt/format.h>

#include <limits>
#include <numbers>

#include "flow/fixed_point.h"
#include "flow/flow_rate.h"
#include "flow/geometry.h"
#include "runtime/units.h"
#include "tools/names.h"

namespace kalorfix::metering {
namespace {

using flow::Limit;
using units::MPa_per_Pa;
using units::zero_celsius_K;

std::string_view pressure_name(const Column& column) {
    return column.height_m == 0.0 || column.density_kgm3 == 0.0 ? "p" : "p less the column's";
}

// Without their ends. GOST 30319.2-96.
constexpr double gas_low_K = 250.0, gas_high_K = 340.0, gas_low_MPa = 0.001, gas_high_MPa = 30.0;
// Water and steam.
constexpr double heat_low_C = 0.0, heat_high_C = 1000.0, heat_low_MPa = 0.001, heat_high_MPa = 100.0;
constexpr double heat_properties_C = 800.0;

std::string gas_state(const Point& point, const Gas& gas, const Properties& found) {
    const double T = found.t_C + zero_celsius_K;
    const double p = found.p_Pa * MPa_per_Pa;
    constexpr double low_K = gas_low_K, high_K = gas_high_K, low_MPa = gas_low_MPa, high_MPa = gas_high_MPa;
    if (!(T > low_K)) return broken("T", T, "not above", low_K, "K");
    if (!(T < high_K)) return broken("T", T, "not below", high_K, "K");
    if (!(p > low_MPa)) return broken(pressure_name(point.column), p, "not above", low_MPa, "MPa");
    if (!(p < high_MPa)) return broken(pressure_name(point.column), p, "not below", high_MPa, "MPa");
    if (!(found.K < highest_K)) return broken("compressibility K", found.K, "not below", highest_K, "");
    if (found.K == 0.0)
        return fmt::format("{} finds no compressibility at this state", tool::method_name(gas.method));
    return unexplained("state");
}

std::string heat_state(const Point& point, const Properties& found) {
    constexpr double low_C = heat_low_C, high_C = heat_high_C, low_MPa = heat_low_MPa, high_MPa = heat_high_MPa;
    const double t = found.t_C;
    const double p = found.p_Pa * MPa_per_Pa;
    const double measured_Pa =
        found.p_Pa + units::standard_gravity * point.column.density_kgm3 * point.column.height_m;
    if (t < low_C) return broken("t", t, "below", low_C, "degC");
    if (measured_Pa < 0.0) return broken("p", measured_Pa, "below", 0.0, "Pa");
    if (t + zero_celsius_K > high_C + zero_celsius_K) return broken("t", t, "above", high_C, "degC");
    if (p < low_MPa) return broken(pressure_name(point.column), p, "below", low_MPa, "MPa");
    if (p > high_MPa) return broken(pressure_name(point.column), p, "above", high_MPa, "MPa");
    return unexplained("state");
}

// Humid gas needs saturated vapour at its pressure, which the formulation gives up to 645 K.
std::string gas_properties(const host::Library& library, const Gas& gas, const Properties& found) {
    constexpr double highest_C = 645.0 - zero_celsius_K, any_MPa = 0.1;
    double ps_MPa = 0.0;
    library->t_phase_1(any_MPa, highest_C, 0.0, &ps_MPa);
    const double p = found.p_Pa * MPa_per_Pa;
    if (!(gas.vapour_kgm3 > 0.0) || !(p > ps_MPa)) return unexplained("properties");
    return "with water vapour in the gas, " + broken("p", p, "above", ps_MPa, "MPa") +
           ", where the saturation temperature is 645 K";
}

// Properties of water and steam: up to 800 degC; wet steam up to 645 K.
std::string heat_properties(const Properties& found) {
    constexpr double high_C = heat_properties_C, wet_K = 645.0;
    if (found.phase == KALORFIX_PHASE_UNDECIDED) return "the phase is undecided at this state";
    if (found.t_C > high_C) return broken("t", found.t_C, "above", high_C, "degC");
    if (found.phase == KALORFIX_WET_STEAM && found.t_C + zero_celsius_K > wet_K)
        return "wet steam: " + broken("T", found.t_C + zero_celsius_K, "above", wet_K, "K");
    return unexplained("properties");
}

// A limit of the formulas in flow/: what it is called, its value and bounds, and their unit.
struct Told {
    std::string what;
    double value;
    flow::Range range;
    std::string_view unit = "";
    double units_per_SI = 1.0;
};
std::string in_words(const Told& told) {
    const bool low = told.range.above_min ? told.value <= told.range.min : told.value < told.range.min;
    return broken(told.what, told.value * told.units_per_SI, low ? "below" : "above",
                  (low ? told.range.min : told.range.max) * told.units_per_SI, told.unit);
}

struct Sizes {
    const flow::DeviceRow& device;
    flow::Diameters at_t;
    double beta, R_sh_m, R_a_m;
};
Sizes sizes_of(const Pipeline& pipe, double t_C) {
    const flow::DeviceRow& device = flow::device_row(pipe.device);
    const double R_sh_m = pipe.roughness_mm * units::m_per_mm;
    const double R_a_m = R_sh_m / std::numbers::pi;
    const flow::Diameters at_t = flow::working_diameters(
        device, {pipe.D20_mm * units::m_per_mm, pipe.pipe_material},
        {pipe.d20_mm * units::m_per_mm, pipe.device_material}, pipe.by_material, R_a_m, t_C);
    return {device, at_t, at_t.d_m / at_t.D_m, R_sh_m, R_a_m};
}

// Temperature range of a material. GOST 8.586.1-2005, annex G.
std::string material(std::string_view of, double code, double t_C) {
    const flow::Material* const m = flow::find_material(code);
    if (!m) return unexplained("geometry");
    return in_words({fmt::format("t of the {} (material {})", of, static_cast<int>(code)),
                     t_C,
                     {m->t_min_C, m->t_max_C},
                     "degC"});
}

// K_sh of an orifice plate: other tappings have the same correction and no bound for it.
double rough(const Sizes& sizes, double Re) {
    flow::Discharge found{};
    const flow::Bore unbounded{flow::device_row(KALORFIX_ORIFICE_D_D2), sizes.at_t.D_m, sizes.beta,
                               sizes.R_sh_m, sizes.R_a_m};
    static_cast<void>(flow::DischargeLaw(unbounded).at(Re, found));
    return found.K_sh;
}

// The flow solved again with what the library handed out.
flow::FlowSolution solved_again(const Pipeline& pipe, const Sizes& sizes, const Properties& medium,
                                double dp_Pa, const FlowResult& out) {
    // Gas has no phase.
    const flow::Medium at_device{medium.p_Pa, medium.kappa, medium.mu_uPas * units::Pas_per_uPas,
                                 medium.phase == KALORFIX_WATER};
    const flow::Reading reading{dp_Pa, medium.rho};
    if (sizes.device.is_direct())
        return flow::averaging_flow({sizes.device, sizes.at_t.D_m, sizes.at_t.d_m, pipe.alpha_eps}, at_device,
                                    reading);
    const flow::Bore bore{sizes.device, sizes.at_t.D_m, sizes.beta, sizes.R_sh_m, sizes.R_a_m};
    return flow::solve_flow({bore, sizes.at_t.d_m, out.E, out.K_p}, at_device, reading,
                            flow::tolerance(static_cast<unsigned char>(pipe.metering_class)));
}

std::string flow_words(const Pipeline& pipe, const Sizes& sizes, const flow::FlowSolution& found,
                       const Properties& medium, double dp_Pa, double Re) {
    if (found.limit == Limit::pressure_ratio)
        return broken("dp/p", dp_Pa / medium.p_Pa, "exceeds", flow::max_pressure_ratio, "");
    if (dp_Pa < 0.0) return broken("dp", dp_Pa, "below", 0.0, "Pa");
    if (dp_Pa == 0.0) return "dp is 0: there is no flow to solve for";
    switch (found.limit) {
        case Limit::reynolds:
            return in_words({"Re", Re, sizes.device.reynolds(sizes.beta, sizes.at_t.D_m)}) +
                   (pipe.device <= 9 ? " for this device and beta" : " for this device");
        case Limit::nozzle_roughness:
            return in_words(
                {"roughness R/D", sizes.R_sh_m / sizes.at_t.D_m, {.max = flow::max_nozzle_roughness}});
        case Limit::roughness_correction:
            return in_words(
                {"roughness correction", rough(sizes, found.Re), {.max = flow::max_roughness_correction}});
        case Limit::passes:
            return fmt::format("the flow does not settle within {} passes, the last at Re {:.5g}",
                               flow::max_passes, Re);
        default: return unexplained("flow");
    }
}

}  // namespace

std::string unexplained(std::string_view step) {
    return fmt::format("the library refused the {}; no documented limit explains it", step);
}

std::string broken(std::string_view what, double value, std::string_view relation, double bound,
                   std::string_view unit) {
    constexpr int fewest = 5, most = 17;
    std::string told, limit;
    for (int digits = fewest; digits <= most; ++digits) {
        told = fmt::format("{:.{}g}", value, digits);
        limit = fmt::format("{:.{}g}", bound, digits);
        if (told != limit || value == bound) break;
    }
    const std::string suffix = unit.empty() ? "" : " " + std::string(unit);
    return fmt::format("{} {}{} {} {}{}", what, told, suffix, relation, limit, suffix);
}

Window window_of(const Medium& medium) {
    constexpr double infinite = std::numeric_limits<double>::infinity();
    if (std::holds_alternative<Gas>(medium))
        return {{gas_low_K - zero_celsius_K, gas_high_K - zero_celsius_K}, {gas_low_MPa, gas_high_MPa}, true};
    if (std::holds_alternative<GivenMedium>(medium)) return {{}, {0.0, infinite}, true};
    return {{heat_low_C, heat_properties_C}, {heat_low_MPa, heat_high_MPa}, false};
}

std::string state_refusal(const Point& point, const Properties& found) {
    if (const Gas* const gas = std::get_if<Gas>(&point.medium)) return gas_state(point, *gas, found);
    return heat_state(point, found);
}

std::string properties_refusal(const host::Library& library, const Point& point, const Properties& found) {
    if (const Gas* const gas = std::get_if<Gas>(&point.medium)) return gas_properties(library, *gas, found);
    return heat_properties(found);
}

void explain_geometry(const Pipeline& pipe, double t_C, FlowResult& out) {
    const Sizes sizes = sizes_of(pipe, t_C);
    out.limit = sizes.at_t.limit;
    if (out.limit == Limit::none) out.limit = flow::check_ratio(sizes.device, sizes.beta);
    const flow::DeviceRow& device = sizes.device;
    out.refused = [&]() -> std::string {
        switch (out.limit) {
            case Limit::device_temperature: return material("device", pipe.device_material, t_C);
            case Limit::pipe_temperature: return material("pipe", pipe.pipe_material, t_C);
            case Limit::pipe_diameter:
                return in_words(
                    {"pipe diameter", sizes.at_t.D_m, {device.D_min, device.D_max}, "mm", units::mm_per_m});
            case Limit::device_diameter:
                return in_words(
                    {"device diameter", sizes.at_t.d_m, {.min = device.d_min}, "mm", units::mm_per_m});
            case Limit::roughness:
                return in_words({"roughness R_a/D", sizes.R_a_m / sizes.at_t.D_m, {.max = device.R_a_max}});
            case Limit::diameter_ratio:
                return in_words({"diameter ratio", sizes.beta, {device.beta_min, device.beta_max}});
            default: return unexplained("geometry");
        }
    }();
}

void explain_flow(const Pipeline& pipe, const Properties& medium, double dp_Pa, FlowResult& out) {
    const Sizes sizes = sizes_of(pipe, medium.t_C);
    const flow::FlowSolution found = solved_again(pipe, sizes, medium, dp_Pa, out);
    out.limit = found.limit;
    out.refused = flow_words(pipe, sizes, found, medium, dp_Pa, out.Re);
}

}  // namespace kalorfix::metering
