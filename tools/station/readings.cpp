// SPDX-License-Identifier: MIT
#include "tools/station/readings.h"

#include <fmt/format.h>

#include <strings.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <limits>
#include <span>

#include "tools/closest.h"
#include "tools/station/time_text.h"
#include "tools/text.h"
#include "tools/units.h"

namespace kalorfix::tool::station {
namespace {

constexpr std::size_t most_columns = 64;
constexpr double largest_value = 1e12;
// Two ticks: an interval does not bear two cycles within one.
constexpr double shortest_step_s = 0.02;
constexpr Limits barometer_kPa{50.0, 120.0, "kPa"};

// A quantity's columns: a prefix and a unit, such as p_gauge_kPa.
struct Prefix {
    std::string_view name;
    Quantity quantity;
    Dimension dimension;
};
constexpr Prefix prefixes[] = {
    {"t", Quantity::t_C, Dimension::temperature},
    {"p", Quantity::p_Pa, Dimension::pressure},
    {"p_gauge", Quantity::gauge, Dimension::pressure},
    {"barometer", Quantity::barometer, Dimension::pressure},
    {"dp", Quantity::dp_Pa, Dimension::pressure},
    {"q", Quantity::q_t_h, Dimension::mass_flow},
    {"q", Quantity::q_m3_h, Dimension::volume_flow},
    {"mass", Quantity::mass, Dimension::mass_flow},
    {"volume", Quantity::volume, Dimension::volume_flow},
    {"standard_volume", Quantity::standard, Dimension::standard_volume_flow},
    {"energy", Quantity::energy, Dimension::heat_flow},
    {"heat", Quantity::heat, Dimension::heat_flow},
};

std::string in_case(std::string_view text, int (*letter)(int)) {
    std::string all(text);
    std::ranges::transform(all, all.begin(), [letter](char c) {
        return static_cast<char>(letter(static_cast<unsigned char>(c)));
    });
    return all;
}

// Letters of a name may be of either case, those of its unit not: mPa is not MPa.
std::optional<Column> column_of(std::string_view name) {
    const std::string small = in_case(name, std::tolower);
    if (small == "time_s" || small == "time") return Column{small, Quantity::time};
    if (small == "channel") return Column{small, Quantity::name};
    for (const Prefix& prefix : prefixes) {
        if (!small.starts_with(prefix.name) || name.size() <= prefix.name.size() ||
            name[prefix.name.size()] != '_')
            continue;
        if (const Unit* const unit = find_unit(prefix.dimension, name.substr(prefix.name.size() + 1)))
            return Column{std::string(name), prefix.quantity, unit->factor, unit->offset};
    }
    return std::nullopt;
}

std::vector<std::string> column_names(std::span<const OwnColumn> own) {
    std::vector<std::string> names{"time_s", "time", "channel"};
    for (const OwnColumn& one : own) names.emplace_back(one.name);
    for (const Prefix& prefix : prefixes) {
        const std::string units = unit_names(prefix.dimension);
        for (const std::string_view unit : split(units, ',')) names.push_back(cat(prefix.name, "_", unit));
    }
    return names;
}

// In the unit that most files have.
std::string_view example_of(Quantity quantity) {
    constexpr std::array<std::string_view, quantity_count> names{
        "t_C",         "p_MPa or p_gauge_kPa", "dp_kPa",      "q_t_h",    "q_m3_h", "mass_t_h",
        "volume_m3_h", "standard_volume_m3_h", "energy_GJ_h", "heat_GJ_h"};
    return names[static_cast<std::size_t>(quantity)];
}

bool needs(const Channel& channel, Quantity quantity) {
    return quantity == Quantity::t_C || quantity == Quantity::p_Pa ||
           (channel.device != external_flow && quantity == measured_by(channel));
}

bool is_pressure(const Column& column) {
    return column.quantity == Quantity::p_Pa || column.quantity == Quantity::gauge ||
           column.quantity == Quantity::barometer;
}

bool is_measured(Quantity quantity) { return static_cast<std::size_t>(quantity) < quantity_count; }

// A transmitter that failed leaves no value, or none that is a number.
bool is_no_reading(std::string_view cell) {
    return cell.empty() || (cell.size() == 3 && strncasecmp(cell.data(), "nan", 3) == 0);
}

bool takes(const Channel& channel, Quantity quantity) {
    if (quantity == Quantity::gauge || quantity == Quantity::barometer) return true;
    if (needs(channel, quantity)) return true;
    if (channel.device != external_flow) return false;
    if (quantity == Quantity::standard || quantity == Quantity::energy) return channel.is_gas();
    return quantity == Quantity::mass || quantity == Quantity::volume ||
           (quantity == Quantity::heat && !channel.is_gas());
}

}  // namespace

Quantity measured_by(const Channel& channel) {
    if (channel.device == meter_mass) return Quantity::q_t_h;
    const bool volume = channel.device == meter_volume || channel.device == meter_standard_volume;
    return volume ? Quantity::q_m3_h : Quantity::dp_Pa;
}

std::string column_reference() {
    constexpr std::pair<const char*, Dimension> rows[] = {
        {"  t_UNIT                 temperature: ", Dimension::temperature},
        {"  p_, p_gauge_, dp_UNIT  absolute, gauge, differential pressure, barometer_UNIT\n"
         "                         beside gauge pressure: ",
         Dimension::pressure},
        {"  q_UNIT                 of meters: ", Dimension::mass_flow},
        {"                         or ", Dimension::volume_flow},
        {"  mass_, volume_UNIT     of external flows, the units of meters\n"
         "  standard_volume_UNIT   the same: ",
         Dimension::standard_volume_flow},
        {"  energy_, heat_UNIT     the same: ", Dimension::heat_flow}};
    std::string text;
    for (const auto& [begin, dimension] : rows) text += begin + unit_names(dimension) + "\n";
    return text;
}

Readings::Readings(const Station& station, std::istream& in, const std::string& name, char decimal,
                   std::span<const OwnColumn> own)
    : station_(station),
      lines_(in, name == "-" ? "standard input" : name),
      sheet_(decimal),
      own_columns_(own),
      last_time_(station.channels.size()),
      given_(station.channels.size()),
      index_(station) {
    for (const OwnColumn& one : own) own_.resize(std::max(own_.size(), one.place + 1));
    read_heading();
}

bool Readings::has_own(std::size_t place) const {
    return std::ranges::any_of(columns_,
                               [place](const Column& one) { return one.own && one.own->place == place; });
}

void Readings::warn_of_end() const {
    if (lines_.cut())
        fmt::print(stderr, "kalorfix: warning: {}:{}: the file ends within this line; was it cut short?\n",
                   printable(lines_.name()), lines_.number());
}

void Readings::rewind() {
    lines_.rewind();
    std::ranges::fill(last_time_, std::nullopt);
    latest_ = 0.0;
    std::string_view heading;
    sheet_.heading(lines_, heading);
}

void Readings::read_heading() {
    std::string_view line;
    if (!sheet_.heading(lines_, line))
        lines_.fail("expected a heading such as time_s,channel,t_C,p_MPa,dp_kPa");
    sheet_.split(lines_, line, cells_);
    drop_empty_end(0);
    if (cells_.size() > most_columns) lines_.fail("has more than ", most_columns, " columns");
    for (const std::string_view cell : cells_) add_column(cell);
    require_columns();
}

// A spreadsheet hands out as many cells as its widest row has.
void Readings::drop_empty_end(std::size_t fewest) {
    while (cells_.size() > fewest && cells_.back().empty()) cells_.pop_back();
}

void Readings::add_column(std::string_view name) {
    std::optional<Column> known = column_of(name);
    if (const auto own = std::ranges::find(own_columns_, name, &OwnColumn::name); own != own_columns_.end())
        known = {std::string(name), Quantity::own, own->factor, 0.0, &*own};
    if (!known)
        lines_.fail_at(name, "no such column: ", quoted(name), did_you_mean(name, column_names(own_columns_)),
                       "; there are time_s, time, channel and, each with a unit as in t_C, t, p, p_gauge, "
                       "barometer, dp, q, "
                       "mass, volume, standard_volume, energy and heat; see kalorfix run --help");
    for (const Column& other : columns_)
        if (other.quantity == known->quantity && (!known->own || known->own->place == other.own->place))
            lines_.fail_at(name, name, " gives what column ", other.name, " gives already");
    if (known->name == "time") time_kind_ = TimeKind::date;
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
        lines_.fail(
            "the heading lacks a column time_s (seconds) or time (2026-03-01T00:00:00, 01.03.2026 00:00)");
    if (channel_column_ == columns_.size())
        lines_.fail("the heading lacks the column channel, which holds names such as GAS 1");
    pressure_column_ = place(Quantity::p_Pa);
    gauge_column_ = place(Quantity::gauge);
    barometer_column_ = place(Quantity::barometer);
    const bool gauge = gauge_column_ != columns_.size(), barometer = barometer_column_ != columns_.size();
    for (const Channel& channel : station_.channels) {
        for (std::size_t q = 0; q < quantity_count; ++q)
            if (const auto quantity = static_cast<Quantity>(q); needs(channel, quantity) &&
                                                                place(quantity) == columns_.size() &&
                                                                !(quantity == Quantity::p_Pa && gauge))
                lines_.fail("the heading lacks a column ", example_of(quantity),
                            " (or with another unit), which ", channel.name, " needs");
        if (gauge && pressure_column_ == columns_.size() && !barometer && !channel.barometer_Pa)
            lines_.fail(columns_[gauge_column_].name, ": ", channel.name,
                        " needs the atmospheric pressure as well: a column barometer_kPa, or a key "
                        "barometer_kPa in its section");
    }
    if (barometer && !gauge)
        lines_.fail(columns_[barometer_column_].name,
                    ": without a column of gauge pressure, such as p_gauge_kPa, it has no meaning");
}

double Readings::read_time(std::string_view cell) {
    if (time_kind_ == TimeKind::seconds) {
        const std::optional<double> seconds = sheet_.number(lines_, cell);
        if (seconds && 0.0 <= *seconds && *seconds <= latest_s) return *seconds;
        lines_.fail_at(cell, "time_s: expected seconds within 0..", latest_s, ", not ", quoted(cell));
    }
    const std::optional<WrittenTime> time = parse_date(cell);
    if (!time) lines_.fail_at(cell, "time: ", date_expected(cell));
    if (station_.zone_s) {
        const double seconds = time->seconds + *station_.zone_s - time->offset_s.value_or(*station_.zone_s);
        if (seconds >= 0.0) return seconds;
        lines_.fail_at(cell, "time: ", quoted(cell), " lies before 1970");
    }
    // Without a zone the times are those of the clock that wrote them, of one clock in the whole file.
    if (latest_ == 0.0 && std::ranges::none_of(last_time_, [](const auto& last) { return last.has_value(); }))
        offset_s_ = time->offset_s;
    const auto text = [](const std::optional<int>& offset) { return offset ? print_offset(*offset) : "none"; };
    if (time->offset_s != offset_s_)
        lines_.fail_at(cell, "time: the offset from UTC changes from ", text(offset_s_), " to ",
                       text(time->offset_s),
                       "; say the station's own, such as zone = +03:00 in a section [STATION]");
    return time->seconds;
}

std::size_t Readings::find_channel(std::string_view cell) const {
    if (const std::optional<std::size_t> found = index_.find(cell)) return *found;
    // As people write it: small letters, blanks more, or one that does not break.
    std::string plain_name = in_case(cell, std::toupper);
    constexpr std::string_view no_break = "\xC2\xA0";
    for (std::size_t at = 0; (at = plain_name.find(no_break)) != std::string::npos;)
        plain_name.replace(at, no_break.size(), " ");
    if (const auto found = index_.find(joined(words(plain_name), {}, " "))) return *found;
    constexpr std::size_t most_told = 20;
    const std::span told(station_.channels.data(), std::min(most_told, station_.channels.size()));
    lines_.fail_at(cell, "no such channel: ", quoted(cell), "; ", station_.file, " describes ",
                   joined(told, &Channel::name), told.size() < station_.channels.size() ? ", ..." : "");
}

double Readings::read_value(std::string_view cell, const Column& column, const Channel& channel) {
    if (!needs(channel, column.quantity) && takes(channel, column.quantity) && is_measured(column.quantity)) {
        bool& given = given_[static_cast<std::size_t>(&channel - station_.channels.data())]
                            [static_cast<std::size_t>(column.quantity)];
        given = given || !cell.empty();
        // A flow from elsewhere that other rows have failed here; before the first walk has ended nobody knows.
        if (cell.empty() && given && walked_) return std::numeric_limits<double>::quiet_NaN();
    }
    if (cell.empty() && !needs(channel, column.quantity)) return 0.0;
    if (is_no_reading(cell)) return std::numeric_limits<double>::quiet_NaN();
    const auto fail = [&](const auto&... what) { lines_.fail_at(cell, column.name, ": ", what...); };
    if (!takes(channel, column.quantity))
        fail("the device of ", channel.name, " does not take it; leave the cell empty");
    const std::optional<double> value = sheet_.number(lines_, cell);
    if (!value) fail("expected a number such as 12.5, not ", quoted(cell));
    if (std::fabs(*value) > largest_value)
        fail("must lie within -", largest_value, "..", largest_value, ", not ", cell);
    return *value * column.factor + column.offset;
}

void Readings::read_own(std::string_view cell, const Column& column, const Channel& channel) {
    std::optional<double>& value = own_[column.own->place];
    value.reset();
    if (is_no_reading(cell)) return;
    if (!(channel.is_gas() ? column.own->of_gas : column.own->of_heat_carrier))
        lines_.fail_at(cell, column.name, ": ", channel.name, " has none; leave the cell empty");
    value = sheet_.number(lines_, cell);
    if (!value || std::fabs(*value) > largest_value)
        lines_.fail_at(cell, column.name, ": expected a number within -", largest_value, "..", largest_value,
                       ", or an empty cell, not ", quoted(cell));
    *value *= column.factor;
}

// The absolute pressure where there is a column of gauge pressure.
void Readings::read_pressure(const Channel& channel, Measured& row) {
    double& p_Pa = row.value[static_cast<std::size_t>(Quantity::p_Pa)];
    p_Pa = std::numeric_limits<double>::quiet_NaN();
    const auto cell = [this](std::size_t column) {
        return column < columns_.size() ? cells_[column] : std::string_view();
    };
    const std::string_view absolute = cell(pressure_column_), gauge = cell(gauge_column_);
    const auto value = [&](std::size_t column) { return read_value(cell(column), columns_[column], channel); };
    if (!absolute.empty() && !gauge.empty())
        lines_.fail_at(gauge, columns_[gauge_column_].name, ": ", channel.name, " has ",
                       columns_[pressure_column_].name, " as well; leave one of them empty");
    if (!absolute.empty()) {
        p_Pa = value(pressure_column_);
        return;
    }
    if (is_no_reading(gauge)) return;
    const std::string_view atmosphere = cell(barometer_column_);
    if (barometer_column_ == columns_.size() && !channel.barometer_Pa)
        lines_.fail_at(gauge, columns_[gauge_column_].name, ": ", channel.name,
                       " needs the atmospheric pressure as well: a column barometer_kPa, or a key "
                       "barometer_kPa in its section");
    row.atmosphere_Pa = channel.barometer_Pa.value_or(std::numeric_limits<double>::quiet_NaN());
    if (!atmosphere.empty()) {
        row.atmosphere_Pa = value(barometer_column_);
        if (const double kPa = row.atmosphere_Pa / 1e3; kPa < barometer_kPa.low || kPa > barometer_kPa.high)
            lines_.fail_at(atmosphere, columns_[barometer_column_].name, ": expected ", barometer_kPa.text(),
                           ", not ", quoted(atmosphere));
    }
    p_Pa = value(gauge_column_) + row.atmosphere_Pa;
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
    do {
        if (!lines_.next_entry(line, sheet_.separator() == '\t' ? " " : " \t")) {
            sheet_.finish(lines_);
            walked_ = true;
            return false;
        }
        sheet_.split(lines_, line, cells_);
    } while (cells_.front().empty() && std::ranges::all_of(cells_, &std::string_view::empty));
    if (cells_.size() > columns_.size()) drop_empty_end(columns_.size());
    if (cells_.size() != columns_.size())
        lines_.fail(sheet_.wrong_count(columns_.size(), cells_.size()),
                    lines_.cut() ? "; the file ends within this line" : "");
    row = {};
    row.time_s = read_time(cells_[time_column_]);
    row.channel = find_channel(cells_[channel_column_]);
    const Channel& channel = station_.channels[row.channel];
    const bool by_gauge = gauge_column_ != columns_.size();
    for (std::size_t k = 0; k < cells_.size(); ++k) {
        const Column& column = columns_[k];
        if (column.own)
            read_own(cells_[k], column, channel);
        else if (k != time_column_ && k != channel_column_ && !(by_gauge && is_pressure(column)))
            row.value[static_cast<std::size_t>(column.quantity)] = read_value(cells_[k], column, channel);
    }
    if (by_gauge) read_pressure(channel, row);
    check_order(row, cells_[time_column_]);
    return true;
}

}  // namespace kalorfix::tool::station
