#include "tools/station/timestamp.h"

#include <fmt/format.h>

#include <charconv>
#include <chrono>
#include <cmath>

namespace kalorfix::tool::station {
namespace {

// Exactly `count` digits from `at` on.
bool digits(std::string_view text, std::size_t at, std::size_t count, int& value) {
    value = 0;
    for (std::size_t k = at; k < at + count; ++k) {
        if (text[k] < '0' || text[k] > '9') return false;
        value = 10 * value + (text[k] - '0');
    }
    return true;
}

bool parse_date(std::string_view text, double& seconds) {
    constexpr std::string_view pattern = "0000-00-00T00:00:00";
    if (text.ends_with('Z')) text.remove_suffix(1);
    if (text.size() < pattern.size()) return false;
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    if (text[4] != '-' || text[7] != '-' || (text[10] != 'T' && text[10] != ' ') || text[13] != ':' ||
        text[16] != ':')
        return false;
    if (!digits(text, 0, 4, year) || !digits(text, 5, 2, month) || !digits(text, 8, 2, day) ||
        !digits(text, 11, 2, hour) || !digits(text, 14, 2, minute) || !digits(text, 17, 2, second))
        return false;
    const std::chrono::year_month_day date{std::chrono::year(year),
                                           std::chrono::month(static_cast<unsigned>(month)),
                                           std::chrono::day(static_cast<unsigned>(day))};
    if (!date.ok() || hour > 23 || minute > 59 || second > 59) return false;
    // Microseconds are what a double holds beside the seconds since 1970, and what is printed.
    constexpr std::size_t most_digits = 6;
    double fraction = 0.0;
    const std::string_view rest = text.substr(pattern.size());
    if (!rest.empty()) {
        if (rest[0] != '.' || rest.size() < 2 || rest.size() > most_digits + 1 ||
            rest.find_first_not_of("0123456789", 1) != std::string_view::npos)
            return false;
        std::from_chars(rest.data(), rest.data() + rest.size(), fraction);
    }
    const auto days = std::chrono::sys_days(date).time_since_epoch().count();
    seconds = static_cast<double>(days) * 86400.0 + 3600.0 * hour + 60.0 * minute + second + fraction;
    return seconds >= 0.0;
}

}  // namespace

bool parse_time(TimeKind kind, std::string_view text, double& seconds) {
    if (kind == TimeKind::date) return parse_date(text, seconds);
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, seconds);
    return error == std::errc() && stop == end && 0.0 <= seconds && seconds <= latest_s;
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
