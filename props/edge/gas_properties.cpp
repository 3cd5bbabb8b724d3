// SPDX-License-Identifier: MIT
// The properties of gas as they are handed out: by the exported routines, from the module state and left in it, and by a gas channel
// at working conditions.
#include "props/gas_properties.h"

#include <tuple>

#include "gas/edge/gas_data.h"
#include "gas/edge/methods.h"
#include "gas/edge/module_state.h"
#include "kalorfix_calculators.h"
#include "kalorfix_gas.h"
#include "runtime/float_environment.h"
#include "runtime/judged.h"
#include "runtime/units.h"

namespace gas = kalorfix::gas;
namespace edge = kalorfix::gas::edge;
namespace units = kalorfix::units;
using kalorfix::guarded;

namespace {

// Viscosity, uPa s, and isentropic exponent from density and contents.
float viscosity_by_density() { return Mu = static_cast<float>(gas::viscosity(T, P, {Roc, Xa, Xy})); }

float isentropic_exponent_by_density() {
    return kk = static_cast<float>(gas::isentropic_exponent(T, P, {Roc, Xa, Xy}));
}

// The same from the composition; 0 while a table is missing. The viscosity runs VNIC SMV first where another method was the last.
float viscosity_by_composition() {
    const bool prepared = VNIC_FLAG != 0;
    if (!edge::table_loaded(Mi) || !(prepared || edge::vnic_constants())) return Mu = 0.0F;
    const gas::Composition composition = edge::working_composition();
    if (!prepared) static_cast<void>(edge::by_vnic(composition, {T, DeltaP, P}));
    SM = gas::molar_mass(composition, Mi);
    return Mu = gas::viscosity({Tn, Ron, Tnk, Pnk, FP}, SM);
}

float isentropic_exponent_by_composition() {
    if (!edge::table_loaded(L1ij) || !edge::table_loaded(B1ij)) return kk = 0.0F;
    const float ideal_cp = gas::ideal_heat_capacity(std::to_array(Tmp_Xi), T, L1ij, B1ij);
    return kk = gas::isentropic_exponent(Ckl, Tn, Ron, Z, ideal_cp);
}

bool property_tables_loaded() {
    return edge::vnic_constants() && edge::table_loaded(Mi) && edge::table_loaded(L1ij) &&
           edge::table_loaded(B1ij);
}

// Viscosity, exponent and heats of combustion: from the composition after VNIC SMV, else from density, nitrogen and carbon dioxide.
void find_properties(cGas2005& c, bool by_composition, unsigned heat_row) {
    const float mu_uPas = by_composition ? viscosity_by_composition() : viscosity_by_density();
    c.mu = mu_uPas * units::Pas_per_uPas;
    c.kappa = by_composition ? isentropic_exponent_by_composition() : isentropic_exponent_by_density();
    const gas::HeatOfCombustion heat =
        by_composition ? gas::heat_of_combustion(heat_row, c.Xi_in)
                       : gas::heat_of_combustion(c.Ro_c, c.Xi_in[gas::nitrogen], c.Xi_in[gas::carbon_dioxide]);
    c.H_low = heat.lower;
    c.H_high = heat.higher;
}

}  // namespace

float NF2_1() {
    const kalorfix::FloatEnvironment guard;
    Plotnomer = 0;
    const double standard = P * gas::standard_temperature_K * Roc;
    const double working = T * gas::standard_pressure_MPa * K;
    return Ro = static_cast<float>(standard / working);
}

float NF2_2(float rho_meter, float T_meter_K, float p_meter_MPa) {
    const kalorfix::FloatEnvironment guard;
    Plotnomer = 1;
    const double p = P;
    const double t = T;
    return Ro = static_cast<float>(rho_meter / (1.0 - (p - p_meter_MPa) / p) * (1.0 - (t - T_meter_K) / t));
}

float NF3() { return guarded(viscosity_by_density); }

float NF4() { return guarded(isentropic_exponent_by_density); }

float NF6() {
    return guarded([] { return qoi = static_cast<float>(qmi * units::kg_per_t / Ro); });
}

float NF7() {
    return guarded([] { return qci = static_cast<float>(qmi * units::kg_per_t / Roc); });
}

float PF5(unsigned long) { return guarded(viscosity_by_composition); }

float PF6() { return guarded(isentropic_exponent_by_composition); }

char cGas2005::tf_Param(char unit, char tempBasis, double roVap, double& ro_out, double& mu_out,
                        double& kappa_out, double& hLow, double& hHigh) {
    const bool by_composition = Method >= KALORFIX_VNIC_SMV;
    const bool fresh = valid != 0 && T != 0.0 && (!by_composition || property_tables_loaded());
    kalorfix::judged(*this, false);
    if (fresh) {
        rho_w = 0.0;
        Ro_vap = roVap;
        find_properties(*this, by_composition,
                        static_cast<unsigned char>(unit) + 2U * static_cast<unsigned char>(tempBasis));
        if (!gas::working_density({T, p * units::MPa_per_Pa, Ro_c, K_c, Ro_vap}, rho_w)) return 0;
    }
    mu_out = mu * units::uPas_per_Pas;
    std::tie(ro_out, kappa_out, hLow, hHigh) = std::tie(rho_w, kappa, H_low, H_high);
    return kalorfix::judged(*this, fresh && kalorfix::all_finite(rho_w, mu, kappa, H_low, H_high));
}
