// SPDX-License-Identifier: MIT
// All channels of both media, and a month of cycles on some of them, under a clock that wraps on the way. Totals and intervals
// are compared with an independent integral of the flows; memory and open files stay as they were.
//   endurance LIBRARY GAS_DATA [DAYS STEP_S [PAGES]]      PAGES: permitted growth of the resident memory
#include <malloc.h>
#include <unistd.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <utility>

#include "tools/host.h"
#include "tools/runtime.h"
#include "tools/simulated_clock.h"

namespace {

using kalorfix::host::Library;

constexpr int channels = 20000, devices = 23, external = 23;
constexpr double day_s = 86400.0, hour_s = 3600.0, wrap_at = 1e6;

int failures = 0;
void require(bool holds, const char* what, const char* where = "") {
    if (!holds && ++failures <= 20) std::fprintf(stderr, "NOT so: %s %s\n", where, what);
}
double half_ulp(float x) { return static_cast<double>(std::nextafter(x, 1e30F) - x) / 2; }

// A channel with its first integrator: the register as a host holds it, and the integral beside it. The library keeps a total in
// double precision and hands a float over. A register near 10^6 is rounded to 1/16, however often it wrapped before, and the
// roundings do not add up, since the library goes on from its own value. So the number of wraps times 10^6 and the register
// carry 1e-9 once the sum is above 3.2e7; the exponent, the least with which an hour stays below 10^6, sees to that. The
// amount of an hour begins at zero: no float of it carries more than its own 6e-8.
struct Channel {
    const char* name;
    bool gas;
    int number;
    short device, method;
    float D20_mm, d20_mm, t_C, p_Pa, dp_Pa;  // meters and the external flow take the reading in place of dp
    short exp10 = 0;
    float total = 0, time = 0, start = 0, result = 0;
    long computed = 0, wraps = 0, closed = 0;
    double integral = 0.0, open = 0.0;
};
std::array<Channel, 7> in_use{{
    {"steam, orifice", false, 1, 3, 0, 200, 110, 300, 1.2e6F, 3e4F},
    {"water, Venturi tube", false, 4711, 7, 0, 300, 150, 60, 1e6F, 2e4F},
    {"steam, averaging", false, 15001, 13, 0, 300, 20, 250, 2e6F, 8e3F},
    {"water, volume meter", false, 20000, 21, 0, 100, 50, 90, 6e5F, 120},
    {"gas GERG-91, nozzle", true, 4711, 4, 1, 300, 180, 20, 4e6F, 2e4F},
    {"gas AGA8, orifice", true, 10000, 2, 2, 400, 220, 15, 5.5e6F, 2.5e4F},
    {"gas, external flow", true, 20000, 23, 3, 100, 50, 15, 1e6F, 777},
}};

// A number in -1..1 that does not repeat within a run, so that the rounding of the flows handed out averages out.
float noise(long step, int salt) {
    std::uint64_t x = static_cast<std::uint64_t>(step) * 0x9E3779B97F4A7C15U + static_cast<std::uint64_t>(salt);
    x = (x ^ x >> 30) * 0xBF58476D1CE4E5B9U;
    return static_cast<float>((x ^ x >> 31) >> 40) * 0x1p-23F - 1;
}

// Class 1: later set-ups of the same channel change nothing.
bool set_up(const Library& library, const Channel& c) {
    char status = 0;
    (c.gas ? library->mg_init_tr : library->mt_init_tr)(c.number, 1, c.device, 1, 7, 32, c.D20_mm, c.d20_mm,
                                                        0.01F, 0.05F, 0, 1, 0.7F, &status);
    return status == 1;
}

// State to flow: whether it was computed, and the mass flow.
bool measure(const Library& library, const Channel& c, float t_C, float p_Pa, float dp, float& q_m) {
    char status = 0;
    float a[8] = {};
    short phase = 0;
    if (c.gas) {
        library->mg_param_gs(c.number, t_C, p_Pa, 0, 0, c.method, 0, 96.5F, 1.8F, 0.45F, 0.1F, 0.1F, 0.03F,
                             0.05F, 0.07F, 0, 0, 0.3F, 0.6F, 0, 0, 0, 0.7F, &status, a, a + 1, a + 2);
        library->mg_tf_param(c.number, 0, 0, 0, &status, a, a + 1, a + 2, a + 3, a + 4);
        library->mg_param_tr(c.number, &status, a + 1, a + 2, a + 3, a + 4, a + 5);
        library->mg_mgn_param(c.number, 1, dp, a[0], 0.7F, 34, &status, &q_m, a, a + 1, a + 2, a + 3, a + 4,
                              a + 5, a + 6);
    } else {
        library->mt_param_tn(c.number, t_C, p_Pa, 0, 0, 1000, 0.5F, &status, &phase, a, a + 1);
        library->mt_tf_param(c.number, 0, 0, 0, &status, a, a + 1, a + 2, a + 3);
        library->mt_param_tr(c.number, &status, a + 1, a + 2, a + 3, a + 4, a + 5);
        library->mt_mgn_param(c.number, 1, dp, a[0], 2000, &status, &q_m, a, a + 1, a + 2, a + 3, a + 4, a + 5);
    }
    if (c.device == external) q_m = dp;
    return status == 1;
}

void cycle(const Library& library, Channel& c, long n, double step_s) {
    // A step refused for its flow would store the register as the host holds it; one whose cycle failed leaves it alone.
    const bool bad = n % 997 == c.number % 997;
    const auto day = static_cast<float>(static_cast<double>(n) * step_s / day_s);
    const float swing = 1 + 0.3F * std::sin(6.2831853F * day) + 0.2F * noise(n, c.number);
    const float dp = c.dp_Pa * (bad && c.device == external ? -1 : swing);
    const float t = bad ? -300 : c.t_C + 2 * std::sin(day), p = c.p_Pa * (1 + 0.02F * noise(n, c.number + 1));
    float q_m = 0, total = 0, part = 0, minutes = 0, time = 0, result = 0;
    char done = 0;
    require(measure(library, c, t, p, dp, q_m) == !bad, "status of the flow", c.name);
    (c.gas ? library->mg_int_param : library->mt_int_param)(c.number, 1, dp, c.total, 0, c.exp10, &done, &total,
                                                            &part, &minutes);
    require(done == !bad, "status of the total", c.name);
    if (done != 1) return;
    ++c.computed;
    const double amount = static_cast<double>(q_m) * step_s / hour_s * std::pow(10.0, -c.exp10);
    c.integral += amount, c.open += amount;
    c.wraps += total < std::exchange(c.total, total);
    (c.gas ? library->mg_int_param_1 : library->mt_int_param_1)(c.number, 1, 0, c.time, c.start, c.result,
                                                                &done, &time, &c.start, &result);
    require(done == 1, "status of the interval", c.name);
    if (time < 1.0F && c.time > 1.0F) {
        ++c.closed;
        const double off = std::fabs(static_cast<double>(result) - c.open);
        require(off <= half_ulp(result) + 2e-8 * c.open, "an hour's amount", c.name);
    }
    if (time < 1.0F) c.open = 0.0;
    c.time = time, c.result = result;
}

void compare(const Channel& c, double days, double step_s) {
    const double off =
        std::fabs(static_cast<double>(c.wraps) * wrap_at + static_cast<double>(c.total) - c.integral);
    std::printf("%-20s total %.6e  wraps %3ld  off %.1e  hours %ld\n", c.name, c.integral, c.wraps,
                off / c.integral, c.closed);
    require(off <= 1e-9 * c.integral + (days < 28 ? half_ulp(c.total) : 0.0), "the total", c.name);
    require(c.wraps > 0, "the register has wrapped", c.name);
    // The first step opens the hour and is not in it.
    const double hours = static_cast<double>(c.computed - 1) * step_s / hour_s;
    require(std::fabs(static_cast<double>(c.closed) - hours) <= 1.0, "the number of hours", c.name);
}

struct Footprint {
    long files = 0, heap = 0, pages = 0;
};
Footprint footprint() {
    Footprint f;
    // Twice, since the first time leaves blocks of its own with the allocator.
    for (int round = 0; round < 2; ++round) {
        f.files = std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
        std::ifstream("/proc/self/statm") >> f.pages >> f.pages;
        f.heap = static_cast<long>(mallinfo2().uordblks);
    }
    return f;
}

void run(const Library& library, double days, double step_s, long pages) {
    kalorfix::tool::SimulatedClock clock;
    clock.set(0x1p32 / static_cast<double>(sysconf(_SC_CLK_TCK)) -
              days / 2 * day_s);  // the ticks wrap half way
    library->Init();
    *library->ProstoyTime = 0.0;  // no downtime to fill in
    for (Channel& c : in_use) {
        float q_m = 0;
        require(set_up(library, c) && measure(library, c, c.t_C, c.p_Pa, c.dp_Pa, q_m), c.name);
        c.exp10 = static_cast<short>(std::ceil(std::log10(1.3 * static_cast<double>(q_m) / wrap_at)));
    }
    for (int k = 1; k <= channels; ++k)
        for (const bool gas : {true, false})
            require(set_up(library, {"", gas, k, static_cast<short>(1 + k % devices), 0, 200, 120, 0, 0, 0}),
                    "set-up of a channel");
    const long steps = std::lround(days * day_s / step_s), warm_up = std::lround(1.1 * day_s / step_s);
    const auto first_tick = static_cast<std::uint32_t>(library->abs_clock());
    Footprint before;
    for (long n = 1; n <= steps; ++n) {
        clock.advance(step_s);
        for (Channel& channel : in_use) cycle(library, channel, n, step_s);
        if (n == warm_up) before = footprint();
    }
    const Footprint after = footprint();
    std::printf("%ld files, heap %ld bytes, %ld pages; after the warm-up %ld, %ld, %ld\n", after.files,
                after.heap, after.pages, before.files, before.heap, before.pages);
    require(static_cast<std::uint32_t>(library->abs_clock()) < first_tick, "the counter of ticks has wrapped");
    require(after.pages <= before.pages + pages && after.heap == before.heap, "memory stays");
    require(after.files == before.files, "open files stay");
    for (const Channel& channel : in_use) compare(channel, days, step_s);
    library->Done();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) return 2;
    const double days = argc > 4 ? std::atof(argv[3]) : 2.2, step_s = argc > 4 ? std::atof(argv[4]) : 20.0;
    const kalorfix::host::Runtime runtime(argv[2]);
    run(Library(argv[1]), days, step_s, argc > 5 ? std::atol(argv[5]) : 64);
    std::printf(failures == 0 ? "MET\n" : "NOT MET: %d\n", failures);
    return failures == 0 ? 0 : 1;
}
