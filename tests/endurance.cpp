// All channels of both media, and a month of cycles on some of them, under a clock that wraps on the way. Totals and intervals
// are compared with an independent integral of the flows; memory and open files stay as they were.
//   endurance LIBRARY GAS_DATA [DAYS STEP_S [PAGES]]      PAGES: permitted growth of the resident memory
#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

#include "tools/host.h"
#include "tools/runtime.h"
#include "tools/simulated_clock.h"

namespace {

namespace fs = std::filesystem;
using kalorfix::host::Library;

constexpr int channels = 20000, devices = 23, external = 23;
constexpr long refused_every = 997;
constexpr double hour_s = 3600.0, day_s = 86400.0, wrap_at = 1e6;

int failures = 0;
void require(bool holds, const char* what, const char* where = "") {
    if (!holds && ++failures <= 20) std::fprintf(stderr, "NOT so: %s %s\n", where, what);
}

// Neumaier's compensated sum: as good as a sum in twice the precision.
struct Sum {
    double sum = 0.0, rest = 0.0;
    void add(double x) {
        const double next = sum + x;
        rest += std::fabs(sum) >= std::fabs(x) ? (sum - next) + x : (x - next) + sum;
        sum = next;
    }
    [[nodiscard]] double value() const { return sum + rest; }
};

double half_ulp(float x) { return static_cast<double>(std::nextafter(x, 1e30F) - x) / 2; }

constexpr double length_s[] = {hour_s, day_s};  // of the interval of the first register and of the second

// One integrator of a channel: the registers as a host holds them, and the integral beside them. The library keeps a total in
// double precision and hands a float over. A register near 10^6 is rounded to 1/16, however often it wrapped before, and the
// roundings do not add up, since the library goes on from its own value. So the number of wraps times 10^6 and the register
// carry 1e-9 once the sum is above 3.2e7; the exponent, the least with which an hour (second register: a day) stays below
// 10^6, sees to that. The amount of an hour or a day begins at zero: no float of it carries more than its own 6e-8.
struct Register {
    short exp10 = 0;
    float total = 0, time = 0, start = 0, result = 0;
    long wraps = 0, closed = 0;
    Sum integral, open;
    double worst_interval = 0.0;

    void carry_on(float time_now, float amount, const char* name) {
        if (time_now < 1.0F && time > 1.0F) {
            ++closed;
            const double expected = open.value(), off = std::fabs(static_cast<double>(amount) - expected);
            worst_interval = std::max(worst_interval, off / expected);
            require(off <= half_ulp(amount) + 2e-8 * expected, "an interval's amount", name);
        }
        if (time_now < 1.0F) open = {};
        time = time_now, result = amount;
    }
};

// Meters and the external flow take the reading, t/h, m3/h or GJ/h, in place of dp.
struct Channel {
    const char* name;
    bool gas;
    int number;
    short device, method;
    float D20_mm, d20_mm, t_C, p_Pa, dp_Pa;
    long computed = 0;
    std::array<Register, 2> registers{};
};
std::array<Channel, 10> in_use{{
    {"steam, orifice", false, 1, 3, 0, 200, 110, 300, 1.2e6F, 3e4F},
    {"water, Venturi tube", false, 4711, 7, 0, 300, 150, 60, 1e6F, 2e4F},
    {"steam, long-radius nozzle", false, 10000, 5, 0, 200, 100, 150, 4e5F, 2e4F},
    {"steam, averaging", false, 15001, 13, 0, 300, 20, 250, 2e6F, 8e3F},
    {"water, volume meter", false, 20000, 21, 0, 100, 50, 90, 6e5F, 120},
    {"gas NX19, orifice", true, 1, 1, 0, 150, 75, 10, 2e6F, 2e4F},
    {"gas GERG-91, nozzle", true, 4711, 4, 1, 300, 180, 20, 4e6F, 2e4F},
    {"gas AGA8, orifice", true, 10000, 2, 2, 400, 220, 15, 5.5e6F, 2.5e4F},
    {"gas VNIC, Venturi nozzle", true, 15001, 6, 3, 100, 50, 30, 3e5F, 5e3F},
    {"gas, external flow", true, 20000, 23, 0, 100, 50, 15, 1e6F, 777},
}};

// A number in -1..1 that does not repeat within a run, so that the rounding of the flows handed out averages out.
float noise(long step, int salt) {
    std::uint64_t x = static_cast<std::uint64_t>(step) * 0x9E3779B97F4A7C15U + static_cast<std::uint64_t>(salt);
    x = (x ^ x >> 30) * 0xBF58476D1CE4E5B9U;
    x = (x ^ x >> 27) * 0x94D049BB133111EBU;
    return static_cast<float>((x ^ x >> 31) >> 40) * 0x1p-23F - 1;
}

// Class 1: later set-ups of the same channel change nothing.
char set_up(const Library& library, const Channel& c) {
    char status = 0;
    (c.gas ? library->mg_init_tr : library->mt_init_tr)(c.number, 1, c.device, 1, 7, 32, c.D20_mm, c.d20_mm,
                                                        0.01F, 0.05F, 0, 1, 0.7F, &status);
    return status;
}

// State to flow; the first two flows, q_m and q_v.
char measure(const Library& library, const Channel& c, float t_C, float p_Pa, float dp, float q[2]) {
    char status = 0;
    float a[8] = {};
    short phase = 0;
    if (c.gas) {
        library->mg_param_gs(c.number, t_C, p_Pa, 0, 0, c.method, 0, 96.5F, 1.8F, 0.45F, 0.1F, 0.1F, 0.03F,
                             0.05F, 0.07F, 0, 0, 0.3F, 0.6F, 0, 0, 0, 0.7F, &status, a, a + 1, a + 2);
        library->mg_tf_param(c.number, 0, 0, 0, &status, a, a + 1, a + 2, a + 3, a + 4);
    } else {
        library->mt_param_tn(c.number, t_C, p_Pa, 0, 0, 1000, 0.5F, &status, &phase, a, a + 1);
        library->mt_tf_param(c.number, 0, 0, 0, &status, a, a + 1, a + 2, a + 3);
    }
    const float rho = a[0];
    (c.gas ? library->mg_param_tr : library->mt_param_tr)(c.number, &status, a, a + 1, a + 2, a + 3, a + 4);
    if (c.gas)
        library->mg_mgn_param(c.number, 1, dp, rho, 0.7F, 34, &status, q, q + 1, a, a + 1, a + 2, a + 3, a + 4,
                              a + 5);
    else
        library->mt_mgn_param(c.number, 1, dp, rho, 2000, &status, q, q + 1, a, a + 1, a + 2, a + 3, a + 4);
    return status;
}

void cycle(const Library& library, Channel& c, long n, double step_s) {
    // A step refused for its flow would store the register as the host holds it; one whose cycle failed leaves it alone.
    const bool bad = n % refused_every == c.number % refused_every;
    const auto day = static_cast<float>(static_cast<double>(n) * step_s / day_s);
    const float swing = 1 + 0.3F * std::sin(6.2831853F * day) + 0.2F * noise(n, c.number);
    const float dp = c.dp_Pa * (bad && c.device == external ? -1 : swing);
    const float t = bad ? -300 : c.t_C + 2 * std::sin(day), p = c.p_Pa * (1 + 0.02F * noise(n, c.number + 1));
    float q[2] = {};
    const char status = measure(library, c, t, p, dp, q);
    c.computed += !bad;
    require(status == !bad, "status of the flow", c.name);
    for (std::size_t r = 0; r < 2; ++r) {
        Register& own = c.registers[r];
        const auto integrator = static_cast<unsigned short>(r + 1), set = static_cast<unsigned short>(r);
        char done = 0;
        float total = 0, part = 0, minutes = 0, time = 0, start = 0, result = 0;
        (c.gas ? library->mg_int_param : library->mt_int_param)(c.number, integrator, dp, own.total, 0,
                                                                own.exp10, &done, &total, &part, &minutes);
        require(done == !bad, "status of the total", c.name);
        if (done != 1) continue;
        const double flow = static_cast<double>(c.device == external ? dp : q[r]);
        const double amount = flow * step_s / hour_s * std::pow(10.0, -own.exp10);
        own.integral.add(amount), own.open.add(amount);
        own.wraps += total < std::exchange(own.total, total);
        (c.gas ? library->mg_int_param_1 : library->mt_int_param_1)(
            c.number, integrator, set, own.time, own.start, own.result, &done, &time, &start, &result);
        require(done == 1, "status of the interval", c.name);
        own.start = start;
        own.carry_on(time, result, c.name);
    }
}

void compare(const Channel& c, double days, double step_s) {
    const double counted_s = static_cast<double>(c.computed) * step_s;
    for (std::size_t r = 0; r < 2; ++r) {
        const Register& own = c.registers[r];
        const double sum = static_cast<double>(own.wraps) * wrap_at + static_cast<double>(own.total);
        const double expected = own.integral.value(), off = std::fabs(sum - expected);
        const double permitted = 1e-9 * expected + (days < 28 || r == 1 ? half_ulp(own.total) : 0.0);
        std::printf("%-26s %ld cycles  total %.6e  wraps %3ld  off %.1e  intervals %3ld  off %.1e\n", c.name,
                    c.computed, expected, own.wraps, off / expected, own.closed, own.worst_interval);
        require(expected > 0.0 && off <= permitted, "the total", c.name);
        require(own.wraps > 0 || r == 1, "the register has wrapped", c.name);
        // The first step opens the interval and is not in it.
        require(std::fabs(static_cast<double>(own.closed) - (counted_s - step_s) / length_s[r]) <= 1.0,
                "the number of intervals", c.name);
    }
}

enum { open_files, heap_bytes, resident_pages };
using Footprint = std::array<long, 3>;
Footprint footprint() {
    Footprint found{};
    // Twice, since the first time leaves blocks of its own with the allocator.
    for (int round = 0; round < 2; ++round) {
        found[open_files] = std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
        std::ifstream("/proc/self/statm") >> found[resident_pages] >> found[resident_pages];
        found[heap_bytes] = static_cast<long>(mallinfo2().uordblks);
    }
    return found;
}

bool mapped() {
    std::ifstream maps("/proc/self/maps");
    const std::string text(std::istreambuf_iterator<char>(maps), {});
    return text.find("kalorfix.so") != std::string::npos;
}

void run(const Library& library, double days, double step_s, long pages) {
    kalorfix::tool::SimulatedClock clock;
    const double rate = static_cast<double>(sysconf(_SC_CLK_TCK));
    clock.set(0x1p32 / rate - days / 2 * day_s);  // the counter of ticks wraps half way
    library->Init();
    *library->ProstoyTime = 0.0;  // no downtime to fill in
    for (Channel& c : in_use) {
        float q[2] = {};
        require(set_up(library, c) == 1 && measure(library, c, c.t_C, c.p_Pa, c.dp_Pa, q) == 1, c.name);
        for (std::size_t r = 0; r < 2; ++r) {
            const double most =
                1.3 * static_cast<double>(c.device == external ? c.dp_Pa : q[r]) * length_s[r] / hour_s;
            c.registers[r].exp10 = static_cast<short>(std::ceil(std::log10(most / wrap_at)));
        }
    }
    for (int k = 1; k <= channels; ++k)
        for (const bool gas : {true, false}) {
            const Channel any{"", gas, k, static_cast<short>(1 + k % devices), 0, 200, 120, 0, 0, 0};
            require(set_up(library, any) == 1, "set-up of a channel");
        }
    const long steps = std::lround(days * day_s / step_s), warm_up = std::lround(1.1 * day_s / step_s);
    const auto first_tick = static_cast<std::uint32_t>(library->abs_clock());
    Footprint before{};
    for (long n = 1; n <= steps; ++n) {
        clock.advance(step_s);
        for (Channel& channel : in_use) cycle(library, channel, n, step_s);
        if (n == warm_up) before = footprint();
    }
    const Footprint after = footprint();
    require(static_cast<std::uint32_t>(library->abs_clock()) < first_tick, "the counter of ticks has wrapped");
    std::printf(
        "resident %ld pages after the warm-up, %ld in the end; heap %ld and %ld bytes; files %ld and %ld\n",
        before[resident_pages], after[resident_pages], before[heap_bytes], after[heap_bytes],
        before[open_files], after[open_files]);
    require(before[resident_pages] > 0 && after[resident_pages] <= before[resident_pages] + pages,
            "memory stays");
    require(after[heap_bytes] == before[heap_bytes] && after[open_files] == before[open_files],
            "heap and files stay");
    for (const Channel& channel : in_use) compare(channel, days, step_s);
    library->Done();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) return 2;
    const double days = argc > 4 ? std::atof(argv[3]) : 2.2, step_s = argc > 4 ? std::atof(argv[4]) : 20.0;
    const kalorfix::host::Runtime runtime(argv[2]);
    { const Library first(argv[1]); }  // what the loader keeps for itself
    const Footprint before = footprint();
    {
        const Library library(argv[1]);
        require(mapped(), "the library is seen while it is loaded");
        run(library, days, step_s, argc > 5 ? std::atol(argv[5]) : 16);
    }
    const Footprint after = footprint();
    std::printf("heap %ld bytes before the start, %ld after the end\n", before[heap_bytes], after[heap_bytes]);
    require(!mapped() && after[open_files] == before[open_files], "nothing is mapped or open after the end");
    // The allocator counts the small blocks that it keeps for the next time.
    require(after[heap_bytes] <= before[heap_bytes] + 65536, "the memory of the channels is given back");
    std::printf(failures == 0 ? "MET\n" : "NOT MET: %d\n", failures);
    return failures == 0 ? 0 : 1;
}
