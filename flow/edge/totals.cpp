// SPDX-License-Identifier: MIT
// Totalising: the birth of the calculators, from which their integrators count, and the members that integrate a channel's flows over real time.
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <tuple>

#include "flow/device.h"
#include "flow/integration.h"
#include "kalorfix_calculators.h"
#include "runtime/clock.h"
#include "runtime/judged.h"

namespace flow = kalorfix::flow;
using kalorfix::all_finite;
using kalorfix::judged;

namespace {

const long ticks_per_second = sysconf(_SC_CLK_TCK);

// Not made at the load: it is inexact, and a host may let that trap.
double tick_s() { return 1.0 / static_cast<double>(ticks_per_second); }

// Integrator channels count from 1; any number outside means the last one.
template <class Calculator>
std::size_t index_of(const Calculator& c, unsigned short integrator) {
    constexpr std::size_t count = std::size(decltype(c.total){});
    return integrator >= 1 && integrator <= count ? integrator - 1U : count - 1U;
}

// The host's register survives restarts of the library, so it replaces a stored value that differs from it.
void take_host_value(double& stored, float host) {
    if (static_cast<float>(stored) != host) stored = host;
}

struct TotalOutputs {
    double& total;
    double& downtime_part;
    double& downtime_min;
};

// Counts a passage on from a total. What is negative or no number refuses, before anything is written.
bool count(double total_prev, const flow::Passage& passage, const TotalOutputs& out) {
    const double step = flow::increment(passage);
    const double next = flow::advance(total_prev, step);
    if (passage.flow_per_h < 0.0 || total_prev < 0.0) return false;
    // A register is single precision at the host.
    if (!all_finite(passage.substitute_per_h, static_cast<float>(passage.downtime_min),
                    static_cast<float>(step), static_cast<float>(next)))
        return false;
    out.total = next;
    out.downtime_part = passage.downtime_min == 0.0 ? 0.0 : step;
    out.downtime_min = passage.downtime_min;
    return true;
}

// `flows` are those of the integrators.
template <class Calculator, std::size_t flow_count>
char integrate(Calculator& c, const double (&flows)[flow_count], unsigned short integrator, double q_ext,
               float total_host, double q_subst, short exp10, const TotalOutputs& out) {
    const std::size_t k = index_of(c, integrator);
    const std::uint32_t now = kalorfix::tick_count();
    out.total = total_host;
    out.downtime_part = 0.0;
    out.downtime_min = 0.0;

    const bool external = flow::device_row(c.device_type).family == flow::Family::external;
    if (external ? q_ext < 0.0 : c.valid == 0) {
        c.last_tick[k] = now;  // the failed cycle's time is passed over
        return judged(c, false);
    }
    const double q = external ? q_ext : flows[k];
    take_host_value(c.total[k], total_host);
    c.dt[k] =
        static_cast<float>(flow::elapsed_s(now, static_cast<std::uint32_t>(c.last_tick[k]), ticks_per_second));
    c.last_tick[k] = now;
    const bool counted =
        count(c.total[k], {q, c.dt[k], q_subst, c.first_call[k] != 0 ? ProstoyTime : 0.0, exp10}, out);
    c.total[k] = out.total;
    c.first_call[k] = 0;
    c.downtime_min[k] = static_cast<float>(out.downtime_min);
    return judged(c, counted);
}

template <class Calculator>
char carry_interval_on(Calculator& c, unsigned short integrator, unsigned short set, float time_host,
                       float start_host, double last_result, double& time_out, double& start_out,
                       double& result) {
    if (c.valid == 0 || set >= flow::interval_length_s.size()) return 0;
    const std::size_t k = index_of(c, integrator);
    flow::Interval interval{c.interval_time[set][k], c.interval_start[set][k], last_result};
    take_host_value(interval.start_total, start_host);
    take_host_value(interval.time_s, time_host);
    const flow::Interval next = flow::carry_on(interval, {c.dt[k], c.downtime_min[k], c.total[k], tick_s()},
                                               flow::interval_length_s[set]);
    // A register of the host's that is no number stops its own interval alone.
    if (!all_finite(time_host, start_host, static_cast<float>(next.time_s),
                    static_cast<float>(next.start_total), static_cast<float>(next.result)))
        return 0;
    c.interval_time[set][k] = time_out = next.time_s;
    c.interval_start[set][k] = start_out = next.start_total;
    result = next.result;
    return static_cast<char>(c.valid);
}

// The first interval of every integrator runs from the making of the object.
template <class Calculator>
void start_integrators(Calculator& calculator) {
    std::ranges::fill(calculator.first_call, static_cast<unsigned char>(1));
    std::ranges::fill(calculator.last_tick, kalorfix::tick_count());
}

}  // namespace

cCommon2005::cCommon2005() = default;
cCommon2005::~cCommon2005() = default;

cGas2005::cGas2005() { start_integrators(*this); }
cGas2005::~cGas2005() = default;
bool cGas2005::IsGas() { return true; }

cTeplo2005::cTeplo2005() { start_integrators(*this); }
cTeplo2005::~cTeplo2005() = default;
bool cTeplo2005::IsGas() { return false; }

char cCommon2005::in_Param(double q, double total_prev, double dt_s, short exp10, double q_subst,
                           char apply_downtime, double& downtime_min_out, double& total_out,
                           double& downtime_part) {
    const double minutes = apply_downtime != 0 ? ProstoyTime : 0.0;
    return judged(*this, count(total_prev, {q, dt_s, q_subst, minutes, exp10},
                               {total_out, downtime_part, downtime_min_out}));
}

char cCommon2005::in2_Param(float dt_s, float downtime_minutes, unsigned short set, double total_now,
                            double interval_time_s, double interval_start_total, double last_result,
                            double& interval_time_out, double& interval_start_out, double& result) {
    if (set >= flow::interval_length_s.size()) return 0;
    const flow::Interval next =
        flow::carry_on({interval_time_s, interval_start_total, last_result},
                       {dt_s, downtime_minutes, total_now, tick_s()}, flow::interval_length_s[set]);
    std::tie(interval_time_out, interval_start_out, result) =
        std::tie(next.time_s, next.start_total, next.result);
    return all_finite(dt_s, downtime_minutes, next.time_s, next.start_total, next.result) ? 1 : 0;
}

char cGas2005::int_Param(unsigned short integrator, double q_ext, float total_host, double q_subst, short exp10,
                         double& total_out, double& downtime_part, double& downtime_min_out) {
    return integrate(*this, {q_m, q_v, q_c, q_e}, integrator, q_ext, total_host, q_subst, exp10,
                     {total_out, downtime_part, downtime_min_out});
}

char cGas2005::int2_Param(unsigned short integrator, unsigned short set, float interval_time_host,
                          float interval_start_host, double last_result, double& interval_time_out,
                          double& interval_start_out, double& result) {
    return carry_interval_on(*this, integrator, set, interval_time_host, interval_start_host, last_result,
                             interval_time_out, interval_start_out, result);
}

char cTeplo2005::int_Param(unsigned short integrator, double q_ext, float total_host, double q_subst,
                           short exp10, double& total_out, double& downtime_part, double& downtime_min_out) {
    return integrate(*this, {q_m, q_v, q_h}, integrator, q_ext, total_host, q_subst, exp10,
                     {total_out, downtime_part, downtime_min_out});
}

char cTeplo2005::int2_Param(unsigned short integrator, unsigned short set, float interval_time_host,
                            float interval_start_host, double last_result, double& interval_time_out,
                            double& interval_start_out, double& result) {
    return carry_interval_on(*this, integrator, set, interval_time_host, interval_start_host, last_result,
                             interval_time_out, interval_start_out, result);
}
