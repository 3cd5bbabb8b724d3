#include "tools/station/diagnosis.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <string_view>
#include <utility>

#include "flow/discharge.h"
#include "flow/equation.h"
#include "flow/geometry.h"

namespace kalorfix::tool::station {
namespace {

constexpr double zero_celsius_K = 273.15;
constexpr double standard_gravity = 9.80665;
constexpr double MPa_per_Pa = 1e-6, m_per_mm = 1e-3, mm_per_m = 1e3;
constexpr double no_limit = std::numeric_limits<double>::infinity();

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

struct Expanded {
    double D_m = 0, d_m = 0;
};

// Temperature range of a material. GOST 8.586.1-2005, annex G.
std::string material(std::string_view of, float code, double t_C) {
    const flow::Material* const m = flow::find_material(d(code));
    if (!m) return {};
    const std::string what = fmt::format("t of the {} (material {})", of, static_cast<int>(code));
    if (t_C < m->t_min_C) return broken(what, t_C, "below", m->t_min_C, "degC");
    if (t_C > m->t_max_C) return broken(what, t_C, "above", m->t_max_C, "degC");
    return {};
}

Expanded expanded(const Channel& c, double t_C) {
    const auto at = [&](float diameter_mm, float expansion) {
        const flow::Material* const m = c.by_material ? flow::find_material(d(expansion)) : nullptr;
        const double alpha = m ? flow::expansion_coefficient(*m, t_C) : d(expansion);
        return flow::expanded_diameter(d(diameter_mm) * m_per_mm, alpha, t_C);
    };
    return {at(c.D20_mm, c.pipe_material), at(c.d20_mm, c.device_material)};
}

// Limits of use of a device. GOST 8.586.2..4-2005.
std::string geometry(const Channel& c, const Outcome& out) {
    const double t = d(out.input.t_C);
    const auto device = static_cast<flow::Device>(c.device);
    if (c.by_material) {
        for (const auto& [of, code] :
             {std::pair{"device", c.device_material}, std::pair{"pipe", c.pipe_material}})
            if (std::string text = material(of, code, t); !text.empty()) return text;
    }
    if (!flow::is_standard(device)) return {};
    const Expanded size = expanded(c, t);
    const auto row = static_cast<std::size_t>(c.device) - 1;
    const flow::SizeLimits& limits = flow::size_limits[row];
    if (size.D_m < limits.D_min_m)
        return broken("pipe diameter", size.D_m * mm_per_m, "below", limits.D_min_m * mm_per_m, "mm");
    if (size.D_m > limits.D_max_m)
        return broken("pipe diameter", size.D_m * mm_per_m, "above", limits.D_max_m * mm_per_m, "mm");
    if (limits.d_min_m > 0.0 && size.d_m < limits.d_min_m)
        return broken("device diameter", size.d_m * mm_per_m, "below", limits.d_min_m * mm_per_m, "mm");
    const double R_a_D = d(c.roughness_mm) * m_per_mm / std::numbers::pi / size.D_m;
    if (device == flow::Device::nozzle_long_radius && R_a_D > flow::long_radius_max_roughness)
        return broken("roughness R_a/D", R_a_D, "above", flow::long_radius_max_roughness, "");
    const double beta = size.d_m / size.D_m;
    if (beta < flow::beta_limits[row].min)
        return broken("diameter ratio", beta, "below", flow::beta_limits[row].min, "");
    if (beta > flow::beta_limits[row].max)
        return broken("diameter ratio", beta, "above", flow::beta_limits[row].max, "");
    return {};
}

struct ReynoldsRange {
    double low = 0.0, high = no_limit;
};

// GOST 8.586.2-2005, 5.3.1; GOST 8.586.3-2005, 5.1.6.1, 5.2.6.1, 5.3.4.1; GOST 8.586.4-2005, 5.5.2 to 5.5.4.
ReynoldsRange reynolds_range(flow::Device device, double beta, double D_m) {
    using flow::Device;
    if (flow::is_averaging(device)) return {flow::averaging_min_Re(device), no_limit};
    switch (device) {
        case Device::orifice_corner:
        case Device::orifice_d_d2:
            return {beta <= 0.56 ? 5000.0 : 16000.0 * beta * beta, no_limit};
        case Device::orifice_flange:
            return {std::max(5000.0, 170000.0 * beta * beta * D_m), no_limit};
        case Device::nozzle_isa1932:
            return {beta < 0.44 ? 70000.0 : 20000.0, 5e7};
        case Device::nozzle_long_radius:
            return {1e4, 1e7};
        case Device::venturi_nozzle:
            return {150000.0, 2e6};
        case Device::venturi_cast:
        case Device::venturi_welded:
            return {40000.0, no_limit};
        case Device::venturi_machined:
            return {40000.0 * beta, 1e8 * beta};
        default:
            return {};
    }
}

// The pipe's roughness; that of a nozzle ends before its correction could reach 1.03. GOST 8.586.2-2005, 5.3.2.3; GOST 8.586.3-2005, 5.1.6.3.
std::string roughness(const flow::Bore& bore, double Re) {
    constexpr double largest_correction = 1.03, largest_relative = 30e-4, smooth_unit = 1e4;
    using flow::Device;
    flow::Discharge found{};
    if (bore.device == Device::orifice_corner && 1.0 < bore.D_m) {
        // Other tappings have the same correction and no bound for it.
        flow::Bore unbounded = bore;
        unbounded.device = Device::orifice_d_d2;
        if (flow::DischargeLaw(unbounded).at(Re, found) && found.K_sh > largest_correction)
            return broken("roughness correction", found.K_sh, "above", largest_correction, "");
    }
    if (bore.device != Device::nozzle_isa1932 && bore.device != Device::venturi_nozzle) return {};
    if (!(flow::nozzle_roughness_limit(bore.beta) < smooth_unit * bore.R_a_m / bore.D_m)) return {};
    if (bore.R_sh_m > largest_relative * bore.D_m)
        return broken("roughness R/D", bore.R_sh_m / bore.D_m, "above", largest_relative, "");
    return {};
}

double working_pressure_Pa(const Channel& c, const Outcome& out) {
    constexpr short wet_steam = 3;
    // Wet steam flows at the saturation pressure.
    if (c.medium == Medium::heat_carrier && out.phase == wet_steam) return d(out.ps_MPa) / MPa_per_Pa;
    return corrected_pressure_Pa(c, out);
}

std::string flow_step(const Channel& c, const Outcome& out) {
    constexpr short liquid = 1;
    const auto device = static_cast<flow::Device>(c.device);
    const double dp = d(out.input.dp), Re = d(out.Re);
    if (c.medium == Medium::heat_carrier && c.device == meter_standard_volume)
        return "a meter of standard volume has no meaning for a heat carrier";
    if (is_meter(c.device)) return {};
    if (flow::is_standard(device) && !(c.medium == Medium::heat_carrier && out.phase == liquid)) {
        const double ratio = dp / working_pressure_Pa(c, out);
        if (ratio > flow::max_pressure_ratio)
            return broken("dp/p", ratio, "exceeds", flow::max_pressure_ratio, "");
    }
    if (dp < 0.0) return broken("dp", dp, "below", 0.0, "Pa");
    if (dp == 0.0) return "dp is 0: there is no flow to solve for";
    const Expanded size = expanded(c, d(out.input.t_C));
    const double beta = size.d_m / size.D_m;
    const ReynoldsRange range = reynolds_range(device, beta, size.D_m);
    const std::string_view depends = c.device <= 9 ? " for this device and beta" : " for this device";
    // The Reynolds number is known in single precision only.
    constexpr double last_digit = 1e-7;
    if (Re < range.low * (1.0 + last_digit))
        return broken("Re", Re, "below", range.low, "") + std::string(depends);
    if (Re > range.high * (1.0 - last_digit))
        return broken("Re", Re, "above", range.high, "") + std::string(depends);
    if (!flow::is_standard(device)) return {};
    const double R_sh = d(c.roughness_mm) * m_per_mm;
    if (std::string text = roughness({device, size.D_m, beta, R_sh, R_sh / std::numbers::pi}, Re);
        !text.empty())
        return text;
    // Every documented reason but one has been looked at.
    return fmt::format("the flow does not settle within 100 passes, the last at Re {:.5g}", Re);
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
