// SPDX-License-Identifier: MIT
#include "tools/metering/audit.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kalorfix::metering {

bool Spread::is_possible(double mean_Pa) const {
    return !(least_Pa && !(0.0 <= *least_Pa && *least_Pa <= mean_Pa)) && !(most_Pa && !(*most_Pa >= mean_Pa)) &&
           !(deviation_Pa && !(*deviation_Pa >= 0.0));
}

std::optional<double> root_effect(double mean_Pa, const Spread& spread) {
    if (!spread.told() || !(mean_Pa > 0.0) || !spread.is_possible(mean_Pa)) return std::nullopt;
    double least = 0.0;  // of the mean root over the root of the mean
    const double a = std::sqrt(spread.least_Pa.value_or(0.0) / mean_Pa);
    if (spread.most_Pa) {
        // The root lies above its chord, whose value at the mean this is.
        const double b = std::sqrt(*spread.most_Pa / mean_Pa);
        least = (1.0 + a * b) / (a + b);
    } else {
        least = a;
    }
    // Of all spreads with this deviation the one with the part at 0 and the rest at one value has the least mean root.
    if (spread.deviation_Pa) least = std::max(least, 1.0 / std::hypot(1.0, *spread.deviation_Pa / mean_Pa));
    return std::clamp(1.0 - least, 0.0, 1.0);
}

void Compared::add(double reference_amount, double device_amount, std::optional<double> effect) {
    reference += reference_amount;
    device += device_amount;
    root += reference_amount * effect.value_or(0.0);
    ++intervals;
    if (effect) ++bounded;
}

double Compared::difference() const {
    constexpr double last_digit = std::numeric_limits<float>::epsilon();
    const double value = device - reference;
    return std::fabs(value) <= last_digit * std::fabs(reference) ? 0.0 : value;
}

std::optional<double> Compared::percent() const {
    if (difference() == 0.0) return 0.0;
    return reference == 0.0 ? std::nullopt : std::optional(100.0 * difference() / reference);
}

std::optional<double> Compared::root_percent() const {
    if (intervals == 0 || bounded < intervals) return std::nullopt;
    return reference == 0.0 ? 0.0 : 100.0 * root / reference;
}

std::optional<std::vector<Hole>> holes(const std::vector<double>& times_s, double interval_s) {
    constexpr double second = 1.0;
    std::vector<Hole> found;
    for (std::size_t k = 1; k < times_s.size(); ++k) {
        const double step = times_s[k] - times_s[k - 1], count = std::round(step / interval_s);
        if (count < 1.0 || std::fabs(step - count * interval_s) > second) return std::nullopt;
        if (count > 1.0)
            found.push_back({times_s[k - 1] + interval_s, times_s[k], static_cast<std::size_t>(count) - 1});
    }
    return found;
}

std::optional<double> interval_of(const std::vector<double>& times_s) {
    constexpr double hour_s = 3600.0, day_s = 86400.0, second = 1.0;
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t k = 1; k < times_s.size(); ++k) least = std::min(least, times_s[k] - times_s[k - 1]);
    for (const double one : {hour_s, day_s})
        if (std::fabs(least - one) <= second) return one;
    return std::nullopt;
}

}  // namespace kalorfix::metering
