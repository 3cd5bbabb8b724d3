#include "tools/station/readings.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>
#include <ext/stdio_filebuf.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <span>

#include "tools/text.h"

namespace kalorfix::tool::station {
namespace {

constexpr std::size_t most_columns = 64;
constexpr double largest_value = 1e12;
// Two ticks: an interval does not bear two cycles within one.
constexpr double shortest_step_s = 0.02;
// The tick counter has 32 bits: at 100 ticks a second it tells 497 days apart.
constexpr double longest_gap_s = 400.0 * 86400.0;
constexpr double zero_celsius_K = 273.15;

constexpr Column known_columns[] = {
    {"time_s", Quantity::time},
    {"time", Quantity::time},
    {"channel", Quantity::name},
    {"t_C", Quantity::t_C},
    {"t_K", Quantity::t_C, 1.0, -zero_celsius_K},
    {"p_Pa", Quantity::p_Pa},
    {"p_kPa", Quantity::p_Pa, 1e3},
    {"p_MPa", Quantity::p_Pa, 1e6},
    {"dp_Pa", Quantity::dp_Pa},
    {"dp_kPa", Quantity::dp_Pa, 1e3},
    {"q_t_h", Quantity::q_t_h},
    {"q_m3_h", Quantity::q_m3_h},
    {"mass_t_h", Quantity::mass},
    {"volume_m3_h", Quantity::volume},
    {"standard_volume_m3_h", Quantity::standard},
    {"energy_GJ_h", Quantity::energy},
    {"heat_GJ_h", Quantity::heat},
};

std::string names_of(Quantity quantity) {
    std::vector<Column> same;
    std::ranges::copy_if(known_columns, std::back_inserter(same),
                         [=](const Column& one) { return one.quantity == quantity; });
    return joined(same, &Column::name, " or ");
}

bool needs(const Channel& channel, Quantity quantity) {
    return quantity == Quantity::t_C || quantity == Quantity::p_Pa ||
           (channel.device != external_flow && quantity == measured_by(channel));
}

// A transmitter that failed leaves no value, or none that is a number.
bool is_no_reading(std::string_view cell) {
    return cell.empty() || (cell.size() == 3 && strncasecmp(cell.data(), "nan", 3) == 0);
}

bool takes(const Channel& channel, Quantity quantity) {
    if (needs(channel, quantity)) return true;
    if (channel.device != external_flow) return false;
    if (quantity == Quantity::standard || quantity == Quantity::energy) return channel.is_gas();
    return quantity == Quantity::mass || quantity == Quantity::volume ||
           (quantity == Quantity::heat && !channel.is_gas());
}

// Whether a text has digits where the pattern has zeros, and else the same characters; the numbers of its runs of digits.
template <std::size_t count>
bool read_digits(std::string_view text, std::string_view pattern, std::array<int, count>& numbers) {
    if (text.size() != pattern.size()) return false;
    numbers = {};
    std::size_t k = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (pattern[i] != '0') {
            if (text[i] != pattern[i]) return false;
            ++k;
        } else {
            if (text[i] < '0' || text[i] > '9') return false;
            numbers[k] = 10 * numbers[k] + (text[i] - '0');
        }
    }
    return true;
}

std::optional<double> parse_date(std::string_view text) {
    constexpr std::size_t length = std::string_view("2026-03-01T06:00:00").size();
    if (text.ends_with('Z')) text.remove_suffix(1);
    std::array<int, 6> part{};  // year, month, day, hour, minute, second
    if (!read_digits(text.substr(0, length), "0000-00-00T00:00:00", part) &&
        !read_digits(text.substr(0, length), "0000-00-00 00:00:00", part))
        return std::nullopt;
    const auto [year, month, day, hour, minute, second] = part;
    const std::chrono::year_month_day date{std::chrono::year(year),
                                           std::chrono::month(static_cast<unsigned>(month)),
                                           std::chrono::day(static_cast<unsigned>(day))};
    const auto days = std::chrono::sys_days(date).time_since_epoch().count();
    if (!date.ok() || days < 0 || hour > 23 || minute > 59 || second > 59) return std::nullopt;
    const double seconds = static_cast<double>(days) * 86400.0 + 3600.0 * hour + 60.0 * minute + second;
    // Microseconds are what a double holds beside the seconds since 1970, and what is printed.
    constexpr std::size_t most_digits = 6;
    const std::string_view rest = text.substr(length);
    if (rest.empty()) return seconds;
    if (rest[0] != '.' || rest.size() < 2 || rest.size() > most_digits + 1 ||
        rest.find_first_not_of("0123456789", 1) != std::string_view::npos)
        return std::nullopt;
    return seconds + parse<double>(rest).value_or(0.0);
}

// An open file as a stream, with the offset that it has.
struct FileStream : std::istream {
    explicit FileStream(int descriptor)
        : std::istream(nullptr), buffer(descriptor, std::ios::in | std::ios::binary) {
        rdbuf(&buffer);
    }
    __gnu_cxx::stdio_filebuf<char> buffer;
};

// Copies a pipe; an interruption may have cut the last line, which is then left out.
void copy(const std::string& name, int from, int to, const volatile std::sig_atomic_t& interrupted) {
    std::vector<char> buffer(std::size_t{1} << 16);
    off_t whole_lines = 0;
    for (ssize_t got = 0; !interrupted && (got = read(from, buffer.data(), buffer.size())) != 0;) {
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) throw InputError(name, ": cannot be read: ", std::strerror(errno));
        if (write(to, buffer.data(), static_cast<std::size_t>(got)) != got)
            throw InputError(name, ": no room for a temporary copy of the readings");
        const std::size_t line_end = std::string_view(buffer.data(), static_cast<std::size_t>(got)).rfind('\n');
        if (line_end != std::string_view::npos)
            whole_lines = lseek(to, 0, SEEK_CUR) - got + static_cast<off_t>(line_end) + 1;
    }
    if ((interrupted && ftruncate(to, whole_lines) != 0) || lseek(to, 0, SEEK_SET) != 0)
        throw InputError(name, ": cannot keep the readings");
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

Quantity measured_by(const Channel& channel) {
    if (channel.device == meter_mass) return Quantity::q_t_h;
    const bool volume = channel.device == meter_volume || channel.device == meter_standard_volume;
    return volume ? Quantity::q_m3_h : Quantity::dp_Pa;
}

std::unique_ptr<std::istream> open_readings(const std::string& name,
                                            const volatile std::sig_atomic_t& interrupted) {
    const auto refused = [&](const char* why) {
        return InputError(fmt::format("{}: cannot read these readings: {}", name, why));
    };
    // A descriptor of its own: that of the process stays open.
    const int descriptor = name == "-" ? dup(STDIN_FILENO) : open(name.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0 && interrupted) return nullptr;
    if (descriptor < 0) throw refused(std::strerror(errno));
    auto stream = std::make_unique<FileStream>(descriptor);
    struct stat about {};
    if (fstat(descriptor, &about) != 0 || S_ISDIR(about.st_mode)) throw refused("it is a directory");
    if (S_ISREG(about.st_mode)) return stream;
    std::FILE* const kept = std::tmpfile();
    if (!kept) throw InputError(name, ": no temporary file to keep the readings in");
    const int copied = dup(fileno(kept));
    std::fclose(kept);
    auto copy_stream = std::make_unique<FileStream>(copied);
    copy(name, descriptor, copied, interrupted);
    return copy_stream;
}

Readings::Readings(const Station& station, std::istream& in, const std::string& name)
    : station_(station),
      lines_(in, name == "-" ? "standard input" : name),
      last_time_(station.channels.size()),
      index_(station) {
    read_heading();
}

void Readings::rewind() {
    lines_.rewind();
    std::ranges::fill(last_time_, std::nullopt);
    latest_ = 0.0;
    std::string_view heading;
    lines_.next_entry(heading);
}

void Readings::read_heading() {
    std::string_view line;
    if (!lines_.next_entry(line)) lines_.fail("expected a heading such as time_s,channel,t_C,p_MPa,dp_kPa");
    split(line, ',', cells_);
    if (cells_.size() > most_columns) lines_.fail("has more than ", most_columns, " columns");
    for (const std::string_view cell : cells_) add_column(cell);
    require_columns();
}

void Readings::add_column(std::string_view name) {
    const auto* const known = std::ranges::find(known_columns, name, &Column::name);
    if (known == std::end(known_columns))
        lines_.fail_at(name, "no such column: ", quoted(name), "; there are ",
                       joined(known_columns, &Column::name));
    if (const auto other = std::ranges::find(columns_, known->quantity, &Column::quantity);
        other != columns_.end())
        lines_.fail_at(name, name, " gives what column ", other->name, " gives already");
    if (name == "time") time_kind_ = TimeKind::date;
    columns_.push_back(*known);
}

void Readings::require_columns() {
    const auto place = [this](Quantity quantity) {
        return static_cast<std::size_t>(std::ranges::find(columns_, quantity, &Column::quantity) -
                                        columns_.begin());
    };
    time_column_ = place(Quantity::time);
    channel_column_ = place(Quantity::name);
    if (time_column_ == columns_.size())
        lines_.fail("the heading lacks a column time_s (seconds) or time (2026-03-01T00:00:00)");
    if (channel_column_ == columns_.size())
        lines_.fail("the heading lacks the column channel, which holds names such as GAS 1");
    for (const Channel& channel : station_.channels)
        for (std::size_t q = 0; q < quantity_count; ++q)
            if (const auto quantity = static_cast<Quantity>(q);
                needs(channel, quantity) && place(quantity) == columns_.size())
                lines_.fail("the heading lacks a column ", names_of(quantity), ", which ", channel.name,
                            " needs");
}

double Readings::read_time(std::string_view cell) const {
    const std::optional<double> seconds = parse_time(time_kind_, cell);
    if (seconds) return *seconds;
    if (time_kind_ == TimeKind::seconds)
        lines_.fail_at(cell, "time_s: expected seconds within 0..", latest_s, ", not ", quoted(cell));
    lines_.fail_at(cell, "time: expected a date such as 2026-03-01T06:00:00, not ", quoted(cell));
}

std::size_t Readings::find_channel(std::string_view cell) const {
    if (const std::optional<std::size_t> found = index_.find(cell)) return *found;
    constexpr std::size_t most_told = 20;
    const std::span told(station_.channels.data(), std::min(most_told, station_.channels.size()));
    lines_.fail_at(cell, "no such channel: ", quoted(cell), "; ", station_.file, " describes ",
                   joined(told, &Channel::name), told.size() < station_.channels.size() ? ", ..." : "");
}

double Readings::read_value(std::string_view cell, const Column& column, const Channel& channel) const {
    if (cell.empty() && !needs(channel, column.quantity)) return 0.0;
    if (is_no_reading(cell)) return std::numeric_limits<double>::quiet_NaN();
    const auto fail = [&](const auto&... what) { lines_.fail_at(cell, column.name, ": ", what...); };
    if (!takes(channel, column.quantity))
        fail("the device of ", channel.name, " does not take it; leave the cell empty");
    const std::optional<double> value = number(cell);
    if (!value) fail("expected a number such as 12.5, not ", quoted(cell));
    if (std::fabs(*value) > largest_value)
        fail("must lie within -", largest_value, "..", largest_value, ", not ", cell);
    return *value * column.factor + column.offset;
}

void Readings::check_order(const Measured& row, std::string_view time) {
    if (row.time_s < latest_)
        lines_.fail_at(time, time, " lies before ", print_time(time_kind_, latest_),
                       "; the rows must be in the order of time");
    std::optional<double>& last = last_time_[row.channel];
    const std::string& name = station_.channels[row.channel].name;
    if (last && row.time_s == *last) lines_.fail_at(time, name, " has a row for ", time, " already");
    if (last && row.time_s - *last < shortest_step_s)
        lines_.fail_at(time, "less than ", shortest_step_s, " s after the row of ", name,
                       " before; the library tells hundredths of a second apart");
    if (last && row.time_s - *last > longest_gap_s)
        lines_.fail_at(time, "more than ", longest_gap_s / 86400.0, " days after the row of ", name, " before");
    last = row.time_s;
    latest_ = row.time_s;
}

bool Readings::next(Measured& row) {
    std::string_view line;
    if (!lines_.next_entry(line)) return false;
    split(line, ',', cells_);
    if (cells_.size() != columns_.size())
        lines_.fail("expected ", columns_.size(), " cells as in the heading, not ", cells_.size());
    row = {};
    row.time_s = read_time(cells_[time_column_]);
    row.channel = find_channel(cells_[channel_column_]);
    for (std::size_t k = 0; k < cells_.size(); ++k)
        if (k != time_column_ && k != channel_column_)
            row.value[static_cast<std::size_t>(columns_[k].quantity)] =
                read_value(cells_[k], columns_[k], station_.channels[row.channel]);
    check_order(row, cells_[time_column_]);
    return true;
}

}  // namespace kalorfix::tool::station
