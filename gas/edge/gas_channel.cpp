// SPDX-License-Identifier: MIT
// Gas channel: the state, that is temperature, pressure, composition and compressibility.
#include <algorithm>
#include <array>
#include <cstddef>
#include <tuple>

#include "gas/edge/methods.h"
#include "gas/edge/module_state.h"
#include "kalorfix_calculators.h"
#include "runtime/judged.h"
#include "runtime/units.h"

namespace gas = kalorfix::gas;
namespace edge = kalorfix::gas::edge;
namespace units = kalorfix::units;

namespace {

constexpr double highest_accepted_K = 0.9999;

using Values = std::array<double, gas::component_count>;

bool within_window(double T_K, double p_MPa) {
    return 250.0 < T_K && T_K < 340.0 && 0.001 < p_MPa && p_MPa < 30.0;
}

bool takes_density(short method) { return method == KALORFIX_NX19 || method == KALORFIX_GERG91; }

// A NaN is neither below nor above: it is left to the method.
bool any_outside(const Values& x, double upper) {
    return std::any_of(x.begin(), x.end(), [upper](double value) { return value < 0.0 || value > upper; });
}

gas::Composition composition_of(const Values& x, bool volume_fractions) {
    gas::Fractions given;
    std::transform(x.begin(), x.end(), given.begin(), [](double value) { return static_cast<float>(value); });
    return volume_fractions ? edge::from_volume_fractions(given) : gas::from_mole_percent(given);
}

// K by density, nitrogen and carbon dioxide, mole per cent.
bool find_by_density(cGas2005& c, const edge::Query& query) {
    const double N2 = c.Xi_in[gas::nitrogen];
    const double CO2 = c.Xi_in[gas::carbon_dioxide];
    if (!(0.0 <= c.Ro_c && c.Ro_c <= 1.0 && 0.0 <= N2 && N2 <= 100.0 && 0.0 <= CO2 && CO2 <= 100.0))
        return false;
    c.K_c = edge::by_density(c.Method == KALORFIX_NX19 ? gas::nx19 : gas::gerg91, query, static_cast<float>(N2),
                             static_cast<float>(CO2), static_cast<float>(c.Ro_c));
    return edge::usable(c.K_c);
}

// K and density at standard conditions by the composition, which stays in the module state.
bool find_by_composition(cGas2005& c, const edge::Query& query, const gas::Composition& composition) {
    edge::store(composition);
    c.Ro_c = edge::standard_density(composition);
    c.K_c =
        c.Method == KALORFIX_AGA8_92DC ? edge::by_aga8(composition, query) : edge::by_vnic(composition, query);
    return edge::usable(c.K_c) && c.Ro_c > 0.0;  // without it there is no flow at standard conditions
}

}  // namespace

char cGas2005::Param_gs(double t_in, double p_meas, double rho_col, double h_col, short method, char fractions,
                        double x0, double x1, double x2, double x3, double x4, double x5, double x6, double x7,
                        double x8, double x9, double x10, double x11, double x12, double x13, double x14,
                        double rho_c_in, double& sum_out, double& K_out, double& rho_c_out) {
    const Values x{x0, x1, x2, x3, x4, x5, x6, x7, x8, x9, x10, x11, x12, x13, x14};
    Xi_sum = 0.0;
    K_c = 0.0;
    t = t_in;
    std::copy(x.begin(), x.end(), Xi_in);
    Method = method;
    Ro_c = rho_c_in;
    bool good = metering_class == KALORFIX_CLASS_0 || metering_class == KALORFIX_CLASS_1;
    if (good) {
        for (const double value : x) Xi_sum += value;
        p = p_meas + rho_col * (h_col * -units::standard_gravity);
        T = t_in + units::zero_celsius_K;
        const double p_MPa = p * units::MPa_per_Pa;
        const edge::Query query{static_cast<float>(T), 0.0F, static_cast<float>(p_MPa)};
        good = within_window(T, p_MPa);
        if (good && takes_density(method)) {
            good = find_by_density(*this, query);
        } else if (good) {
            if (any_outside(x, fractions == 0 ? 100.0 : 1.0)) return kalorfix::judged(*this, false);
            good = find_by_composition(*this, query, composition_of(x, fractions != 0));
        }
    }
    std::tie(sum_out, K_out, rho_c_out) = std::tie(Xi_sum, K_c, Ro_c);
    return kalorfix::judged(*this, good && K_c < highest_accepted_K && kalorfix::all_finite(Xi_sum, K_c, Ro_c));
}
