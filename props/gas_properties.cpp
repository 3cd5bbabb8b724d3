// The exported property routines of gas: they read the module state, call the formulas and store the result.
#include <algorithm>

#include "gas/composition.h"
#include "gas/working_state.h"
#include "kalorfix_gas.h"
#include "props/gas_by_composition.h"
#include "props/gas_by_density.h"
#include "runtime/float_environment.h"

namespace gas = kalorfix::gas;
using kalorfix::FloatEnvironment;

namespace {

gas::DensityGas gas_by_density() {
    return {static_cast<double>(Roc), static_cast<double>(Xa), static_cast<double>(Xy)};
}

float molar_mass() {
    double sum = 0.0;
    const int listed = std::clamp(static_cast<int>(NumXi), 0, static_cast<int>(gas::component_count));
    for (int n = 0; n < listed; ++n)
        if (const int i = Index[n]; i >= 0 && i < static_cast<int>(gas::component_count))
            sum += static_cast<double>(Xi[i]) * static_cast<double>(Mi[i]);
    return static_cast<float>(sum);
}

}  // namespace

float NF2_1() {
    const FloatEnvironment guard;
    Plotnomer = 0;
    const double standard = static_cast<double>(P) * gas::standard_temperature_K * static_cast<double>(Roc);
    const double working = static_cast<double>(T) * gas::standard_pressure_MPa * static_cast<double>(K);
    return Ro = static_cast<float>(standard / working);
}

float NF2_2(float rho_meter, float T_meter_K, float p_meter_MPa) {
    const FloatEnvironment guard;
    Plotnomer = 1;
    const auto p = static_cast<double>(P);
    const auto t = static_cast<double>(T);
    return Ro = static_cast<float>(static_cast<double>(rho_meter) /
                                   (1.0 - (p - static_cast<double>(p_meter_MPa)) / p) *
                                   (1.0 - (t - static_cast<double>(T_meter_K)) / t));
}

float NF3() {
    const FloatEnvironment guard;
    return Mu = static_cast<float>(
               gas::viscosity(static_cast<double>(T), static_cast<double>(P), gas_by_density()));
}

float NF4() {
    const FloatEnvironment guard;
    return kk = static_cast<float>(
               gas::isentropic_exponent(static_cast<double>(T), static_cast<double>(P), gas_by_density()));
}

float NF6() {
    const FloatEnvironment guard;
    return qoi = static_cast<float>(static_cast<double>(qmi) * 1000.0 / static_cast<double>(Ro));
}

float NF7() {
    const FloatEnvironment guard;
    return qci = static_cast<float>(static_cast<double>(qmi) * 1000.0 / static_cast<double>(Roc));
}

float PF5(unsigned long) {
    const FloatEnvironment guard;
    const bool prepared = VNIC_FLAG != 0;
    if (!gas::molar_mass_table_loaded() || !(prepared || gas::vnic_tables_loaded())) return Mu = 0.0F;
    if (!prepared) {
        short ignored = 0;
        PF3_4(T, DeltaP, P, ignored);
    }
    SM = molar_mass();
    return Mu = gas::viscosity({Tn, Ron, Tnk, Pnk, FP}, SM);
}

float PF6() {
    const FloatEnvironment guard;
    if (!gas::heat_capacity_tables_loaded()) return kk = 0.0F;
    const float ideal_cp = gas::ideal_heat_capacity(std::to_array(Tmp_Xi), T, L1ij, B1ij);
    return kk = gas::isentropic_exponent(Ckl, Tn, Ron, Z, ideal_cp);
}
