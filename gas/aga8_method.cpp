// The exported method AGA8-92DC.
#include <algorithm>
#include <numeric>

#include "gas/aga8.h"
#include "gas/aga8_density.h"
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

    for (std::size_t n = 0; n < mixed.count; ++n)
        for (std::size_t m = 0; m < mixed.count; ++m) {
            const std::size_t i = mixed.present[n];
            const std::size_t j = mixed.present[m];
            EIJM[i][j] = of.pair_energy[i][j];
            GIJM[i][j] = of.pair_orientation[i][j];
        }
    const aga8::Mixture mixture = aga8::mix(mixed, of);
    std::copy(mixture.virial_factors.begin(), mixture.virial_factors.end(), B);
    const aga8::Coefficients coefficients = aga8::term_coefficients(temperature, mixture, of);
    std::copy(coefficients.begin() + aga8::first_density_term, coefficients.end(),
              C + aga8::first_density_term);

    const aga8::DensityTerms density_terms(of.density, coefficients);
    const double linear = std::accumulate(coefficients.begin() + aga8::first_density_term,
                                          coefficients.begin() + aga8::virial_terms, 0.0);
    const aga8::Equation equation{static_cast<double>(gas::molar_gas_constant) * temperature,
                                  aga8::second_virial(temperature, of, mixture.virial_factors), linear,
                                  mixture.size_cubed, density_terms};
    const aga8::MolarDensity found = aga8::molar_density(equation, static_cast<double>(p_MPa));
    if (!found.converged) status = 1;
    K = static_cast<float>(aga8::compressibility(equation, found.rho_kmol_m3) /
                           gas::standard_compressibility(mixed));
    return K;
}
