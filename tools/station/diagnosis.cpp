#include "tools/station/diagnosis.h"

#include <fmt/format.h>

#include <numbers>
#include <string_view>

#include "flow/fixed_point.h"
#include "flow/flow_rate.h"
#include "flow/geometry.h"
#include "runtime/units.h"

namespace kalorfix::tool::station {
namespace {

using units::MPa_per_Pa;
using units::standard_gravity;
using units::zero_celsius_K;

double d(float value) { return static_cast<double>(value); }

// A value beside its bound, with as many digits as tell them apart.
struct Pair {
    std::string value, bound;
};
Pair beside(double value, double bound) {
    constexpr int fewest = 5, most = 17;
    Pair pair;
    for (int digits = fewest; digits <= most; ++digits) {
        pair = {fmt::format("{:.{}g}", value, digits), fmt::format("{:.{}g}", bound, digits)};
        if (pair.value != pair.bound || value == bound) break;
    }
    return pair;
}

// A sentence such as "T 251 K not above 252 K".
std::string broken(std::string_view what, double value, std::string_view relation, double bound,
                   std::string_view unit) {
    const Pair pair = beside(value, bound);
    const std::string suffix = unit.empty() ? "" : " " + std::string(unit);
    return fmt::format("{} {}{} {} {}{}", what, pair.value, suffix, relation, pair.bound, suffix);
}

double corrected_pressure_Pa(const Channel& c, const Outcome& out) {
    return d(out.input.p_Pa) - standard_gravity * d(c.column_density) * d(c.column_height_m);
}

std::string_view pressure_name(const Channel& c) {
    return c.column_height_m == 0.0F || c.column_density == 0.0F ? "p" : "p less the column's";
}

// Gas: 250..340 K and 0.001..30 MPa without their ends; K below 0.9999. GOST 30319.2-96.
std::string gas_state(const Channel& c, const Outcome& out) {
    const double T = d(out.input.t_C) + zero_celsius_K;
    const double p = corrected_pressure_Pa(c, out) * MPa_per_Pa;
    constexpr double low_K = 250.0, high_K = 340.0, low_MPa = 0.001, high_MPa = 30.0, highest_K = 0.9999;
    if (!(T > low_K)) return broken("T", T, "not above", low_K, "K");
    if (!(T < high_K)) return broken("T", T, "not below", high_K, "K");
    if (!(p > low_MPa)) return broken(pressure_name(c), p, "not above", low_MPa, "MPa");
    if (!(p < high_MPa)) return broken(pressure_name(c), p, "not below", high_MPa, "MPa");
    if (!(d(out.K) < highest_K)) return broken("compressibility K", d(out.K), "not below", highest_K, "");
    if (out.K == 0.0F)
        return fmt::format("{} finds no compressibility at this state", method_name(c.gas.method));
    return {};
}

// Heat carrier: 0..1000 degC, 0.001..100 MPa.
std::string heat_state(const Channel& c, const Outcome& out) {
    constexpr double low_C = 0.0, high_C = 1000.0, low_MPa = 0.001, high_MPa = 100.0;
    const double t = d(out.input.t_C);
    const double p = corrected_pressure_Pa(c, out) * MPa_per_Pa;
    if (t < low_C) return broken("t", t, "below", low_C, "degC");
    if (out.input.p_Pa < 0.0F) return broken("p", d(out.input.p_Pa), "below", 0.0, "Pa");
    if (t + zero_celsius_K > high_C + zero_celsius_K) return broken("t", t, "above", high_C, "degC");
    if (p < low_MPa) return broken(pressure_name(c), p, "below", low_MPa, "MPa");
    if (p > high_MPa) return broken(pressure_name(c), p, "above", high_MPa, "MPa");
    return {};
}

// Humid gas needs saturated vapour at its pressure, which the formulation gives up to 645 K.
std::string gas_properties(const host::Library& library, const Channel& c, const Outcome& out) {
    constexpr double highest_C = 645.0 - zero_celsius_K, any_MPa = 0.1;
    if (!(c.gas.vapour > 0.0F)) return {};
    double ps_MPa = 0.0;
    library->t_phase_1(any_MPa, highest_C, 0.0, &ps_MPa);
    const double p = corrected_pressure_Pa(c, out) * MPa_per_Pa;
    if (!(p > ps_MPa)) return {};
    return "with water vapour in the gas, " + broken("p", p, "above", ps_MPa, "MPa") +
           ", where the saturation temperature is 645 K";
}

// Properties of water and steam: up to 800 degC; wet steam up to 645 K.
std::string heat_properties(const Outcome& out) {
    constexpr double high_C = 800.0, wet_K = 645.0;
    constexpr short wet_steam = 3;
    const double t = d(out.input.t_C);
    if (out.phase == 0) return "the phase is undecided at this state";
    if (t > high_C) return broken("t", t, "above", high_C, "degC");
    if (out.phase == wet_steam && t + zero_celsius_K > wet_K)
        return "wet steam: " + broken("T", t + zero_celsius_K, "above", wet_K, "K");
    return {};
}

// A limit of the formulas in flow/ in words: what it is called, its value and bounds, and their unit.
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

struct Point {
    const flow::DeviceRow& device;
    flow::Diameters size;
    double beta, R_sh_m;
};
Point point_of(const Channel& c, double t_C) {
    const flow::DeviceRow& device = flow::device_row(c.device);
    const double R_sh_m = d(c.roughness_mm) * units::m_per_mm;
    const flow::Diameters size = flow::working_diameters(
        device, {d(c.D20_mm) * units::m_per_mm, d(c.pipe_material)},
        {d(c.d20_mm) * units::m_per_mm, d(c.device_material)}, c.by_material, R_sh_m / std::numbers::pi, t_C);
    return {device, size, size.d_m / size.D_m, R_sh_m};
}

// Temperature range of a material. GOST 8.586.1-2005, annex G.
std::string material(std::string_view of, float code, double t_C) {
    const flow::Material* const m = flow::find_material(d(code));
    if (!m) return {};
    return in_words({fmt::format("t of the {} (material {})", of, static_cast<int>(code)),
                     t_C,
                     {m->t_min_C, m->t_max_C},
                     "degC"});
}

std::string geometry(const Channel& c, const Outcome& out) {
    using flow::Limit;
    const double t = d(out.input.t_C);
    const Point point = point_of(c, t);
    Limit limit = point.size.limit;
    if (limit == Limit::device_temperature) return material("device", c.device_material, t);
    if (limit == Limit::pipe_temperature) return material("pipe", c.pipe_material, t);
    if (limit == Limit::none) limit = flow::check_ratio(point.device, point.beta);
    const flow::Range range = flow::bounds(limit, point.device, point.beta, point.size.D_m);
    switch (limit) {
        case Limit::pipe_diameter:
            return in_words({"pipe diameter", point.size.D_m, range, "mm", units::mm_per_m});
        case Limit::device_diameter:
            return in_words({"device diameter", point.size.d_m, range, "mm", units::mm_per_m});
        case Limit::roughness:
            return in_words({"roughness R_a/D", point.R_sh_m / std::numbers::pi / point.size.D_m, range});
        case Limit::diameter_ratio:
            return in_words({"diameter ratio", point.beta, range});
        default:
            return {};
    }
}

double working_pressure_Pa(const Channel& c, const Outcome& out) {
    // Wet steam flows at the saturation pressure.
    if (c.medium == Medium::heat_carrier && out.phase == KALORFIX_WET_STEAM)
        return d(out.ps_MPa) / units::MPa_per_Pa;
    return corrected_pressure_Pa(c, out);
}

// K_sh of an orifice plate: other tappings have the same correction and no bound for it.
double rough(const Point& point, double Re) {
    flow::Discharge found{};
    const flow::Bore unbounded{flow::device_row(KALORFIX_ORIFICE_D_D2), point.size.D_m, point.beta,
                               point.R_sh_m, point.R_sh_m / std::numbers::pi};
    static_cast<void>(flow::DischargeLaw(unbounded).at(Re, found));
    return found.K_sh;
}

// The flow solved again, from the single precision that the library handed out.
flow::FlowSolution solved_again(const Channel& c, const Outcome& out, const Point& point) {
    const bool liquid = c.medium == Medium::heat_carrier && out.phase == KALORFIX_WATER;
    const flow::Medium medium{working_pressure_Pa(c, out), d(out.kappa), d(out.mu_uPas) * units::Pas_per_uPas,
                              liquid};
    const flow::Reading reading{d(out.input.dp), d(out.rho)};
    if (point.device.is_direct())
        return flow::averaging_flow({point.device, point.size.D_m, point.size.d_m, d(c.alpha_eps)}, medium,
                                    reading);
    const flow::Bore bore{point.device, point.size.D_m, point.beta, point.R_sh_m,
                          point.R_sh_m / std::numbers::pi};
    return flow::solve_flow({bore, point.size.d_m, d(out.E), d(out.K_p)}, medium, reading,
                            flow::tolerance(static_cast<unsigned char>(c.metering_class)));
}

std::string flow_step(const Channel& c, const Outcome& out) {
    using flow::Limit;
    const double dp = d(out.input.dp), Re = d(out.Re);
    if (c.medium == Medium::heat_carrier && c.device == meter_standard_volume)
        return "a meter of standard volume has no meaning for a heat carrier";
    if (is_meter(c.device)) return {};
    const Point point = point_of(c, d(out.input.t_C));
    const flow::FlowSolution found = solved_again(c, out, point);
    const flow::Range range = flow::bounds(found.limit, point.device, point.beta, point.size.D_m);
    if (found.limit == Limit::pressure_ratio)
        return broken("dp/p", dp / working_pressure_Pa(c, out), "exceeds", range.max, "");
    if (dp < 0.0) return broken("dp", dp, "below", 0.0, "Pa");
    if (dp == 0.0) return "dp is 0: there is no flow to solve for";
    switch (found.limit) {
        case Limit::reynolds:
            return in_words({"Re", Re, range}) +
                   (c.device <= 9 ? " for this device and beta" : " for this device");
        case Limit::nozzle_roughness:
            return in_words({"roughness R/D", point.R_sh_m / point.size.D_m, range});
        case Limit::roughness_correction:
            return in_words({"roughness correction", rough(point, found.Re), range});
        case Limit::passes:
            return fmt::format("the flow does not settle within {} passes, the last at Re {:.5g}",
                               flow::max_passes, Re);
        default:
            return {};
    }
}

std::string totals(const Channel& c, const Outcome& out, const Registers& before, std::size_t accepted) {
    if (accepted >= integrator_count(c.medium)) return {};
    const Integrator& one = integrator(c.medium, accepted);
    if (out.q[accepted] < 0.0F)
        return broken(fmt::format("{} flow", one.name), d(out.q[accepted]), "below", 0.0, one.flow_unit);
    if (before[accepted].total < 0.0F)
        return broken(fmt::format("{} register", one.name), d(before[accepted].total), "below", 0.0, one.unit);
    return {};
}

}  // namespace

std::string diagnose(const host::Library& library, const Channel& c, const Outcome& out,
                     const Registers& before, std::size_t accepted) {
    const bool gas = c.medium == Medium::gas;
    std::string text;
    switch (out.reached) {
        case Step::state:
            text = gas ? gas_state(c, out) : heat_state(c, out);
            break;
        case Step::properties:
            text = gas ? gas_properties(library, c, out) : heat_properties(out);
            break;
        case Step::geometry:
            text = geometry(c, out);
            break;
        case Step::flow:
            text = flow_step(c, out);
            break;
        case Step::totals:
            text = totals(c, out, before, accepted);
            break;
        case Step::done:
            return {};
    }
    if (text.empty())
        text =
            fmt::format("the library refused the {}; no documented limit explains it", step_name(out.reached));
    return text;
}

}  // namespace kalorfix::tool::station
