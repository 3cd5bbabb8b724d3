// SPDX-License-Identifier: MIT
// The archive of a device against what the library computes from the same means.
#pragma once

#include <array>
#include <optional>
#include <vector>

namespace kalorfix::metering {

/// What an archive tells of the differential pressure within an interval, Pa.
struct Spread {
    std::optional<double> least_Pa{}, most_Pa{}, deviation_Pa{};  ///< deviation: standard deviation
    [[nodiscard]] bool told() const { return least_Pa || most_Pa || deviation_Pa; }
    /// Whether a mean can have it: least <= mean <= most, nothing negative.
    [[nodiscard]] bool is_possible(double mean_Pa) const;
};

/// How far the mean of the root may lie below the root of the mean at most, relative to that, 0..1: a device that takes the root in every
/// cycle counts so much less. By the chord between least (0 where it is not told) and most, and by the standard deviation, whichever is
/// closer. Nothing without a spread or without a mean above 0. The density, the discharge coefficient and the expansibility of the
/// mean are taken for those of the interval.
[[nodiscard]] std::optional<double> root_effect(double mean_Pa, const Spread& spread);

/// Sums over intervals in which both amounts exist.
struct Compared {
    double reference = 0, device = 0;
    double root = 0;  ///< amount by which the device may lie below for the root of the mean
    std::size_t intervals = 0, bounded = 0;  ///< bounded: those with a spread
    void add(double reference_amount, double device_amount, std::optional<double> effect);
    /// 0 within the last digit of single precision, in which the library hands flows out.
    [[nodiscard]] double difference() const;
    /// In per cent of the reference; nothing when that is 0 and the device's amount is not.
    [[nodiscard]] std::optional<double> percent() const;
    /// In per cent of the reference; nothing unless every interval has a spread.
    [[nodiscard]] std::optional<double> root_percent() const;
};

/// A hole between two rows: the times at which the missing intervals begin and end, as the rows are stamped.
struct Hole {
    double from_s, to_s;
    std::size_t intervals;
};
/// Holes in times that rise by whole intervals. Nothing when a step is none.
[[nodiscard]] std::optional<std::vector<Hole>> holes(const std::vector<double>& times_s, double interval_s);

/// Hour or day: the smallest step of the times; nothing when it is neither.
[[nodiscard]] std::optional<double> interval_of(const std::vector<double>& times_s);

}  // namespace kalorfix::metering
