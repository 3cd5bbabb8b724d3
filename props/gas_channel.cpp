// Gas channel: the properties at working conditions.
#include "gas/composition.h"
#include "gas/working_state.h"
#include "kalorfix.h"
#include "kalorfix_gas.h"
#include "props/gas_by_density.h"
#include "props/heat_of_combustion.h"
#include "props/water/saturation.h"
#include "props/water/water.h"
#include "runtime/judged.h"

namespace gas = kalorfix::gas;
namespace water = kalorfix::water;
using kalorfix::all_finite;
using kalorfix::judged;

namespace {

constexpr double MPa_per_Pa = 1e-6;
constexpr double uPas_per_Pas = 1e6;
constexpr double Pas_per_uPas = 1e-6;
constexpr short first_composition_method = 3;
// Standard temperature over standard pressure, K/MPa.
constexpr double standard_ratio = 2893.1655563779914;

// Density of the water vapour in a gas at its pressure, kg/m3: saturated where the gas is colder than the saturation temperature,
// the single phase there otherwise. False outside the range of the water properties.
bool vapour_density(double T_K, double p_MPa, double& density) {
    const double T_sat_K = water::saturation_temperature_K(p_MPa, water::SaturationTemperatureSet::humid_gas);
    // Through degrees Celsius, as the water routine is asked: the sum may differ in its last bit.
    const double asked_K = T_sat_K - water::zero_celsius_K + water::zero_celsius_K;
    water::Properties saturated{};
    water::Properties single{};
    if (!water::pressure_in_range(p_MPa) || !water::saturated_vapour(asked_K, saturated) ||
        !water::single_phase(asked_K, p_MPa, single))
        return false;
    density = T_sat_K >= T_K ? saturated.rho_kgm3 : single.rho_kgm3;
    return true;
}

// Density of the gas with its vapour. False where the vapour is none of the gas's pressure, or more than all of the gas.
bool working_density(const cGas2005& c, double p_MPa, double& density) {
    double vapour = 1.0;
    double share = 0.0;
    if (!(c.Ro_vap <= 0.0)) {
        if (!vapour_density(c.T, p_MPa, vapour)) return false;
        share = c.Ro_vap / vapour;
        if (!(share <= 1.0)) return false;
    }
    // The dry gas stands under its partial pressure, and the vapour adds its own mass.
    density = c.Ro_c * standard_ratio * (p_MPa - share * p_MPa) / (c.T * c.K_c) + vapour * share;
    return true;
}

bool property_tables_loaded() {
    return gas::vnic_tables_loaded() && gas::molar_mass_table_loaded() && gas::heat_capacity_tables_loaded();
}

}  // namespace

char cGas2005::tf_Param(char unit, char tempBasis, double roVap, double& ro_out, double& mu_out,
                        double& kappa_out, double& hLow, double& hHigh) {
    const bool by_composition = Method >= first_composition_method;
    const bool fresh = valid != 0 && T != 0.0 && (!by_composition || property_tables_loaded());
    judged(*this, false);
    if (fresh) {
        rho_w = 0.0;
        Ro_vap = roVap;
        gas::HeatOfCombustion heat{};
        if (by_composition) {
            mu = static_cast<double>(PF5(0)) * Pas_per_uPas;
            kappa = static_cast<double>(PF6());
            const unsigned row = static_cast<unsigned char>(unit) + 2U * static_cast<unsigned char>(tempBasis);
            heat = gas::heat_of_combustion(row, Xi_in);
        } else {
            mu = static_cast<double>(NF3()) * Pas_per_uPas;
            kappa = static_cast<double>(NF4());
            heat = gas::heat_of_combustion(Ro_c, Xi_in[gas::nitrogen], Xi_in[gas::carbon_dioxide]);
        }
        H_low = heat.lower;
        H_high = heat.higher;
        if (!working_density(*this, p * MPa_per_Pa, rho_w)) return 0;
    }
    ro_out = rho_w;
    mu_out = mu * uPas_per_Pas;
    kappa_out = kappa;
    hLow = H_low;
    hHigh = H_high;
    return judged(*this, fresh && all_finite(rho_w, mu, kappa, H_low, H_high));
}
