// The time of a reading: seconds from any origin, or date and time of day.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kalorfix::tool::station {

enum class TimeKind { seconds, date };

/// Largest time in seconds: the tick counter and its differences stay exact.
inline constexpr double latest_s = 1e11;

/// Reads "86400.5" (0..1e11) or "2026-03-01T06:00:00", with a fraction of up to 6 digits and a Z if need be, into seconds; a date counts from
/// 1970. Nothing when the text is neither.
[[nodiscard]] std::optional<double> parse_time(TimeKind kind, std::string_view text);

/// The same the other way round.
[[nodiscard]] std::string print_time(TimeKind kind, double seconds);

}  // namespace kalorfix::tool::station
