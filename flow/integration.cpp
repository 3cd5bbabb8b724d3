// SPDX-License-Identifier: MIT
#include "flow/integration.h"

#include <array>
#include <cmath>
#include <cstddef>

#include "runtime/units.h"

namespace kalorfix::flow {
namespace {

// 10^-exponent.
double scale(short exponent) {
    // What the power function gives too; a register's exponent is one of these.
    constexpr std::array tenths{1.0, 1e-1, 1e-2, 1e-3, 1e-4, 1e-5, 1e-6, 1e-7, 1e-8, 1e-9};
    const auto row = static_cast<std::size_t>(exponent);
    return row < tenths.size() ? tenths[row] : std::pow(10.0, -exponent);
}

}  // namespace

double increment(const Passage& p) {
    const double passed = p.flow_per_h / units::seconds_per_hour * p.time_s;
    const double filled_in = p.substitute_per_h / units::minutes_per_hour * p.downtime_min;
    return (passed + filled_in) * scale(p.exp10);
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
