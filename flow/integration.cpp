#include "flow/integration.h"

#include <cmath>

namespace kalorfix::flow {

double elapsed_s(std::uint32_t now, std::uint32_t before, long ticks_per_second) {
    return static_cast<double>(static_cast<std::uint32_t>(now - before)) /
           static_cast<double>(ticks_per_second);
}

double increment(const Passage& p) {
    const double passed = p.flow_per_h / 3600.0 * p.time_s;
    const double filled_in = p.substitute_per_h / 60.0 * p.downtime_min;
    return (passed + filled_in) * std::pow(10.0, -p.exp10);
}

double advance(double total, double increment) {
    const double sum = increment + total;
    return sum > register_limit ? sum - register_limit : sum;
}

Interval carry_on(const Interval& interval, const Step& step, double length_s) {
    // Handed out in place of 0, which means "not started".
    const double just_started_s = 0.1 * step.tick_s;
    if (interval.time_s == 0.0) return {just_started_s, step.total, 0.0};

    double base = interval.time_s < step.tick_s ? 0.0 : interval.time_s;
    if (step.downtime_min != 0.0) base += step.downtime_min;
    const double elapsed = step.dt_s + base;
    if (elapsed < length_s) return {elapsed, interval.start_total, interval.result};

    double amount = step.total - interval.start_total;
    if (amount < 0.0) amount += register_limit;  // the register has wrapped
    return {just_started_s, step.total, amount};
}

}  // namespace kalorfix::flow
