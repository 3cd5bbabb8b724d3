// The residual part of IAPWS-95 once more, as printed: term by term, with the general power function, in long
// double. Slow and plain; the derivatives are those of the release, table 5.
#pragma once

#include <cmath>

#include "props/water/iapws95_tables.h"

namespace reference {

using Real = long double;

inline Real residual(Real delta, Real tau) {
    namespace w = kalorfix::water;
    Real sum = 0.0L;
    for (const w::PowerTerm& k : w::power_terms) {
        const Real decay = k.c == 0 ? 1.0L : std::exp(-std::pow(delta, static_cast<Real>(k.c)));
        sum += static_cast<Real>(k.n) * std::pow(delta, static_cast<Real>(k.d)) *
               std::pow(tau, static_cast<Real>(k.t)) * decay;
    }
    for (const w::GaussianTerm& k : w::gaussian_terms)
        sum += static_cast<Real>(k.n) * delta * delta * delta * std::pow(tau, static_cast<Real>(k.t)) *
               std::exp(-static_cast<Real>(w::gaussian_alpha) * (delta - 1) * (delta - 1) -
                        static_cast<Real>(k.beta) * std::pow(tau - static_cast<Real>(k.gamma), 2.0L));
    const Real y = (delta - 1) * (delta - 1);
    const Real theta = (1 - tau) + static_cast<Real>(w::nonanalytic_A) *
                                       std::pow(y, 1 / (2 * static_cast<Real>(w::nonanalytic_beta)));
    const Real Delta =
        theta * theta + static_cast<Real>(w::nonanalytic_B) * std::pow(y, static_cast<Real>(w::nonanalytic_a));
    for (const w::NonanalyticTerm& k : w::nonanalytic_terms)
        sum += static_cast<Real>(k.n) * std::pow(Delta, static_cast<Real>(k.b)) * delta *
               std::exp(-static_cast<Real>(k.C) * y - static_cast<Real>(k.D) * (tau - 1) * (tau - 1));
    return sum;
}

// First derivative of any function, to about the square of the machine precision's cube root, by central
// differences extrapolated twice.
template <class Function>
Real derivative(Function&& f, Real x, Real step) {
    const auto central = [&](Real h) { return (f(x + h) - f(x - h)) / (2 * h); };
    const Real a = central(step), b = central(step / 2), c = central(step / 4);
    const Real ab = b + (b - a) / 3, bc = c + (c - b) / 3;
    return bc + (bc - ab) / 15;
}

}  // namespace reference
