// SPDX-License-Identifier: MIT
// Dates and times of day as readings carry them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kalorfix::tool::station {

struct WrittenTime {
    double seconds = 0.0;         ///< since 1970, by the clock that wrote it
    std::optional<int> offset_s;  ///< of that clock from UTC, where the text says so
};

/// Reads 2026-03-01T06:00:00 and 01.03.2026 6:00 (day first), with a blank in the place of T, seconds and up to 6 digits of their
/// fraction if need be, and behind it Z or an offset such as +03:00. Nothing for other text.
[[nodiscard]] std::optional<WrittenTime> parse_date(std::string_view text);

enum class TimeKind { seconds, date };

/// Largest time in seconds: the tick counter and its differences stay exact.
inline constexpr double latest_s = 1e11;

/// Reads "86400.5" (0..1e11) or a date without an offset from UTC into seconds; a date counts from 1970. Nothing when the
/// text is neither.
[[nodiscard]] std::optional<double> parse_time(TimeKind kind, std::string_view text);

/// The same the other way round.
[[nodiscard]] std::string print_time(TimeKind kind, double seconds);

/// Why a text is none: what was found and what to write.
[[nodiscard]] std::string date_expected(std::string_view text);

/// Reads +03:00, +0300, +03 or Z into seconds. Nothing for other text.
[[nodiscard]] std::optional<int> parse_offset(std::string_view text);

/// +03:00.
[[nodiscard]] std::string print_offset(int seconds);

}  // namespace kalorfix::tool::station
