#include "tools/station/readings.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>

#include "tools/range.h"

namespace kalorfix::tool::station {
namespace {

constexpr std::size_t most_columns = 64;
constexpr double largest_value = 1e12;
// The tick counter has 32 bits: at 100 ticks a second it tells 497 days apart.
constexpr double longest_gap_s = 400.0 * 86400.0;
constexpr double zero_celsius_K = 273.15;

struct KnownColumn {
    std::string_view name;
    Quantity quantity;
    double factor, offset;
};
constexpr KnownColumn known_columns[] = {
    {"t_C", Quantity::t_C, 1.0, 0.0},
    {"t_K", Quantity::t_C, 1.0, -zero_celsius_K},
    {"p_Pa", Quantity::p_Pa, 1.0, 0.0},
    {"p_kPa", Quantity::p_Pa, 1e3, 0.0},
    {"p_MPa", Quantity::p_Pa, 1e6, 0.0},
    {"dp_Pa", Quantity::dp_Pa, 1.0, 0.0},
    {"dp_kPa", Quantity::dp_Pa, 1e3, 0.0},
    {"q_t_h", Quantity::q_t_h, 1.0, 0.0},
    {"q_m3_h", Quantity::q_m3_h, 1.0, 0.0},
    {"mass_t_h", Quantity::mass, 1.0, 0.0},
    {"volume_m3_h", Quantity::volume, 1.0, 0.0},
    {"standard_volume_m3_h", Quantity::standard_volume, 1.0, 0.0},
    {"energy_GJ_h", Quantity::energy, 1.0, 0.0},
    {"heat_GJ_h", Quantity::heat, 1.0, 0.0},
};

std::string names_of(Quantity quantity) {
    std::string names;
    for (const KnownColumn& known : known_columns)
        if (known.quantity == quantity) names += (names.empty() ? "" : " or ") + std::string(known.name);
    return names;
}

std::string all_names() {
    std::string names = "time_s, time, channel";
    for (const KnownColumn& known : known_columns) names += ", " + std::string(known.name);
    return names;
}

std::string_view trimmed(std::string_view text) {
    const auto blank = [](char c) { return c == ' ' || c == '\t'; };
    while (!text.empty() && blank(text.front())) text.remove_prefix(1);
    while (!text.empty() && blank(text.back())) text.remove_suffix(1);
    return text;
}

}  // namespace

bool Readings::needs(const Channel& channel, Quantity quantity) {
    switch (quantity) {
        case Quantity::t_C:
        case Quantity::p_Pa:
            return true;
        case Quantity::dp_Pa:
            return !is_meter(channel.device);
        case Quantity::q_t_h:
            return channel.device == meter_mass;
        case Quantity::q_m3_h:
            return channel.device == meter_volume || channel.device == meter_standard_volume;
        default:
            return false;
    }
}

bool Readings::takes(const Channel& channel, Quantity quantity) {
    if (needs(channel, quantity)) return true;
    if (channel.device != external_flow) return false;
    const bool gas = channel.medium == Medium::gas;
    switch (quantity) {
        case Quantity::mass:
        case Quantity::volume:
            return true;
        case Quantity::standard_volume:
        case Quantity::energy:
            return gas;
        case Quantity::heat:
            return !gas;
        default:
            return false;
    }
}

Readings::Readings(const Station& station, LineSource& source)
    : station_(station), source_(source), last_time_(station.channels.size()) {
    read_heading();
}

void Readings::rewind() {
    source_.rewind();
    std::fill(last_time_.begin(), last_time_.end(), std::nullopt);
    latest_ = 0.0;
    std::string_view heading;
    next_line(heading);
}

bool Readings::next_line(std::string_view& line) {
    while (source_.next(line)) {
        if (source_.line_number() == 1 && line.starts_with("\xEF\xBB\xBF")) line.remove_prefix(3);
        const std::string_view text = trimmed(line);
        if (!text.empty() && text.front() != '#') return true;
    }
    return false;
}

void Readings::split(std::string_view line) {
    cells_.clear();
    std::size_t begin = 0;
    for (;;) {
        const std::size_t comma = line.find(',', begin);
        const std::string_view whole =
            line.substr(begin, comma == std::string_view::npos ? comma : comma - begin);
        const std::string_view text = trimmed(whole);
        const std::size_t lead = text.empty() ? 0 : static_cast<std::size_t>(text.data() - whole.data());
        cells_.push_back({text, begin + lead + 1});
        if (comma == std::string_view::npos) return;
        begin = comma + 1;
        if (cells_.size() > longest_line) return;
    }
}

void Readings::read_heading() {
    std::string_view line;
    if (!next_line(line)) fail("expected a heading such as time_s,channel,t_C,p_MPa,dp_kPa");
    split(line);
    if (cells_.size() > most_columns) fail(fmt::format("has more than {} columns", most_columns));
    for (const Cell& cell : cells_) add_column(cell);
    require_columns();
}

void Readings::add_column(const Cell& cell) {
    Column column{std::string(cell.text)};
    if (cell.text == "time_s" || cell.text == "time") {
        column.role = Role::time;
        time_kind_ = cell.text == "time" ? TimeKind::date : TimeKind::seconds;
    } else if (cell.text == "channel") {
        column.role = Role::channel;
    } else {
        const auto* const known = std::find_if(std::begin(known_columns), std::end(known_columns),
                                               [&](const KnownColumn& one) { return one.name == cell.text; });
        if (known == std::end(known_columns))
            fail(cell, fmt::format("no such column: '{}'; there are {}", cell.text, all_names()));
        column.quantity = known->quantity;
        column.factor = known->factor;
        column.offset = known->offset;
    }
    for (const Column& other : columns_)
        if (other.role == column.role && (column.role != Role::value || other.quantity == column.quantity))
            fail(cell, fmt::format("{} gives what column {} gives already", column.name, other.name));
    columns_.push_back(column);
}

void Readings::require_columns() const {
    const auto has = [this](Role role) {
        return std::any_of(columns_.begin(), columns_.end(),
                           [role](const Column& c) { return c.role == role; });
    };
    if (!has(Role::time)) fail("the heading lacks a column time_s (seconds) or time (2026-03-01T00:00:00)");
    if (!has(Role::channel)) fail("the heading lacks the column channel, which holds names such as GAS 1");
    for (const Channel& channel : station_.channels)
        for (std::size_t q = 0; q < quantity_count; ++q) {
            const auto quantity = static_cast<Quantity>(q);
            const auto holds = [quantity](const Column& c) {
                return c.role == Role::value && c.quantity == quantity;
            };
            if (needs(channel, quantity) && std::none_of(columns_.begin(), columns_.end(), holds))
                fail(fmt::format("the heading lacks a column {}, which {} needs", names_of(quantity),
                                 channel.name));
        }
}

std::size_t Readings::find_channel(const Cell& cell) const {
    const std::size_t count = station_.channels.size();
    // Channels mostly follow each other as in the station file.
    for (std::size_t k = 0; k < count; ++k) {
        const std::size_t i = (last_channel_ + 1 + k) % count;
        if (station_.channels[i].name == cell.text) return last_channel_ = i;
    }
    std::string names;
    for (const Channel& channel : station_.channels) names += (names.empty() ? "" : ", ") + channel.name;
    fail(cell, fmt::format("no such channel: '{}'; {} describes {}", cell.text, station_.file, names));
}

double Readings::number(const Cell& cell, const Column& column) const {
    double value = 0.0;
    const char* const end = cell.text.data() + cell.text.size();
    const auto [stop, error] = std::from_chars(cell.text.data(), end, value);
    if (error != std::errc() || stop != end || !std::isfinite(value))
        fail(cell, fmt::format("{}: expected a number such as 12.5, not '{}'", column.name, cell.text));
    if (std::fabs(value) > largest_value)
        fail(cell, fmt::format("{}: must lie within -{}..{}, not {}", column.name, largest_value, largest_value,
                               cell.text));
    return value * column.factor + column.offset;
}

void Readings::check_order(const Measured& row, const Cell& time) {
    if (row.time_s < latest_)
        fail(time, fmt::format("{} lies before {}; the rows must be in the order of time", time.text,
                               print_time(time_kind_, latest_)));
    std::optional<double>& last = last_time_[row.channel];
    const std::string& name = station_.channels[row.channel].name;
    if (last && row.time_s == *last) fail(time, fmt::format("{} has a row for {} already", name, time.text));
    if (last && row.time_s - *last > longest_gap_s)
        fail(time, fmt::format("more than {} days after the row of {} before", longest_gap_s / 86400.0, name));
    last = row.time_s;
    latest_ = row.time_s;
}

bool Readings::next(Measured& row) {
    std::string_view line;
    if (!next_line(line)) return false;
    split(line);
    if (cells_.size() != columns_.size())
        fail(fmt::format("expected {} cells as in the heading, not {}", columns_.size(), cells_.size()));
    row = {};
    const Cell* time = nullptr;
    for (std::size_t k = 0; k < cells_.size(); ++k) {
        if (columns_[k].role == Role::channel) row.channel = find_channel(cells_[k]);
        if (columns_[k].role != Role::time) continue;
        time = &cells_[k];
        if (!parse_time(time_kind_, time->text, row.time_s))
            fail(*time,
                 time_kind_ == TimeKind::seconds
                     ? fmt::format("time_s: expected seconds within 0..{}, not '{}'", latest_s, time->text)
                     : fmt::format("time: expected a date such as 2026-03-01T06:00:00, not '{}'", time->text));
    }
    const Channel& channel = station_.channels[row.channel];
    for (std::size_t k = 0; k < cells_.size(); ++k) {
        const Column& column = columns_[k];
        if (column.role != Role::value) continue;
        if (cells_[k].text.empty()) {
            if (needs(channel, column.quantity))
                fail(cells_[k], fmt::format("{}: {} needs a value here", column.name, channel.name));
            continue;
        }
        if (!takes(channel, column.quantity))
            fail(cells_[k], fmt::format("{}: the device of {} does not take it; leave the cell empty",
                                        column.name, channel.name));
        row.value[static_cast<std::size_t>(column.quantity)] = number(cells_[k], column);
    }
    if (time) check_order(row, *time);
    return true;
}

void Readings::fail(const Cell& cell, const std::string& what) const {
    throw InputError{fmt::format("{}:{}:{}: {}", source_.name(), source_.line_number(), cell.position, what)};
}

void Readings::fail(const std::string& what) const {
    throw InputError{
        fmt::format("{}:{}: {}", source_.name(), std::max<std::uint64_t>(source_.line_number(), 1), what)};
}

}  // namespace kalorfix::tool::station
