// SPDX-License-Identifier: MIT
// What the transmitters measured: one row a cycle and channel.
#pragma once

#include <array>
#include <cstdint>
#include <istream>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tools/spreadsheet.h"
#include "tools/station/channel_index.h"
#include "tools/station/station.h"
#include "tools/station/time_text.h"
#include "tools/text.h"

namespace kalorfix::tool::station {

/// Between two readings of a channel. The tick counter has 32 bits: at 100 ticks a second it tells 497 days apart.
inline constexpr double longest_gap_s = 400.0 * 86400.0;

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
    barometer,
    own
};
inline constexpr std::size_t quantity_count = 10;  ///< those that are measured

/// A column that a file has beside those of readings, such as the amount that a device counted.
struct OwnColumn {
    std::string_view name;
    std::size_t place;  ///< of its values in Readings::own
    double factor = 1.0;
    bool of_gas = true, of_heat_carrier = true;  ///< channels whose rows may have it
};

/// A column of readings.
struct Column {
    std::string name;
    Quantity quantity;
    double factor = 1.0, offset = 0.0;  ///< into the unit of the interface
    const OwnColumn* own = nullptr;
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

/// Rows of readings
///
///     time_s,channel,t_C,p_MPa,dp_kPa
///     0,GAS 1,8,1.2,16
///
/// in the order of time, columns in any order, the unit in the name of each; cells and numbers as a spreadsheet writes them. Empty
/// lines and lines that begin with # are passed over. A flow from elsewhere is 0 where no row of its channel has it; in the second
/// walk an empty cell is no reading where others are not empty.
class Readings {
public:
    /// Reads the heading, which may have columns of its own; `decimal` as of Spreadsheet. Throws InputError with file, line and
    /// column for every mistake.
    Readings(const Station& station, std::istream& in, const std::string& name, char decimal = 0,
             std::span<const OwnColumn> own = {});

    /// The next row. Throws InputError with file, line and column.
    bool next(Measured& row);

    /// Back to the first row.
    void rewind();

    /// What the columns of its own held in the last row; nothing for an empty cell.
    [[nodiscard]] const std::vector<std::optional<double>>& own() const { return own_; }
    [[nodiscard]] bool has_own(std::size_t place) const;

    /// Behind the last row: a word on standard error where the file does not end with the end of a line, since a number that was
    /// cut is one as well.
    void warn_of_end() const;

    /// Of the clock from UTC, where the station or the times of the rows so far tell it.
    [[nodiscard]] std::optional<int> offset_s() const { return station_.zone_s ? station_.zone_s : offset_s_; }

    [[nodiscard]] const Lines& lines() const { return lines_; }
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
    void read_own(std::string_view cell, const Column& column, const Channel& channel);
    void read_pressure(const Channel& channel, Measured& row);
    void check_order(const Measured& row, std::string_view time);

    const Station& station_;
    Lines lines_;
    Spreadsheet sheet_;
    std::span<const OwnColumn> own_columns_;
    std::vector<std::optional<double>> own_{};
    std::optional<int> offset_s_;  ///< from UTC, of all times where the station tells no zone
    TimeKind time_kind_ = TimeKind::seconds;
    std::vector<Column> columns_;
    std::size_t time_column_ = 0, channel_column_ = 0;
    std::size_t pressure_column_ = 0, gauge_column_ = 0,
                barometer_column_ = 0;  ///< the number of columns: there is none
    std::vector<std::string_view> cells_;
    std::vector<std::optional<double>> last_time_;         ///< of each channel
    std::vector<std::array<bool, quantity_count>> given_;  ///< flows from elsewhere that rows of a channel have
    bool walked_ = false;                                  ///< to the end, once
    double latest_ = 0.0;
    ChannelIndex index_;
};

}  // namespace kalorfix::tool::station
