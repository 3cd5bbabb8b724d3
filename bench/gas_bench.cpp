// SPDX-License-Identifier: MIT
// The compressibility methods and what goes with them, on a composition that is new each time, and a whole gas cycle through
// the exports. The gas data file comes from the environment variable KALORFIX_GAS_DAT or stands beside the benchmark's build.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "bench/registers.h"
#include "gas/aga8.h"
#include "gas/edge/module_state.h"
#include "kalorfix.h"
#include "kalorfix_gas.h"
#include "kalorfix_runtime.h"

namespace aga8 = kalorfix::gas::aga8;

namespace {

void load() {
    if (V_Mi) return;
    const char* const given = std::getenv("KALORFIX_GAS_DAT");
    std::snprintf(PATH_SRAM_FOR_LOADTABL, sizeof PATH_SRAM_FOR_LOADTABL, "%s",
                  given ? given : KALORFIX_GAS_DAT);
    INIT_GAS();
}

// Twelve components; the shares wander, so that no call sees the composition of the one before.
void set_composition(int round) {
    const float shift = 0.001F * static_cast<float>(round % 64);
    PF1_1(90.6724F - shift, 4.5279F + shift, 0.828F, 0.1563F, 0.1037F, 0.0443F, 0.0321F, 0.0393F, 0.01F, 0.01F,
          3.1084F, 0.4676F, 0, 0, 0);
}

constexpr float T_K = 283.15F;
constexpr float p_MPa = 6.0F;

void by_density(benchmark::State& run, float (*method)(float, float, float, float, float, float, short&)) {
    short failed = 0;
    float rho_c = 0.7F;
    for (auto _ : run) {
        rho_c = rho_c < 0.8F ? rho_c + 0.001F : 0.7F;
        benchmark::DoNotOptimize(method(T_K, 0.0F, p_MPa, 1.0F, 0.5F, rho_c, failed));
    }
    if (failed) run.SkipWithError("failed");
}

void by_composition(benchmark::State& run, float (*method)(float, float, float, short&)) {
    load();
    short failed = 0;
    int round = 0;
    for (auto _ : run) {
        set_composition(++round);
        benchmark::DoNotOptimize(method(T_K, 0.0F, p_MPa, failed));
    }
    if (failed) run.SkipWithError("failed");
}

void composition_alone(benchmark::State& run) {
    int round = 0;
    for (auto _ : run) {
        set_composition(++round);
        benchmark::DoNotOptimize(Xi);
    }
}

// The yardstick of PF3_3: as many evaluations of its 46 density terms as the iteration at this state needs, term by term
// with an exponential each but without the general power function, and nothing else.
constexpr int evaluations = 10;

void bare_density_terms(benchmark::State& run) {
    load();
    set_composition(1);
    short failed = 0;
    PF3_3(T_K, 0.0F, p_MPa, failed);
    double r = 0.1;
    for (auto _ : run)
        for (int k = 0; k < evaluations; ++k) {
            double power[10] = {1.0};
            for (int b = 1; b < 10; ++b) power[b] = power[b - 1] * r;
            double S = 0.0;
            double D = 0.0;
            for (int n = 7; n < 53; ++n) {
                const auto b = static_cast<int>(bn[n]);
                const auto order = static_cast<int>(kn[n]);
                const double c = static_cast<double>(cn[n]);
                const double s = c * order * power[order];
                const double part = static_cast<double>(C[n]) * power[b] * std::exp(-c * power[order]);
                S += part * (b - s);
                D += part * (b * b - s * (order + 2 * b - s));
            }
            benchmark::DoNotOptimize(S);
            benchmark::DoNotOptimize(D);
            r = r < 0.2 ? r + 1e-6 : 0.1;
        }
}

// The same evaluations as the library does them.
void collapsed_density_terms(benchmark::State& run) {
    load();
    set_composition(1);
    short failed = 0;
    PF3_3(T_K, 0.0F, p_MPa, failed);
    const aga8::DensityLayout layout = aga8::density_layout({an, bn, cn, kn, un, gn, qn, fn});
    aga8::Coefficients coefficients{};
    std::copy(C, C + aga8::term_count, coefficients.begin());
    const aga8::Isotherm isotherm(layout, coefficients, 0.0, 1.0);
    double r = 0.1;
    for (auto _ : run)
        for (int k = 0; k < evaluations; ++k) {
            benchmark::DoNotOptimize(isotherm.at(r));
            r = r < 0.2 ? r + 1e-6 : 0.1;
        }
}

void properties(benchmark::State& run) {
    load();
    set_composition(1);
    short failed = 0;
    PF3_4(T_K, 0.0F, p_MPa, failed);
    for (auto _ : run) {
        benchmark::DoNotOptimize(PF5(0));
        benchmark::DoNotOptimize(PF6());
    }
}

struct Channel {
    int index;
    char status = 0;
    kalorfix::bench::Registers registers;

    explicit Channel(int number) : index(number) {
        mg_init_tr(index, 1, 3, 1, 7, 32, 250, 150, 0.05F, 0.05F, 0, 1, 0, &status);
    }
    bool find_flow(short method) {
        float sum = 0, ratio = 0, rho_c = 0, rho = 0, mu = 0, kappa = 0, low = 0, high = 0, r[8];
        mg_param_gs(index, 10.0F, 6e6F, 0, 0, method, 0, 90.7F, 4.5F, 0.8F, 0.2F, 0.1F, 0.05F, 0.05F, 0.04F, 0,
                    0, 3.1F, 0.46F, 0, 0, 0, 0.735F, &status, &sum, &ratio, &rho_c);
        mg_tf_param(index, 0, 0, 0, &status, &rho, &mu, &kappa, &low, &high);
        mg_param_tr(index, &status, r, r + 1, r + 2, r + 3, r + 4);
        mg_mgn_param(index, 1, 20000.0F, rho, rho_c, low, &status, r, r + 1, r + 2, r + 3, r + 4, r + 5, r + 6,
                     r + 7);
        benchmark::DoNotOptimize(r);
        return status == 1;
    }
    bool totalise() {
        return registers.add_up(mg_int_param, index, kalorfix::bench::gas_integrators) &&
               registers.carry_on(mg_int_param_1, index, kalorfix::bench::gas_integrators);
    }
};

void cycle(benchmark::State& run, short method) {
    load();
    Channel channel(1 + method);
    for (auto _ : run)
        if (!channel.find_flow(method) || !channel.totalise()) run.SkipWithError("refused");
}

// What the totals are of a cycle, and the four readings of the clock of them.
void totals(benchmark::State& run) {
    load();
    Channel channel(5);
    if (!channel.find_flow(2)) run.SkipWithError("refused");
    for (auto _ : run)
        if (!channel.totalise()) run.SkipWithError("refused");
}
void clock_alone(benchmark::State& run) {
    for (auto _ : run)
        for (int k = 0; k < kalorfix::bench::gas_integrators; ++k) benchmark::DoNotOptimize(abs_clock());
}

BENCHMARK_CAPTURE(by_density, nx19, NF1_1);
BENCHMARK_CAPTURE(by_density, gerg91, NF1_2);
BENCHMARK_CAPTURE(by_composition, aga8, PF3_3);
BENCHMARK_CAPTURE(by_composition, vnic_smv, PF3_4);
BENCHMARK(composition_alone);
BENCHMARK(bare_density_terms);
BENCHMARK(collapsed_density_terms);
BENCHMARK(properties);
BENCHMARK_CAPTURE(cycle, nx19, static_cast<short>(0))->Name("gas_cycle/nx19");
BENCHMARK_CAPTURE(cycle, gerg91, static_cast<short>(1))->Name("gas_cycle/gerg91");
BENCHMARK_CAPTURE(cycle, aga8, static_cast<short>(2))->Name("gas_cycle/aga8");
BENCHMARK_CAPTURE(cycle, vnic_smv, static_cast<short>(3))->Name("gas_cycle/vnic_smv");
BENCHMARK(totals)->Name("gas_cycle/4_totals_8_intervals");
BENCHMARK(clock_alone)->Name("gas_cycle/4_abs_clock");

}  // namespace
