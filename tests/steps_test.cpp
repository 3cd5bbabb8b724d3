// SPDX-License-Identifier: MIT
// The largest number of iteration steps that any input costs, as docs/accuracy.md states them, found by a search at random, then
// uphill from the slowest input. Steps are counted, not seconds: a slow machine changes nothing.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <numeric>
#include <random>
#include <tuple>

#include "flow/fixed_point.h"
#include "gas/aga8.h"
#include "gas/edge/gas_data.h"
#include "gas/vnic_smv.h"
#include "kalorfix.h"
#include "kalorfix_calculators.h"
#include "kalorfix_gas.h"
#include "props/water/density.h"
#include "props/water/saturation.h"

namespace flow = kalorfix::flow;
namespace gas = kalorfix::gas;
namespace water = kalorfix::water;

namespace {

using Point = std::vector<double>;  // of the unit cube, one coordinate an input
double linear(double unit, double low, double high) { return low + unit * (high - low); }
double logarithmic(double unit, double low, double high) { return low * std::pow(high / low, unit); }

double unit() {
    static std::mt19937_64 bits(7);
    return std::uniform_real_distribution<double>(0.0, 1.0)(bits);
}
Point random_point(std::size_t dimensions) {
    Point point(dimensions);
    std::generate(point.begin(), point.end(), unit);
    return point;
}

// `steps(point)` is the work to be made large. KALORFIX_SEARCH=100 in the environment makes the search a hundred times as long.
void expect_at_most(const char* what, int limit, int median, std::size_t dimensions, int samples, int climbs,
                    const std::function<int(const Point&)>& steps) {
    const char* const factor = std::getenv("KALORFIX_SEARCH");
    const int times = factor ? std::max(1, std::atoi(factor)) : 1;
    int most = 0;
    Point slowest;
    const auto consider = [&](const Point& point) {
        const int count = steps(point);
        if (count >= most) most = count, slowest = point;
        return count;
    };
    std::vector<int> seen;
    for (int n = 0; n < samples * times; ++n) seen.push_back(consider(random_point(dimensions)));
    // In one coordinate or in all, by steps of all sizes: the slow inputs lie in spots of all sizes.
    for (int n = 0; n < climbs * times; ++n) {
        Point point = slowest;
        const double reach = std::pow(10.0, -15.0 * unit()),
                     only = unit() * static_cast<double>(dimensions + 1);
        for (std::size_t k = 0; k < dimensions; ++k)
            if (only >= static_cast<double>(dimensions) || only < 1.0 + static_cast<double>(k))
                point[k] = std::clamp(point[k] + reach * (2.0 * unit() - 1.0), 0.0, 1.0);
        consider(point);
    }
    std::nth_element(seen.begin(), seen.begin() + samples * times / 2, seen.end());
    const int found_median = seen[static_cast<std::size_t>(samples * times / 2)];
    std::printf("%-40s at most %d, median %d\n", what, most, found_median);
    EXPECT_LE(most, limit) << what << " at " << testing::PrintToString(slowest);
    EXPECT_LE(found_median, median) << what;
}

int water_steps(double T_K, double p_MPa) {
    const water::ResidualAt residual(water::critical_temperature_K / T_K);
    const water::DensityRoot root =
        water::solve_density(residual, water::single_phase_problem(residual, T_K, p_MPa));
    EXPECT_TRUE(root.found) << T_K << ' ' << p_MPa;
    return root.steps;
}

TEST(Steps, OfTheDensityOfWater) {
    expect_at_most("water, everywhere", 180, 3, 2, 5000, 1500, [](const Point& x) {
        return water_steps(linear(x[0], 273.15, 1073.15), logarithmic(x[1], 1e-6, 100.0));
    });
    // Beside the critical point, on and off its isochore.
    expect_at_most("water, critical point", 180, 25, 3, 5000, 5000, [](const Point& x) {
        const double dT = (x[0] < 0.5 ? -1.0 : 1.0) * logarithmic(std::fabs(2 * x[0] - 1), 1e-9, 0.01);
        const double dp = (x[1] < 0.5 ? -1.0 : 1.0) * logarithmic(std::fabs(2 * x[1] - 1), 1e-11, 0.01);
        return water_steps(647.096 + dT, 22.064 + linear(x[2], 0.26, 0.276) * dT + dp);
    });
    expect_at_most("saturated vapour", 180, 5, 1, 2000, 500, [](const Point& x) {
        const double T_K = linear(x[0], 273.15, 647.096);
        const water::ResidualAt residual(water::critical_temperature_K / T_K);
        return water::solve_density(residual, water::saturated_vapour_problem(T_K)).steps;
    });
}

template <class Isotherm>
int steps(const Isotherm& isotherm, double target, double p_MPa, double critical_MPa) {
    return gas::GasRootSearch(isotherm, target)
        .from(gas::start_density(target, isotherm.second_virial(), p_MPa, critical_MPa))
        .points;
}

int aga8_steps(const gas::Composition& composition, double T_K, double p_MPa) {
    namespace aga8 = gas::aga8;
    const aga8::Constants& of = *gas::edge::aga8_constants();
    const aga8::Mixture mixture = aga8::mix(composition, of);
    const aga8::Coefficients c = aga8::term_coefficients(T_K, mixture, of);
    const double target =
        1000.0 * p_MPa / (static_cast<double>(gas::molar_gas_constant) * T_K) * mixture.size_cubed;
    return steps(aga8::isotherm(T_K, mixture, c, of), target, p_MPa, aga8::Isotherm::start_pressure_MPa);
}

int vnic_steps(const gas::Composition& composition, double T_K, double p_MPa) {
    namespace vnic = gas::vnic;
    const vnic::PseudoCritical critical = vnic::pseudo_critical(
        vnic::fold(composition.x), *gas::edge::vnic_constants(), static_cast<double>(gas::molar_gas_constant));
    vnic::Coefficients c{};
    vnic::equation_coefficients(Akl, Bkl, critical.acentric, c);
    const vnic::Isotherm isotherm(c, T_K / static_cast<double>(critical.temperature));
    const double target =
        1000.0 * p_MPa / (static_cast<double>(gas::molar_gas_constant) * T_K * critical.density);
    return steps(isotherm, target, p_MPa, static_cast<double>(critical.pressure));
}

// Coordinates 0 and 1 are the state, the others the composition.
TEST(Steps, OfTheMolarDensity) {
    constexpr double most[] = {0, 10, 4, 1, 1, 0.3, 0.3, 0.2, 0.1, 0.1, 15, 10, 0.05, 0.2, 0.5};
    std::snprintf(PATH_SRAM_FOR_LOADTABL, sizeof PATH_SRAM_FOR_LOADTABL, "%s", KALORFIX_GAS_DAT);
    ASSERT_EQ(INIT_GAS(), 0) << KALORFIX_GAS_DAT;
    for (const auto method : {aga8_steps, vnic_steps})
        for (const bool pipeline_gas : {true, false})
            expect_at_most(
                pipeline_gas ? "pipeline gas" : "any mixture", pipeline_gas ? 6 : 500, pipeline_gas ? 5 : 7, 17,
                1000, 1000, [&](const Point& x) {
                    std::array<float, gas::component_count> percent{};
                    for (std::size_t k = 0; k < percent.size(); ++k)
                        percent[k] = static_cast<float>(
                            pipeline_gas ? x[2 + k] * most[k] : std::fmax(0.0, 200.0 * x[2 + k] - 100.0));
                    if (pipeline_gas)
                        percent[0] = 100.0F - std::accumulate(percent.begin(), percent.end(), 0.0F);
                    const gas::Composition composition = gas::from_mole_percent(percent);
                    if (pipeline_gas)
                        return method(composition, linear(x[0], 250.0, 340.0), linear(x[1], 0.001, 30.0));
                    return method(composition, linear(x[0], 70.0, 1500.0), logarithmic(x[1], 1e-6, 100.0));
                });
    REINIT_GAS();
}

// A pipeline on its way through the flow equation, by the members that the exported function uses.
struct Flowing {
    cTeplo2005 c;
    double rho, dp;

    Flowing(int device, const Point& x) {
        c.device_type = static_cast<unsigned char>(device);
        c.phase = 2, c.K_p = 1.0, c.epsilon = 0.99;
        c.D = logarithmic(x[0], 0.05, 1.2), c.beta = linear(x[1], 0.2, 0.8), c.d = c.beta * c.D;
        c.E = 1.0 / std::sqrt(1.0 - std::pow(c.beta, 4));
        c.R_sh = c.R_a = logarithmic(x[2], 1e-7, 1e-3);
        c.mu = logarithmic(x[3], 1e-6, 1e-2);
        rho = logarithmic(x[4], 0.1, 1100.0);
        dp = logarithmic(x[5], 0.1, 1e6);
    }
    bool operator()(int number, double q_prev, double& q) {
        const bool accepted = c.Countq_mReCK_sh(number, dp, rho, q_prev) == 1;
        q = c.q_m;
        return accepted;
    }
};

// Where C or the roughness correction has a step, some flows go round in a circle; a few of nozzles never meet again.
TEST(Steps, OfTheFlowEquation) {
    constexpr int cap = flow::max_passes;
    constexpr int limits[] = {cap, cap, cap, cap, 5, 3, 5, cap, cap}, medians[] = {3, 3, 3, 3, 3, 2, 2, 2, 2};
    for (int k = 0; k < 9; ++k)
        expect_at_most(
            ("device " + std::to_string(k + 1)).c_str(), limits[k], medians[k], 6, 5000, 1500,
            [k](const Point& x) { return flow::fixed_point(flow::tolerance(1), Flowing(k + 1, x)).passes; });
}

// Leaving out whole rounds of a circle changes no bit of what the last pass leaves.
TEST(FixedPoint, LeavesWhatAllPassesWouldLeave) {
    for (const int device : {1, 8}) {
        int circles = 0;
        for (int n = 0; n < 40000; ++n) {
            const Point x = random_point(6);
            Flowing shortened(device, x), whole(device, x);
            const flow::FixedPoint end = flow::fixed_point(flow::tolerance(1), shortened);
            if (end.converged || end.refused || end.passes == flow::max_passes) continue;
            ++circles;
            double q = 0.0;
            for (int number = 0; number < flow::max_passes; ++number) ASSERT_TRUE(whole(number, q, q));
            ASSERT_EQ((std::tuple{shortened.c.q_m, shortened.c.Re, shortened.c.C, shortened.c.K_sh}),
                      (std::tuple{whole.c.q_m, whole.c.Re, whole.c.C, whole.c.K_sh}));
        }
        EXPECT_GT(circles, 0) << "device " << device;
    }
}

// At the cap, when no two flows are near or the same; within the tolerance of the class.
TEST(FixedPoint, EndsAtTheCapAndAtTheTolerance) {
    int made = 0;
    const flow::FixedPoint end = flow::fixed_point(1e-3, [&made](int number, double, double& q) {
        ++made;
        q = (number % 2 ? 1.0 : 2.0) + 0.001 * number;
        return true;
    });
    EXPECT_EQ(made, end.passes);
    EXPECT_FALSE(end.converged || end.refused);
    const struct {
        unsigned char metering_class;
        double change;
        int passes;
    } rows[] = {
        {0, 0.99999e-3, 2}, {0, 1.00001e-3, 3}, {1, 0.99999e-5, 2}, {1, 1.00001e-5, 3}, {2, 1.00001e-5, 2}};
    for (const auto& row : rows) {
        const auto pass = [&row](int number, double, double& q) {
            q = number == 0 ? 1.0 : 1.0 / (1.0 - row.change);
            return true;
        };
        EXPECT_EQ(flow::fixed_point(flow::tolerance(row.metering_class), pass).passes, row.passes)
            << row.change;
    }
}

}  // namespace
