// SPDX-License-Identifier: MIT
// kalorfix.so beside other libraries that compute the same published equations, in one process and one run: t_param_1 beside
// SEUIF97 (IAPWS-IF97), PF3_3 beside NIST's AGA8 "Detail". Their sources are not part of this project; CMake is told where
// checkouts of them lie (KALORFIX_SEUIF97, KALORFIX_AGA8), and leaves out what it is not told.
#include <benchmark/benchmark.h>

#include <cmath>
#include <string>
#include <vector>

#include "bench/yardsticks.h"
#include "tools/host.h"
#include "tools/runtime.h"

#ifdef KALORFIX_AGA8
#include "Detail.h"
#endif
#ifdef KALORFIX_SEUIF97
#include "src/common/seuif97.h"
#endif

namespace bench = kalorfix::bench;

namespace {

const kalorfix::host::Library& library() {
    struct Host {
        kalorfix::host::Runtime runtime{KALORFIX_GAS_DAT};
        kalorfix::host::Library library{KALORFIX_LIBRARY};
        Host() { library->Init(); }
        ~Host() { library->Done(); }
    };
    static const Host host;
    return host.library;
}

#ifdef KALORFIX_SEUIF97
struct State {
    const char* name;
    double t_C, p_MPa;
    short mode;  // 1 by temperature and pressure, 3 saturated vapour
};
constexpr State states[] = {
    {"liquid 80 degC 0.6 MPa", 80, 0.6, 1},        {"liquid 250 degC 10 MPa", 250, 10, 1},
    {"vapour 300 degC 1.2 MPa", 300, 1.2, 1},      {"vapour 400 degC 10 MPa", 400, 10, 1},
    {"vapour 450 degC 30 MPa", 450, 30, 1},        {"supercritical 380 degC 25 MPa", 380, 25, 1},
    {"supercritical 400 degC 30 MPa", 400, 30, 1}, {"saturated vapour 180 degC", 180, 1, 3},
};

void ours(benchmark::State& run, const State& s) {
    double t_C = s.t_C, rho = 0, mu = 0, h = 0, kappa = 0;
    for (auto _ : run) {
        benchmark::DoNotOptimize(t_C);
        library()->t_param_1(t_C, s.p_MPa, s.mode, &rho, &mu, &h, &kappa);
        benchmark::DoNotOptimize(kappa);
    }
    run.counters["density"] = rho;
}

// The same four properties: density, enthalpy, isentropic exponent, viscosity.
void seuif97(benchmark::State& run, const State& s) {
    constexpr int properties[] = {2, 4, 11, 24};
    double t_C = s.t_C, value[4];
    for (auto _ : run) {
        benchmark::DoNotOptimize(t_C);
        for (int k = 0; k < 4; ++k)
            value[k] = s.mode == 3 ? tx(t_C, 1, properties[k]) : pt(s.p_MPa, t_C, properties[k]);
        benchmark::DoNotOptimize(value);
    }
    run.counters["density"] = value[0];
}
#endif

#ifdef KALORFIX_AGA8
// 11 components of a pipeline gas, or all 15 of the gas data file; a new one each time, or the same again.
struct Gas {
    const char* name;
    bool all, changing;
};
constexpr Gas gases[] = {{"11 components, new", false, true},
                         {"15 components, new", true, true},
                         {"11 components, unchanged", false, false},
                         {"15 components, unchanged", true, false}};

bench::Percent percent(const Gas& gas, int round) {
    bench::Percent mixture = bench::gas_of(gas.changing ? round : 0);
    if (gas.all)
        for (const std::size_t i : {9U, 12U, 13U, 14U}) mixture.x[i] = 0.01F;
    return mixture;
}

void ours(benchmark::State& run, const Gas& gas) {
    short failed = 0;
    float K = 0.0F;
    int round = 0;
    for (auto _ : run) {
        const bench::Percent g = percent(gas, ++round);
        const float* const x = g.x;
        if (gas.changing || round == 1)
            library()->PF1_1(x[0], x[1], x[2], x[3], x[4], x[5], x[6], x[7], x[8], x[9], x[10], x[11], x[12],
                             x[13], x[14]);
        K = library()->PF3_3(bench::gas_T_K, 0, bench::gas_p_MPa, failed);
        benchmark::DoNotOptimize(K);
    }
    run.counters["K"] = static_cast<double>(K);
}

void nist(benchmark::State& run, const Gas& gas) {
    // Places of our components in theirs: methane to n-octane, nitrogen, carbon dioxide, hydrogen sulphide, helium, hydrogen.
    constexpr std::size_t place[] = {1, 4, 5, 7, 6, 9, 8, 10, 11, 12, 2, 3, 19, 20, 15};
    SetupDetail();
    std::vector<double> x(22, 0.0);
    const auto set = [&](int round) {
        const bench::Percent g = percent(gas, round);
        double sum = 0.0;
        for (const float share : g.x) sum += static_cast<double>(share);
        for (std::size_t i = 0; i < 15; ++i) x[place[i]] = static_cast<double>(g.x[i]) / sum;
    };
    set(0);
    double D = 0.0;
    int failed = 0, round = 0;
    std::string message;
    for (auto _ : run) {
        if (gas.changing) set(++round);
        DensityDetail(static_cast<double>(bench::gas_T_K), 1000.0 * static_cast<double>(bench::gas_p_MPa), x, D,
                      failed, message);
        benchmark::DoNotOptimize(D);
    }
    run.counters["Z"] =
        1000.0 * static_cast<double>(bench::gas_p_MPa) / (D * 8.31451 * static_cast<double>(bench::gas_T_K));
}
#endif

int register_all() {
#ifdef KALORFIX_SEUIF97
    for (const State& s : states) {
        benchmark::RegisterBenchmark((std::string("t_param_1/") + s.name).c_str(),
                                     [&s](benchmark::State& run) { ours(run, s); });
        benchmark::RegisterBenchmark((std::string("SEUIF97/") + s.name).c_str(), seuif97, s);
    }
#endif
#ifdef KALORFIX_AGA8
    for (const Gas& g : gases) {
        benchmark::RegisterBenchmark((std::string("PF3_3/") + g.name).c_str(),
                                     [&g](benchmark::State& run) { ours(run, g); });
        benchmark::RegisterBenchmark((std::string("DensityDetail/") + g.name).c_str(), nist, g);
    }
#endif
    return 0;
}
[[maybe_unused]] const int registered = register_all();

}  // namespace
