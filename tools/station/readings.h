// SPDX-License-Identifier: MIT
// What the transmitters measured: one row a cycle and channel.
#pragma once

#include <array>
#include <csignal>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/spreadsheet.h"
#include "tools/station/channel_index.h"
#include "tools/station/station.h"
#include "tools/text.h"

namespace kalorfix::tool::station {

enum class TimeKind { seconds, date };

/// Largest time in seconds: the tick counter and its differences stay exact.
inline constexpr double latest_s = 1e11;

/// Reads "86400.5" (0..1e11) or a date without an offset from UTC (time_text.h) into seconds; a date counts from 1970. Nothing when the
/// text is neither.
[[nodiscard]] std::optional<double> parse_time(TimeKind kind, std::string_view text);

/// The same the other way round.
[[nodiscard]] std::string print_time(TimeKind kind, double seconds);

/// What a column can hold, measured values in the unit of the interface.
enum class Quantity {
    t_C,
    p_Pa,
    dp_Pa,
    q_t_h,
    q_m3_h,
    mass,
    volume,
    standard,
    energy,
    heat,
    time,
    name,
    gauge,
    barometer
};
inline constexpr std::size_t quantity_count = 10;  ///< those that are measured

/// A column of readings.
struct Column {
    std::string name;
    Quantity quantity;
    double factor = 1.0, offset = 0.0;  ///< into the unit of the interface
};

struct Measured {
    double time_s = 0.0;
    std::size_t channel = 0;  ///< index in the station
    std::array<double, quantity_count> value{};
    double atmosphere_Pa = 0.0;  ///< in the pressure, where it was read as gauge pressure

    [[nodiscard]] double operator[](Quantity q) const { return value[static_cast<std::size_t>(q)]; }
};

/// The columns with their units, in lines for a person.
[[nodiscard]] std::string column_reference();

/// The quantity beside temperature and pressure that a channel's device needs: a differential pressure or the reading of a meter.
[[nodiscard]] Quantity measured_by(const Channel& channel);

/// The readings of a file, or with the name "-" of standard input, as a stream that can be walked through twice: a pipe is copied
/// to an unnamed temporary file, which an interruption ends behind a whole line. Null when it comes before a pipe is open. Throws InputError when they cannot
/// be read.
[[nodiscard]] std::unique_ptr<std::istream> open_readings(const std::string& name,
                                                          const volatile std::sig_atomic_t& interrupted);

/// Rows of readings
///
///     time_s,channel,t_C,p_MPa,dp_kPa
///     0,GAS 1,8,1.2,16
///
/// in the order of time, columns in any order, the unit in the name of each; cells and numbers as a spreadsheet writes them. Empty
/// lines and lines that begin with # are passed over.
class Readings {
public:
    /// Reads the heading; `decimal` as of Spreadsheet. Throws InputError with file, line and column for every mistake.
    Readings(const Station& station, std::istream& in, const std::string& name, char decimal = 0);

    /// The next row. Throws InputError with file, line and column.
    bool next(Measured& row);

    /// Back to the first row.
    void rewind();

    [[nodiscard]] TimeKind time_kind() const { return time_kind_; }
    [[nodiscard]] std::uint64_t bytes_read() const { return lines_.bytes_read(); }
    [[nodiscard]] const std::string& name() const { return lines_.name(); }

private:
    void read_heading();
    void add_column(std::string_view name);
    void require_columns();
    void drop_empty_end(std::size_t fewest);
    double read_time(std::string_view cell);
    std::size_t find_channel(std::string_view cell) const;
    double read_value(std::string_view cell, const Column& column, const Channel& channel);
    void read_pressure(const Channel& channel, Measured& row);
    void check_order(const Measured& row, std::string_view time);

    const Station& station_;
    Lines lines_;
    Spreadsheet sheet_;
    std::optional<int> offset_s_;  ///< from UTC, of all times where the station tells no zone
    TimeKind time_kind_ = TimeKind::seconds;
    std::vector<Column> columns_;
    std::size_t time_column_ = 0, channel_column_ = 0;
    std::size_t pressure_column_ = 0, gauge_column_ = 0,
                barometer_column_ = 0;  ///< the number of columns: there is none
    std::vector<std::string_view> cells_;
    std::vector<std::optional<double>> last_time_;  ///< of each channel
    double latest_ = 0.0;
    ChannelIndex index_;
};

}  // namespace kalorfix::tool::station
