#include "props/water/ideal.h"

#include <cmath>

#include "props/water/iapws95_tables.h"

namespace kalorfix::water {

IdealGas ideal_gas(double T_K) {
    const double tau = critical_temperature_K / T_K;
    double cv = ideal_n3;
    double h = 1.0 + ideal_n3 + ideal_n2 * tau;
    for (const PlanckEinsteinTerm& term : ideal_terms) {
        const double x = term.gamma * tau;
        const double decay = std::exp(-x);
        const double inverse = 1.0 / (1.0 - decay);
        const double share = term.n * x * decay * inverse;
        h += share;
        cv += share * x * inverse;
    }
    return {gas_constant_kJ_kgK * cv, gas_constant_kJ_kgK * T_K * h};
}

}  // namespace kalorfix::water
