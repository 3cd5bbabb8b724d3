// SPDX-License-Identifier: MIT
// One pass over many channels of mixed kinds through the exports, the first touch of all channels, and the life of the library
// in a process: load, Init, Done, unload.
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <unistd.h>

#include <cstdio>
#include <iterator>
#include <memory>
#include <vector>

#include "bench/registers.h"
#include "bench/yardsticks.h"
#include "tools/host.h"
#include "tools/runtime.h"

namespace bench = kalorfix::bench;
using kalorfix::host::Library;
using kalorfix::host::Runtime;

namespace {

// Orifice, nozzle, Venturi tube, averaging device, volume meter.
constexpr short devices[] = {1, 3, 4, 7, 14, 20};
constexpr int most_channels = 20000;

short device_of(int channel) { return devices[static_cast<std::size_t>(channel) % std::size(devices)]; }

// One half of the channels carries gas, the other heat.
struct Host {
    Runtime runtime{KALORFIX_GAS_DAT};
    Library library{KALORFIX_LIBRARY};
    std::vector<bench::Registers> registers{most_channels + 1};
    int refused = 0;
    char status = 0;
    float r[8]{};

    Host() { library->Init(); }
    ~Host() { library->Done(); }

    void set_up(int channel) {
        auto* const init = channel % 2 ? library->mg_init_tr : library->mt_init_tr;
        init(channel, 1, device_of(channel), 1, 9, 31, 300, 180, 0.02F, 0.05F, 0, 1, 0, &status);
    }

    void gas(int channel) {
        float rho = 0, rho_c = 0, heat = 0;
        const bench::Percent g = bench::gas_of(channel);
        const float* const x = g.x;
        // The four methods, of which AGA8-92DC is the dearest.
        const auto method = static_cast<short>(channel / 2 % 4);
        library->mg_param_gs(channel, 10, 6e6F, 0, 0, method, 0, x[0], x[1], x[2], x[3], x[4], x[5], x[6], x[7],
                             x[8], x[9], x[10], x[11], x[12], x[13], x[14], 0.735F, &status, r, r + 1, &rho_c);
        library->mg_tf_param(channel, 0, 0, 0, &status, &rho, r + 1, r + 2, &heat, r + 4);
        library->mg_param_tr(channel, &status, r, r + 1, r + 2, r + 3, r + 4);
        library->mg_mgn_param(channel, 1, 20000, rho, rho_c, heat, &status, r, r + 1, r + 2, r + 3, r + 4,
                              r + 5, r + 6, r + 7);
        refused += status != 1;
        bench::Registers& kept = registers[static_cast<std::size_t>(channel)];
        refused += !kept.add_up(library->mg_int_param, channel, bench::gas_integrators);
        refused += !kept.carry_on(library->mg_int_param_1, channel, bench::gas_integrators);
    }

    void heat(int channel) {
        short phase = 0;
        float rho = 0, h = 0;
        const bool steam = channel % 4 == 0;
        library->mt_param_tn(channel, steam ? 300.0F : 90.0F, 1.2e6F, 0, 0, 1000, 1, &status, &phase, r, r + 1);
        library->mt_tf_param(channel, 0, 0, 0, &status, &rho, r + 1, &h, r + 3);
        library->mt_param_tr(channel, &status, r, r + 1, r + 2, r + 3, r + 4);
        library->mt_mgn_param(channel, 1, 40000, rho, h, &status, r, r + 1, r + 2, r + 3, r + 4, r + 5, r + 6);
        refused += status != 1;
        bench::Registers& kept = registers[static_cast<std::size_t>(channel)];
        refused += !kept.add_up(library->mt_int_param, channel, bench::heat_integrators);
        refused += !kept.carry_on(library->mt_int_param_1, channel, bench::heat_integrators);
    }

    void pass(int channels) {
        for (int channel = 1; channel <= channels; ++channel) channel % 2 ? gas(channel) : heat(channel);
    }
};

// Pages in use now.
long resident_bytes() {
    long pages = 0, resident = 0;
    if (std::FILE* const file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%ld %ld", &pages, &resident) != 2) resident = 0;
        std::fclose(file);
    }
    return resident * sysconf(_SC_PAGESIZE);
}

void pass(benchmark::State& run) {
    Host host;
    const auto channels = static_cast<int>(run.range(0));
    for (int channel = 1; channel <= channels; ++channel) host.set_up(channel);
    host.pass(channels);
    if (host.refused > 0) run.SkipWithError("refused");
    for (auto _ : run) host.pass(channels);
    run.counters["per_channel"] =
        benchmark::Counter(static_cast<double>(channels),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// Both registries: setting up channel 20000 makes all the lower ones.
void first_touch(benchmark::State& run) {
    for (auto _ : run) {
        run.PauseTiming();
        auto host = std::make_unique<Host>();
        host->set_up(1);
        host->set_up(2);
        malloc_trim(0);  // what earlier benchmarks gave back
        const long before = resident_bytes();
        run.ResumeTiming();
        host->set_up(most_channels - 1);
        host->set_up(most_channels);
        run.PauseTiming();
        run.counters["bytes_per_channel"] =
            static_cast<double>(resident_bytes() - before) / (2.0 * most_channels);
        host.reset();
        run.ResumeTiming();
    }
}

void load(benchmark::State& run) {
    const Runtime runtime(KALORFIX_GAS_DAT);
    for (auto _ : run) const Library library{KALORFIX_LIBRARY};
}

void init(benchmark::State& run) {
    const Runtime runtime(KALORFIX_GAS_DAT);
    for (auto _ : run) {
        run.PauseTiming();
        const Library library{KALORFIX_LIBRARY};
        run.ResumeTiming();
        library->Init();
        run.PauseTiming();
        library->Done();
        run.ResumeTiming();
    }
}

BENCHMARK(pass)->Arg(2)->Arg(20)->Arg(200)->Arg(2000)->Arg(most_channels)->Unit(benchmark::kMicrosecond);
BENCHMARK(first_touch)->Unit(benchmark::kMicrosecond);
BENCHMARK(load)->Name("load_and_unload")->Unit(benchmark::kMicrosecond);
BENCHMARK(init)->Unit(benchmark::kMicrosecond)->Iterations(200);

}  // namespace
