// SPDX-License-Identifier: MIT
// Orifice plates with corner, D and D/2, and flange tappings.
#include <cmath>
#include <numbers>

#include "flow/discharge.h"
#include "flow/smooth_pipe_tables.h"
#include "runtime/units.h"

namespace kalorfix::flow {
namespace {

struct Tappings {
    double L2;        // distance of the downstream tapping from the plate, in pipe diameters
    double upstream;  // 0.043 + 0.080 e^(-10 L1) - 0.123 e^(-7 L1), L1 that of the upstream tapping
};

Tappings tappings(Device device, double D_m) {
    if (device == Device::orifice_corner) return {0.0, 0.0};                 // L1 = 0
    if (device == Device::orifice_d_d2) return {0.47, 0.04289147051261779};  // L1 = 1
    const double L = units::inch_m / D_m;
    const double e = std::exp(-L), e3 = e * e * e, e7 = e3 * e3 * e;
    return {L, 0.043 + 0.080 * (e7 * e3) - 0.123 * e7};
}

// Reader-Harris/Gallagher equation, GOST 8.586.2-2005, 5.3.2.1, with t = Re^-0.1:
//   C = 0.5961 + 0.0261 beta^2 - 0.216 beta^8 + 0.000521 (10^6 beta/Re)^0.7
//     + (0.0188 + 0.0063 A) beta^3.5 (10^6/Re)^0.3
//     + (0.043 + 0.080 e^(-10 L1) - 0.123 e^(-7 L1)) (1 - 0.11 A) beta^4/(1 - beta^4)
//     - 0.031 (M2 - 0.8 M2^1.1) beta^1.3 + 0.011 (0.75 - beta)(2.8 - D/0.0254), the last below 71.12 mm,
//   A = (19000 beta/Re)^0.8, M2 = 2 L2/(1 - beta).
// The powers of beta and of Re are made of one logarithm each, and whole and half ones of products and a root.
double discharge_coefficient(const OrificeConstants& c, double t) {
    const double t2 = t * t, t3 = t2 * t, t4 = t2 * t2, t8 = t4 * t4;
    return c.C_inf + c.c7 * (t4 * t3) + (c.c3 + c.c11 * t8) * t3 - c.c8 * t8;
}

// Re with the numbers that the formulas take of it.
struct Reynolds {
    double Re, lg;
    double tenth_root;  // Re^-0.1
};

Reynolds reynolds(double Re) {
    constexpr double million_to_minus_tenth = 0.25118864315095801;
    if (Re == million) return {Re, 6.0, million_to_minus_tenth};  // where every solution begins
    const double ln = std::log(Re);
    return {Re, ln * std::numbers::log10e, std::exp(-0.1 * ln)};
}

// c0 + c1 L + c2 L^2 + c3 L^3.
double cubic(const std::array<double, 4>& c, double L) {
    return (c[0] + c[1] * L) + (c[2] + c[3] * L) * (L * L);  // halves that do not wait for each other
}

// Upper bound of 10^4 R_a/D, to two decimals.
double upper_limit(double beta, double ln_beta, const Reynolds& r) {
    double x = 0.0;
    if (r.Re > orifice_roughness.back().Re_to) return 0.0;  // all coefficients are 0
    if (r.Re > orifice_roughness.front().Re_above) {
        const auto& sets = orifice_roughness;
        const RoughnessSet& set = r.Re <= sets[0].Re_to ? sets[0] : r.Re <= sets[1].Re_to ? sets[1] : sets[2];
        x = cubic(set.A, r.lg) * std::exp(cubic(set.B, r.lg) * ln_beta) + cubic(set.C, r.lg);
    } else {
        x = 0.718866 * std::pow(beta, -3.887) + 0.364;
    }
    return std::rint(100.0 * x) / 100.0;
}

// Lower bound of 10^4 R_a/D, to three decimals.
double lower_limit(double beta, double L) {
    const double y =
        beta >= 0.65 ? 0.24308 * L - 0.892353 - 0.0162562 * L * L
                     : 7.1592 - 12.387 * beta - (2.0118 - 3.469 * beta) * L + (0.1382 - 0.23762 * beta) * L * L;
    return std::rint(1000.0 * y) / 1000.0;
}

// Friction factor lambda of a pipe with the uniform roughness R, as a share of D, an explicit form of Colebrook's equation,
// GOST 8.586.2-2005, 5.3.2.3: lambda^-1/2 = 1.74 - 2 lg(2 R/D - 37.36/Re lg(k - 5.035/Re lg(k + 3.3333 5.035/Re))),
// k = 0.26954 R/D. The logarithms are natural ones, with lg e beside them.
double friction_factor(double R_over_D, double Re) {
    constexpr double lg_e = std::numbers::log10e;
    const double k = 0.26954 * R_over_D;
    const double per_Re = 1.0 / Re;
    const double inner = std::log(k + (3.3333 * 5.035) * per_Re);
    const double outer = std::log(k - (5.035 * lg_e) * per_Re * inner);
    const double root = 1.74 - (2.0 * lg_e) * std::log(2.0 * R_over_D - (37.36 * lg_e) * per_Re * outer);
    return 1.0 / (root * root);
}

// Bounds of R_a/D within which the pipe counts as smooth. GOST 8.586.2-2005, 5.3.1.
Range smooth_range(double beta, double ln_beta, const Reynolds& r) {
    const double x = upper_limit(beta, ln_beta, r);
    const double y = r.Re >= 3e6 ? lower_limit(beta, r.lg) : 0.0;
    return {y > 0.0 ? y * 1e-4 : 0.0, x >= 15.0 ? 0.0015 : x * 1e-4};
}

// GOST 8.586.2-2005, 5.3.2.3.
double roughness_correction(const Bore& bore, const OrificeConstants& c, const Reynolds& r) {
    const Range smooth = smooth_range(bore.beta, c.ln_beta, r);
    const double max_m = smooth.max * bore.D_m;
    if (smooth.min * bore.D_m <= bore.R_a_m && bore.R_a_m <= max_m) return 1.0;
    const double nearest = bore.R_a_m > max_m ? smooth.max : smooth.min;
    return 1.0 + c.correction * (friction_factor(bore.R_sh_m / bore.D_m, r.Re) -
                                 friction_factor(std::numbers::pi * nearest, r.Re));
}

}  // namespace

OrificeConstants orifice_constants(const Bore& bore) {
    const double beta = bore.beta;
    const double ln_beta = std::log(beta);
    const double beta2 = beta * beta, beta4 = beta2 * beta2, beta8 = beta4 * beta4;
    const double tenth = std::exp(0.1 * ln_beta);  // beta^0.1
    const double tenth3 = tenth * tenth * tenth, tenth7 = tenth3 * tenth3 * tenth;
    const double beta_3_5 = beta2 * beta * std::sqrt(beta);
    // 10^6 and 19000 to the powers that stand beside Re in the equation.
    constexpr double million_0_3 = 63.095734448019324943;
    constexpr double million_0_7 = 15848.931924611134853;
    constexpr double n19000_0_8 = 2648.517706696731573;
    constexpr double ln_0_65 = -0.43078291609245426;
    const double A = n19000_0_8 * (tenth7 * tenth);  // without Re^-0.8

    const Tappings tap = tappings(bore.device.device, bore.D_m);
    const double upstream = tap.upstream * beta4 / (1.0 - beta4);
    const double M2 = 2.0 * tap.L2 / (1.0 - beta);
    const double M2_1_1 = M2 == 0.0 ? 0.0 : M2 * std::exp(0.1 * std::log(M2));
    const double downstream = 0.031 * (M2 - 0.8 * M2_1_1) * (beta * tenth3);  // beta^1.3
    const double small_pipe =
        bore.D_m < 0.07112 ? 0.011 * (0.75 - beta) * (2.8 - bore.D_m / units::inch_m) : 0.0;
    return {0.5961 + 0.0261 * beta2 - 0.216 * beta8 + upstream - downstream + small_pipe,
            0.000521 * million_0_7 * tenth7,
            0.0188 * beta_3_5 * million_0_3,
            0.0063 * A * beta_3_5 * million_0_3,
            0.11 * A * upstream,
            beta >= 0.65 ? ln_0_65 : ln_beta,
            5.22 * beta_3_5};
}

Limit orifice_discharge(const Bore& bore, const OrificeConstants& c, double Re, Discharge& out) {
    const Reynolds r = reynolds(Re);
    const double K_sh = roughness_correction(bore, c, r);
    const bool large = bore.device.device == Device::orifice_corner && 1.0 < bore.D_m && bore.D_m <= 3.0;
    if (large && K_sh > max_roughness_correction) return Limit::roughness_correction;
    out = {discharge_coefficient(c, r.tenth_root), K_sh};
    return Limit::none;
}

}  // namespace kalorfix::flow
