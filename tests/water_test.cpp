// SPDX-License-Identifier: MIT
// Water and steam: the Helmholtz kernel against the release's printed tables and against the printed sum, the density as the right
// root over the whole accepted range, viscosity and saturation where the smallest contributions weigh.
#include <gtest/gtest.h>

#include <cmath>

#include "kalorfix.h"
#include "props/water/density.h"
#include "props/water/residual.h"
#include "props/water/saturation.h"
#include "props/water/water.h"
#include "reference_residual.h"
#include "runtime/exponential.h"

namespace water = kalorfix::water;
using reference::Real;

namespace {

struct Printed {
    const char* name;
    double computed, printed, last_digit;  // unit of the last printed digit
};
void expect_printed(std::initializer_list<Printed> rows) {
    for (const Printed& row : rows)
        EXPECT_LE(std::fabs(row.computed - row.printed), 0.501 * row.last_digit) << row.name;
}

// IAPWS R6-95(2018), table 6: T = 500 K, rho = 838.025 kg/m3.
TEST(Water, MeetsTheReleaseAt500K) {
    const double tau = water::critical_temperature_K / 500.0;
    const double delta = 838.025 / water::critical_density_kgm3;
    const water::Helmholtz r = water::ResidualAt(tau).all(delta);
    const water::IdealGas ideal = water::ideal_gas(500.0);
    const double R = water::gas_constant_kJ_kgK;
    expect_printed({{"phir", r.phi, -3.42693206, 1e-8},
                    {"phir_d", r.d / delta, -0.364366650, 1e-9},
                    {"phir_dd", r.dd / (delta * delta), 0.856063701, 1e-9},
                    {"phir_t", r.t / tau, -5.81403435, 1e-8},
                    {"phir_tt", r.tt / (tau * tau), -2.23440737, 1e-8},
                    {"phir_dt", r.dt / (delta * tau), -1.12176915, 1e-8},
                    {"phi0_t", (ideal.h_kJ_kg / (R * 500.0) - 1.0) / tau, 9.04611106, 1e-8},
                    {"phi0_tt", -ideal.cv_kJ_kgK / (R * tau * tau), -1.93249185, 1e-8}});
}

// Where the smallest contributions weigh: supersaturated cold vapour, the ideal gas at 5000 K, the critical enhancement of the
// viscosity from chi = 21.93 in its own reducing values on, vapour at the lowest temperature. The printed formulas evaluated in
// Python, where they give the release's tables; the ideal part with n2 = 6.6832105268.
TEST(Water, HoldsTheTermsThatHardlyWeigh) {
    const water::Helmholtz r = water::ResidualAt(water::critical_temperature_K / 273.16).all(0.0322 / 322.0);
    EXPECT_NEAR(r.phi, -0.00661306169260963, 1e-11);
    const water::IdealGas ideal = water::ideal_gas(5000.0);
    EXPECT_NEAR(ideal.h_kJ_kg, 15973.9412139, 1e-6);
    EXPECT_NEAR(ideal.cv_kJ_kgK, 2.81960932719, 1e-10);
    const struct {
        double T_K, rho_kgm3, chi, mu_uPas;
    } rows[] = {{650.0, 330.0, 21.306447452162992, 40.2989427529},
                {650.0, 330.0, 21.307904867967554, 40.2989889152},
                {650.0, 330.0, 21.30945944482575, 40.2990662377},
                {648.0, 310.0, 40.0, 39.0466164951},
                {647.5, 322.0, 1000.0, 43.652843241}};
    for (const auto& row : rows)
        EXPECT_NEAR(water::viscosity_uPas(row.T_K, row.rho_kgm3, row.chi), row.mu_uPas, 1e-9) << row.chi;
    EXPECT_NEAR(water::viscosity_uPas(296.9948190753248, 997.3369503211874, 0.0), 914.003770302, 5e-10);
    EXPECT_NEAR(water::saturated_vapour_density_kgm3(273.15), 0.00485091366785, 1e-12);
    EXPECT_DOUBLE_EQ(water::saturation_pressure_MPa(647.096), 22.064);
    EXPECT_DOUBLE_EQ(water::saturated_vapour_density_kgm3(647.096), 322.0);
    EXPECT_TRUE(std::isnan(water::saturation_pressure_MPa(647.1)));
    EXPECT_TRUE(std::isnan(water::saturated_vapour_density_kgm3(647.1)));
}

TEST(Water, SaturationTemperatureInvertsThePressure) {
    using Set = water::SaturationTemperatureSet;
    for (double T_K = 275.0; T_K < 645.0; T_K += 5.0)
        for (const auto set : {Set::heat_carrier, Set::humid_gas})
            EXPECT_NEAR(water::saturation_temperature_K(water::saturation_pressure_MPa(T_K), set), T_K, 0.012);
    // The two sets stay apart by the last digit of one coefficient.
    const double L = std::log(22.064 / 0.5);
    EXPECT_NEAR(water::saturation_temperature_K(0.5, Set::humid_gas) -
                    water::saturation_temperature_K(0.5, Set::heat_carrier),
                647.096 * 1e-10 * L * L, 1e-12);
    EXPECT_TRUE(std::isnan(water::saturation_temperature_K(-1.0, Set::heat_carrier)));
}

TEST(Water, HasItsOwnExponential) {
    for (double x = -708.0; x <= 709.0; x += 0.0371)
        ASSERT_NEAR(kalorfix::exponential(x) / std::exp(x), 1.0, 2.3e-16) << x;
    EXPECT_EQ(kalorfix::exponential(0.0), 1.0);
    EXPECT_TRUE(std::isnan(kalorfix::exponential(std::nan(""))));
}

struct State {
    double T_K, p_MPa;
};

TEST(Water, DerivativesAreThoseOfThePrintedSum) {
    const struct {
        double T_K, delta;
    } states[] = {{273.16, 3.1}, {300, 3.09}, {500, 2.6},    {500, 0.014},  {534, 1.0},  {600, 0.5},
                  {640, 0.9},    {645, 1.6},  {647, 1.1118}, {647.2, 0.98}, {648, 1.02}, {660, 1.2},
                  {700, 2.0},    {900, 0.16}, {1073.15, .7}, {1073, 3.3},   {350, 1e-4}, {647.096, 1.2}};
    for (const auto& s : states) {
        SCOPED_TRACE(testing::Message() << "T " << s.T_K << " K, delta " << s.delta);
        const double tau_d = water::critical_temperature_K / s.T_K;
        const Real delta = static_cast<Real>(s.delta), tau = static_cast<Real>(tau_d);
        const reference::Jet printed = reference::residual(delta, tau);
        const water::ResidualAt residual(tau_d);
        const water::Helmholtz r = residual.all(s.delta);
        const auto expect_near = [](double computed, Real expected, double tolerance) {
            EXPECT_NEAR(computed, static_cast<double>(expected), tolerance * (1 + std::fabs(computed)));
        };
        expect_near(r.phi, printed.f, 2e-14);
        expect_near(r.d, delta * printed.d, 1e-12);
        expect_near(r.t, tau * printed.t, 1e-12);
        expect_near(r.dd, delta * delta * printed.dd, 1e-10);
        expect_near(r.tt, tau * tau * printed.tt, 1e-10);
        expect_near(r.dt, delta * tau * printed.dt, 1e-10);
        // The step of the density iteration uses the same derivatives, less what cannot move its end.
        const water::DensityDerivatives step = residual.density_derivatives(s.delta);
        expect_near(step.d, static_cast<Real>(r.d), 1e-12);
        expect_near(step.dd, static_cast<Real>(r.dd), 1e-10);
    }
    const water::Helmholtz critical = water::ResidualAt(1.0).all(1.0);
    for (const double value : {critical.phi, critical.d, critical.dd, critical.t, critical.tt, critical.dt})
        EXPECT_TRUE(std::isfinite(value));
    EXPECT_NEAR(critical.stiffness(), 0.0, 1e-6);
}

double density(const State& s) {
    double rho = -1.0, mu = -1.0, h = -1.0, kappa = -1.0;
    EXPECT_EQ(t_param_1(s.T_K - 273.15, s.p_MPa, 1, &rho, &mu, &h, &kappa), 0) << s.T_K << " K " << s.p_MPa;
    EXPECT_TRUE(std::isfinite(mu) && mu > 0 && std::isfinite(h) && std::isfinite(kappa))
        << s.T_K << ' ' << s.p_MPa;
    return rho;
}

// The root solved to machine precision lies within 1e-9 of the density found. Where dp/drho vanishes the pressure no longer fixes
// the density: the rounding of the equation in double precision, some 1e-14, is then allowed on top. Outside the last
// millikelvins below the critical temperature the sides are told by the critical density.
void expect_root(const State& s) {
    const double rho = density(s);
    const double T_K = (s.T_K - 273.15) + 273.15;  // the temperature that the library sees
    const Real delta = static_cast<Real>(rho) / 322.0L;
    const reference::Jet phi =
        reference::residual(delta, static_cast<Real>(water::critical_temperature_K / T_K));
    const Real value = delta * (1 + delta * phi.d), slope = 1 + 2 * delta * phi.d + delta * delta * phi.dd;
    const Real target =
        static_cast<Real>(water::ideal_reduced_density * (s.p_MPa / water::critical_pressure_MPa) /
                          (T_K / water::critical_temperature_K));
    EXPECT_LE(std::fabs(value - target),
              1e-9L * delta * std::fabs(slope) + (1e-14L + reference::noise) * (1 + delta))
        << "T " << s.T_K << " K, p " << s.p_MPa << " MPa, rho " << rho;
    EXPECT_GT(slope, -1e-7L) << "unstable root at " << s.T_K << " K " << s.p_MPa << " MPa";
    if (s.T_K > 647.0) return;
    EXPECT_EQ(rho > 322.0, s.p_MPa >= water::saturation_pressure_MPa(T_K)) << s.T_K << ' ' << s.p_MPa;
}

TEST(Water, DensityIsTheRightRootOverTheWholeRange) {
    for (double T_K = 273.15; T_K < 1073.15; T_K += 16.0)
        for (double lg_p = -6.0; lg_p <= 2.0; lg_p += 0.16) expect_root({T_K, std::pow(10.0, lg_p)});
    for (const State& corner :
         {State{273.15, 100}, State{1073.15, 100}, State{1073.15, 1e-300}, State{273.15, 1e-12}})
        expect_root(corner);
    for (double T_K = 273.65; T_K < 647.0; T_K += 7.3)
        for (const double factor : {0.99, 1 - 1e-9, 1.0, 1 + 1e-9, 1.01})
            expect_root({T_K, water::saturation_pressure_MPa((T_K - 273.15) + 273.15) * factor});
    // Around the critical point, and along the critical isochore.
    for (int e = -8; e <= 0; ++e)
        for (int q = -9; q <= 0; ++q)
            for (const double sign_T : {-1.0, 0.0, 1.0})
                for (const double sign_p : {-1.0, 0.0, 1.0}) {
                    const double dT = sign_T * std::pow(10.0, e), dp = sign_p * std::pow(10.0, q);
                    expect_root({647.096 + dT, 22.064 + dp});
                    expect_root({647.096 + dT, 22.064 + 0.268 * dT + dp});
                }
}

// States whose Newton iteration fails: it cycles, or is thrown onto a root below zero.
TEST(Water, DensityIsBracketedWhereNewtonFails) {
    int bracketed = 0;
    for (int k = 1; k <= 400; ++k) {
        const double T_K = 647.096 - 1e-3 * k / 400.0;
        const double p_MPa = water::saturation_pressure_MPa(T_K) + 1.7e-8;
        const water::ResidualAt residual(water::critical_temperature_K / T_K);
        const double target = water::ideal_reduced_density * (p_MPa / water::critical_pressure_MPa) *
                              water::critical_temperature_K / T_K;
        const water::DensityRoot root = water::solve_density(residual, {target, 3.2});
        EXPECT_TRUE(root.found && root.delta > 0.9 && root.delta < 1.1) << T_K;
        EXPECT_LE(root.steps, water::step_cap + water::bracket_step_cap);
        bracketed += root.bracketed;
        expect_root({T_K, p_MPa});
    }
    EXPECT_GT(bracketed, 0) << "the states no longer reach the bracketing method";
}

}  // namespace
