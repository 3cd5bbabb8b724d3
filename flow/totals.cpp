// Totalising: the members that integrate a channel's flows over real time.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <iterator>

#include "flow/device_tables.h"
#include "flow/integration.h"
#include "kalorfix.h"
#include "runtime/judged.h"

namespace flow = kalorfix::flow;
using kalorfix::all_finite;
using kalorfix::judged;

namespace {

const long ticks_per_second = sysconf(_SC_CLK_TCK);

double tick_s() { return 1.0 / static_cast<double>(ticks_per_second); }

double flow_of(const cGas2005& c, std::size_t k) {
    const double flows[] = {c.q_m, c.q_v, c.q_c, c.q_e};
    return flows[k];
}
double flow_of(const cTeplo2005& c, std::size_t k) {
    const double flows[] = {c.q_m, c.q_v, c.q_h};
    return flows[k];
}

// Integrator channels count from 1; any number outside means the last one.
template <class Calculator>
std::size_t index_of(const Calculator& c, unsigned short integrator) {
    constexpr std::size_t count = std::size(decltype(c.total){});
    return integrator >= 1 && integrator <= count ? integrator - 1U : count - 1U;
}

// The host's register survives restarts of the library, so it replaces a stored value that differs from it.
void take_host_value(double& stored, float host) {
    if (static_cast<float>(stored) != host) stored = static_cast<double>(host);
}

struct TotalOutputs {
    double& total;
    double& downtime_part;
    double& downtime_min;
};

template <class Calculator>
char integrate(Calculator& c, unsigned short integrator, double q_ext, float total_host, double q_subst,
               short exp10, const TotalOutputs& out) {
    const std::size_t k = index_of(c, integrator);
    const auto now = static_cast<std::uint32_t>(abs_clock());
    out.total = static_cast<double>(total_host);
    out.downtime_part = 0.0;
    out.downtime_min = 0.0;

    const bool external = c.device_type == flow::code(flow::Device::external);
    if (external ? q_ext < 0.0 : c.valid == 0) {
        c.last_tick[k] = now;  // the failed cycle's time is passed over
        return judged(c, false);
    }
    const double q = external ? q_ext : flow_of(c, k);
    take_host_value(c.total[k], total_host);
    c.dt[k] =
        static_cast<float>(flow::elapsed_s(now, static_cast<std::uint32_t>(c.last_tick[k]), ticks_per_second));
    c.last_tick[k] = now;
    c.in_Param(q, c.total[k], static_cast<double>(c.dt[k]), exp10, q_subst, static_cast<char>(c.first_call[k]),
               out.downtime_min, out.total, out.downtime_part);
    c.total[k] = out.total;
    c.first_call[k] = 0;
    c.downtime_min[k] = static_cast<float>(out.downtime_min);
    return static_cast<char>(c.valid);
}

struct IntervalInputs {
    unsigned short integrator, set;
    float time_host, start_host;
    double last_result;
};

template <class Calculator>
char carry_interval_on(Calculator& c, const IntervalInputs& in, double& time_out, double& start_out,
                       double& result) {
    if (c.valid == 0 || in.set >= flow::interval_length_s.size()) return 0;
    const std::size_t k = index_of(c, in.integrator);
    double start = c.interval_start[in.set][k];
    double time = c.interval_time[in.set][k];
    double amount = 0.0;
    take_host_value(start, in.start_host);
    take_host_value(time, in.time_host);
    c.in2_Param(c.dt[k], c.downtime_min[k], in.set, c.total[k], time, start, in.last_result, time, start,
                amount);
    // A register of the host's that is not a number stops its own interval alone.
    if (!all_finite(in.time_host, in.start_host, static_cast<float>(time), static_cast<float>(start),
                    static_cast<float>(amount)))
        return 0;
    c.interval_time[in.set][k] = time_out = time;
    c.interval_start[in.set][k] = start_out = start;
    result = amount;
    return static_cast<char>(c.valid);
}

}  // namespace

char cCommon2005::in_Param(double q, double total_prev, double dt_s, short exp10, double q_subst,
                           char apply_downtime, double& downtime_min_out, double& total_out,
                           double& downtime_part) {
    const double minutes = apply_downtime != 0 ? ProstoyTime : 0.0;
    const double step = flow::increment({q, dt_s, q_subst, minutes, exp10});
    const double next = flow::advance(total_prev, step);
    if (q < 0.0 || total_prev < 0.0 || !all_finite(q_subst, static_cast<float>(step), static_cast<float>(next)))
        return judged(*this, false);
    downtime_min_out = minutes;
    total_out = next;
    downtime_part = minutes == 0.0 ? 0.0 : step;
    return judged(*this, true);
}

char cCommon2005::in2_Param(float dt_s, float downtime_minutes, unsigned short set, double total_now,
                            double interval_time_s, double interval_start_total, double last_result,
                            double& interval_time_out, double& interval_start_out, double& result) {
    if (set >= flow::interval_length_s.size()) return 0;
    const flow::Interval next =
        flow::carry_on({interval_time_s, interval_start_total, last_result},
                       {static_cast<double>(dt_s), static_cast<double>(downtime_minutes), total_now, tick_s()},
                       flow::interval_length_s[set]);
    interval_time_out = next.time_s;
    interval_start_out = next.start_total;
    result = next.result;
    return 1;
}

char cGas2005::int_Param(unsigned short integrator, double q_ext, float total_host, double q_subst, short exp10,
                         double& total_out, double& downtime_part, double& downtime_min_out) {
    return integrate(*this, integrator, q_ext, total_host, q_subst, exp10,
                     {total_out, downtime_part, downtime_min_out});
}

char cGas2005::int2_Param(unsigned short integrator, unsigned short set, float interval_time_host,
                          float interval_start_host, double last_result, double& interval_time_out,
                          double& interval_start_out, double& result) {
    return carry_interval_on(*this, {integrator, set, interval_time_host, interval_start_host, last_result},
                             interval_time_out, interval_start_out, result);
}

char cTeplo2005::int_Param(unsigned short integrator, double q_ext, float total_host, double q_subst,
                           short exp10, double& total_out, double& downtime_part, double& downtime_min_out) {
    return integrate(*this, integrator, q_ext, total_host, q_subst, exp10,
                     {total_out, downtime_part, downtime_min_out});
}

char cTeplo2005::int2_Param(unsigned short integrator, unsigned short set, float interval_time_host,
                            float interval_start_host, double last_result, double& interval_time_out,
                            double& interval_start_out, double& result) {
    return carry_interval_on(*this, {integrator, set, interval_time_host, interval_start_host, last_result},
                             interval_time_out, interval_start_out, result);
}
