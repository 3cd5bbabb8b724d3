#include "tools/station/sheet.h"

#include <fmt/format.h>

#include <cmath>

namespace kalorfix::tool::station {
namespace {

class Sheet {
public:
    Sheet(const Channel& channel, const Outcome& outcome) : c_(channel), o_(outcome) {}

    std::string print() {
        title();
        constants();
        measured();
        if (c_.is_gas()) gas();
        step("set-up", is_meter(c_.device) ? "constants accepted" : "pipeline constants accepted");
        constexpr std::pair<Step, void (Sheet::*)()> steps[] = {{Step::state, &Sheet::state},
                                                                {Step::properties, &Sheet::properties},
                                                                {Step::geometry, &Sheet::geometry},
                                                                {Step::flow, &Sheet::flow}};
        for (const auto& [reached, print_results] : steps) {
            if (!o_.passed(reached)) break;
            (this->*print_results)();
        }
        if (o_.reached != Step::done) step(step_name(o_.reached), "refused: " + o_.reason);
        return text_;
    }

private:
    void step(std::string_view name, std::string_view outcome) { text_ += sheet_step(name, outcome); }
    void row(std::string_view label, std::string_view value, std::string_view unit = {}) {
        text_ += sheet_row(label, value, unit);
    }
    // With so many decimals.
    void row(std::string_view label, float value, int decimals, std::string_view unit = {}) {
        row(label, fmt::format("{:.{}f}", value, decimals), unit);
    }

    [[nodiscard]] std::string_view medium() const {
        if (c_.is_gas())
            return is_by_density(c_.gas.method) ? "Natural gas by density" : "Natural gas by composition";
        constexpr std::array<std::string_view, phases.size()> carriers{"Water or steam", "Water",
                                                                       "Superheated steam", "Wet steam"};
        return carriers[static_cast<std::size_t>(&phase_of(o_.phase) - phases.data())];
    }

    void title() {
        text_ = fmt::format("{} channel {}: {}, {}\n", c_.is_gas() ? "Gas" : "Heat-carrier", c_.number,
                            medium(), devices[static_cast<std::size_t>(c_.device - 1)].title);
    }

    void constants() {
        if (is_meter(c_.device)) return;
        row("pipe at 20 degC", c_.D20_mm, 1, "mm");
        row("device at 20 degC", c_.d20_mm, 1, "mm");
        row(c_.by_material ? "material codes, pipe and device" : "expansion, pipe and device",
            fmt::format("{}, {}", c_.pipe_material, c_.device_material), c_.by_material ? "" : "1/degC");
        row("roughness of the pipe", c_.roughness_mm, 3, "mm");
        if (is_orifice(c_.device)) {
            row("initial radius of the edge", c_.edge_radius_mm, 3, "mm");
            row("interval between checks", c_.interval_years, 1, "years");
        }
        if (c_.device == configured_coefficient) row("flow coefficient", c_.alpha_eps, 6);
    }

    void measured() {
        if (c_.column_height_m != 0.0F) {
            row("liquid column", c_.column_height_m, 3, "m");
            row("density of the column", c_.column_density, 3, "kg/m3");
        }
        row("temperature", o_.input.t_C, 2, "degC");
        row("absolute pressure", o_.input.p_Pa / 1e6F, 4, "MPa");
        if (!is_meter(c_.device))
            row("differential pressure", o_.input.dp / 1e3F, 3, "kPa");
        else if (c_.device != external_flow)
            row("reading of the meter", o_.input.dp, 4, c_.device == meter_mass ? "t/h" : "m3/h");
    }

    void gas() {
        const Gas& gas = c_.gas;
        row("compressibility by", method_name(gas.method));
        if (gas.rho_c > 0.0F) row("density at standard conditions", gas.rho_c, 4, "kg/m3");
        for (std::size_t i = 0; i < components.size(); ++i)
            if (gas.x[i] != 0.0F)
                row(components[i].word, gas.x[i], gas.volume_fractions ? 6 : 4,
                    gas.volume_fractions ? "volume fraction" : "mol %");
        if (gas.vapour > 0.0F) row("water vapour", gas.vapour, 4, "kg/m3");
    }

    void state() {
        if (!c_.is_gas()) {
            step("state", phase_of(o_.phase).title);
            row("saturation pressure at t", std::isnan(o_.ps_MPa) ? "-" : fmt::format("{:.5f}", o_.ps_MPa),
                "MPa");
            row("saturation temperature at p", o_.ts_C, 3, "degC");
            return;
        }
        step("state", "computed");
        row("sum of the composition as given", o_.sum, 4, c_.gas.volume_fractions ? "" : "mol %");
        row("compressibility coefficient K", o_.K, 6);
        row("density at standard conditions", o_.rho_c, 5, "kg/m3");
    }

    void properties() {
        step("properties", "computed");
        row("density", o_.rho, 4, "kg/m3");
        row("dynamic viscosity", o_.mu_uPas, 3, "uPa s");
        row("isentropic exponent", fmt::format("{:#.6g}", o_.kappa));
        if (!c_.is_gas()) return row("specific enthalpy", o_.h_kJ_kg, 3, "kJ/kg");
        const std::string_view unit = heat_unit(c_.gas.method, c_.gas.heat_unit, c_.gas.heat_basis);
        row("lower heat of combustion", o_.lower_heat, 4, unit);
        row("higher heat of combustion", o_.higher_heat, 4, unit);
    }

    void geometry() {
        if (is_meter(c_.device)) return;
        step("geometry", "within the limits of the device");
        row("pipe at working temperature", o_.D_mm, 4, "mm");
        row("device at working temperature", o_.d_mm, 4, "mm");
        if (!is_standard()) return;
        row("diameter ratio", o_.beta, 6);
        row("velocity-of-approach factor", o_.E, 6);
        row("correction for edge bluntness", o_.K_p, 6);
    }

    void flow() {
        step("flow", is_meter(c_.device) ? "taken from the reading" : "solved");
        if (!is_meter(c_.device)) row("Reynolds number", fmt::format("{:.5e}", o_.Re));
        if (is_standard()) {
            row("discharge coefficient", o_.C, 6);
            row("correction for roughness", o_.K_sh, 6);
        }
        if (!is_meter(c_.device)) row("expansibility factor", o_.epsilon, 6);
        row("mass flow", o_.q[0], 4, "t/h");
        row("volume flow", o_.q[1], 3, "m3/h");
        if (c_.is_gas()) {
            row("volume flow at standard conditions", o_.q[2], 2, "m3/h");
            row(c_.gas.by_higher_heat ? "energy flow, higher heat" : "energy flow, lower heat", o_.q[3], 4,
                "GJ/h");
        } else {
            row("heat flow", o_.q[2], 4, "GJ/h");
            row("heat flow", o_.q[2] / 3.6F, 4, "MW");
        }
    }

    [[nodiscard]] bool is_standard() const { return c_.device <= static_cast<short>(standard_devices); }

    const Channel& c_;
    const Outcome& o_;
    std::string text_;
};

}  // namespace

std::string sheet_step(std::string_view name, std::string_view outcome) {
    return fmt::format("  {:<12}{}\n", name, outcome);
}

std::string sheet_row(std::string_view label, std::string_view value, std::string_view unit) {
    return fmt::format("    {:<34}{:>14}{}{}\n", label, value, unit.empty() ? "" : "  ", unit);
}

std::string sheet(const Channel& channel, const Outcome& outcome) { return Sheet(channel, outcome).print(); }

}  // namespace kalorfix::tool::station
