#include "tools/station/timestamp.h"

#include <fmt/format.h>

#include <chrono>
#include <cmath>
#include <cstdio>

#include "tools/text.h"

namespace kalorfix::tool::station {
namespace {

std::optional<double> parse_date(std::string_view text) {
    constexpr std::size_t length = std::string_view("2026-03-01T06:00:00").size();
    if (text.ends_with('Z')) text.remove_suffix(1);
    std::string whole(text.substr(0, length));
    if (whole.size() == length && whole[10] == ' ') whole[10] = 'T';
    int year = 0, hour = 0, minute = 0, second = 0;
    unsigned month = 0, day = 0;
    if (std::sscanf(whole.c_str(), "%4d-%2u-%2uT%2d:%2d:%2d", &year, &month, &day, &hour, &minute, &second) !=
        6)
        return std::nullopt;
    const std::chrono::year_month_day date{std::chrono::year(year), std::chrono::month(month),
                                           std::chrono::day(day)};
    const auto days = std::chrono::sys_days(date).time_since_epoch().count();
    const double seconds = static_cast<double>(days) * 86400.0 + 3600.0 * hour + 60.0 * minute + second;
    // Whatever is no date reads otherwise when it is printed.
    if (!date.ok() || seconds < 0.0 || print_time(TimeKind::date, seconds) != whole) return std::nullopt;
    // Microseconds are what a double holds beside the seconds since 1970, and what is printed.
    constexpr std::size_t most_digits = 6;
    const std::string_view rest = text.substr(length);
    if (rest.empty()) return seconds;
    if (rest[0] != '.' || rest.size() < 2 || rest.size() > most_digits + 1 ||
        rest.find_first_not_of("0123456789", 1) != std::string_view::npos)
        return std::nullopt;
    return seconds + parse<double>(rest).value_or(0.0);
}

}  // namespace

std::optional<double> parse_time(TimeKind kind, std::string_view text) {
    return kind == TimeKind::date ? parse_date(text) : number_within(text, {0.0, latest_s, "s"});
}

std::string print_time(TimeKind kind, double seconds) {
    if (kind == TimeKind::seconds) return fmt::format("{}", seconds);
    const double whole = std::floor(seconds);
    const auto since = std::chrono::seconds(static_cast<long long>(whole));
    const auto days = std::chrono::floor<std::chrono::days>(since);
    const std::chrono::year_month_day date{std::chrono::sys_days(days)};
    const std::chrono::hh_mm_ss clock(since - days);
    std::string text = fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}", static_cast<int>(date.year()),
                                   static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                                   clock.hours().count(), clock.minutes().count(), clock.seconds().count());
    if (seconds > whole) {
        std::string fraction = fmt::format("{:.6f}", seconds - whole).substr(1);
        fraction.erase(fraction.find_last_not_of('0') + 1);
        if (fraction.size() > 1) text += fraction;
    }
    return text;
}

}  // namespace kalorfix::tool::station
