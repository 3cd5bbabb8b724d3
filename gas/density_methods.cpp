// The exported methods by density, NX19 mod. and GERG-91 mod., in two variants: from density and contents as given, and
// from those of the working composition.
#include <cmath>

#include "gas/gerg91.h"
#include "gas/nx19.h"
#include "gas/working_state.h"
#include "kalorfix_gas.h"
#include "runtime/float_environment.h"

namespace gas = kalorfix::gas;
using kalorfix::FloatEnvironment;

namespace {

using Method = double (*)(double, double, const gas::DensityGas&, gas::CubeRoot);

bool usable(float coefficient) { return coefficient > 0.0F && std::isfinite(coefficient); }

float as_given(Method method, float T_K, float dp_kPa, float p_MPa, float N2_pct, float CO2_pct, float rho_c,
               short& status) {
    const FloatEnvironment guard;
    P = p_MPa;
    DeltaP = dp_kPa;
    T = T_K;
    Xa = N2_pct / 100.0F;
    Xy = CO2_pct / 100.0F;
    Roc = rho_c;
    status = 0;
    if (!gas::state_accepted(T_K, dp_kPa, p_MPa)) {
        status = 1;
        return 0.0F;
    }
    const gas::DensityGas g{static_cast<double>(Roc), static_cast<double>(Xa), static_cast<double>(Xy)};
    K = static_cast<float>(
        method(static_cast<double>(T_K), static_cast<double>(p_MPa), g, gas::CubeRoot::real));
    if (!usable(K)) {
        K = 0.0F;
        status = 1;
    }
    return K;
}

float of_composition(Method method, float T_K, float dp_kPa, float p_MPa, short& status) {
    const FloatEnvironment guard;
    VNIC_FLAG = 0;
    P = p_MPa;
    DeltaP = dp_kPa;
    T = T_K;
    status = 0;
    if (!gas::state_accepted(T_K, dp_kPa, p_MPa)) {
        status = 1;
        return 0.0F;
    }
    const gas::DensityGas g{static_cast<double>(Roc), static_cast<double>(Xi[gas::nitrogen]),
                            static_cast<double>(Xi[gas::carbon_dioxide])};
    K = static_cast<float>(
        method(static_cast<double>(T_K), static_cast<double>(p_MPa), g, gas::CubeRoot::power));
    if (!usable(K)) status = 1;
    return K;
}

}  // namespace

float NF1_1(float T_K, float dp_kPa, float p_MPa, float N2_pct, float CO2_pct, float rho_c, short& status) {
    return as_given(gas::nx19, T_K, dp_kPa, p_MPa, N2_pct, CO2_pct, rho_c, status);
}

float NF1_2(float T_K, float dp_kPa, float p_MPa, float N2_pct, float CO2_pct, float rho_c, short& status) {
    return as_given(gas::gerg91, T_K, dp_kPa, p_MPa, N2_pct, CO2_pct, rho_c, status);
}

float PF3_1(float T_K, float dp_kPa, float p_MPa, short& status) {
    return of_composition(gas::nx19, T_K, dp_kPa, p_MPa, status);
}

float PF3_2(float T_K, float dp_kPa, float p_MPa, short& status) {
    return of_composition(gas::gerg91, T_K, dp_kPa, p_MPa, status);
}
