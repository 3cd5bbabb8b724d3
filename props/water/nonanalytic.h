// Terms 55 and 56 of the residual part of IAPWS-95, n delta Delta^b psi, which bend the isotherms at the critical point.
#pragma once

#include "props/water/residual.h"

namespace kalorfix::water {

/// C (delta - 1)^2 + D (tau - 1)^2, the negative logarithm of psi.
[[nodiscard]] constexpr double nonanalytic_exponent(const NonanalyticTerm& term, double delta, double tau) {
    return term.C * (delta - 1.0) * (delta - 1.0) + term.D * (tau - 1.0) * (tau - 1.0);
}

/// Adds the terms whose exponent does not exceed `negligible` to the residual function and its derivatives (IAPWS R6-95(2018),
/// eq. 6 and table 5). Nothing is added where Delta is 0: at the critical point itself the second derivatives do not exist.
void add_nonanalytic(double delta, double tau, double negligible, Helmholtz& sum);

}  // namespace kalorfix::water
