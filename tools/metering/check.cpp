// SPDX-License-Identifier: MIT
#include "tools/metering/check.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

#include "flow/geometry.h"
#include "runtime/units.h"
#include "tools/metering/refusal.h"
#include "tools/names.h"

namespace kalorfix::metering {
namespace {

using flow::Limit;
using flow::Range;

std::string with_unit(double value, std::string_view unit) {
    return fmt::format("{:.6g}{}{}", value, unit.empty() ? "" : " ", unit);
}

// "within 0.1..0.75", "at least 12.5 mm", or which bound is broken.
std::string limit_text(double value, const Range& range, std::string_view unit) {
    if (range.contains(value)) {
        if (std::isinf(range.min) || (range.min == 0.0 && std::isfinite(range.max)))
            return std::isinf(range.max) ? "" : "up to " + with_unit(range.max, unit);
        if (std::isinf(range.max)) return "at least " + with_unit(range.min, unit);
        return fmt::format("within {:.6g}..{}", range.min, with_unit(range.max, unit));
    }
    return value > range.max ? "above " + with_unit(range.max, unit) : "below " + with_unit(range.min, unit);
}

Rule in_range(std::string what, double value, const Range& range, std::string_view unit, std::string clause,
              Verdict outside = Verdict::stop) {
    return {range.contains(value) ? Verdict::ok : outside, std::move(what), with_unit(value, unit),
            limit_text(value, range, unit), std::move(clause)};
}

Range in_mm(Range range) {
    range.min *= units::mm_per_m;
    range.max *= units::mm_per_m;
    return range;
}

// Temperature ranges of the materials. GOST 8.586.1-2005, annex G.
void materials(const Pipeline& pipe, double t_C, std::vector<Rule>& rules) {
    if (!pipe.by_material) return;
    const std::pair<std::string_view, double> parts[] = {{"pipe", pipe.pipe_material},
                                                         {"device", pipe.device_material}};
    for (const auto& [part, code] : parts)
        if (const flow::Material* const m = flow::find_material(code))
            rules.push_back(in_range(fmt::format("material {} of the {}", code, part), t_C,
                                     {m->t_min_C, m->t_max_C}, "degC", "GOST 8.586.1-2005, annex G"));
}

// Radius of the edge that the plate is worn to, and what it makes of the flow. GOST 8.586.2-2005, 5.3.2.4.
void edge(const Point& point, double d_m, std::vector<Rule>& rules) {
    const Pipeline& pipe = point.pipe;
    const std::string clause = "GOST 8.586.2-2005, 5.3.2.4";
    const auto* const heat = std::get_if<HeatCarrier>(&point.medium);
    const bool liquid = !is_gas(point.medium) && (!heat || !heat->phase || *heat->phase == KALORFIX_WATER);
    const double limit_m = flow::limit_edge_radius_m(is_gas(point.medium), liquid);
    const double initial_m = pipe.edge_radius_mm * units::m_per_mm;
    if (pipe.interval_years == 0.0 && !pipe.edge_at_end) {
        rules.push_back(
            {Verdict::warn, "edge of the plate", "mean over 0 years", "undefined: counts as sharp", clause});
        return;
    }
    rules.push_back(in_range("initial radius of the edge", pipe.edge_radius_mm,
                             {0.0, limit_m * units::mm_per_m}, "mm", clause, Verdict::warn));
    const double worn_m = flow::edge_radius_m(limit_m, initial_m, pipe.interval_years, pipe.edge_at_end);
    const double K_p = flow::bluntness_correction(worn_m, d_m);
    rules.push_back({K_p > 1.0 ? Verdict::warn : Verdict::ok, "bluntness of the worn edge",
                     fmt::format("{:.4g} mm, K_p {:.5f}", worn_m * units::mm_per_m, K_p),
                     fmt::format("{} 0.0004 d, {:.4g} mm", K_p > 1.0 ? "above" : "up to", 0.4 * d_m), clause});
}

void sizes(const Point& point, double t_C, bool first, std::vector<Rule>& rules) {
    const Pipeline& pipe = point.pipe;
    const flow::DeviceRow& device = flow::device_row(pipe.device);
    const double R_a_m = pipe.roughness_mm * units::m_per_mm / std::numbers::pi;
    const flow::Diameters at_t = flow::working_diameters(
        device, {pipe.D20_mm * units::m_per_mm, pipe.pipe_material},
        {pipe.d20_mm * units::m_per_mm, pipe.device_material}, pipe.by_material, R_a_m, t_C);
    if (at_t.limit == Limit::device_temperature || at_t.limit == Limit::pipe_temperature) return;
    const double beta = at_t.d_m / at_t.D_m;
    const std::string at = fmt::format(" at {:g} degC", t_C);
    rules.push_back(in_range("pipe" + at, at_t.D_m * units::mm_per_m, in_mm({device.D_min, device.D_max}), "mm",
                             device.clause));
    if (device.d_min > 0.0)
        rules.push_back(in_range("device" + at, at_t.d_m * units::mm_per_m, in_mm({.min = device.d_min}), "mm",
                                 device.clause));
    rules.push_back(in_range("beta" + at, beta, {device.beta_min, device.beta_max}, "", device.clause));
    if (std::isfinite(device.R_a_max))
        rules.push_back(
            in_range("roughness R_a/D" + at, R_a_m / at_t.D_m, {.max = device.R_a_max}, "", device.clause));
    if (first && device.family == flow::Family::orifice) edge(point, at_t.d_m, rules);
}

// GOST 30319.2-96 as this library's methods were written for; the window of the library is wider.
void method_document(const Gas& gas, const Envelope& e, std::vector<Rule>& rules) {
    const std::string name(tool::method_name(gas.method)), clause = "GOST 30319.2-96";
    if (!tool::is_by_density(gas.method)) {
        rules.push_back({Verdict::unchecked, name + ", range of its document", "",
                         "not checked: the range is not on record here", clause});
        return;
    }
    constexpr double low_C = 250.0 - units::zero_celsius_K, high_C = 340.0 - units::zero_celsius_K;
    for (const double t_C : {e.t_low_C, e.t_high_C})
        rules.push_back(
            in_range(name + ", its document: t", t_C, {low_C, high_C}, "degC", clause, Verdict::warn));
    rules.push_back(in_range(name + ", its document: p", e.p_high_Pa * units::MPa_per_Pa, {0.0, 12.0}, "MPa",
                             clause, Verdict::warn));
    rules.push_back(
        in_range(name + ", its document: density", gas.rho_c, {0.66, 1.0}, "kg/m3", clause, Verdict::warn));
    rules.push_back(in_range(name + ", its document: nitrogen", gas.x[tool::nitrogen], {0.0, 15.0}, "mol %",
                             clause, Verdict::warn));
    rules.push_back(in_range(name + ", its document: CO2", gas.x[tool::carbon_dioxide], {0.0, 15.0}, "mol %",
                             clause, Verdict::warn));
}

void composition(const Gas& gas, std::vector<Rule>& rules) {
    if (tool::is_by_density(gas.method)) return;
    const double whole = gas.volume_fractions ? 1.0 : 100.0;
    const double sum = std::accumulate(gas.x.begin(), gas.x.end(), 0.0);
    if (gas.volume_fractions && gas.method == tool::aga8)
        rules.push_back({Verdict::warn, "energy", "volume fractions", "heats of combustion take mole per cent",
                         "limit of this library"});
    constexpr double fine = 1e-4, coarse = 1e-2;
    const auto within = [&](double share) { return Range{whole * (1.0 - share), whole * (1.0 + share)}; };
    const bool far = !within(coarse).contains(sum);
    rules.push_back(in_range(
        "sum of the composition", sum, within(far ? coarse : fine), gas.volume_fractions ? "" : "mol %",
        gas.volume_fractions ? "normalised" : "not normalised", far ? Verdict::stop : Verdict::warn));
}

// ---- The corners of the envelope -----------------------------------------------------------------------------

struct Corner {
    double t_C, p_Pa;
    Properties medium;
    Accepted dp;
    std::optional<FlowResult> most;  // at the largest differential pressure

    [[nodiscard]] std::string place() const {
        return fmt::format("{:g} degC, {:g} MPa", t_C, p_Pa * units::MPa_per_Pa);
    }
};

// The window, as the library has it, and the state at each corner.
void states(const Point& point, const Envelope& e, const std::vector<Corner>& corners,
            std::vector<Rule>& rules) {
    const Window window = window_of(point.medium);
    const std::string ends = window.ends_excluded ? ", ends excluded" : "";
    const std::string limit = std::holds_alternative<GivenMedium>(point.medium)
                                  ? "as given"
                                  : fmt::format("{:g}..{:g} degC, {:g}..{:g} MPa{}", window.t_C.min,
                                                window.t_C.max, window.p_MPa.min, window.p_MPa.max, ends);
    bool all = true;
    for (const Corner& corner : corners) {
        if (corner.medium.refused.empty()) continue;
        all = false;
        rules.push_back(
            {Verdict::stop, "state at " + corner.place(), corner.medium.refused, "", "window of this library"});
    }
    if (all)
        rules.push_back({Verdict::ok, "state",
                         fmt::format("{:g}..{:g} degC, {:g}..{:g} MPa", e.t_low_C, e.t_high_C,
                                     e.p_low_Pa * units::MPa_per_Pa, e.p_high_Pa * units::MPa_per_Pa),
                         limit, "window of this library"});
}

void nearly_ideal(const Point& point, const std::vector<Corner>& corners, std::vector<Rule>& rules) {
    constexpr double near = 0.999;
    if (!std::holds_alternative<Gas>(point.medium)) return;
    const auto worst = std::ranges::max_element(corners, {}, [](const Corner& c) { return c.medium.K; });
    if (!worst->medium.refused.empty()) return;
    rules.push_back({worst->medium.K > near ? Verdict::warn : Verdict::ok, "K at " + worst->place(),
                     fmt::format("{:.6f}", worst->medium.K), fmt::format("below {}", highest_K),
                     "limit of this library"});
}

// The phase that the state decides, whatever the station says.
void phases(const host::Library& library, const Point& point, const std::vector<Corner>& corners,
            std::vector<Rule>& rules) {
    const auto* const heat = std::get_if<HeatCarrier>(&point.medium);
    if (!heat) return;
    Point free = point;
    std::get<HeatCarrier>(free.medium).phase.reset();
    std::vector<short> found;
    for (const Corner& c : corners) found.push_back(properties_at(library, free, c.t_C, c.p_Pa).phase);
    const short wanted = heat->phase ? static_cast<short>(*heat->phase) : found.front();
    const std::string limit =
        std::string(tool::phase_of(wanted).title) + (heat->phase ? " by the station" : " alone");
    const std::string clause = "IAPWS SR1-86";
    if (is_mixed(*heat, wanted) ||
        (!heat->phase && std::ranges::any_of(found, [&](short phase) { return is_mixed(*heat, phase); })))
        rules.push_back({Verdict::warn, "density of wet steam", fmt::format("x {:g}", heat->x),
                         "mixed linearly: with water in it too high, and so is the flow",
                         "limit of this library"});
    const auto met = [&](short phase) { return phase == wanted && wanted != KALORFIX_WET_STEAM; };
    if (std::ranges::all_of(found, met)) {
        rules.push_back({Verdict::ok, "phase", std::string(tool::phase_of(wanted).title), limit, clause});
        return;
    }
    // Of a phase that is never there the expansibility is wrong, and with it the flow.
    const bool nowhere = heat->phase && wanted != KALORFIX_WET_STEAM && std::ranges::none_of(found, met);
    for (std::size_t k = 0; k < corners.size(); ++k)
        rules.push_back({met(found[k]) ? Verdict::ok
                         : nowhere     ? Verdict::stop
                                       : Verdict::warn,
                         "phase at " + corners[k].place(), std::string(tool::phase_of(found[k]).title),
                         found[k] == wanted ? limit : "not " + limit, clause});
}

void pressures(const Envelope& e, const std::vector<Corner>& corners, std::vector<Rule>& rules) {
    const Corner *least = nullptr, *most = nullptr;
    bool all_above = e.dp_high_Pa.has_value(), any = false;
    for (const Corner& c : corners) {
        if (!c.medium.refused.empty()) continue;
        if (!c.dp.any) {
            rules.push_back({Verdict::stop, "flow at " + c.place(), c.dp.refused, "", "limit of the device"});
            continue;
        }
        any = true;
        if (!least || c.dp.low.at > least->dp.low.at) least = &c;
        if (!most || c.dp.high.at < most->dp.high.at) most = &c;
        all_above = all_above && *e.dp_high_Pa > c.dp.high.at;
    }
    if (!any) return;
    const auto told = [](const Corner& c, const End& end) {
        return fmt::format("{:.6g} kPa at {}", end.at * 1e-3, c.place());
    };
    const auto reason = [](const End& end) {
        return end.because.empty() ? std::string("no limit up to the pressure itself") : end.because;
    };
    Rule low{Verdict::ok, "smallest dp", told(*least, least->dp.low), reason(least->dp.low), "Re by device"};
    if (e.dp_low_Pa && *e.dp_low_Pa < least->dp.low.at) {
        low.verdict = *e.dp_high_Pa < least->dp.low.at ? Verdict::stop : Verdict::warn;
        low.limit = fmt::format("dp from {:g} kPa: cycles below it are refused", *e.dp_low_Pa * 1e-3);
    }
    Rule high{Verdict::ok, "largest dp", told(*most, most->dp.high), reason(most->dp.high),
              "dp/p, Re by device"};
    if (e.dp_high_Pa && *e.dp_high_Pa > most->dp.high.at) {
        high.verdict = all_above ? Verdict::stop : Verdict::warn;
        high.limit = fmt::format("dp up to {:g} kPa: {}", *e.dp_high_Pa * 1e-3,
                                 most->dp.high.because.empty() ? "above it there is no pressure left"
                                                               : "cycles above it are refused");
    }
    rules.push_back(low);
    rules.push_back(high);
}

// What the wall of the pipe does to the flow, where it does most. GOST 8.586.2-2005, 5.3.2.3; GOST 8.586.3-2005, 5.1.6.2.
void roughness_correction(const flow::DeviceRow& device, const std::vector<Corner>& corners,
                          std::vector<Rule>& rules) {
    const bool orifice = device.family == flow::Family::orifice;
    if (!orifice && device.family != flow::Family::nozzle) return;
    const Corner* worst = nullptr;
    double K_sh = 1.0;
    for (const Corner& c : corners)
        for (const End* const end : {&c.dp.low, &c.dp.high})
            if (c.dp.any && (!worst || std::fabs(end->flow.K_sh - 1.0) > std::fabs(K_sh - 1.0)))
                K_sh = end->flow.K_sh, worst = &c;
    if (!worst) return;
    const char* const words = K_sh == 1.0  ? "none: as smooth as it should be"
                              : K_sh < 1.0 ? "below 1: the pipe is smoother than the device expects"
                              : K_sh <= flow::max_roughness_correction
                                  ? "above 1: the pipe is rougher than the device expects"
                                  : "above 1.03: is the roughness in mm?";
    rules.push_back({K_sh == 1.0 ? Verdict::ok : Verdict::warn, "roughness correction",
                     fmt::format("K_sh {:.5f} at {}", K_sh, worst->place()), words,
                     orifice ? "GOST 8.586.2-2005, 5.3.2.3" : "GOST 8.586.3-2005, 5.1.6.2"});
}

// The registers: a day has to stay below 10^6 units of the register.
void registers(const std::vector<Corner>& corners, const std::vector<Account>& accounts,
               std::vector<Rule>& rules) {
    constexpr double hours = 24.0, wrap = 1e6;
    if (std::ranges::none_of(corners, [](const Corner& c) { return c.most.has_value(); })) {
        rules.push_back(
            {Verdict::unchecked, "registers, velocity", "", "not checked: no flow at a largest dp", ""});
        return;
    }
    for (const Account& account : accounts) {
        double most = 0.0;
        for (const Corner& c : corners)
            if (c.most) most = std::max(most, flow_of_kind(account.kind, *c.most));
        if (!(most > 0.0)) continue;
        const double limit = wrap * std::pow(10.0, account.exponent), day = most * hours;
        Rule rule{
            Verdict::ok, account.name + " of a day", fmt::format("{:.6g} {}", day, account.unit),
            fmt::format("below {:g} {}, with {:.3g} h of downtime", limit, account.unit, limit / most - hours),
            "register of the host"};
        if (!(day < limit)) {
            rule.verdict = Verdict::stop;
            rule.limit = fmt::format("not below {:g} {}: {}_exponent {} would do", limit, account.unit,
                                     account.name, static_cast<int>(std::floor(std::log10(day / wrap))) + 1);
        }
        rules.push_back(rule);
    }
}

void velocity(const std::vector<Corner>& corners, std::vector<Rule>& rules) {
    const Corner* fastest = nullptr;
    const auto speed = [](const Corner& c) {
        const double D_m = c.most->D_mm * units::m_per_mm;
        return c.most->volume_m3h / units::seconds_per_hour / (std::numbers::pi / 4.0 * D_m * D_m);
    };
    for (const Corner& c : corners)
        if (c.most && (!fastest || speed(c) > speed(*fastest))) fastest = &c;
    if (fastest)
        rules.push_back({Verdict::unchecked, "velocity in the pipe",
                         fmt::format("{:.4g} m/s at {}", speed(*fastest), fastest->place()),
                         "not checked: no limit is on record here", ""});
}

std::vector<Corner> corners_of(const host::Library& library, const Point& point, const Envelope& e) {
    const bool differential =
        flow::device_row(point.pipe.device).is_standard() || flow::device_row(point.pipe.device).is_direct();
    std::vector<Corner> corners;
    for (const double t_C : {e.t_low_C, e.t_high_C})
        for (const double p_Pa : {e.p_low_Pa, e.p_high_Pa}) {
            const auto same = [&](const Corner& c) { return c.t_C == t_C && c.p_Pa == p_Pa; };
            if (std::ranges::any_of(corners, same)) continue;
            Corner c{t_C, p_Pa, properties_at(library, point, t_C, p_Pa), {}, {}};
            if (c.medium.refused.empty() && differential) {
                c.dp = accepted_dp(library, point, c.medium);
                // Where the transmitter reaches further the flow ends with what is accepted.
                if (e.dp_high_Pa && c.dp.any && *e.dp_high_Pa >= c.dp.low.at)
                    c.most = flow_at(library, point, c.medium, std::min(*e.dp_high_Pa, c.dp.high.at));
                if (c.most && !c.most->accepted()) c.most.reset();
            }
            corners.push_back(std::move(c));
        }
    return corners;
}

}  // namespace

std::vector<Rule> check_device(const Point& point, double t_low_C, double t_high_C) {
    std::vector<Rule> rules;
    const flow::DeviceRow& device = flow::device_row(point.pipe.device);
    const bool differential = device.is_standard() || device.is_direct();
    for (const double t_C : {t_low_C, t_high_C}) {
        if (differential) materials(point.pipe, t_C, rules);
        if (device.is_standard()) sizes(point, t_C, t_C == t_low_C, rules);
        if (t_low_C == t_high_C) break;
    }
    if (device.is_direct())
        rules.push_back({Verdict::unchecked, "sizes of the device", "", "not checked: the maker states them",
                         device.clause});
    if (const auto* const gas = std::get_if<Gas>(&point.medium)) composition(*gas, rules);
    const bool close = point.pipe.metering_class == KALORFIX_CLASS_1;
    rules.push_back({close ? Verdict::ok : Verdict::warn,
                     fmt::format("metering class {}", static_cast<int>(point.pipe.metering_class)),
                     close ? "flow to 1e-5" : "flow to 1e-3 only",
                     close ? "constants frozen until the controller restarts" : "class 1 is closer", ""});
    return rules;
}

std::vector<Rule> check(const host::Library& library, const Point& point, const Envelope& envelope,
                        const std::vector<Account>& accounts) {
    std::vector<Rule> rules = check_device(point, envelope.t_low_C, envelope.t_high_C);
    // A geometry that is refused has been told of.
    const bool geometry =
        std::ranges::none_of(rules, [](const Rule& rule) { return rule.verdict == Verdict::stop; });
    const std::vector<Corner> corners = corners_of(library, point, envelope);
    states(point, envelope, corners, rules);
    if (const auto* const gas = std::get_if<Gas>(&point.medium)) method_document(*gas, envelope, rules);
    nearly_ideal(point, corners, rules);
    phases(library, point, corners, rules);
    const flow::DeviceRow& device = flow::device_row(point.pipe.device);
    if (!device.is_standard() && !device.is_direct()) return rules;
    if (geometry) pressures(envelope, corners, rules);
    roughness_correction(device, corners, rules);
    registers(corners, accounts, rules);
    velocity(corners, rules);
    rules.push_back({Verdict::unchecked, "straight lengths", "", "not checked", "GOST 8.586.5-2005"});
    return rules;
}

}  // namespace kalorfix::metering
