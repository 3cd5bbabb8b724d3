// SPDX-License-Identifier: MIT
#include "tools/metering/medium.h"

#include <tuple>

#include "runtime/units.h"
#include "tools/metering/refusal.h"
#include "tools/names.h"
#include "tools/units.h"

namespace kalorfix::metering {
namespace {

using Contents = std::array<double, 15>;

// Mole per cent of nitrogen and carbon dioxide for the next AGA8-92DC state, by a spare calculator.
void leave_contents(const host::Library& library, const Gas& gas) {
    constexpr double any_t_C = 20.0, any_p_Pa = 1e6, any_rho_c = 0.7;
    Contents x{};
    x[tool::nitrogen] = gas.x[tool::nitrogen];
    x[tool::carbon_dioxide] = gas.x[tool::carbon_dioxide];
    if (gas.volume_fractions) {
        std::apply([&](auto... one) { library->PF1_2(static_cast<float>(one)...); }, gas.x);
        for (const std::size_t i : {tool::nitrogen, tool::carbon_dioxide})
            x[i] = 100.0 * static_cast<double>(library->gas.Xi[i]);
    }
    const host::Owned<cGas2005> spare = library.gas_calculator();
    spare->metering_class = 1;
    double sum = 0, K = 0, rho_c = 0;
    const auto param_gs = [&](auto... one) {
        library->Param_gs(spare.get(), any_t_C, any_p_Pa, 0.0, 0.0, KALORFIX_GERG91, 0, one..., any_rho_c, sum,
                          K, rho_c);
    };
    std::apply(param_gs, x);
}

// MJ in a cubic metre at standard conditions, as all methods but VNIC SMV give it.
double energy_MJ_m3(const Gas& gas, const Properties& out) {
    const double heat = gas.by_higher_heat ? out.higher_heat : out.lower_heat;
    return gas.method == tool::vnic ? tool::heat_MJ_m3(heat, gas.heat_unit, gas.heat_basis) : heat;
}

void find(const host::Library& library, const Point& point, const Gas& gas, double p_Pa, Properties& out) {
    if (gas.method == tool::aga8) leave_contents(library, gas);
    const host::Owned<cGas2005> c = library.gas_calculator();
    c->metering_class = 1;
    const auto param_gs = [&](auto... x) {
        return library->Param_gs(c.get(), out.t_C, p_Pa, point.column.density_kgm3, point.column.height_m,
                                 gas.method, gas.volume_fractions ? 1 : 0, x..., gas.rho_c, out.sum, out.K,
                                 out.rho_c);
    };
    const bool found = std::apply(param_gs, gas.x) == 1;
    if (!found) {
        out.refused = state_refusal(point, out);
    } else if (library->gas_tf_Param(c.get(), gas.heat_unit, gas.heat_basis, gas.vapour_kgm3, out.rho,
                                     out.mu_uPas, out.kappa, out.lower_heat, out.higher_heat) != 1) {
        out.refused = properties_refusal(library, point, out);
    }
    // Heats of combustion are made for mole per cent: of fractions VNIC SMV gives a hundredth, and AGA8-92DC takes nitrogen and
    // carbon dioxide for almost none.
    if (gas.volume_fractions) {
        const double factor = gas.method == tool::vnic ? 100.0 : 0.0;
        out.lower_heat *= factor;
        out.higher_heat *= factor;
    }
    out.energy_MJ_m3 = energy_MJ_m3(gas, out);
}

void find(const host::Library& library, const Point& point, const HeatCarrier& heat, double p_Pa,
          Properties& out) {
    const host::Owned<cTeplo2005> c = library.heat_calculator();
    c->metering_class = 1;
    if (library->Param_tn(c.get(), out.t_C, p_Pa, point.column.height_m, point.column.density_kgm3,
                          heat.tolerance_Pa, heat.tolerance_K, out.phase, out.ps_MPa, out.ts_C) != 1) {
        out.refused = state_refusal(point, out);
        return;
    }
    if (heat.phase) out.phase = static_cast<short>(*heat.phase);
    if (library->tf_Param(c.get(), heat.phase ? 1 : 0, heat.phase.value_or(0), heat.x, out.rho, out.mu_uPas,
                          out.h_kJ_kg, out.kappa) != 1)
        out.refused = properties_refusal(library, point, out);
    out.p_Pa = c->p;
}

void find(const host::Library&, const Point&, const GivenMedium& given, double, Properties& out) {
    out.rho = given.rho_kgm3;
    out.mu_uPas = given.mu_uPas;
    out.kappa = given.kappa.value_or(0.0);
    out.rho_c = given.rho_c.value_or(0.0);
    if (!given.kappa) out.phase = KALORFIX_WATER;
    if (!(out.p_Pa > 0.0)) out.refused = "the absolute pressure is not above 0";
}

}  // namespace

Properties properties_at(const host::Library& library, const Point& point, double t_C, double p_measured_Pa) {
    Properties out;
    out.t_C = t_C;
    out.p_Pa = p_measured_Pa - units::standard_gravity * point.column.density_kgm3 * point.column.height_m;
    std::visit([&](const auto& medium) { find(library, point, medium, p_measured_Pa, out); }, point.medium);
    return out;
}

}  // namespace kalorfix::metering
