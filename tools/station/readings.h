// What the transmitters measured: one row a cycle and channel.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/station/line_source.h"
#include "tools/station/station.h"
#include "tools/station/timestamp.h"

namespace kalorfix::tool::station {

/// What a column can hold, in the unit of the interface.
enum class Quantity { t_C, p_Pa, dp_Pa, q_t_h, q_m3_h, mass, volume, standard_volume, energy, heat };
inline constexpr std::size_t quantity_count = 10;

struct Measured {
    double time_s = 0.0;
    std::size_t channel = 0;  ///< index in the station
    std::array<double, quantity_count> value{};

    [[nodiscard]] double operator[](Quantity q) const { return value[static_cast<std::size_t>(q)]; }
};

/// Rows of readings
///
///     time_s,channel,t_C,p_MPa,dp_kPa
///     0,GAS 1,8,1.2,16
///
/// in the order of time, columns in any order, the unit in the name of each. Empty lines and lines that begin with # are
/// passed over.
class Readings {
public:
    /// Reads the heading. Throws InputError with file, line and column for every mistake.
    Readings(const Station& station, LineSource& source);

    /// The next row. Throws InputError with file, line and column.
    bool next(Measured& row);

    /// Back to the first row.
    void rewind();

    [[nodiscard]] TimeKind time_kind() const { return time_kind_; }

    /// Whether a channel's device needs a column, and whether it takes it at all.
    [[nodiscard]] static bool needs(const Channel& channel, Quantity quantity);
    [[nodiscard]] static bool takes(const Channel& channel, Quantity quantity);

private:
    enum class Role { time, channel, value };
    struct Column {
        std::string name;
        Role role = Role::value;
        Quantity quantity = Quantity::t_C;
        double factor = 1.0, offset = 0.0;
    };
    struct Cell {
        std::string_view text;
        std::size_t position;  ///< of its first character in the line, from 1
    };

    bool next_line(std::string_view& line);
    void split(std::string_view line);
    void read_heading();
    void add_column(const Cell& cell);
    void require_columns() const;
    std::size_t find_channel(const Cell& cell) const;
    double number(const Cell& cell, const Column& column) const;
    void check_order(const Measured& row, const Cell& time);
    [[noreturn]] void fail(const Cell& cell, const std::string& what) const;
    [[noreturn]] void fail(const std::string& what) const;

    const Station& station_;
    LineSource& source_;
    TimeKind time_kind_ = TimeKind::seconds;
    std::vector<Column> columns_;
    std::vector<Cell> cells_;
    std::vector<std::optional<double>> last_time_;  ///< of each channel
    double latest_ = 0.0;
    mutable std::size_t last_channel_ = 0;
};

}  // namespace kalorfix::tool::station
