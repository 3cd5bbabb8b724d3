// SPDX-License-Identifier: MIT
// t_param_1 beside the sums that it cannot do without.
//
// For each state: the routine itself; `bare_sums`, the strength-reduced residual sums that its Newton steps and its
// property step need, and nothing else; `by_power`, the same sums evaluated selector by selector with the general
// power function.
#include <benchmark/benchmark.h>

#include <string>

#include "bench/if97.h"
#include "bench/yardsticks.h"
#include "kalorfix.h"

namespace bench = kalorfix::bench;

namespace {

void t_param(benchmark::State& run, const bench::WaterState& s) {
    double t_C = s.t_C, rho = 0.0, mu = 0.0, h = 0.0, kappa = 0.0;
    for (auto _ : run) {
        benchmark::DoNotOptimize(t_C);
        t_param_1(t_C, s.p_MPa, s.mode, &rho, &mu, &h, &kappa);
        benchmark::DoNotOptimize(kappa);
    }
}

void sums(benchmark::State& run, const bench::WaterState& s, double (*evaluate)(const bench::WaterRoot&)) {
    bench::WaterRoot root = bench::water_root(s);
    for (auto _ : run) {
        benchmark::DoNotOptimize(root);
        benchmark::DoNotOptimize(evaluate(root));
    }
    run.counters["newton_steps"] = root.steps;
}

void if97(benchmark::State& run, const bench::WaterState& s, bench::If97 (*evaluate)(double, double)) {
    double T_K = s.t_C + 273.15;
    for (auto _ : run) {
        benchmark::DoNotOptimize(T_K);
        benchmark::DoNotOptimize(evaluate(T_K, s.p_MPa));
    }
}

int register_all() {
    for (const bench::WaterState& s : bench::water_states) {
        const std::string name = std::string("/") + s.name;
        benchmark::RegisterBenchmark(("t_param_1" + name).c_str(), t_param, s);
        benchmark::RegisterBenchmark(("bare_sums" + name).c_str(), sums, s, bench::bare_water);
        benchmark::RegisterBenchmark(("by_power" + name).c_str(), sums, s, bench::water_by_power);
    }
    benchmark::RegisterBenchmark("if97/liquid", if97, bench::water_states[0], bench::if97_liquid);
    benchmark::RegisterBenchmark("if97/vapour", if97, bench::water_states[1], bench::if97_steam);
    return 0;
}
[[maybe_unused]] const int registered = register_all();

}  // namespace
