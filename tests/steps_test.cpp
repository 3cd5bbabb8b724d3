// The largest number of iteration steps that any input costs, as docs/accuracy.md states them. Steps are counted, not
// seconds: a slow machine changes nothing.
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <numeric>
#include <string>

#include "flow/fixed_point.h"
#include "gas/aga8.h"
#include "gas/aga8_isotherm.h"
#include "gas/edge/loaded_constants.h"
#include "gas/vnic_smv.h"
#include "kalorfix.h"
#include "kalorfix_calculators.h"
#include "kalorfix_gas.h"
#include "props/water/density.h"
#include "props/water/saturation.h"
#include "slowest.h"

namespace flow = kalorfix::flow;
namespace gas = kalorfix::gas;
namespace water = kalorfix::water;
using slowest::linear;
using slowest::logarithmic;
using slowest::Point;

namespace {

/// A longer search by hand: KALORFIX_SEARCH=100 makes it a hundred times as long.
int longer(int count) {
    const char* const factor = std::getenv("KALORFIX_SEARCH");
    return factor ? count * std::max(1, std::atoi(factor)) : count;
}

void expect_at_most(const char* what, int limit, int expected_median, const slowest::Found& found) {
    std::string inputs;
    for (const double x : found.at) inputs += testing::PrintToString(x) + " ";
    std::printf("%-40s at most %d, median %d\n", what, found.steps, found.median);
    EXPECT_LE(found.steps, limit) << what << " at " << inputs;
    EXPECT_LE(found.median, expected_median) << what;
}

int water_steps(double T_K, double p_MPa) {
    const water::ResidualAt residual(water::critical_temperature_K / T_K);
    const water::DensityRoot root = water::solve_density(residual, water::single_phase_problem(residual, T_K, p_MPa));
    EXPECT_TRUE(root.found) << T_K << ' ' << p_MPa;
    return root.steps;
}

TEST(Steps, OfTheDensityOfWater) {
    expect_at_most("water, everywhere", 180, 3,
                   slowest::search(2, 1, longer(5000), longer(1500), [](const Point& x) {
                       return water_steps(linear(x[0], 273.15, 1073.15), logarithmic(x[1], 1e-6, 100.0));
                   }));
    // Beside the critical point, on and off its isochore.
    expect_at_most(
        "water, critical point", 180, 25, slowest::search(3, 2, longer(5000), longer(5000), [](const Point& x) {
            const double dT = (x[0] < 0.5 ? -1.0 : 1.0) * logarithmic(std::fabs(2 * x[0] - 1), 1e-9, 0.01);
            const double dp = (x[1] < 0.5 ? -1.0 : 1.0) * logarithmic(std::fabs(2 * x[1] - 1), 1e-11, 0.01);
            return water_steps(647.096 + dT, 22.064 + linear(x[2], 0.26, 0.276) * dT + dp);
        }));
    expect_at_most("saturated vapour", 180, 5,
                   slowest::search(1, 3, longer(2000), longer(500), [](const Point& x) {
                       const double T_K = linear(x[0], 273.15, 647.096);
                       const water::ResidualAt residual(water::critical_temperature_K / T_K);
                       return water::solve_density(residual, water::saturated_vapour_problem(T_K)).steps;
                   }));
}

// The tables of the shipped gas data, in memory for the life of a test.
class GasSteps : public testing::Test {
protected:
    void SetUp() override {
        std::snprintf(PATH_SRAM_FOR_LOADTABL, sizeof PATH_SRAM_FOR_LOADTABL, "%s", KALORFIX_GAS_DAT);
        ASSERT_EQ(INIT_GAS(), 0) << KALORFIX_GAS_DAT;
    }
    void TearDown() override { REINIT_GAS(); }
};

// Coordinates 0 and 1 are the state, the others the composition, in mole per cent.
using Percent = std::array<float, gas::component_count>;

Percent pipeline_gas(const Point& x) {
    constexpr std::array<double, 15> most{0, 10, 4, 1, 1, 0.3, 0.3, 0.2, 0.1, 0.1, 15, 10, 0.05, 0.2, 0.5};
    Percent percent{};
    for (std::size_t k = 1; k < percent.size(); ++k) percent[k] = static_cast<float>(x[2 + k] * most[k]);
    percent[0] = 100.0F - std::accumulate(percent.begin() + 1, percent.end(), 0.0F);
    return percent;
}
Percent any_mixture(const Point& x) {
    Percent percent{};
    for (std::size_t k = 0; k < percent.size(); ++k)
        percent[k] = static_cast<float>(std::fmax(0.0, 2.0 * x[2 + k] - 1.0) * 100.0);
    return percent;
}

template <class Isotherm>
int steps(const Isotherm& isotherm, double target, double p_MPa, double critical_MPa) {
    return gas::GasRootSearch(isotherm, target).from(gas::start_density(target, p_MPa, critical_MPa)).points;
}

int aga8_steps(const Percent& percent, double T_K, double p_MPa) {
    namespace aga8 = gas::aga8;
    const gas::Composition mixed = gas::from_mole_percent(percent);
    const aga8::Constants& of = gas::edge::aga8_constants();
    const aga8::Mixture mixture = aga8::mix(mixed, of);
    const aga8::Coefficients c = aga8::term_coefficients(T_K, mixture, of);
    const double target =
        1000.0 * p_MPa / (static_cast<double>(gas::molar_gas_constant) * T_K) * mixture.size_cubed;
    return steps(aga8::isotherm(T_K, mixture, c, of), target, p_MPa, aga8::Isotherm::start_pressure_MPa);
}

int vnic_steps(const Percent& percent, double T_K, double p_MPa) {
    namespace vnic = gas::vnic;
    const vnic::PseudoCritical critical =
        vnic::pseudo_critical(vnic::fold(gas::from_mole_percent(percent).x), gas::edge::vnic_constants(),
                              static_cast<double>(gas::molar_gas_constant));
    vnic::Coefficients c{};
    vnic::equation_coefficients(Akl, Bkl, critical.acentric, c);
    const vnic::Isotherm isotherm(c, T_K / static_cast<double>(critical.temperature));
    const double target =
        1000.0 * p_MPa / (static_cast<double>(gas::molar_gas_constant) * T_K * critical.density);
    return steps(isotherm, target, p_MPa, static_cast<double>(critical.pressure));
}

TEST_F(GasSteps, OfTheMolarDensity) {
    struct Method {
        const char* name;
        int (*steps)(const Percent&, double, double);
        int pipeline_limit, pipeline_median, any_limit, any_median;
    };
    constexpr std::size_t dimensions = 2 + gas::component_count;
    for (const Method& m :
         {Method{"AGA8-92DC", aga8_steps, 6, 5, 200, 6}, Method{"VNIC SMV", vnic_steps, 6, 5, 200, 4}}) {
        SCOPED_TRACE(m.name);
        expect_at_most("pipeline gas", m.pipeline_limit, m.pipeline_median,
                       slowest::search(dimensions, 4, longer(1000), longer(1000), [&](const Point& x) {
                           return m.steps(pipeline_gas(x), linear(x[0], 250.0, 340.0),
                                          linear(x[1], 0.001, 30.0));
                       }));
        expect_at_most("any mixture", m.any_limit, m.any_median,
                       slowest::search(dimensions, 5, longer(1000), longer(1000), [&](const Point& x) {
                           return m.steps(any_mixture(x), linear(x[0], 70.0, 1500.0),
                                          logarithmic(x[1], 1e-6, 100.0));
                       }));
    }
}

// A pipeline on its way through the flow equation, by the members that the exported function uses.
struct Flowing {
    cTeplo2005 c;
    double rho, dp;

    Flowing(unsigned char device, const Point& x) {
        c.device_type = device;
        c.phase = 2;
        c.D = logarithmic(x[0], 0.05, 1.2);
        c.beta = linear(x[1], 0.2, 0.8);
        c.d = c.beta * c.D;
        c.E = 1.0 / std::sqrt(1.0 - std::pow(c.beta, 4));
        c.K_p = 1.0;
        c.epsilon = 0.99;
        c.R_sh = c.R_a = logarithmic(x[2], 1e-7, 1e-3);
        c.mu = logarithmic(x[3], 1e-6, 1e-2);
        rho = logarithmic(x[4], 0.1, 1100.0);
        dp = logarithmic(x[5], 0.1, 1e6);
    }
    bool pass(int number, double q_prev, double& q) {
        const bool accepted = c.Countq_mReCK_sh(number, dp, rho, q_prev) == 1;
        q = c.q_m;
        return accepted;
    }
    flow::FixedPoint solve() {
        return flow::fixed_point(flow::tolerance(1), [this](int number, double q_prev, double& q) {
            return pass(number, q_prev, q);
        });
    }
    [[nodiscard]] std::array<double, 4> left() const { return {c.q_m, c.Re, c.C, c.K_sh}; }
};

int flow_passes(unsigned char device, const Point& x) { return Flowing(device, x).solve().passes; }

// Leaving out whole rounds of a circle changes no bit of what the last pass leaves.
TEST(FixedPoint, LeavesWhatAllPassesWouldLeave) {
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    for (const auto device : std::to_array<unsigned char>({1, 8})) {
        int circles = 0;
        for (int n = 0; n < 40000; ++n) {
            Point x(6);
            for (double& coordinate : x) coordinate = unit(random);
            Flowing shortened(device, x);
            const flow::FixedPoint end = shortened.solve();
            if (end.converged || end.refused || end.passes == flow::max_passes) continue;
            ++circles;
            Flowing whole(device, x);
            double q = 0.0;
            for (int number = 0; number < flow::max_passes; ++number) ASSERT_TRUE(whole.pass(number, q, q));
            ASSERT_EQ(shortened.left(), whole.left()) << "device " << int{device};
        }
        EXPECT_GT(circles, 0) << "device " << int{device};
    }
}

TEST(FixedPoint, EndsAtTheCap) {
    int made = 0;
    const flow::FixedPoint end = flow::fixed_point(1e-3, [&made](int number, double, double& q) {
        ++made;
        q = (number % 2 ? 1.0 : 2.0) + 0.001 * number;  // far from the flow before, never met again
        return true;
    });
    EXPECT_EQ(made, end.passes);
    EXPECT_FALSE(end.converged || end.refused);
}

// Two flows that differ by nearly the tolerance end the solution or do not.
TEST(FixedPoint, EndsAtTheToleranceOfTheClass) {
    const struct {
        unsigned char metering_class;
        double change;
        int passes;
    } rows[] = {
        {0, 0.99999e-3, 2}, {0, 1.00001e-3, 3}, {1, 0.99999e-5, 2}, {1, 1.00001e-5, 3}, {2, 1.00001e-5, 2}};
    for (const auto& row : rows) {
        const flow::FixedPoint end =
            flow::fixed_point(flow::tolerance(row.metering_class), [&](int pass, double, double& q) {
                q = pass == 0 ? 1.0 : 1.0 / (1.0 - row.change);
                return true;
            });
        EXPECT_EQ(end.passes, row.passes) << row.change;
        EXPECT_TRUE(end.converged);
    }
}

TEST(Steps, OfTheFlowEquation) {
    struct Row {
        unsigned char device;
        int limit, median;
    };
    // Where C or the roughness correction has a step, some flows go round in a circle; a few of nozzles never meet again.
    constexpr int cap = flow::max_passes;
    for (const Row& row : {Row{1, cap, 3}, Row{2, cap, 3}, Row{3, cap, 3}, Row{4, cap, 3}, Row{5, 5, 3},
                           Row{6, 3, 2}, Row{7, 5, 2}, Row{8, cap, 2}, Row{9, cap, 2}}) {
        SCOPED_TRACE(row.device);
        expect_at_most("flow", row.limit, row.median,
                       slowest::search(6, 6, longer(5000), longer(1500),
                                       [&](const Point& x) { return flow_passes(row.device, x); }));
    }
}

}  // namespace
