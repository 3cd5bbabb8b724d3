// SPDX-License-Identifier: MIT
// The residual part of IAPWS-95 once more, as printed: term by term, with the general power function, and its
// derivatives by carrying them through every operation. Slow and plain; nothing is collapsed or differenced.
#pragma once

#include <cmath>
#include <limits>

#include "props/water/iapws95_tables.h"

namespace reference {

/// Extended precision where the processor has it; on ARM it is double.
using Real = long double;

/// What the rounding of the reference itself may amount to where its terms cancel.
inline constexpr Real noise = 100 * std::numeric_limits<Real>::epsilon();

/// A function of (delta, tau) with its derivatives up to the second order.
struct Jet {
    Real f{}, d{}, t{}, dd{}, dt{}, tt{};
};

inline Jet operator+(const Jet& a, const Jet& b) {
    return {a.f + b.f, a.d + b.d, a.t + b.t, a.dd + b.dd, a.dt + b.dt, a.tt + b.tt};
}
inline Jet operator*(Real k, const Jet& a) { return {k * a.f, k * a.d, k * a.t, k * a.dd, k * a.dt, k * a.tt}; }
inline Jet operator*(const Jet& a, const Jet& b) {
    return {a.f * b.f,
            a.d * b.f + a.f * b.d,
            a.t * b.f + a.f * b.t,
            a.dd * b.f + 2 * a.d * b.d + a.f * b.dd,
            a.dt * b.f + a.d * b.t + a.t * b.d + a.f * b.dt,
            a.tt * b.f + 2 * a.t * b.t + a.f * b.tt};
}
inline Jet operator+(const Jet& a, Real k) { return a + Jet{k}; }

/// g(a), given g and its first two derivatives at a.
inline Jet chain(const Jet& a, Real g, Real g1, Real g2) {
    return {g,
            g1 * a.d,
            g1 * a.t,
            g1 * a.dd + g2 * a.d * a.d,
            g1 * a.dt + g2 * a.d * a.t,
            g1 * a.tt + g2 * a.t * a.t};
}
inline Jet exp(const Jet& a) {
    const Real e = std::exp(a.f);
    return chain(a, e, e, e);
}
inline Jet pow(const Jet& a, Real n) {
    // Squares at their zero, to powers above 1: flat to the second order.
    if (a.f == 0) return Jet{std::pow(a.f, n)};
    return chain(a, std::pow(a.f, n), n * std::pow(a.f, n - 1), n * (n - 1) * std::pow(a.f, n - 2));
}

inline Jet residual(Real delta_value, Real tau_value) {
    namespace w = kalorfix::water;
    const Jet delta{delta_value, 1, 0, 0, 0, 0};
    const Jet tau{tau_value, 0, 1, 0, 0, 0};
    Jet sum;
    for (const w::PowerTerm& k : w::power_terms) {
        const Jet term =
            static_cast<Real>(k.n) * pow(delta, static_cast<Real>(k.d)) * pow(tau, static_cast<Real>(k.t));
        sum = sum + (k.c == 0 ? term : term * exp(-1 * pow(delta, static_cast<Real>(k.c))));
    }
    const Jet y = (delta + -1) * (delta + -1);
    for (const w::GaussianTerm& k : w::gaussian_terms) {
        const Jet off = tau + -static_cast<Real>(k.gamma);
        sum =
            sum + static_cast<Real>(k.n) * (delta * delta * delta) * pow(tau, static_cast<Real>(k.t)) *
                      exp(-static_cast<Real>(w::gaussian_alpha) * y + -static_cast<Real>(k.beta) * (off * off));
    }
    const Jet theta = (-1 * tau + 1) + static_cast<Real>(w::nonanalytic_A) *
                                           pow(y, 1 / (2 * static_cast<Real>(w::nonanalytic_beta)));
    const Jet Delta =
        theta * theta + static_cast<Real>(w::nonanalytic_B) * pow(y, static_cast<Real>(w::nonanalytic_a));
    const Jet cooler = (tau + -1) * (tau + -1);
    for (const w::NonanalyticTerm& k : w::nonanalytic_terms)
        sum = sum + static_cast<Real>(k.n) * pow(Delta, static_cast<Real>(k.b)) * delta *
                        exp(-static_cast<Real>(k.C) * y + -static_cast<Real>(k.D) * cooler);
    return sum;
}

}  // namespace reference
