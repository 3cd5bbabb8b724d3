// SPDX-License-Identifier: MIT
// Totals and intervals under a clock that the test turns.
#include <gtest/gtest.h>
#include <sys/times.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <memory>

#include "flow/integration.h"
#include "kalorfix.h"
#include "kalorfix_calculators.h"
#include "kalorfix_runtime.h"

namespace {

std::uint32_t ticks = 0;
int clock_error = 0;

}  // namespace

// In place of the C library's.
extern "C" clock_t times(tms*) noexcept {
    if (clock_error == 0) return static_cast<clock_t>(static_cast<std::int64_t>(ticks));
    errno = clock_error;
    return -1;
}

namespace {

const auto rate = static_cast<std::uint32_t>(sysconf(_SC_CLK_TCK));

// The registers that a host keeps for one integrator channel.
struct Register {
    float total = 0, time[2] = {0, 0}, start[2] = {0, 0}, result[2] = {0, 0};
    float downtime_part = 0, downtime_min = 0;
    int closed[2] = {0, 0};
    double exact[2] = {0, 0};  // the results as a member hands them out, before a host narrows them
};

// A calculator whose flows are set by hand; `valid` as the flow computation would leave it.
template <class Calculator>
struct Channel {
    std::unique_ptr<Calculator> c = std::make_unique<Calculator>();
    short exp10 = 0;
    double q_subst = 0.0;

    explicit Channel(unsigned char device = 3) { c->device_type = device; }

    char totalise(unsigned short integrator, Register& r, double q_ext = 0.0) {
        c->valid = 1;
        return continue_with_valid(integrator, r, q_ext);
    }
    char continue_with_valid(unsigned short integrator, Register& r, double q_ext = 0.0) {
        double total = 0, part = 0, minutes = 0;
        const char status = c->int_Param(integrator, q_ext, r.total, q_subst, exp10, total, part, minutes);
        r.total = static_cast<float>(total);
        r.downtime_part = static_cast<float>(part);
        r.downtime_min = static_cast<float>(minutes);
        return status;
    }
    char interval(unsigned short integrator, unsigned short set, Register& r) {
        double time = 0, start = 0, result = 0;
        const char status = c->int2_Param(integrator, set, r.time[set], r.start[set],
                                          static_cast<double>(r.result[set]), time, start, result);
        if (status != 1) return status;
        r.closed[set] += r.time[set] > 1.0F && time < 1.0;
        r.time[set] = static_cast<float>(time);
        r.start[set] = static_cast<float>(start);
        r.exact[set] = result;
        r.result[set] = static_cast<float>(result);
        return status;
    }
};

class Totals : public testing::Test {
protected:
    void SetUp() override {
        ticks = 1000;
        clock_error = 0;
        ProstoyTime = 0.0;
    }
};

TEST_F(Totals, IntegrateTheFlowOfEachIntegratorChannel) {
    Channel<cGas2005> gas;
    gas.c->q_m = 36, gas.c->q_v = 72, gas.c->q_c = 108, gas.c->q_e = 144;
    Channel<cTeplo2005> heat;
    heat.c->q_m = 36, heat.c->q_v = 72, heat.c->q_h = 108;
    ticks += 100 * rate;
    const struct {
        unsigned short integrator;
        float gas, heat;
    } rows[] = {{1, 1, 1}, {2, 2, 2}, {3, 3, 3}, {4, 4, -1}};
    for (const auto& row : rows) {
        Register r;
        EXPECT_EQ(gas.totalise(row.integrator, r), 1);
        EXPECT_FLOAT_EQ(r.total, row.gas) << row.integrator;
        if (row.heat < 0) continue;
        Register h;
        EXPECT_EQ(heat.totalise(row.integrator, h), 1);
        EXPECT_FLOAT_EQ(h.total, row.heat) << row.integrator;
    }
    // Any other number means the last channel: its flow, its storage.
    for (const auto other : std::to_array<unsigned short>({0, 5, 65535})) {
        ticks += 50 * rate;
        Register r;
        EXPECT_EQ(gas.totalise(other, r), 1);
        EXPECT_FLOAT_EQ(r.total, 2.0F);
        EXPECT_EQ(gas.interval(other, 0, r), 1);
        Register h;
        EXPECT_EQ(heat.totalise(other, h), 1);
        EXPECT_EQ(heat.interval(other, 1, h), 1);
    }
    EXPECT_EQ(gas.c->total[3], 2.0);
    EXPECT_EQ(heat.c->first_call[2], 0);
}

// By the host's exponent, and once past a million.
TEST_F(Totals, ScaleAndWrap) {
    const struct {
        double total, amount, expected;
        short exp10;
    } rows[] = {{999999.9375, 0.25, 0.1875, 0},
                {999999.5, 0.5, 1000000.0, 0},
                {0.0, 2.5e6, 1.5e6, 0},
                {0.0, 7.0, 700.0, -2},
                {0.0, 7.0, 0.007, 3}};
    for (const auto& row : rows) {
        Channel<cTeplo2005> channel;
        channel.c->q_m = row.amount * 3600;
        channel.exp10 = row.exp10;
        ticks += rate;
        Register r;
        r.total = static_cast<float>(row.total);
        EXPECT_EQ(channel.totalise(1, r), 1);
        EXPECT_NEAR(channel.c->total[0], row.expected, 1e-12 * (1 + row.total)) << row.total;
    }
}

TEST_F(Totals, FillTheDowntimeInOnce) {
    ProstoyTime = 12.5;
    Channel<cGas2005> channel;
    channel.c->q_m = 3600;
    channel.q_subst = 600;
    for (int round = 0; round < 2; ++round) {
        ticks += rate;
        Register r;
        EXPECT_EQ(channel.totalise(1, r), 1);
        EXPECT_FLOAT_EQ(r.total, round == 0 ? 126.0F : 1.0F);  // 1 + 600 / 60 * 12.5
        EXPECT_FLOAT_EQ(r.downtime_part, round == 0 ? 126.0F : 0.0F);
        EXPECT_FLOAT_EQ(r.downtime_min, round == 0 ? 12.5F : 0.0F);
        EXPECT_EQ(channel.c->downtime_min[0], r.downtime_min);
    }
    // Another integrator channel of the same object applies it for itself.
    Register r;
    EXPECT_EQ(channel.totalise(2, r), 1);
    EXPECT_FLOAT_EQ(r.downtime_min, 12.5F);
}

TEST_F(Totals, PassAFailedCycleOver) {
    Channel<cTeplo2005> channel;
    channel.c->q_m = 3600;
    Register r;
    r.total = 40;
    ticks += 100 * rate;
    channel.c->valid = 0;
    EXPECT_EQ(channel.continue_with_valid(1, r), 0);
    EXPECT_EQ(r.total, 40.0F);
    EXPECT_EQ(channel.interval(1, 0, r), 0);
    ticks += 3 * rate;
    EXPECT_EQ(channel.totalise(1, r), 1);
    EXPECT_FLOAT_EQ(r.total, 43.0F);

    // A negative flow: the time is spent, the register stays, the first call is over.
    channel.c->q_v = -1;
    Register v;
    v.total = 5;
    EXPECT_EQ(channel.totalise(2, v), 0);
    EXPECT_EQ(v.total, 5.0F);
    EXPECT_EQ(channel.c->total[1], 5.0);
    EXPECT_EQ(channel.c->first_call[1], 0);
    v.total = -5;
    channel.c->q_v = 1;
    EXPECT_EQ(channel.totalise(2, v), 0) << "a negative register";
}

// What is no number refuses like a negative flow does, and the register stays the host's; a register of an interval stops that
// interval alone.
TEST_F(Totals, RefuseWhatIsNoNumber) {
    constexpr float sound = 5.0F, infinite = HUGE_VALF, none = NAN;
    const struct {
        float flow, substitute, total, time, start, result;
        char total_status, interval_status;
    } rows[] = {{3600, 0, sound, 10, 1, 7, 1, 1},        {none, 0, sound, 10, 1, 7, 0, 0},
                {infinite, 0, sound, 10, 1, 7, 0, 0},    {3600, none, sound, 10, 1, 7, 0, 0},
                {3600, infinite, sound, 10, 1, 7, 0, 0}, {3600, 0, none, 10, 1, 7, 0, 0},
                {3600, 0, infinite, 10, 1, 7, 0, 0},     {3600, 0, sound, none, 1, 7, 1, 0},
                {3600, 0, sound, 10, infinite, 7, 1, 0}, {3600, 0, sound, 10, 1, none, 1, 0}};
    for (const auto& row : rows)
        for (const auto device : std::to_array<unsigned char>({3, 23})) {
            Channel<cGas2005> channel(device);
            channel.c->q_m = static_cast<double>(row.flow);
            channel.q_subst = static_cast<double>(row.substitute);
            Register r{row.total, {row.time, 0}, {row.start, 0}, {row.result, 0}};
            ticks += rate;
            EXPECT_EQ(channel.totalise(1, r, static_cast<double>(row.flow)), row.total_status);
            if (row.total == sound) {
                EXPECT_EQ(r.total, row.total_status == 1 ? sound + 1.0F : sound);
            }
            const int valid = channel.c->valid;
            EXPECT_EQ(channel.interval(1, 0, r), row.interval_status);
            EXPECT_EQ(channel.c->valid, valid);
            EXPECT_TRUE(std::isfinite(channel.c->interval_time[0][0] + channel.c->interval_start[0][0]));
        }
}

TEST_F(Totals, TakeTheExternalFlowOfDevice23) {
    Channel<cGas2005> channel(23);
    Register r;
    const struct {
        double flow;
        char status;
        float total;
    } rows[] = {{360.0, 1, 1.0F}, {-0.001, 0, 1.0F}, {360.0, 1, 2.0F}, {0.0, 1, 2.0F}};
    for (const auto& row : rows) {  // a refused interval is skipped; no flow is a flow
        ticks += 10 * rate;
        channel.c->valid = 0;  // needs no computed flow
        EXPECT_EQ(channel.continue_with_valid(3, r, row.flow), row.status);
        EXPECT_FLOAT_EQ(r.total, row.total);
    }
    EXPECT_EQ(channel.interval(3, 0, r), 1);
    channel.c->valid = 0;
    EXPECT_EQ(channel.interval(3, 0, r), 0) << "no interval without a total";
    // A refused first call leaves the downtime to the next.
    ProstoyTime = 6.0;
    channel.q_subst = 10.0;
    Register first;
    EXPECT_EQ(channel.totalise(1, first, -1.0), 0);
    EXPECT_EQ(channel.totalise(1, first, 0.0), 1);
    EXPECT_FLOAT_EQ(first.total, 1.0F);
}

TEST_F(Totals, SurviveAWrapOfTheCounterAndAFailingClock) {
    ticks = UINT32_MAX - 2 * rate + 1;
    Channel<cTeplo2005> channel;
    channel.c->q_m = 3600;
    ticks += 5 * rate;  // wraps
    ASSERT_LT(ticks, 4 * rate);
    Register r;
    EXPECT_EQ(channel.totalise(1, r), 1);
    EXPECT_FLOAT_EQ(r.total, 5.0F);
    EXPECT_FLOAT_EQ(channel.c->dt[0], 5.0F);

    // Two intervals come out wrong; the next good one measures from the reading before.
    clock_error = EFAULT;
    EXPECT_EQ(abs_clock(), -EFAULT);
    EXPECT_TRUE(channel.totalise(1, r) == 1 && std::isfinite(r.total));
    clock_error = 0;
    EXPECT_EQ(channel.totalise(1, r), 1);
    ticks += rate;
    r.total = 10;
    EXPECT_EQ(channel.totalise(1, r), 1);
    EXPECT_FLOAT_EQ(r.total, 11.0F);
}

TEST_F(Totals, CloseHoursAndDays) {
    Channel<cTeplo2005> channel;
    channel.exp10 = 0;
    Register r;
    double integral = 0.0, hour = 0.0, day = 0.0;
    int hours = 0, days = 0;
    for (int second = 0; second < 86400 + 60; second += 5) {
        const double q = 40.0 + 30.0 * std::sin(second / 7000.0);
        ticks += 5 * rate;
        channel.c->q_m = q;
        ASSERT_EQ(channel.totalise(1, r), 1);
        const double step = q / 3600.0 * 5.0;
        integral += step;
        // The first step opens the intervals and is in none.
        if (second > 0) hour += step, day += step;
        ASSERT_EQ(channel.interval(1, 0, r), 1);
        ASSERT_EQ(channel.interval(1, 1, r), 1);
        if (r.closed[0] > hours) {
            hours = r.closed[0];
            EXPECT_NEAR(r.exact[0], hour, 1e-9 * hour) << "hour " << hours;
            hour = 0.0;
        }
        if (r.closed[1] > days) {
            days = r.closed[1];
            EXPECT_NEAR(r.exact[1], day, 1e-9 * day);
        }
    }
    EXPECT_EQ(r.closed[0], 24);
    EXPECT_EQ(r.closed[1], 1);
    EXPECT_NEAR(channel.c->total[0], integral, 1e-9 * integral) << "the library's own register";
    double untouched = -1;
    EXPECT_EQ(channel.c->int2_Param(1, 2, 0, 0, 0, untouched, untouched, untouched), 0) << "there are two sets";
    EXPECT_EQ(channel.c->in2_Param(1, 0, 2, 0, 0, 0, 0, untouched, untouched, untouched), 0);
    EXPECT_EQ(untouched, -1);
}

TEST(Interval, AcrossTheWrapOfTheRegister) {
    namespace flow = kalorfix::flow;
    const flow::Interval closed =
        flow::carry_on({3600.0, 999990.0, 1.0}, {1.0, 0.0, 10.0, 0.01}, flow::interval_length_s[0]);
    EXPECT_DOUBLE_EQ(closed.result, 20.0);
    EXPECT_DOUBLE_EQ(closed.start_total, 10.0);
    EXPECT_DOUBLE_EQ(closed.time_s, 0.001);
    // Nothing has passed, and the register stood still: no wrap. A day ends with its last second.
    for (const double end : {86399.999, 86400.001}) {
        const flow::Interval day =
            flow::carry_on({end - 1.0, 7.0, 1.0}, {1.0, 0.0, 7.0, 0.01}, flow::interval_length_s[1]);
        EXPECT_DOUBLE_EQ(day.result, end < 86400.0 ? 1.0 : 0.0);
    }
    // Below one tick an interval has only just begun.
    const flow::Interval begun =
        flow::carry_on({0.009, 5.0, 1.0}, {1.0, 0.0, 10.0, 0.01}, flow::interval_length_s[0]);
    EXPECT_DOUBLE_EQ(begun.time_s, 1.0);
    EXPECT_DOUBLE_EQ(begun.result, 1.0);
}

}  // namespace
