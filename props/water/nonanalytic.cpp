// SPDX-License-Identifier: MIT
// Terms 55 and 56 of the residual part of IAPWS-95.
#include <cmath>

#include "props/water/residual.h"
#include "runtime/cube_root.h"
#include "runtime/exponential.h"

namespace kalorfix::water {
namespace {

constexpr double square(double x) { return x * x; }

// Delta(delta, tau) with its derivatives, divided by Delta; common to both terms. The powers of (delta - 1)^2 are
// written so that nothing is divided by delta - 1.
struct Distance {
    double ln_Delta;
    double inverse;       // 1 / Delta
    double d, dd, t, dt;  // Delta_d / Delta and so on; Delta_tt is 2
};

// Gives false where Delta is zero: at the critical point itself the second derivatives do not exist.
bool distance(double delta, double tau, Distance& out) {
    constexpr double A = nonanalytic_A, B = nonanalytic_B, a = nonanalytic_a, beta = nonanalytic_beta;
    static_assert(a == 3.5 && beta == 0.3, "the powers below are written out for these exponents");
    constexpr double half_inverse_beta = 1.0 / (2.0 * beta);

    const double x = delta - 1.0;
    const double y = x * x;                             // (delta - 1)^2
    const double y_2_3 = square(square(cube_root(x)));  // y^(1/(2 beta) - 1)
    const double y_5_2 = y * y * std::fabs(x);          // y^(a - 1)
    const double theta = (1.0 - tau) + A * y * y_2_3;
    const double Delta = theta * theta + B * y * y_5_2;
    if (!(Delta > 0.0)) return false;

    const double slope = 2.0 * A * theta / beta * y_2_3 + 2.0 * B * a * y_5_2;  // Delta_d / (delta - 1)
    const double curve = slope + 4.0 * B * a * (a - 1.0) * y_5_2 + 2.0 * square(A / beta) * y * y_2_3 * y_2_3 +
                         4.0 * A * theta / beta * (half_inverse_beta - 1.0) * y_2_3;
    const double inverse = 1.0 / Delta;
    out = {std::log(Delta),        inverse,
           x * slope * inverse,    curve * inverse,
           -2.0 * theta * inverse, -2.0 * A / beta * x * y_2_3 * inverse};
    return true;
}

}  // namespace

// Adds the terms by the derivatives of l = ln(Delta^b psi).
void add_nonanalytic(double delta, double tau, double negligible, Helmholtz& sum) {
    const double x = delta - 1.0;
    const double s = tau - 1.0;
    Distance D{};
    bool known = false;
    for (const NonanalyticTerm& term : nonanalytic_terms) {
        const double exponent = nonanalytic_exponent(term, delta, tau);
        if (exponent > negligible) continue;
        if (!known && !distance(delta, tau, D)) return;
        known = true;

        const double F = term.n * delta * exponential(term.b * D.ln_Delta - exponent);
        const double l_d = delta * (term.b * D.d - 2.0 * term.C * x);
        const double l_dd = delta * delta * (term.b * (D.dd - D.d * D.d) - 2.0 * term.C);
        const double l_t = tau * (term.b * D.t - 2.0 * term.D * s);
        const double l_tt = tau * tau * (term.b * (2.0 * D.inverse - D.t * D.t) - 2.0 * term.D);
        const double l_dt = delta * tau * term.b * (D.dt - D.d * D.t);
        sum.phi += F;
        sum.d += F * (1.0 + l_d);
        sum.dd += F * (2.0 * l_d + l_d * l_d + l_dd);
        sum.t += F * l_t;
        sum.tt += F * (l_t * l_t + l_tt);
        sum.dt += F * (l_t + l_d * l_t + l_dt);
    }
}

}  // namespace kalorfix::water
