// Gas channel: the properties at working conditions.
#include "gas/composition.h"
#include "kalorfix.h"
#include "kalorfix_gas.h"
#include "props/gas_by_density.h"
#include "props/heat_of_combustion.h"
#include "props/water/saturation.h"
#include "props/water/water.h"

namespace gas = kalorfix::gas;
namespace water = kalorfix::water;

namespace {

constexpr double MPa_per_Pa = 1e-6;
constexpr double uPas_per_Pas = 1e6;
constexpr double Pas_per_uPas = 1e-6;
constexpr short first_composition_method = 3;
// Standard temperature over standard pressure, K/MPa.
constexpr double standard_ratio = 2893.1655563779914;

// Density of water vapour at the gas pressure, kg/m3: saturated where the gas is colder than the saturation temperature, the
// single phase there otherwise. False outside the range of the water properties.
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

}  // namespace

char cGas2005::tf_Param(char unit, char tempBasis, double roVap, double& ro_out, double& mu_out,
                        double& kappa_out, double& hLow, double& hHigh) {
    const bool fresh = valid != 0;
    if (fresh) {
        valid = 0;
        rho_w = 0.0;
        Ro_vap = roVap;
        const double p_MPa = p * MPa_per_Pa;
        gas::HeatOfCombustion heat{};
        if (Method < first_composition_method) {
            mu = static_cast<double>(NF3()) * Pas_per_uPas;
            kappa = static_cast<double>(NF4());
            heat = gas::heat_of_combustion(Ro_c, Xi_in[gas::nitrogen], Xi_in[gas::carbon_dioxide]);
        } else {
            mu = static_cast<double>(PF5(0)) * Pas_per_uPas;
            kappa = static_cast<double>(PF6());
            const unsigned row = static_cast<unsigned char>(unit) + 2U * static_cast<unsigned char>(tempBasis);
            heat = gas::heat_of_combustion(row, Xi_in);
        }
        H_low = heat.lower;
        H_high = heat.higher;

        double vapour = 1.0;
        if (Ro_vap > 0.0 && !vapour_density(T, p_MPa, vapour)) return 0;
        // The dry gas stands under its partial pressure, and the vapour adds its own mass.
        const double share = Ro_vap / vapour;
        rho_w = Ro_c * standard_ratio * (p_MPa - share * p_MPa) / (T * K_c) + vapour * share;
        valid = 1;
    }
    ro_out = rho_w;
    mu_out = mu * uPas_per_Pas;
    kappa_out = kappa;
    hLow = H_low;
    hHigh = H_high;
    return fresh ? 1 : 0;
}
