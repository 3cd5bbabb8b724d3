// SPDX-License-Identifier: MIT
// Coefficients of the IAPWS Formulation 1995 for ordinary water substance.
//
// Source: IAPWS R6-95(2018), tables 1 and 2; the same numbers in W. Wagner, A. Pruss,
// J. Phys. Chem. Ref. Data 31 (2002) 387, tables 6.1 and 6.2.
// delta = rho / rho_c, tau = T_c / T; all coefficients are dimensionless.
// The tables are visible at compile time because the residual kernel derives its layout from them.
#pragma once

#include <array>

namespace kalorfix::water {

inline constexpr double critical_temperature_K = 647.096;
inline constexpr double critical_pressure_MPa = 22.064;
inline constexpr double critical_density_kgm3 = 322.0;
inline constexpr double gas_constant_kJ_kgK = 0.46151805;

/// p_c / (rho_c R T_c): the reduced density of the ideal gas is this times pi / theta.
inline constexpr double ideal_reduced_density = 0.22944097;

/// One Planck-Einstein term of the ideal-gas part, n ln(1 - exp(-gamma tau)).
struct PlanckEinsteinTerm {
    double n;
    double gamma;
};

/// Ideal-gas part: n3 (multiplies ln tau) and n2 (multiplies tau). n2 is the value printed in 1995;
/// the edition of 2018 prints 6.6832105275932, which moves every enthalpy by 2.4e-7 kJ/kg.
inline constexpr double ideal_n3 = 3.00632;
inline constexpr double ideal_n2 = 6.6832105268;

inline constexpr std::array<PlanckEinsteinTerm, 5> ideal_terms{{
    {0.012436, 1.28728967},
    {0.97315, 3.53734222},
    {1.2795, 7.74073708},
    {0.96956, 9.24437796},
    {0.24873, 27.5075105},
}};

/// Terms 1..51 of the residual part: n delta^d tau^t exp(-delta^c); no exponential when c is 0.
struct PowerTerm {
    int c;
    int d;
    double t;
    double n;
};

// clang-format off
inline constexpr std::array<PowerTerm, 51> power_terms{{
    {0, 1, -0.5, 0.12533547935523e-1},        {0, 1, 0.875, 0.78957634722828e1},    // 1, 2
    {0, 1, 1, -0.87803203303561e1},           {0, 2, 0.5, 0.31802509345418},        // 3, 4
    {0, 2, 0.75, -0.26145533859358},          {0, 3, 0.375, -0.78199751687981e-2},  // 5, 6
    {0, 4, 1, 0.88089493102134e-2},           {1, 1, 4, -0.66856572307965},         // 7, 8
    {1, 1, 6, 0.20433810950965},              {1, 1, 12, -0.66212605039687e-4},     // 9, 10
    {1, 2, 1, -0.19232721156002},             {1, 2, 5, -0.25709043003438},         // 11, 12
    {1, 3, 4, 0.16074868486251},              {1, 4, 2, -0.40092828925807e-1},      // 13, 14
    {1, 4, 13, 0.39343422603254e-6},          {1, 5, 9, -0.75941377088144e-5},      // 15, 16
    {1, 7, 3, 0.56250979351888e-3},           {1, 9, 4, -0.15608652257135e-4},      // 17, 18
    {1, 10, 11, 0.11537996422951e-8},         {1, 11, 4, 0.36582165144204e-6},      // 19, 20
    {1, 13, 13, -0.13251180074668e-11},       {1, 15, 1, -0.62639586912454e-9},     // 21, 22
    {2, 1, 7, -0.10793600908932},             {2, 2, 1, 0.17611491008752e-1},       // 23, 24
    {2, 2, 9, 0.22132295167546},              {2, 2, 10, -0.40247669763528},        // 25, 26
    {2, 3, 10, 0.58083399985759},             {2, 4, 3, 0.49969146990806e-2},       // 27, 28
    {2, 4, 7, -0.31358700712549e-1},          {2, 4, 10, -0.74315929710341},        // 29, 30
    {2, 5, 10, 0.47807329915480},             {2, 6, 6, 0.20527940895948e-1},       // 31, 32
    {2, 6, 10, -0.13636435110343},            {2, 7, 10, 0.14180634400617e-1},      // 33, 34
    {2, 9, 1, 0.83326504880713e-2},           {2, 9, 2, -0.29052336009585e-1},      // 35, 36
    {2, 9, 3, 0.38615085574206e-1},           {2, 9, 4, -0.20393486513704e-1},      // 37, 38
    {2, 9, 8, -0.16554050063734e-2},          {2, 10, 6, 0.19955571979541e-2},      // 39, 40
    {2, 10, 9, 0.15870308324157e-3},          {2, 12, 8, -0.16388568342530e-4},     // 41, 42
    {3, 3, 16, 0.43613615723811e-1},          {3, 4, 22, 0.34994005463765e-1},      // 43, 44
    {3, 4, 23, -0.76788197844621e-1},         {3, 5, 23, 0.22446277332006e-1},      // 45, 46
    {4, 14, 10, -0.62689710414685e-4},        {6, 3, 50, -0.55711118565645e-9},     // 47, 48
    {6, 6, 44, -0.19905718354408},            {6, 6, 46, 0.31777497330738},         // 49, 50
    {6, 6, 50, -0.11841182425981},                                                  // 51
}};
// clang-format on

/// Terms 52..54: n delta^d tau^t exp(-alpha (delta - epsilon)^2 - beta (tau - gamma)^2).
/// d, alpha and epsilon are the same in all three.
inline constexpr int gaussian_d = 3;
inline constexpr double gaussian_alpha = 20.0;
inline constexpr double gaussian_epsilon = 1.0;

struct GaussianTerm {
    int t;
    double n;
    double beta;
    double gamma;
};

inline constexpr std::array<GaussianTerm, 3> gaussian_terms{{
    {0, -0.31306260323435e2, 150.0, 1.21},  // 52
    {1, 0.31546140237781e2, 150.0, 1.21},   // 53
    {4, -0.25213154341695e4, 250.0, 1.25},  // 54
}};

/// Terms 55 and 56: n Delta^b delta psi with psi = exp(-C (delta - 1)^2 - D (tau - 1)^2),
/// Delta = theta^2 + B ((delta - 1)^2)^a and theta = (1 - tau) + A ((delta - 1)^2)^(1 / (2 beta)).
/// A, B, a and beta are the same in both.
inline constexpr double nonanalytic_A = 0.32;
inline constexpr double nonanalytic_B = 0.2;
inline constexpr double nonanalytic_a = 3.5;
inline constexpr double nonanalytic_beta = 0.3;

struct NonanalyticTerm {
    double b;
    double C;
    double D;
    double n;
};

inline constexpr std::array<NonanalyticTerm, 2> nonanalytic_terms{{
    {0.85, 28.0, 700.0, -0.14874640856724},  // 55
    {0.95, 32.0, 800.0, 0.31806110878444},   // 56
}};

}  // namespace kalorfix::water
