#include "tools/station/readings.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>
#include <ext/stdio_filebuf.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>

#include "tools/text.h"

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
    double factor = 1.0, offset = 0.0;
};
constexpr KnownColumn known_columns[] = {
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
    {"standard_volume_m3_h", Quantity::standard_volume},
    {"energy_GJ_h", Quantity::energy},
    {"heat_GJ_h", Quantity::heat},
};

std::string names_of(Quantity quantity) {
    std::vector<KnownColumn> same;
    std::ranges::copy_if(known_columns, std::back_inserter(same),
                         [=](const KnownColumn& one) { return one.quantity == quantity; });
    return joined(same, &KnownColumn::name, " or ");
}

bool needs(const Channel& channel, Quantity quantity) {
    return quantity == Quantity::t_C || quantity == Quantity::p_Pa ||
           (channel.device != external_flow && quantity == measured_by(channel));
}

bool takes(const Channel& channel, Quantity quantity) {
    if (needs(channel, quantity)) return true;
    if (channel.device != external_flow) return false;
    if (quantity == Quantity::standard_volume || quantity == Quantity::energy) return channel.is_gas();
    return quantity == Quantity::mass || quantity == Quantity::volume ||
           (quantity == Quantity::heat && !channel.is_gas());
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
        if (got < 0) throw InputError(fmt::format("{}: cannot be read: {}", name, std::strerror(errno)));
        if (write(to, buffer.data(), static_cast<std::size_t>(got)) != got)
            throw InputError(fmt::format("{}: no room for a temporary copy of the readings", name));
        const std::size_t line_end = std::string_view(buffer.data(), static_cast<std::size_t>(got)).rfind('\n');
        if (line_end != std::string_view::npos)
            whole_lines = lseek(to, 0, SEEK_CUR) - got + static_cast<off_t>(line_end) + 1;
    }
    if ((interrupted && ftruncate(to, whole_lines) != 0) || lseek(to, 0, SEEK_SET) != 0)
        throw InputError(fmt::format("{}: cannot keep the readings", name));
}

}  // namespace

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
    if (descriptor < 0) throw refused(std::strerror(errno));
    auto stream = std::make_unique<FileStream>(descriptor);
    struct stat about {};
    if (fstat(descriptor, &about) != 0 || S_ISDIR(about.st_mode)) throw refused("it is a directory");
    if (S_ISREG(about.st_mode)) return stream;
    std::FILE* const kept = std::tmpfile();
    if (!kept) throw InputError(fmt::format("{}: no temporary file to keep the readings in", name));
    const int copied = dup(fileno(kept));
    std::fclose(kept);
    auto copy_stream = std::make_unique<FileStream>(copied);
    copy(name, descriptor, copied, interrupted);
    return copy_stream;
}

Readings::Readings(const Station& station, std::istream& in, const std::string& name)
    : station_(station),
      lines_(in, name == "-" ? "standard input" : name),
      last_time_(station.channels.size()) {
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
    if (cells_.size() > most_columns) lines_.fail(fmt::format("has more than {} columns", most_columns));
    for (const std::string_view cell : cells_) add_column(cell);
    require_columns();
}

void Readings::add_column(std::string_view name) {
    Column column{std::string(name)};
    if (name == "time_s" || name == "time") {
        column.role = Role::time;
        time_kind_ = name == "time" ? TimeKind::date : TimeKind::seconds;
    } else if (name == "channel") {
        column.role = Role::channel;
    } else {
        const auto* const known = std::ranges::find(known_columns, name, &KnownColumn::name);
        if (known == std::end(known_columns))
            lines_.fail(fmt::format("no such column: {}; there are time_s, time, channel, {}", quoted(name),
                                    joined(known_columns, &KnownColumn::name)),
                        name);
        column.quantity = known->quantity;
        column.factor = known->factor;
        column.offset = known->offset;
    }
    for (const Column& other : columns_)
        if (other.role == column.role && (column.role != Role::value || other.quantity == column.quantity))
            lines_.fail(fmt::format("{} gives what column {} gives already", column.name, other.name), name);
    columns_.push_back(column);
}

void Readings::require_columns() const {
    const auto has = [this](Role role) {
        return std::ranges::find(columns_, role, &Column::role) != columns_.end();
    };
    if (!has(Role::time))
        lines_.fail("the heading lacks a column time_s (seconds) or time (2026-03-01T00:00:00)");
    if (!has(Role::channel))
        lines_.fail("the heading lacks the column channel, which holds names such as GAS 1");
    for (const Channel& channel : station_.channels)
        for (std::size_t q = 0; q < quantity_count; ++q) {
            const auto quantity = static_cast<Quantity>(q);
            const auto holds = [quantity](const Column& c) {
                return c.role == Role::value && c.quantity == quantity;
            };
            if (needs(channel, quantity) && std::ranges::none_of(columns_, holds))
                lines_.fail(fmt::format("the heading lacks a column {}, which {} needs", names_of(quantity),
                                        channel.name));
        }
}

double Readings::read_time(std::string_view cell) const {
    const std::optional<double> seconds = parse_time(time_kind_, cell);
    if (seconds) return *seconds;
    lines_.fail(time_kind_ == TimeKind::seconds
                    ? fmt::format("time_s: expected seconds within 0..{}, not {}", latest_s, quoted(cell))
                    : fmt::format("time: expected a date such as 2026-03-01T06:00:00, not {}", quoted(cell)),
                cell);
}

std::size_t Readings::find_channel(std::string_view cell) {
    const std::size_t count = station_.channels.size();
    // Channels mostly follow each other as in the station file.
    for (std::size_t k = 0; k < count; ++k) {
        const std::size_t i = (last_channel_ + 1 + k) % count;
        if (station_.channels[i].name == cell) return last_channel_ = i;
    }
    lines_.fail(fmt::format("no such channel: {}; {} describes {}", quoted(cell), station_.file,
                            joined(station_.channels, &Channel::name)),
                cell);
}

double Readings::read_value(std::string_view cell, const Column& column, const Channel& channel) const {
    if (cell.empty() && !needs(channel, column.quantity)) return 0.0;
    const auto fail = [&](const std::string& what) { lines_.fail(column.name + ": " + what, cell); };
    if (cell.empty()) fail(channel.name + " needs a value here");
    if (!takes(channel, column.quantity))
        fail("the device of " + channel.name + " does not take it; leave the cell empty");
    const std::optional<double> value = number(cell);
    if (!value) fail("expected a number such as 12.5, not " + quoted(cell));
    if (std::fabs(*value) > largest_value)
        fail(fmt::format("must lie within -{}..{}, not {}", largest_value, largest_value, cell));
    return *value * column.factor + column.offset;
}

void Readings::check_order(const Measured& row, std::string_view time) {
    if (row.time_s < latest_)
        lines_.fail(fmt::format("{} lies before {}; the rows must be in the order of time", time,
                                print_time(time_kind_, latest_)),
                    time);
    std::optional<double>& last = last_time_[row.channel];
    const std::string& name = station_.channels[row.channel].name;
    if (last && row.time_s == *last) lines_.fail(fmt::format("{} has a row for {} already", name, time), time);
    if (last && row.time_s - *last > longest_gap_s)
        lines_.fail(fmt::format("more than {} days after the row of {} before", longest_gap_s / 86400.0, name),
                    time);
    last = row.time_s;
    latest_ = row.time_s;
}

bool Readings::next(Measured& row) {
    std::string_view line;
    if (!lines_.next_entry(line)) return false;
    split(line, ',', cells_);
    if (cells_.size() != columns_.size())
        lines_.fail(fmt::format("expected {} cells as in the heading, not {}", columns_.size(), cells_.size()));
    row = {};
    std::string_view time;
    for (std::size_t k = 0; k < cells_.size(); ++k) {
        if (columns_[k].role == Role::channel) row.channel = find_channel(cells_[k]);
        if (columns_[k].role != Role::time) continue;
        time = cells_[k];
        row.time_s = read_time(time);
    }
    for (std::size_t k = 0; k < cells_.size(); ++k)
        if (const Column& column = columns_[k]; column.role == Role::value)
            row.value[static_cast<std::size_t>(column.quantity)] =
                read_value(cells_[k], column, station_.channels[row.channel]);
    check_order(row, time);
    return true;
}

}  // namespace kalorfix::tool::station
