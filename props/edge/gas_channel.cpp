// SPDX-License-Identifier: MIT
// Gas channel: the properties at working conditions.
#include <tuple>

#include "gas/composition.h"
#include "gas/edge/gas_data.h"
#include "gas/edge/loaded_constants.h"
#include "kalorfix_calculators.h"
#include "kalorfix_gas.h"
#include "props/edge/gas_properties.h"
#include "props/gas_properties.h"
#include "runtime/judged.h"
#include "runtime/units.h"

namespace gas = kalorfix::gas;
namespace edge = kalorfix::gas::edge;
namespace units = kalorfix::units;
using kalorfix::judged;

namespace {

bool property_tables_loaded() {
    return edge::vnic_constants() && edge::table_loaded(Mi) && edge::table_loaded(L1ij) &&
           edge::table_loaded(B1ij);
}

// Viscosity, exponent and heats of combustion: from the composition after VNIC SMV, else from density, nitrogen and carbon dioxide.
void find_properties(cGas2005& c, bool by_composition, unsigned heat_row) {
    const float mu_uPas = by_composition ? edge::viscosity_by_composition() : edge::viscosity_by_density();
    c.mu = mu_uPas * units::Pas_per_uPas;
    c.kappa =
        by_composition ? edge::isentropic_exponent_by_composition() : edge::isentropic_exponent_by_density();
    const gas::HeatOfCombustion heat =
        by_composition ? gas::heat_of_combustion(heat_row, c.Xi_in)
                       : gas::heat_of_combustion(c.Ro_c, c.Xi_in[gas::nitrogen], c.Xi_in[gas::carbon_dioxide]);
    c.H_low = heat.lower;
    c.H_high = heat.higher;
}

}  // namespace

char cGas2005::tf_Param(char unit, char tempBasis, double roVap, double& ro_out, double& mu_out,
                        double& kappa_out, double& hLow, double& hHigh) {
    const bool by_composition = Method >= KALORFIX_VNIC_SMV;
    const bool fresh = valid != 0 && T != 0.0 && (!by_composition || property_tables_loaded());
    judged(*this, false);
    if (fresh) {
        rho_w = 0.0;
        Ro_vap = roVap;
        find_properties(*this, by_composition,
                        static_cast<unsigned char>(unit) + 2U * static_cast<unsigned char>(tempBasis));
        if (!gas::working_density({T, p * units::MPa_per_Pa, Ro_c, K_c, Ro_vap}, rho_w)) return 0;
    }
    mu_out = mu * units::uPas_per_Pas;
    std::tie(ro_out, kappa_out, hLow, hHigh) = std::tie(rho_w, kappa, H_low, H_high);
    return judged(*this, fresh && kalorfix::all_finite(rho_w, mu, kappa, H_low, H_high));
}
