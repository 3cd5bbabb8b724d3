// SPDX-License-Identifier: MIT
#include "tools/metering/uncertainty.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <functional>

#include "flow/device.h"
#include "tools/metering/published.h"
#include "tools/metering/refusal.h"
#include "tools/names.h"

namespace kalorfix::metering {
namespace {

constexpr double percent = 100.0, kPa = 1e-3, MPa = 1e-6;

// Steps of the differences. The flow of metering class 1 is reproducible to 1e-7 and K is single precision (6e-8): at a step of 0.2 % both
// move a sensitivity by less than 1e-4, and the curvature of a square root by 1e-6.
constexpr double relative_step = 2e-3, t_step_K = 0.5, share_step_pct = 0.05;

// An input that has moved by h: the flows then, or nothing where the library refuses.
using Move = std::function<std::optional<Flows>(double h)>;

struct Slope {
    Flows per_step{};
    bool found = false, jumps = false;
};

Slope slope_of(const Flows& at, const Move& move, double step) {
    // A step of the discharge coefficient moves the flow by more than this beside its straight course.
    constexpr double smooth = 2e-5, bent = 0.05;
    const std::optional<Flows> above = move(step), below = move(-step);
    Slope slope;
    slope.found = above || below;
    for (std::size_t k = 0; k < at.size() && slope.found; ++k) {
        if (at[k] == 0.0) continue;
        const double forward = above ? ((*above)[k] - at[k]) / at[k] : 0.0;
        const double backward = below ? (at[k] - (*below)[k]) / at[k] : 0.0;
        const double least = std::fabs(forward) < std::fabs(backward) ? forward : backward;
        const double bend = std::fabs(forward - backward);
        double rise = (forward + backward) / 2.0;
        if (!above || !below) {
            rise = forward + backward;
        } else if (bend > smooth && bend > bent * std::fabs(forward) && bend > bent * std::fabs(backward)) {
            slope.jumps = true;
            rise = least;
        }
        slope.per_step[k] = rise / step;
    }
    return slope;
}

// The heat of combustion that follows from a density at standard conditions, by a method by density.
double heat_by_density(const host::Library& library, const Gas& gas, double rho_c) {
    constexpr double any_t_C = 20.0, any_p_Pa = 1e6;
    Gas other{.method = KALORFIX_GERG91, .rho_c = rho_c, .by_higher_heat = gas.by_higher_heat};
    const double mol_pct = gas.volume_fractions ? percent : 1.0;
    for (const std::size_t i : {tool::nitrogen, tool::carbon_dioxide}) other.x[i] = mol_pct * gas.x[i];
    const Properties found = properties_at(library, {{}, {}, other}, any_t_C, any_p_Pa);
    return found.refused.empty() ? found.energy_MJ_m3 : 0.0;
}

// A density of the gas without its vapour, times a factor.
void scale_dry(Properties& medium, double vapour, double factor) {
    medium.rho = vapour + (medium.rho - vapour) * factor;
}

class Builder {
public:
    Builder(const host::Library& library, const Point& point, const Instruments& instruments,
            const Reading& reading)
        : library_(library), point_(point), instruments_(instruments), reading_(reading) {}

    Budget build() {
        medium_ = properties_at(library_, point_, reading_.t_C, reading_.p_Pa);
        out_.refused = medium_.refused;
        if (!out_.accepted()) return out_;
        const FlowResult flow = flow_at(library_, point_, medium_, reading_.dp_Pa);
        out_.refused = flow.refused;
        if (out_.accepted() && !(flow.mass_th > 0.0)) out_.refused = "no flow";
        if (!out_.accepted()) return out_;
        for (std::size_t k = 0; k < out_.flow.size(); ++k) out_.flow[k] = flow_of_kind(judged_flows[k], flow);
        // A coarse solution of class 0 would drown a difference.
        point_.pipe.metering_class = KALORFIX_CLASS_1;
        at_ = flows(point_, medium_, reading_.dp_Pa).value_or(out_.flow);
        factors(flow);
        geometry();
        measured();
        std::visit([this](const auto& medium) { of_medium(medium); }, point_.medium);
        if (flow.K_p > 1.0) note("the correction for edge bluntness counts as exact");
        if (flow.K_sh != 1.0 && flow.K_sh != 0.0) note("the correction for roughness counts as exact");
        if (reading_.atmosphere_Pa > 0.0) note("the atmospheric pressure counts as exact");
        if (medium_.phase == KALORFIX_WET_STEAM) note("the share x of the wet steam counts as exact");
        return out_;
    }

private:
    std::optional<Flows> flows(const Point& point, const Properties& medium, double dp_Pa) const {
        if (!medium.refused.empty() || medium.phase != medium_.phase) return std::nullopt;
        const FlowResult flow = flow_at(library_, point, medium, dp_Pa);
        if (!flow.accepted()) return std::nullopt;
        Flows all{};
        for (std::size_t k = 0; k < all.size(); ++k) all[k] = flow_of_kind(judged_flows[k], flow);
        return all;
    }
    std::optional<Flows> at_state(const Point& point, double t_C, double p_Pa) const {
        return flows(point, properties_at(library_, point, t_C, p_Pa), reading_.dp_Pa);
    }

    void note(std::string text) {
        if (std::ranges::find(out_.notes, text) == out_.notes.end()) out_.notes.push_back(std::move(text));
    }

    // `stated` is in the unit where the entry is absolute, else in per cent; where it is empty the source is what would state it.
    void add(Entry entry, const std::optional<double>& stated, const Move& move, double step) {
        const Slope slope = slope_of(at_, move, step);
        if (slope.jumps) note(entry.name + ": the flow has a step beside this reading");
        for (std::size_t k = 0; k < at_.size(); ++k)
            entry.sensitivity[k] = slope.per_step[k] * (entry.per_unit ? percent : 1.0);
        if (stated && entry.standing != Standing::outside) entry.standing = Standing::stated;
        if (!slope.found) {
            entry.standing = Standing::outside;
            entry.source = "no sensitivity: refused on both sides of the reading";
        }
        put(std::move(entry), stated);
    }

    void put(Entry entry, const std::optional<double>& expanded) {
        if (entry.standing == Standing::stated) entry.source = "stated";
        entry.expanded = expanded.value_or(0.0);
        double scale = entry.expanded;
        if (entry.absolute && !entry.per_unit) scale *= percent / entry.value;
        for (std::size_t k = 0; k < at_.size() && entry.standing != Standing::outside; ++k)
            entry.contribution[k] = std::fabs(entry.sensitivity[k]) * scale;
        out_.entries.push_back(std::move(entry));
    }

    // The flow is proportional to both factors.
    void put_factor(Entry entry, const std::optional<double>& stated, const Published& published) {
        for (std::size_t k = 0; k < at_.size(); ++k) entry.sensitivity[k] = at_[k] != 0.0 ? 1.0 : 0.0;
        if (stated) {
            entry.standing = Standing::stated;
        } else if (published.pct) {
            entry.standing = Standing::document;
            entry.source = published.clause;
        } else if (!published.outside.empty()) {
            entry.standing = Standing::outside;
            entry.source = fmt::format("outside {}: {}", published.clause, published.outside);
        }
        put(std::move(entry), stated ? stated : published.pct);
    }

    void factors(const FlowResult& flow) {
        const flow::DeviceRow& device = flow::device_row(point_.pipe.device);
        const bool configured = device.family == flow::Family::configured;
        const bool liquid = !is_gas(point_.medium) && flow.epsilon == 1.0;
        put_factor({.key = "C",
                    .name = device.is_standard() ? "discharge coefficient C" : "flow coefficient",
                    .value = configured ? point_.pipe.alpha_eps : flow.C,
                    .source = "C_uncertainty_pct"},
                   instruments_.C_pct, published_C(point_.pipe, flow));
        if (configured) return;  // its coefficient contains the expansibility
        Published epsilon = published_epsilon(point_.pipe, flow, medium_.kappa, reading_.dp_Pa, medium_.p_Pa);
        if (liquid) epsilon = {0.0, "liquid", {}};
        put_factor({.key = "epsilon",
                    .name = "expansibility factor",
                    .value = flow.epsilon,
                    .source = "epsilon_uncertainty_pct"},
                   instruments_.epsilon_pct, epsilon);
    }

    void geometry() {
        const auto sized = [this](double Pipeline::*size) {
            return [this, size](double h) {
                Point moved = point_;
                moved.pipe.*size *= 1.0 + h;
                return flows(moved, medium_, reading_.dp_Pa);
            };
        };
        add({.key = "d",
             .name = "bore d",
             .unit = "mm",
             .value = point_.pipe.d20_mm,
             .source = "d20_uncertainty_pct"},
            instruments_.d_pct, sized(&Pipeline::d20_mm), relative_step);
        add({.key = "D",
             .name = "pipe D",
             .unit = "mm",
             .value = point_.pipe.D20_mm,
             .source = "D20_uncertainty_pct"},
            instruments_.D_pct, sized(&Pipeline::D20_mm), relative_step);
    }

    // `shown` is what the transmitter itself measures, in the unit of the entry.
    void transmitter(Entry entry, double shown, const Transmitter& stated, double factor, const Move& move,
                     double step) {
        std::optional<double> expanded = stated.expanded();
        if (expanded) *expanded *= factor;
        entry.absolute = true;
        // The range of a thermometer is a span, whose beginning nobody states.
        if (stated.range && !entry.per_unit && shown > *stated.range * factor) {
            entry.standing = Standing::outside;
            entry.source = broken(entry.key, shown, "above the range of", *stated.range * factor, entry.unit);
        }
        if (expanded && *expanded > 0.0) {
            const double off = entry.per_unit ? *expanded : *expanded / entry.value;
            if (!move(off) || !move(-off))
                note(entry.name + ": within its uncertainty the phase changes or the library refuses");
        }
        add(std::move(entry), expanded, move, step);
    }

    void measured() {
        const auto [t_C, p_Pa, dp_Pa, atmosphere_Pa] = reading_;
        transmitter(
            {.key = "dp",
             .name = "differential pressure",
             .unit = "kPa",
             .value = dp_Pa * kPa,
             .source = "dp_range_kPa with dp_class_pct, or dp_error_kPa"},
            dp_Pa * kPa, instruments_.dp, kPa,
            [this, dp = dp_Pa](double h) { return flows(point_, medium_, dp * (1.0 + h)); }, relative_step);
        transmitter(
            {.key = "p",
             .name = "absolute pressure",
             .unit = "MPa",
             .value = p_Pa * MPa,
             .source = "p_range_MPa with p_class_pct, or p_error_MPa"},
            (p_Pa - atmosphere_Pa) * MPa, instruments_.p, MPa,
            [this, t = t_C, p = p_Pa](double h) { return at_state(point_, t, p * (1.0 + h)); }, relative_step);
        transmitter(
            {.key = "t",
             .name = "temperature",
             .unit = "degC",
             .value = t_C,
             .source = "t_range_K with t_class_pct, or t_error_K",
             .per_unit = true},
            t_C, instruments_.t, 1.0,
            [this, t = t_C, p = p_Pa](double h) { return at_state(point_, t + h, p); }, t_step_K);
    }

    Move changed(const std::function<void(Properties&, double factor)>& change) const {
        return [this, change](double h) {
            Properties moved = medium_;
            change(moved, 1.0 + h);
            return flows(point_, moved, reading_.dp_Pa);
        };
    }

    // A share moves against the largest one, so that the sum stays; nitrogen and carbon dioxide of a method by density alone.
    void component(const Gas& gas, std::size_t i, std::size_t balance) {
        const double unit = gas.volume_fractions ? 1.0 / percent : 1.0, share = gas.x[i] / unit;
        Entry entry{.key = tool::components[i],
                    .name = std::string(tool::components[i]),
                    .unit = gas.volume_fractions ? "vol %" : "mol %",
                    .value = share,
                    .absolute = true,
                    .per_unit = true};
        const double expanded =
            instruments_.x_mol_pct.value_or(0.0) + instruments_.x_rel_pct.value_or(0.0) * share / percent;
        const double step = share > 0.0 ? std::min(share_step_pct, share) : share_step_pct;
        add(
            std::move(entry), expanded,
            [&](double h) -> std::optional<Flows> {
                Point moved = point_;
                Gas& other = std::get<Gas>(moved.medium);
                other.x[i] += h * unit;
                if (other.x[i] < 0.0) return std::nullopt;
                if (balance != i) other.x[balance] -= h * unit;
                return at_state(moved, reading_.t_C, reading_.p_Pa);
            },
            step);
    }

    void composition(const Gas& gas) {
        if (!instruments_.x_mol_pct && !instruments_.x_rel_pct) {
            Entry entry{.key = "composition",
                        .name = "composition",
                        .source = "composition_uncertainty_mol_pct, composition_uncertainty_pct"};
            for (std::size_t k = 0; k < at_.size(); ++k)
                entry.sensitivity[k] = at_[k] != 0.0 ? std::nan("") : 0.0;
            out_.entries.push_back(std::move(entry));
            return;
        }
        if (tool::is_by_density(gas.method)) {
            component(gas, tool::nitrogen, tool::nitrogen);
            component(gas, tool::carbon_dioxide, tool::carbon_dioxide);
            return;
        }
        const auto balance = static_cast<std::size_t>(std::ranges::max_element(gas.x) - gas.x.begin());
        for (std::size_t i = 0; i < gas.x.size(); ++i)
            if (i != balance && gas.x[i] > 0.0) component(gas, i, balance);
    }

    void of_medium(const Gas& gas) {
        add({.key = "K", .name = "compressibility K", .value = medium_.K, .source = "K_uncertainty_pct"},
            instruments_.K_pct,
            changed([&gas](Properties& m, double factor) { scale_dry(m, gas.vapour_kgm3, 1.0 / factor); }),
            relative_step);
        standard_density(gas);
        composition(gas);
        if (gas.vapour_kgm3 > 0.0)
            add(
                {.key = "vapour",
                 .name = "water vapour",
                 .unit = "kg/m3",
                 .value = gas.vapour_kgm3,
                 .source = "vapour_uncertainty_pct"},
                instruments_.vapour_pct,
                [this](double h) {
                    Point moved = point_;
                    std::get<Gas>(moved.medium).vapour_kgm3 *= 1.0 + h;
                    return at_state(moved, reading_.t_C, reading_.p_Pa);
                },
                relative_step);
        heat({.key = "heat",
              .name = "heat of combustion",
              .unit = "MJ/m3",
              .value = medium_.energy_MJ_m3,
              .source = "heat_uncertainty_pct"});
    }

    // Of a method by density it is an input, which K and heat follow; by composition it is that of the formula behind it, and the heat of
    // AGA8-92DC follows it.
    void standard_density(const Gas& gas) {
        const Entry entry{.key = "rho_c",
                          .name = "density at standard conditions",
                          .unit = "kg/m3",
                          .value = medium_.rho_c,
                          .source = "rho_c_uncertainty_pct"};
        if (tool::is_by_density(gas.method))
            return add(
                entry, instruments_.rho_c_pct,
                [this](double h) {
                    Point moved = point_;
                    std::get<Gas>(moved.medium).rho_c *= 1.0 + h;
                    return at_state(moved, reading_.t_C, reading_.p_Pa);
                },
                relative_step);
        const bool follows = gas.method == tool::aga8;
        const double heat = follows ? heat_by_density(library_, gas, medium_.rho_c) : 0.0;
        if (follows && heat == 0.0) note("the heat of combustion counts as independent of the density");
        add(entry, instruments_.rho_c_pct, changed([&, heat](Properties& m, double factor) {
                scale_dry(m, gas.vapour_kgm3, factor);
                m.rho_c *= factor;
                if (heat > 0.0) m.energy_MJ_m3 *= heat_by_density(library_, gas, m.rho_c) / heat;
            }),
            relative_step);
    }

    void heat(Entry entry) {
        entry.sensitivity.back() = at_.back() != 0.0 ? 1.0 : 0.0;
        if (instruments_.heat_pct) entry.standing = Standing::stated;
        put(std::move(entry), instruments_.heat_pct);
    }

    void density() {
        add({.key = "rho",
             .name = "density",
             .unit = "kg/m3",
             .value = medium_.rho,
             .source = "rho_uncertainty_pct"},
            instruments_.rho_pct, changed([](Properties& m, double factor) { m.rho *= factor; }),
            relative_step);
    }

    void of_medium(const HeatCarrier&) {
        density();
        heat({.key = "h",
              .name = "enthalpy",
              .unit = "kJ/kg",
              .value = medium_.h_kJ_kg,
              .source = "h_uncertainty_pct"});
    }

    void of_medium(const GivenMedium& given) {
        density();
        if (given.rho_c)
            add({.key = "rho_c",
                 .name = "density at standard conditions",
                 .unit = "kg/m3",
                 .value = *given.rho_c,
                 .source = "rho_c_uncertainty_pct"},
                instruments_.rho_c_pct, changed([](Properties& m, double factor) { m.rho_c *= factor; }),
                relative_step);
    }

    const host::Library& library_;
    Point point_;
    const Instruments& instruments_;
    Reading reading_;
    Properties medium_{};
    Flows at_{};
    Budget out_{};
};

}  // namespace

Budget budget_of(const host::Library& library, const Point& point, const Instruments& instruments,
                 const Reading& reading) {
    return Builder(library, point, instruments, reading).build();
}

}  // namespace kalorfix::metering
