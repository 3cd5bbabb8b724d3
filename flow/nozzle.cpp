// SPDX-License-Identifier: MIT
// ISA 1932 nozzle, long-radius nozzle and Venturi nozzle.
#include <cmath>

#include "flow/discharge.h"
#include "flow/smooth_pipe_tables.h"

namespace kalorfix::flow {
namespace {

Limit roughness_correction(const Bore& bore, const NozzleConstants& c, double Re, double& K_sh) {
    K_sh = 1.0;
    if (c.smooth) return Limit::none;
    if (bore.R_sh_m > 30.0 * bore.D_m / 1e4) return Limit::nozzle_roughness;
    double f = 1.0;
    if (!(Re >= million)) {
        const double decades = std::log10(Re) - 6.0;
        f = 1.0 - 0.25 * decades * decades;
    }
    K_sh = 1.0 + f * c.correction;
    const bool large = bore.device.device == Device::nozzle_isa1932 && 0.5 < bore.D_m && bore.D_m <= 1.0;
    return large && K_sh > max_roughness_correction ? Limit::roughness_correction : Limit::none;
}

// Largest 10^4 R_a/D of a smooth pipe, interpolated in the diameter ratio; undefined (NaN) on the rows of the table themselves.
// GOST 8.586.3-2005, 5.1.6.1.
double smooth_limit(double beta) {
    NozzleRoughness below{0.0, 0.0}, above{0.0, 0.0};
    for (const NozzleRoughness& row : nozzle_roughness) {
        if (row.beta <= beta) below = row;
        if (row.beta >= beta) {
            above = row;
            break;
        }
    }
    return below.limit + (above.limit - below.limit) * (beta - below.beta) / (above.beta - below.beta);
}

}  // namespace

NozzleConstants nozzle_constants(const Bore& bore) {
    const double beta = bore.beta;
    NozzleConstants c{};
    if (bore.device.device == Device::nozzle_long_radius) return c;
    const double beta2 = beta * beta, beta4 = beta2 * beta2;
    if (bore.device.device == Device::venturi_nozzle) {
        c.C_inf = 0.9858 - 0.196 * (beta4 * std::sqrt(beta));  // beta^4.5, GOST 8.586.3-2005, 5.3.4.2
    } else {
        // GOST 8.586.3-2005, 5.1.6.2; both powers of beta from one logarithm.
        const double twentieth = std::exp(0.05 * std::log(beta));  // beta^0.05
        const double beta_4_1 = beta4 * (twentieth * twentieth);
        c.C_inf = 0.99 - 0.2262 * beta_4_1;
        c.slope = 0.00175 * beta2 - 0.0033 * (beta_4_1 * twentieth);  // beta^4.15
    }
    // A pipe is smooth up to the limit of the table; where the limit is undefined the comparison fails and the pipe counts as
    // smooth.
    c.smooth = !(smooth_limit(beta) < 1e4 * bore.R_a_m / bore.D_m);
    if (!c.smooth) c.correction = beta4 * (0.045 * std::log10(1e4 * bore.R_sh_m / bore.D_m) - 0.025);
    return c;
}

Limit nozzle_discharge(const Bore& bore, const NozzleConstants& c, double Re, Discharge& out) {
    if (bore.device.device == Device::nozzle_long_radius) {
        out = {0.9965 - 0.00653 * std::sqrt(million * bore.beta / Re), 1.0};  // GOST 8.586.3-2005, 5.2.6.2
        return Limit::none;
    }
    double K_sh = 1.0;
    const Limit limit = roughness_correction(bore, c, Re, K_sh);
    if (limit != Limit::none) return limit;
    const bool isa = bore.device.device == Device::nozzle_isa1932;
    out = {isa ? c.C_inf - c.slope * std::pow(million / Re, 1.15) : c.C_inf, K_sh};
    return Limit::none;
}

}  // namespace kalorfix::flow
