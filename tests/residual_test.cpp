// The Helmholtz kernel against the release's printed tables, against the printed sum and its differences.
#include <gtest/gtest.h>

#include <cmath>

#include "props/water/ideal.h"
#include "props/water/residual.h"
#include "props/water/saturation.h"
#include "props/water/viscosity.h"
#include "reference_residual.h"
#include "runtime/exponential.h"

namespace water = kalorfix::water;
using reference::Real;

namespace {

struct Printed {
    const char* name;
    double computed;
    double printed;
    double last_digit;  // unit of the last printed digit
};

void expect_printed(std::initializer_list<Printed> rows) {
    for (const Printed& row : rows)
        EXPECT_LE(std::fabs(row.computed - row.printed), 0.501 * row.last_digit) << row.name;
}

// IAPWS R6-95(2018), table 6: T = 500 K, rho = 838.025 kg/m3.
TEST(Residual, MeetsTheReleaseTo500K) {
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

// Where the smallest contributions weigh: supersaturated cold vapour, and the ideal gas at 5000 K. Evaluations of the printed sums in
// Python that give the release's tables; the ideal part with n2 = 6.6832105268.
TEST(Residual, HoldsTheTermsThatHardlyWeigh) {
    const water::Helmholtz r = water::ResidualAt(water::critical_temperature_K / 273.16).all(0.0322 / 322.0);
    EXPECT_NEAR(r.phi, -0.00661306169260963, 1e-11);
    const water::IdealGas ideal = water::ideal_gas(5000.0);
    EXPECT_NEAR(ideal.h_kJ_kg, 15973.9412139, 1e-6);
    EXPECT_NEAR(ideal.cv_kJ_kgK, 2.81960932719, 1e-10);
}

// IAPWS R6-95(2018), table 7: pressure, isochoric heat capacity and speed of sound at (T, rho).
TEST(Residual, MeetsTheReleasesSinglePhaseTable) {
    struct Row {
        double T_K, rho, p_MPa, p_digit, cv, cv_digit, w, w_digit;
    };
    for (const Row& row : {Row{300, 996.5560, 0.0992418352, 1e-10, 4.13018112, 1e-8, 1501.51914, 1e-5},
                           Row{500, 4.532, 0.999938125, 1e-9, 1.66991025, 1e-8, 535.739001, 1e-6},
                           Row{647, 358.0, 22.0384756, 1e-7, 6.18315728, 1e-8, 252.145078, 1e-6},
                           Row{900, 52.615, 20.0000690, 1e-7, 1.93510526, 1e-8, 698.445674, 1e-6}}) {
        const double R = water::gas_constant_kJ_kgK;
        const water::ResidualAt residual(water::critical_temperature_K / row.T_K);
        const water::Helmholtz r = residual.all(row.rho / water::critical_density_kgm3);
        const double cv = water::ideal_gas(row.T_K).cv_kJ_kgK - R * r.tt;
        const double thermal = 1.0 + r.d - r.dt;
        const double w2 = (r.stiffness() + R * thermal * thermal / cv) * R * 1000.0 * row.T_K;
        expect_printed({{"p", row.rho * R * row.T_K * r.compressibility() * 1e-3, row.p_MPa, row.p_digit},
                        {"cv", cv, row.cv, row.cv_digit},
                        {"w", std::sqrt(w2), row.w, row.w_digit}});
    }
}

struct State {
    double T_K, delta;
};
const State states[] = {{273.16, 3.1}, {300, 3.09}, {500, 2.6},    {500, 0.014},  {534, 1.0},
                        {600, 0.5},    {640, 0.9},  {645, 1.6},    {647, 1.1118}, {647.2, 0.98},
                        {648, 1.02},   {660, 1.2},  {700, 2.0},    {900, 0.1634}, {1073.15, 0.7},
                        {1073, 3.3},   {350, 1e-4}, {647.096, 1.2}};

TEST(Residual, IsTheDerivativeOfThePrintedSum) {
    for (const State& s : states) {
        SCOPED_TRACE(testing::Message() << "T " << s.T_K << " K, delta " << s.delta);
        const Real delta = static_cast<Real>(s.delta);
        const double tau_d = water::critical_temperature_K / s.T_K;
        const Real tau = static_cast<Real>(tau_d);
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
        EXPECT_NEAR(step.d, r.d, 1e-12 * (1 + std::fabs(r.d)));
        EXPECT_NEAR(step.dd, r.dd, 1e-10 * (1 + std::fabs(r.dd)));
    }
}

TEST(Residual, HasItsOwnExponential) {
    for (double x = -708.0; x <= 709.0; x += 0.0371)
        ASSERT_NEAR(kalorfix::exponential(x) / std::exp(x), 1.0, 2.3e-16) << x;
    EXPECT_EQ(kalorfix::exponential(0.0), 1.0);
    EXPECT_TRUE(std::isnan(kalorfix::exponential(std::nan(""))));
}

TEST(Residual, StaysFiniteAtTheCriticalPoint) {
    const water::Helmholtz r = water::ResidualAt(1.0).all(1.0);
    for (const double value : {r.phi, r.d, r.dd, r.t, r.tt, r.dt}) EXPECT_TRUE(std::isfinite(value));
    EXPECT_NEAR(r.stiffness(), 0.0, 1e-6);
}

// IAPS 1985, values printed by an independent program at its own temperature and density.
TEST(Viscosity, MeetsAnIndependentProgram) {
    expect_printed(
        {{"water", water::viscosity_uPas(296.9948190753248, 997.3369503211874, 0.0), 914.003770302, 1e-9},
         {"steam", water::viscosity_uPas(373.15, 0.5896367540624714, 0.0), 12.2704, 1e-4}});
}

// The critical enhancement begins where chi in the reducing values of the viscosity is 21.93, 21.3074 in those of IAPWS-95. The
// IAPS Formulation 1985 evaluated in Python.
TEST(Viscosity, IsEnhancedNearTheCriticalPoint) {
    const struct {
        double T_K, rho_kgm3, chi, mu_uPas;
    } rows[] = {
        {650.0, 330.0, 21.306447452162992, 40.2989427529},
        {650.0, 330.0, 21.307904867967554, 40.2989889152},
        {650.0, 330.0, 21.30945944482575, 40.2990662377},
        {648.0, 310.0, 40.0, 39.0466164951},
        {647.5, 322.0, 1000.0, 43.652843241},
    };
    for (const auto& row : rows)
        EXPECT_NEAR(water::viscosity_uPas(row.T_K, row.rho_kgm3, row.chi), row.mu_uPas, 1e-9) << row.chi;
}

// IAPWS SR1-86(1992), the boiling point at 0.101325 MPa.
TEST(Saturation, MeetsTheReleaseAtTheBoilingPoint) {
    expect_printed({{"p", water::saturation_pressure_MPa(373.1243), 0.101325, 1e-6},
                    {"rho vapour", water::saturated_vapour_density_kgm3(373.1243), 0.597586, 1e-6}});
    // IAPWS SR1-86(1992), eq. 3, evaluated in Python: the highest power weighs at the lowest temperature.
    EXPECT_NEAR(water::saturated_vapour_density_kgm3(273.15), 0.00485091366785, 1e-12);
    EXPECT_DOUBLE_EQ(water::saturation_pressure_MPa(647.096), 22.064);
    EXPECT_DOUBLE_EQ(water::saturated_vapour_density_kgm3(647.096), 322.0);
    EXPECT_TRUE(std::isnan(water::saturation_pressure_MPa(647.1)));
    EXPECT_TRUE(std::isnan(water::saturated_vapour_density_kgm3(647.1)));
}

TEST(Saturation, TemperatureInvertsPressure) {
    for (double T_K = 275.0; T_K < 645.0; T_K += 5.0) {
        const double p = water::saturation_pressure_MPa(T_K);
        for (const auto set :
             {water::SaturationTemperatureSet::heat_carrier, water::SaturationTemperatureSet::humid_gas})
            EXPECT_NEAR(water::saturation_temperature_K(p, set), T_K, 0.012);
    }
    // The two sets stay apart by the last digit of one coefficient.
    const double L = std::log(22.064 / 0.5);
    EXPECT_NEAR(water::saturation_temperature_K(0.5, water::SaturationTemperatureSet::humid_gas) -
                    water::saturation_temperature_K(0.5, water::SaturationTemperatureSet::heat_carrier),
                647.096 * 1e-10 * L * L, 1e-12);
    EXPECT_TRUE(
        std::isnan(water::saturation_temperature_K(-1.0, water::SaturationTemperatureSet::heat_carrier)));
}

}  // namespace
