// SPDX-License-Identifier: MIT
// The combined uncertainty beside a Monte Carlo over the library with the same inputs, and how amounts add.
#include "tools/metering/uncertainty.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "tools/metering/flow.h"
#include "tools/runtime.h"

namespace kalorfix::metering {
namespace {

struct Case {
    const char* name;
    Point point;
    Reading reading;
};

Point plate(Medium medium) {
    return {{.device = 3,
             .pipe_material = 7,
             .device_material = 32,
             .D20_mm = 400,
             .d20_mm = 220,
             .roughness_mm = 0.05,
             .edge_radius_mm = 0.05,
             .interval_years = 1},
            {},
            std::move(medium)};
}

Gas by_composition() {
    Gas gas{.method = KALORFIX_AGA8_92DC};
    gas.x = {96.5, 1.8, 0.45, 0.1, 0.1, 0.03, 0.05, 0.07, 0, 0, 0.3, 0.6, 0, 0, 0};
    return gas;
}

Gas by_density() {
    Gas gas{.method = KALORFIX_GERG91, .rho_c = 0.6799};
    gas.x[10] = 0.8858;
    gas.x[11] = 0.0668;
    return gas;
}

const Case cases[] = {
    {"by composition", plate(by_composition()), {15, 5.5e6, 5000}},
    {"by density", plate(by_density()), {8, 1.2e6, 16000}},
    {"steam",
     {{.device = 4,
       .pipe_material = 7,
       .device_material = 32,
       .D20_mm = 300,
       .d20_mm = 180,
       .roughness_mm = 0.1},
      {},
      HeatCarrier{}},
     {300, 1.2e6, 40000}},
};

Instruments instruments() {
    Instruments all;
    all.dp = {.range = 40e3, .class_pct = 0.075};
    all.p = {.range = 10e6, .class_pct = 0.075};
    all.t.error = 0.5;
    all.C_pct = 0.1;  // so that the others show
    all.D_pct = 0.4, all.d_pct = 0.07, all.K_pct = 0.2, all.rho_c_pct = 0.3, all.rho_pct = 0.2,
    all.heat_pct = 0.2;
    all.x_mol_pct = 0.01, all.x_rel_pct = 10.0;
    return all;
}

// The flows of one draw: every input off by a normal deviate with half its expanded uncertainty.
class Draw {
public:
    Draw(const Case& what, const Instruments& stated, const Budget& budget)
        : case_(what),
          i_(stated),
          C_pct_(budget.entries[0].expanded),
          epsilon_pct_(budget.entries[1].expanded) {}

    Flows operator()(const host::Library& library) {
        Point point = case_.point;
        Reading at = case_.reading;
        point.pipe.D20_mm *= factor(*i_.D_pct);
        point.pipe.d20_mm *= factor(*i_.d_pct);
        at.t_C += *i_.t.error * half_normal();
        at.p_Pa += *i_.p.expanded() * half_normal();
        at.dp_Pa += *i_.dp.expanded() * half_normal();
        Gas* const gas = std::get_if<Gas>(&point.medium);
        const bool density = gas && gas->method == KALORFIX_GERG91;
        if (gas) vary(*gas, density);
        Properties medium = properties_at(library, point, at.t_C, at.p_Pa);
        if (!gas) medium.rho *= factor(*i_.rho_pct);
        if (gas) medium.rho /= factor(*i_.K_pct);
        if (gas && !density) {
            const double f = factor(*i_.rho_c_pct);
            // The lower heat of combustion by density. GOST 30319.1-96, 7.1.
            medium.energy_MJ_m3 += 85.453 * 0.52190 * medium.rho_c * (f - 1.0);
            medium.rho *= f;
            medium.rho_c *= f;
        }
        const FlowResult flow = flow_at(library, point, medium, at.dp_Pa);
        EXPECT_TRUE(flow.accepted());
        const double both = factor(C_pct_) * factor(epsilon_pct_);
        return {both * flow.mass_th, both * flow.standard_m3h, both * flow.energy_GJh * factor(*i_.heat_pct)};
    }

private:
    double half_normal() { return normal_(random_) / coverage; }
    double factor(double pct) { return 1.0 + pct / 100.0 * half_normal(); }
    void vary(Gas& gas, bool density) {
        if (density) gas.rho_c *= factor(*i_.rho_c_pct);
        for (std::size_t k = 1; k < gas.x.size(); ++k) {
            if (gas.x[k] == 0.0) continue;
            const double off = (*i_.x_mol_pct + *i_.x_rel_pct / 100.0 * gas.x[k]) * half_normal();
            gas.x[k] += off;
            if (!density) gas.x[0] -= off;
        }
    }
    const Case& case_;
    const Instruments& i_;
    double C_pct_, epsilon_pct_;
    std::mt19937_64 random_{19};
    std::normal_distribution<double> normal_;
};

TEST(Uncertainty, AgreesWithAMonteCarlo) {
    constexpr int draws = 100'000;
    const double statistical = 1.0 / std::sqrt(2.0 * draws);
    const host::Runtime runtime(KALORFIX_GAS_DAT);
    const host::Library library(KALORFIX_LIBRARY);
    library->Init();
    const Instruments stated = instruments();
    for (const Case& one : cases) {
        const Budget budget = budget_of(library, one.point, stated, one.reading);
        ASSERT_TRUE(budget.accepted()) << budget.refused;
        Draw draw(one, stated, budget);
        Flows sum{}, squares{};
        for (int n = 0; n < draws; ++n) {
            const Flows flows = draw(library);
            for (std::size_t k = 0; k < flows.size(); ++k) {
                const double off = budget.flow[k] > 0.0 ? flows[k] / budget.flow[k] - 1.0 : 0.0;
                sum[k] += off;
                squares[k] += off * off;
            }
        }
        for (std::size_t k = 0; k < sum.size(); ++k) {
            if (!(budget.flow[k] > 0.0)) continue;
            const double deviation = std::sqrt(squares[k] / draws - std::pow(sum[k] / draws, 2));
            const double ratio = *expanded_pct(budget, k) / 100.0 / (coverage * deviation);
            EXPECT_NEAR(ratio, 1.0, 3.0 * statistical) << one.name << ", flow " << k;
        }
    }
    library->Done();
}

// Contributions add with the amounts as weights, however many readings there are.
TEST(Uncertainty, IsSystematicOverTime) {
    Budget small{.flow = {1, 0, 0},
                 .entries = {{.standing = Standing::stated, .sensitivity = {1}, .contribution = {4}}}};
    Budget large{.flow = {3, 0, 0},
                 .entries = {{.standing = Standing::stated, .sensitivity = {-1}, .contribution = {2}}}};
    Budget outside = large;
    outside.entries[0].standing = Standing::outside;
    Period period;
    for (int n = 0; n < 100; ++n) period.add(small, 0.5), period.add(large, 0.5);
    EXPECT_NEAR(*expanded_pct(period.budget(), 0), (1 * 4 + 3 * 2) / 4.0, 1e-12);
    EXPECT_NEAR(period.budget().flow[0], 200.0, 1e-9);
    period.add(outside, 100.0);
    EXPECT_NEAR(*expanded_pct(period.budget(), 0), 2.5, 1e-12);
    EXPECT_NEAR(period.uncovered(0), 0.6, 1e-12);
}

}  // namespace
}  // namespace kalorfix::metering
