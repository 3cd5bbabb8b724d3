// Orifice plates with corner, D and D/2, and flange tappings.
#include <cmath>
#include <numbers>

#include "flow/discharge.h"
#include "flow/orifice_tables.h"
#include "runtime/units.h"

namespace kalorfix::flow {
namespace {

using units::inch_m;

struct Tappings {
    double L1;  // distance of the upstream tapping from the plate, in pipe diameters
    double L2;  // distance of the downstream tapping
};

Tappings tappings(Device device, double D_m) {
    if (device == Device::orifice_d_d2) return {1.0, 0.47};
    if (device == Device::orifice_flange) return {inch_m / D_m, inch_m / D_m};
    return {0.0, 0.0};
}

// Reader-Harris/Gallagher equation, GOST 8.586.2-2005, 5.3.2.1, with t = Re^-0.1:
//   C = 0.5961 + 0.0261 beta^2 - 0.216 beta^8 + 0.000521 (10^6 beta/Re)^0.7
//     + (0.0188 + 0.0063 A) beta^3.5 (10^6/Re)^0.3
//     + (0.043 + 0.080 e^(-10 L1) - 0.123 e^(-7 L1)) (1 - 0.11 A) beta^4/(1 - beta^4)
//     - 0.031 (M2 - 0.8 M2^1.1) beta^1.3 + 0.011 (0.75 - beta)(2.8 - D/0.0254), the last below 71.12 mm,
//   A = (19000 beta/Re)^0.8, M2 = 2 L2/(1 - beta).
double discharge_coefficient(const OrificeConstants& c, double t) {
    const double t2 = t * t, t3 = t2 * t, t4 = t2 * t2, t8 = t4 * t4;
    return c.C_inf + c.c7 * (t4 * t3) + (c.c3 + c.c11 * t8) * t3 - c.c8 * t8;
}

double cubic(const std::array<double, 4>& c, double L) {
    return c[0] + c[1] * L + c[2] * L * L + c[3] * L * L * L;
}

// The set of cubics for a Reynolds number from 10^4 to 10^8.
const RoughnessSet& roughness_set(double Re) {
    const auto& sets = orifice_roughness;
    if (Re <= sets[0].Re_to) return sets[0];
    return Re <= sets[1].Re_to ? sets[1] : sets[2];
}

// Upper bound of 10^4 R_a/D, to two decimals.
double upper_limit(double beta, double ln_beta, double Re, double lg_Re) {
    double x = 0.0;
    if (Re > orifice_roughness.back().Re_to) return 0.0;  // all coefficients are 0
    if (Re > orifice_roughness.front().Re_above) {
        const RoughnessSet& set = roughness_set(Re);
        x = cubic(set.A, lg_Re) * std::exp(cubic(set.B, lg_Re) * ln_beta) + cubic(set.C, lg_Re);
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

// Friction factor lambda of a pipe with the uniform roughness R (m), an explicit form of Colebrook's equation, GOST 8.586.2-2005,
// 5.3.2.3: lambda^-1/2 = 1.74 - 2 lg(2 R/D - 37.36/Re lg(k - 5.035/Re lg(k + 3.3333 5.035/Re))), k = 0.26954 R/D.
double friction_factor(double R_m, double D_m, double Re) {
    const double relative = 0.26954 * R_m / D_m;
    const double inner = std::log10(relative + 3.3333 * 5.035 / Re);
    const double outer = std::log10(relative - 5.035 / Re * inner);
    const double root = 1.74 - 2.0 * std::log10(2.0 * R_m / D_m - 37.36 / Re * outer);
    return 1.0 / (root * root);
}

// Bounds of R_a within which the pipe counts as smooth, m. GOST 8.586.2-2005, 5.3.1.
struct SmoothRange {
    double min_m, max_m;
};
SmoothRange smooth_range(double D_m, double beta, double ln_beta, double Re, double lg_Re) {
    const double x = upper_limit(beta, ln_beta, Re, lg_Re);
    const double y = lower_limit(beta, lg_Re);
    return {y > 0.0 && Re >= 3e6 ? y * 1e-4 * D_m : 0.0, x >= 15.0 ? 0.0015 * D_m : x * 1e-4 * D_m};
}

// GOST 8.586.2-2005, 5.3.2.3.
double roughness_correction(const Bore& bore, const OrificeConstants& c, double Re, double lg_Re) {
    const SmoothRange smooth = smooth_range(bore.D_m, bore.beta, c.ln_beta, Re, lg_Re);
    if (smooth.min_m <= bore.R_a_m && bore.R_a_m <= smooth.max_m) return 1.0;
    const double nearest = bore.R_a_m > smooth.max_m ? smooth.max_m : smooth.min_m;
    return 1.0 + c.correction * (friction_factor(bore.R_sh_m, bore.D_m, Re) -
                                 friction_factor(std::numbers::pi * nearest, bore.D_m, Re));
}

}  // namespace

OrificeConstants orifice_constants(const Bore& bore) {
    const double beta = bore.beta;
    const double beta2 = beta * beta, beta4 = beta2 * beta2, beta8 = beta4 * beta4;
    const double tenth = std::pow(beta, 0.1);
    const double tenth2 = tenth * tenth, tenth3 = tenth2 * tenth, tenth4 = tenth2 * tenth2;
    const double beta_3_5 = std::pow(beta, 3.5);
    // 10^6 and 19000 to the powers that stand beside Re in the equation.
    constexpr double million_0_3 = 63.095734448019324943;
    constexpr double million_0_7 = 15848.931924611134853;
    constexpr double n19000_0_8 = 2648.517706696731573;
    const double A = n19000_0_8 * (tenth4 * tenth4);

    const Tappings tap = tappings(bore.device.device, bore.D_m);
    const double M2 = 2.0 * tap.L2 / (1.0 - beta);
    const double upstream =
        (0.043 + 0.080 * std::exp(-10.0 * tap.L1) - 0.123 * std::exp(-7.0 * tap.L1)) * beta4 / (1.0 - beta4);
    const double downstream = 0.031 * (M2 - 0.8 * std::pow(M2, 1.1)) * (beta * tenth3);
    const double small_pipe = bore.D_m < 0.07112 ? 0.011 * (0.75 - beta) * (2.8 - bore.D_m / inch_m) : 0.0;
    return {0.5961 + 0.0261 * beta2 - 0.216 * beta8 + upstream - downstream + small_pipe,
            0.000521 * million_0_7 * (tenth4 * tenth3),
            0.0188 * beta_3_5 * million_0_3,
            0.0063 * A * beta_3_5 * million_0_3,
            0.11 * A * upstream,
            std::log(beta >= 0.65 ? 0.65 : beta),
            5.22 * beta_3_5};
}

Limit orifice_discharge(const Bore& bore, const OrificeConstants& c, double Re, Discharge& out) {
    const double lg_Re = std::log10(Re);
    const double K_sh = roughness_correction(bore, c, Re, lg_Re);
    const bool large = bore.device.device == Device::orifice_corner && 1.0 < bore.D_m && bore.D_m <= 3.0;
    if (large && K_sh > max_roughness_correction) return Limit::roughness_correction;
    out = {discharge_coefficient(c, std::exp(-0.1 * std::numbers::ln10 * lg_Re)), K_sh};
    return Limit::none;
}

}  // namespace kalorfix::flow
