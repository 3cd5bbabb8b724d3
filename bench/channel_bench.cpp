// SPDX-License-Identifier: MIT
// One flow solution for each family of devices, and a whole heat-carrier cycle through the exports.
#include <benchmark/benchmark.h>

#include "bench/registers.h"
#include "kalorfix.h"

namespace {

struct Family {
    const char* name;
    short device;
    float D20_mm, d20_mm, dp_Pa, roughness_mm = 0.1F;
};
constexpr Family families[] = {
    {"orifice_corner", 1, 300, 180, 40000},
    {"orifice_flange", 3, 300, 180, 40000},
    {"orifice_smooth_pipe", 3, 300, 180, 40000, 0.02F},
    {"isa1932_nozzle", 4, 300, 180, 40000},
    {"long_radius_nozzle", 5, 300, 180, 40000},
    {"venturi_nozzle", 6, 300, 180, 10000},
    {"venturi_cast", 7, 300, 180, 40000},
    {"venturi_machined", 8, 200, 120, 40000},
    {"averaging", 14, 300, 20, 2000},
    {"configured", 19, 300, 20, 2000},
};

struct Channel {
    inline static int made = 0;
    int index = ++made;  // one channel each: the first configuration of a class 1 channel stays
    float rho = 0.0F, mu = 0.0F, h = 0.0F, kappa = 0.0F;
    char status = 0;
    kalorfix::bench::Registers registers;

    explicit Channel(const Family& f) {
        mt_init_tr(index, 1, f.device, 1, 9, 31, f.D20_mm, f.d20_mm, f.roughness_mm, 0.05F, 0, 1, 0.6F,
                   &status);
    }
    void prepare(float t_C, float p_Pa) {
        short phase = 0;
        float ps = 0.0F, ts = 0.0F, g[5];
        mt_param_tn(index, t_C, p_Pa, 0, 0, 1000, 1, &status, &phase, &ps, &ts);
        mt_tf_param(index, 0, 0, 0, &status, &rho, &mu, &h, &kappa);
        mt_param_tr(index, &status, &g[0], &g[1], &g[2], &g[3], &g[4]);
    }
    char flow(float dp_Pa) {
        float r[7];
        mt_mgn_param(index, 1, dp_Pa, rho, h, &status, &r[0], &r[1], &r[2], &r[3], &r[4], &r[5], &r[6]);
        benchmark::DoNotOptimize(r);
        return status;
    }
    bool totalise() {
        return registers.add_up(mt_int_param, index, kalorfix::bench::heat_integrators) &&
               registers.carry_on(mt_int_param_1, index, kalorfix::bench::heat_integrators);
    }
};

void flow(benchmark::State& run, const Family& family) {
    Channel channel(family);
    channel.prepare(300.0F, 1.2e6F);
    // A flow leaves the channel valid, so it can be solved again and again.
    for (auto _ : run)
        if (channel.flow(family.dp_Pa) != 1) run.SkipWithError("refused");
}

void heat_cycle(benchmark::State& run, float t_C, float p_Pa) {
    Channel channel(families[1]);
    for (auto _ : run) {
        channel.prepare(t_C, p_Pa);
        if (channel.flow(40000.0F) != 1 || !channel.totalise()) run.SkipWithError("refused");
    }
}

int register_all() {
    for (const Family& family : families)
        benchmark::RegisterBenchmark((std::string("flow/") + family.name).c_str(), flow, family);
    benchmark::RegisterBenchmark("heat_cycle/steam", heat_cycle, 300.0F, 1.2e6F);
    benchmark::RegisterBenchmark("heat_cycle/water", heat_cycle, 90.0F, 0.8e6F);
    return 0;
}
[[maybe_unused]] const int registered = register_all();

}  // namespace
