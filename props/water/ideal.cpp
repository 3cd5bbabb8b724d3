#include "props/water/ideal.h"

#include "props/water/iapws95_tables.h"
#include "runtime/exponential.h"

namespace kalorfix::water {

IdealGas ideal_gas(double T_K) {
    const double tau = critical_temperature_K / T_K;
    std::array<double, ideal_terms.size()> decay;
    for (std::size_t k = 0; k < decay.size(); ++k) decay[k] = -ideal_terms[k].gamma * tau;
    exponentials(decay);
    double cv = ideal_n3;
    double h = 1.0 + ideal_n3 + ideal_n2 * tau;
    for (std::size_t k = 0; k < decay.size(); ++k) {
        const double x = ideal_terms[k].gamma * tau;
        const double inverse = 1.0 / (1.0 - decay[k]);
        const double share = ideal_terms[k].n * x * decay[k] * inverse;
        h += share;
        cv += share * x * inverse;
    }
    return {gas_constant_kJ_kgK * cv, gas_constant_kJ_kgK * T_K * h};
}

}  // namespace kalorfix::water
