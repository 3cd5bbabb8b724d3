// The exported method AGA8-92DC.
#include <algorithm>
#include <cmath>

#include "gas/aga8_isotherm.h"
#include "gas/loaded_constants.h"
#include "gas/working_state.h"
#include "kalorfix_gas.h"
#include "runtime/float_environment.h"

namespace gas = kalorfix::gas;
namespace aga8 = kalorfix::gas::aga8;

float PF3_3(float T_K, float dp_kPa, float p_MPa, short& status) {
    const kalorfix::FloatEnvironment guard;
    VNIC_FLAG = 0;
    status = 0;
    DeltaP = dp_kPa;
    T = T_K;
    P = p_MPa;
    const gas::Composition mixed = gas::working_composition();
    if (!gas::state_accepted(T_K, dp_kPa, p_MPa) || !gas::aga8_tables_loaded()) {
        status = 1;
        return 0.0F;
    }
    if (mixed.count == 0) {
        K = 0.0F;
        status = 1;
        return 0.0F;
    }
    const aga8::Constants& of = gas::aga8_constants();
    const auto temperature = static_cast<double>(T_K);

    for (std::size_t n = 0; n < mixed.count; ++n) {
        const std::size_t i = mixed.present[n];
        std::copy(std::begin(of.pair_energy[i]), std::end(of.pair_energy[i]), EIJM[i]);
        std::copy(std::begin(of.pair_orientation[i]), std::end(of.pair_orientation[i]), GIJM[i]);
    }
    const aga8::Mixture mixture = aga8::mix(mixed, of);
    std::copy(mixture.virial_factors.begin(), mixture.virial_factors.end(), B);
    const aga8::Coefficients coefficients = aga8::term_coefficients(temperature, mixture, of);
    std::copy(coefficients.begin() + aga8::first_density_term, coefficients.end(),
              C + aga8::first_density_term);

    const aga8::Isotherm isotherm = aga8::isotherm(temperature, mixture, coefficients, of);
    const double RT = static_cast<double>(gas::molar_gas_constant) * temperature;
    const double target = 1000.0 * static_cast<double>(p_MPa) / RT * mixture.size_cubed;
    const gas::GasRoot root =
        gas::GasRootSearch(isotherm, target)
            .from(gas::start_density(target, static_cast<double>(p_MPa), aga8::Isotherm::start_pressure_MPa));
    K = static_cast<float>(target / root.x / gas::standard_compressibility(mixed));
    if (!(root.x > 0.0 && K > 0.0F && std::isfinite(K))) {
        K = 0.0F;
        status = 1;
    }
    return K;
}
