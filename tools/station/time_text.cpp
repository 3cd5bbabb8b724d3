// SPDX-License-Identifier: MIT
#include "tools/station/time_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>

#include "tools/text.h"

namespace kalorfix::tool::station {
namespace {

bool is_digit(char c) { return '0' <= c && c <= '9'; }

// Takes characters from the front of a text; each says whether it found what it wants.
class Scanner {
public:
    explicit Scanner(std::string_view text) : rest_(text) {}

    bool number(std::size_t fewest, std::size_t most, int& value) {
        std::size_t count = 0;
        for (value = 0; count < most && count < rest_.size() && is_digit(rest_[count]); ++count)
            value = 10 * value + (rest_[count] - '0');
        if (count < fewest) return false;
        rest_.remove_prefix(count);
        return true;
    }

    bool sign(char c) {
        if (!rest_.starts_with(c)) return false;
        rest_.remove_prefix(1);
        return true;
    }

    bool blanks() {
        bool any = false;
        while (sign(' ')) any = true;
        return any;
    }

    [[nodiscard]] std::string_view rest() const { return rest_; }

private:
    std::string_view rest_;
};

// Microseconds are what a double holds beside the seconds since 1970, and what is printed.
bool take_fraction(Scanner& in, double& fraction) {
    if (!in.sign('.') && !in.sign(',')) return true;
    const std::string_view before = in.rest();
    int micro = 0;
    if (!in.number(1, 6, micro)) return false;
    const std::string text = "0." + std::string(before.substr(0, before.size() - in.rest().size()));
    fraction = parse<double>(text).value_or(0.0);
    return true;
}

// The form that loggers write, in a file of a million rows: the numbers where the pattern has zeros, else the same characters.
bool take_plain(std::string_view& text, std::array<int, 6>& part) {
    constexpr std::string_view pattern = "0000-00-00T00:00:00";
    if (text.size() < pattern.size()) return false;
    part = {};
    std::size_t k = 0;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] == '0') {
            if (!is_digit(text[i])) return false;
            part[k] = 10 * part[k] + (text[i] - '0');
        } else {
            if (text[i] != pattern[i] && !(pattern[i] == 'T' && text[i] == ' ')) return false;
            ++k;
        }
    }
    text.remove_prefix(pattern.size());
    return true;
}

bool make_date(int year, int month, int day, std::chrono::year_month_day& date) {
    constexpr int first_year = 1970;
    date = {std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
            std::chrono::day(static_cast<unsigned>(day))};
    return date.ok() && year >= first_year;
}

bool take_date(Scanner& in, std::chrono::year_month_day& date) {
    int first = 0, month = 0, last = 0;
    const Scanner begin = in;
    if (in.number(4, 4, first) && in.sign('-') && in.number(2, 2, month) && in.sign('-') &&
        in.number(2, 2, last)) {
        std::swap(first, last);
    } else {
        in = begin;
        if (!(in.number(1, 2, first) && in.sign('.') && in.number(1, 2, month) && in.sign('.') &&
              in.number(4, 4, last)))
            return false;
    }
    return make_date(last, month, first, date);
}

}  // namespace

std::optional<int> parse_offset(std::string_view text) {
    constexpr int s_per_h = 3600, s_per_min = 60, furthest_s = 14 * s_per_h;
    if (text == "Z" || text == "UTC") return 0;
    Scanner in(text);
    const bool west = in.sign('-');
    if (!west && !in.sign('+')) return std::nullopt;
    int hours = 0, minutes = 0;
    if (!in.number(2, 2, hours)) return std::nullopt;
    if (!in.rest().empty() && ((in.sign(':'), !in.number(2, 2, minutes)) || minutes > 59)) return std::nullopt;
    const int seconds = hours * s_per_h + minutes * s_per_min;
    if (!in.rest().empty() || seconds > furthest_s) return std::nullopt;
    return west ? -seconds : seconds;
}

std::string print_offset(int seconds) {
    const int minutes = std::abs(seconds) / 60;
    return fmt::format("{}{:02}:{:02}", seconds < 0 ? '-' : '+', minutes / 60, minutes % 60);
}

std::optional<WrittenTime> parse_date(std::string_view text) {
    std::array<int, 6> part{};
    const bool plain = take_plain(text, part);
    auto [year, month, day, hour, minute, second] = part;
    Scanner in(text);
    std::chrono::year_month_day date{};
    double fraction = 0.0;
    if (plain) {
        if (!make_date(year, month, day, date) || !take_fraction(in, fraction)) return std::nullopt;
    } else if (!take_date(in, date) || (!in.sign('T') && !in.blanks()) || !in.number(1, 2, hour) ||
               !in.sign(':') || !in.number(2, 2, minute) ||
               (in.sign(':') && (!in.number(2, 2, second) || !take_fraction(in, fraction)))) {
        return std::nullopt;
    }
    if (hour > 23 || minute > 59 || second > 59) return std::nullopt;
    const auto days = std::chrono::sys_days(date).time_since_epoch().count();
    WrittenTime time{static_cast<double>(days) * 86400.0 + 3600.0 * hour + 60.0 * minute + second + fraction,
                     {}};
    in.blanks();
    if (in.rest().empty()) return time;
    time.offset_s = parse_offset(in.rest());
    return time.offset_s ? std::optional(time) : std::nullopt;
}

std::optional<double> parse_time(TimeKind kind, std::string_view text) {
    if (kind == TimeKind::seconds) return number_within(text, {0.0, latest_s, "s"});
    const std::optional<WrittenTime> time = parse_date(text);
    return time && time->offset_s.value_or(0) == 0 ? std::optional(time->seconds) : std::nullopt;
}

std::string print_time(TimeKind kind, double seconds) {
    if (kind == TimeKind::seconds) return fmt::format("{}", seconds);
    const double whole = std::floor(seconds);
    const auto since = std::chrono::seconds(static_cast<long long>(whole));
    const auto days = std::chrono::floor<std::chrono::days>(since);
    const std::chrono::year_month_day date{std::chrono::sys_days(days)};
    const std::chrono::hh_mm_ss clock(since - days);
    std::string text = fmt::format("{:04}-00-00T00:00:00", static_cast<int>(date.year()));
    // Two digits, so far before the end.
    const auto put = [&text](std::size_t before_end, auto value) {
        const auto number = static_cast<unsigned>(value);
        text[text.size() - before_end] = static_cast<char>('0' + number / 10);
        text[text.size() - before_end + 1] = static_cast<char>('0' + number % 10);
    };
    put(14, static_cast<unsigned>(date.month()));
    put(11, static_cast<unsigned>(date.day()));
    put(8, clock.hours().count());
    put(5, clock.minutes().count());
    put(2, clock.seconds().count());
    if (seconds > whole) {
        std::string fraction = fmt::format("{:.6f}", seconds - whole).substr(1);
        fraction.erase(fraction.find_last_not_of('0') + 1);
        if (fraction.size() > 1) text += fraction;
    }
    return text;
}

std::string date_expected(std::string_view text) {
    constexpr std::string_view forms = "2026-03-01T06:00:00 or 01.03.2026 06:00";
    const auto has = [&](char c) { return text.find(c) != std::string_view::npos; };
    const auto only = [&](std::string_view allowed) {
        return !text.empty() && text.find_first_not_of(allowed) == std::string_view::npos;
    };
    std::string why;
    if (has('/'))
        why = "; with slashes day and month cannot be told apart";
    else if (only("0123456789-.") && std::ranges::count(text, '-') + std::ranges::count(text, '.') == 2)
        why = "; the time of day is missing";
    else if (only("0123456789:") && has(':'))
        why = "; the date is missing";
    else if (std::ranges::count(text, '.') >= 2 && has(':'))
        why = "; there is no such day and time (day, month, four digits of the year, 0:00 to 23:59)";
    else if (only("0123456789.,"))
        why = "; a number of days has to be formatted as date and time, seconds stand in a column time_s";
    return fmt::format("expected a date such as {}, not {}{}", forms, quoted(text), why);
}

}  // namespace kalorfix::tool::station
