// A map of the density over the whole accepted range of t_param_1.
#include <gtest/gtest.h>

#include <cmath>

#include "kalorfix.h"
#include "props/water/density.h"
#include "props/water/saturation.h"
#include "reference_residual.h"

namespace water = kalorfix::water;
using reference::Real;

namespace {

// delta (1 + delta phi_d) and its derivative by delta, from the printed sum.
struct Pressure {
    Real value, slope;
};
Pressure pressure(Real delta, Real tau) {
    const reference::Jet phi = reference::residual(delta, tau);
    return {delta * (1 + delta * phi.d), 1 + 2 * delta * phi.d + delta * delta * phi.dd};
}

struct State {
    double T_K, p_MPa;
};

double density(const State& s, short mode = 1) {
    double rho = -1.0, mu = -1.0, h = -1.0, kappa = -1.0;
    EXPECT_EQ(t_param_1(s.T_K - 273.15, s.p_MPa, mode, &rho, &mu, &h, &kappa), 0) << s.T_K << " K " << s.p_MPa;
    EXPECT_TRUE(std::isfinite(mu) && mu > 0 && std::isfinite(h) && std::isfinite(kappa))
        << s.T_K << ' ' << s.p_MPa;
    return rho;
}

// The root solved to machine precision lies within 1e-9 of the density found. Where dp/drho vanishes the pressure
// no longer fixes the density: the rounding of the equation in double precision, some 1e-14, is then allowed on
// top.
void expect_root(const State& s) {
    const double rho = density(s);
    const double T_K = (s.T_K - 273.15) + 273.15;  // the temperature that the library sees
    const Real delta = static_cast<Real>(rho) / 322.0L;
    const Real tau = static_cast<Real>(water::critical_temperature_K / T_K);
    const Real target =
        static_cast<Real>(water::ideal_reduced_density * (s.p_MPa / water::critical_pressure_MPa) /
                          (T_K / water::critical_temperature_K));
    const Pressure at = pressure(delta, tau);
    const Real off = std::fabs(at.value - target);
    EXPECT_LE(off, 1e-9L * delta * std::fabs(at.slope) + (1e-14L + reference::noise) * (1 + delta))
        << "T " << s.T_K << " K, p " << s.p_MPa << " MPa, rho " << rho;
    EXPECT_GT(at.slope, -1e-7L) << "unstable root at " << s.T_K << " K " << s.p_MPa << " MPa";
}

// Outside the last millikelvins below the critical temperature the sides are told by the critical density.
void expect_side(const State& s) {
    if (s.T_K > 647.0) return;
    const double rho = density(s);
    if (s.p_MPa >= water::saturation_pressure_MPa(s.T_K))
        EXPECT_GT(rho, 322.0) << s.T_K << " K " << s.p_MPa << " MPa";
    else
        EXPECT_LT(rho, 322.0) << s.T_K << " K " << s.p_MPa << " MPa";
}

TEST(Density, IsTheRightRootOverTheWholeRange) {
    for (double T_K = 273.15; T_K < 1073.15; T_K += 16.0)
        for (double lg_p = -6.0; lg_p <= 2.0; lg_p += 0.16) {
            const State s{T_K, std::pow(10.0, lg_p)};
            expect_root(s);
            expect_side(s);
        }
    for (const State& corner :
         {State{273.15, 100}, State{1073.15, 100}, State{1073.15, 1e-300}, State{273.15, 1e-12}})
        expect_root(corner);
}

TEST(Density, ChangesSideAtTheSaturationLine) {
    for (double T_K = 273.65; T_K < 647.0; T_K += 7.3) {
        const double p_MPa = water::saturation_pressure_MPa((T_K - 273.15) + 273.15);
        for (const double factor : {0.99, 1 - 1e-9, 1.0, 1 + 1e-9, 1.01}) {
            expect_side({T_K, p_MPa * factor});
            expect_root({T_K, p_MPa * factor});
        }
    }
}

TEST(Density, IsFoundAroundTheCriticalPoint) {
    for (int e = -8; e <= 0; ++e)
        for (int q = -9; q <= 0; ++q)
            for (const double sign_T : {-1.0, 0.0, 1.0})
                for (const double sign_p : {-1.0, 0.0, 1.0}) {
                    const double dT = sign_T * std::pow(10.0, e), dp = sign_p * std::pow(10.0, q);
                    expect_root({647.096 + dT, 22.064 + dp});
                    expect_root({647.096 + dT, 22.064 + 0.268 * dT + dp});  // along the critical isochore
                }
}

// States whose Newton iteration fails: it cycles, or is thrown onto a root below zero.
TEST(Density, IsBracketedWhereNewtonFails) {
    int bracketed = 0;
    for (int k = 1; k <= 400; ++k) {
        const double T_K = 647.096 - 1e-3 * k / 400.0;
        const double p_MPa = water::saturation_pressure_MPa(T_K) + 1.7e-8;
        const water::ResidualAt residual(water::critical_temperature_K / T_K);
        const double target = water::ideal_reduced_density * (p_MPa / water::critical_pressure_MPa) *
                              water::critical_temperature_K / T_K;
        const water::DensityRoot root = water::solve_density(residual, {target, 3.2});
        ASSERT_TRUE(root.found) << T_K;
        EXPECT_LE(root.steps, water::step_cap + water::bracket_step_cap);
        EXPECT_GT(root.delta, 0.9);
        EXPECT_LT(root.delta, 1.1);
        bracketed += root.bracketed;
        expect_root({T_K, p_MPa});
    }
    EXPECT_GT(bracketed, 0) << "the states no longer reach the bracketing method";
}

TEST(Density, RisesWithPressure) {
    for (double T_K = 280.0; T_K < 1073.15; T_K += 41.7) {
        double last = 0.0;
        for (double p_MPa = 0.0; p_MPa <= 100.0; p_MPa += 0.73) {
            const double rho = density({T_K, p_MPa});
            EXPECT_TRUE(rho > last || p_MPa == 0.0) << T_K << " K " << p_MPa << " MPa";
            last = rho;
        }
    }
}

TEST(Density, OfSaturatedVapourLiesBesideTheVapour) {
    for (double T_K = 274.0; T_K <= 645.0; T_K += 5.3) {
        const double p_MPa = water::saturation_pressure_MPa((T_K - 273.15) + 273.15);
        const double vapour = density({T_K, 0.1}, 3);
        EXPECT_NEAR(density({T_K, p_MPa * (1 - 1e-9)}), vapour, 1e-6 * vapour) << T_K;
    }
}

}  // namespace
