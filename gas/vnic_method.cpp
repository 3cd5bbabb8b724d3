// The exported method VNIC SMV and the working density that follows from it.
#include <algorithm>
#include <cmath>

#include "gas/loaded_constants.h"
#include "gas/working_state.h"
#include "kalorfix_gas.h"
#include "runtime/float_environment.h"

namespace gas = kalorfix::gas;
namespace vnic = kalorfix::gas::vnic;

float PF3_4(float T_K, float dp_kPa, float p_MPa, short& status) {
    const kalorfix::FloatEnvironment guard;
    VNIC_FLAG = 1;
    status = 0;
    FP = 0.0F;
    Z = 0.0F;
    DeltaP = dp_kPa;
    T = T_K;
    P = p_MPa;
    if (!gas::state_accepted(T_K, dp_kPa, p_MPa) || !gas::vnic_tables_loaded()) {
        status = 1;
        return 0.0F;
    }
    const gas::Composition mixed = gas::working_composition();
    const vnic::Fractions folded = vnic::fold(mixed.x);
    std::copy(folded.begin(), folded.end(), Tmp_Xi);

    const vnic::PseudoCritical critical =
        vnic::pseudo_critical(folded, gas::vnic_constants(), static_cast<double>(gas::molar_gas_constant));
    FP = critical.acentric;
    Tnk = critical.temperature;
    Pnk = critical.pressure;
    Tn = T_K / Tnk;
    vnic::equation_coefficients(Akl, Bkl, critical.acentric, Ckl);

    const vnic::Isotherm isotherm(Ckl, static_cast<double>(Tn));
    const double RT = static_cast<double>(gas::molar_gas_constant) * static_cast<double>(T_K);
    const double target = 1000.0 * static_cast<double>(p_MPa) / (RT * critical.density);
    const gas::GasRoot root =
        gas::GasRootSearch(isotherm, target)
            .from(gas::start_density(target, static_cast<double>(p_MPa), static_cast<double>(Pnk)));
    const double compressibility = target / root.x;
    K = static_cast<float>(compressibility / gas::standard_compressibility(mixed));
    if (!(root.x > 0.0 && K > 0.0F && std::isfinite(K))) {
        K = Rom = Ron = 0.0F;
        status = 1;
        return K;
    }
    Rom = static_cast<float>(root.x * critical.density);
    Ron = static_cast<float>(root.x);
    Z = static_cast<float>(compressibility);
    return K;
}

float PF4_1() {
    const kalorfix::FloatEnvironment guard;
    Plotnomer = 0;
    if (VNIC_FLAG == 0) {
        if (!gas::vnic_tables_loaded()) return Ro = 0.0F;
        short ignored = 0;
        PF3_4(T, DeltaP, P, ignored);
    }
    return Ro = Rom * SM;
}
