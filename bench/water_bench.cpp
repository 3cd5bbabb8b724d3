// t_param_1 beside the sums that it cannot do without.
//
// For each state: the routine itself; `bare`, the strength-reduced residual sums that its Newton steps and its
// property step need, and nothing else; `naive`, the same sums evaluated selector by selector with the general
// power function.
#include <benchmark/benchmark.h>

#include <cmath>

#include "kalorfix.h"
#include "props/water/density.h"
#include "props/water/saturation.h"

namespace water = kalorfix::water;

namespace {

struct State {
    const char* name;
    double t_C, p_MPa;
    short mode;
};
constexpr State states[] = {
    {"liquid", 80.0, 0.6, 1},
    {"vapour", 300.0, 1.2, 2},
    {"supercritical", 450.0, 30.0, 1},
    {"saturated_vapour", 180.0, 1.0, 3},
};

struct Work {
    double tau, delta;
    int steps;
};

// The temperature, the root and the number of Newton steps of a state.
Work work_of(const State& s) {
    const double T_K = s.t_C + 273.15;
    const double theta = T_K / water::critical_temperature_K;
    const double ps = s.mode == 3 || theta < 1.0 ? water::saturation_pressure_MPa(T_K) : 0.0;
    const double p = s.mode == 3 ? ps : s.p_MPa;
    const double target = water::ideal_reduced_density * p / water::critical_pressure_MPa / theta;
    double start = target;
    if (s.mode == 3)
        start = water::saturated_vapour_density_kgm3(T_K) / water::critical_density_kgm3;
    else if (theta < 1.0 && p >= ps)
        start = 3.2;
    else if (theta >= 1.0 && p >= 1.05 * water::critical_pressure_MPa)
        start = 9.0 * target / (1.1 * p / water::critical_pressure_MPa + 0.7);
    const water::ResidualAt residual(1.0 / theta);
    const water::DensityRoot root = water::solve_density(residual, {target, start});
    return {1.0 / theta, root.delta, root.steps};
}

void t_param(benchmark::State& run, const State& s) {
    double t_C = s.t_C, rho = 0.0, mu = 0.0, h = 0.0, kappa = 0.0;
    for (auto _ : run) {
        benchmark::DoNotOptimize(t_C);
        t_param_1(t_C, s.p_MPa, s.mode, &rho, &mu, &h, &kappa);
        benchmark::DoNotOptimize(kappa);
    }
}

void bare(benchmark::State& run, const State& s) {
    Work work = work_of(s);
    for (auto _ : run) {
        benchmark::DoNotOptimize(work);
        const water::ResidualAt residual(work.tau);
        for (int k = 0; k < work.steps; ++k) {
            water::DensityDerivatives step = residual.density_derivatives(work.delta);
            benchmark::DoNotOptimize(step);
        }
        water::Helmholtz all = residual.all(work.delta);
        benchmark::DoNotOptimize(all);
    }
    run.counters["newton_steps"] = work.steps;
}

// One selector: the sum of all terms times their factors, powers by pow.
double selector(double delta, double tau) {
    double sum = 0.0;
    for (const water::PowerTerm& k : water::power_terms) {
        const double decay = k.c == 0 ? 1.0 : std::exp(-std::pow(delta, k.c));
        sum += k.n * std::pow(delta, k.d) * std::pow(tau, k.t) * decay * (k.d - k.c * std::pow(delta, k.c));
    }
    for (const water::GaussianTerm& k : water::gaussian_terms)
        sum += k.n * std::pow(delta, 3) * std::pow(tau, k.t) *
               std::exp(-20.0 * (delta - 1.0) * (delta - 1.0) - k.beta * (tau - k.gamma) * (tau - k.gamma));
    for (const water::NonanalyticTerm& k : water::nonanalytic_terms) {
        const double y = (delta - 1.0) * (delta - 1.0);
        const double theta = 1.0 - tau + 0.32 * std::pow(y, 1.0 / 0.6);
        sum += k.n * std::pow(theta * theta + 0.2 * std::pow(y, 3.5), k.b) * delta *
               std::exp(-k.C * y - k.D * (tau - 1.0) * (tau - 1.0));
    }
    return sum;
}

void naive(benchmark::State& run, const State& s) {
    Work work = work_of(s);
    for (auto _ : run) {
        benchmark::DoNotOptimize(work);
        for (int k = 0; k < 2 * work.steps + 5; ++k) {
            double value = selector(work.delta, work.tau);
            benchmark::DoNotOptimize(value);
        }
    }
}

int register_all() {
    for (const State& s : states) {
        const std::string name = s.name;
        benchmark::RegisterBenchmark(("t_param_1/" + name).c_str(), t_param, s);
        benchmark::RegisterBenchmark(("bare_sums/" + name).c_str(), bare, s);
        benchmark::RegisterBenchmark(("naive_sums/" + name).c_str(), naive, s);
    }
    return 0;
}
[[maybe_unused]] const int registered = register_all();

}  // namespace
