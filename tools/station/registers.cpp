// SPDX-License-Identifier: MIT
#include "tools/station/registers.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "tools/station/channel_index.h"
#include "tools/text.h"

namespace kalorfix::tool::station {
namespace {

constexpr std::array<std::string_view, 12> heading{"channel",     "integrator", "unit",      "exponent",
                                                   "time",        "total",      "hour_s",    "hour_start",
                                                   "hour_result", "day_s",      "day_start", "day_result"};
constexpr std::size_t first_number = 5;
// What a register and the numbers of its hour and day can be: the register wraps, and an interval closes at its length.
constexpr double wrap = 1e6, hour_s = 3600.0, day_s = 86400.0;
constexpr std::array<double, heading.size() - first_number> most{wrap, hour_s, wrap, wrap, day_s, wrap, wrap};
constexpr std::string_view no_time = "-";

using Cells = std::vector<std::string>;

std::vector<Cells> rows(const Station& station, const StationRegisters& registers, TimeKind kind) {
    std::vector<Cells> all{{heading.begin(), heading.end()}};
    for (std::size_t i = 0; i < station.channels.size(); ++i) {
        const Channel& c = station.channels[i];
        for (std::size_t k = 0; k < integrator_count(c.medium); ++k) {
            const Register& reg = registers[i].reg[k];
            const std::optional<double>& last_s = registers[i].last_s;
            const std::optional<int>& offset_s = registers[i].offset_s;
            Cells cells{c.name,
                        std::string(integrator(c.medium, k).name),
                        std::string(integrator(c.medium, k).unit),
                        fmt::format("{}", c.accounting[k].exponent),
                        (last_s ? print_time(kind, *last_s) : std::string(no_time)) +
                            (last_s && offset_s ? print_offset(*offset_s) : ""),
                        fmt::format("{}", reg.total)};
            for (const Interval& interval : reg.interval)
                for (const float value : {interval.time_s, interval.start, interval.result})
                    cells.push_back(fmt::format("{}", value));
            all.push_back(std::move(cells));
        }
    }
    return all;
}

// Cells of a line: between commas, or in a table between two blanks and more.
std::vector<std::string_view> cells_of(std::string_view line) {
    constexpr std::string_view blanks = " \t#";
    line = trimmed(line, blanks);
    if (line.find(',') != std::string_view::npos) return split(line, ',');
    std::vector<std::string_view> cells;
    while (!line.empty()) {
        const std::size_t end = std::min(line.find("  "), line.size());
        cells.push_back(trimmed(line.substr(0, end), blanks));
        line = trimmed(line.substr(end), blanks);
    }
    return cells;
}

float number_of(const Lines& lines, const std::vector<std::string_view>& cells, std::size_t column) {
    const Limits limits{0.0, most[column - first_number], ""};
    const std::optional<double> value = number_within(cells[column], limits);
    if (value) return static_cast<float>(*value);
    lines.fail(heading[column], ": ", expected_within(cells[column], limits));
}

// By the station's own clock, where its zone is told.
std::optional<WrittenTime> time_of(std::string_view cell, TimeKind kind, const Station& station) {
    if (kind == TimeKind::seconds) {
        const std::optional<double> seconds = parse_time(kind, cell);
        return seconds ? std::optional(WrittenTime{*seconds, {}}) : std::nullopt;
    }
    std::optional<WrittenTime> time = parse_date(cell);
    if (time && time->offset_s && station.zone_s)
        *time = {time->seconds + *station.zone_s - *time->offset_s, station.zone_s};
    return time;
}

using Found = std::vector<std::array<bool, most_integrators>>;

void read_row(const Lines& lines, const std::vector<std::string_view>& cells, const Station& station,
              const ChannelIndex& index, TimeKind kind, StationRegisters& registers, Found& found) {
    if (cells.size() != heading.size())
        lines.fail("expected ", heading.size(), " cells as in the heading of the registers");
    const std::optional<std::size_t> place = index.find(cells[0]);
    if (!place) lines.fail("registers of ", cells[0], ", which ", station.file, " does not describe");
    const std::size_t i = *place;
    const Channel* const channel = &station.channels[i];
    std::size_t k = 0;
    while (k < integrator_count(channel->medium) && integrator(channel->medium, k).name != cells[1]) ++k;
    if (k == integrator_count(channel->medium)) lines.fail(cells[0], " has no integrator ", quoted(cells[1]));
    if (found[i][k]) lines.fail(cells[0], " ", cells[1], " stands here for the second time");
    found[i][k] = true;
    if (cells[3] != fmt::format("{}", channel->accounting[k].exponent))
        lines.fail(cells[0], " ", cells[1], " counts in 10^", cells[3], ", the station in 10^",
                   channel->accounting[k].exponent);
    const std::optional<WrittenTime> last =
        cells[4] == no_time ? std::nullopt : time_of(cells[4], kind, station);
    if (cells[4] != no_time && !last)
        lines.fail("time: expected ", kind == TimeKind::seconds ? "seconds" : "a date",
                   " as in the readings, not ", quoted(cells[4]));
    const std::optional<double> last_s = last ? std::optional(last->seconds) : std::nullopt;
    if (k > 0 && last_s != registers[i].last_s)
        lines.fail("time: the registers of ", cells[0], " have one time, not ", quoted(cells[4]), " too");
    registers[i].last_s = last_s;
    if (last) registers[i].offset_s = last->offset_s;
    Register& reg = registers[i].reg[k];
    reg.total = number_of(lines, cells, first_number);
    std::size_t next = first_number + 1;
    for (Interval& interval : reg.interval)
        for (float* const value : {&interval.time_s, &interval.start, &interval.result})
            *value = number_of(lines, cells, next++);
}

}  // namespace

StationRegisters read_registers(const std::string& file, const Station& station, TimeKind kind) {
    Lines lines(file, "these registers");
    StationRegisters registers(station.channels.size());
    Found found(station.channels.size());
    const ChannelIndex index(station);
    bool begun = false;
    for (std::string_view line; lines.next(line);) {
        const std::vector<std::string_view> cells = cells_of(line);
        if (begun && !cells.empty()) read_row(lines, cells, station, index, kind, registers, found);
        begun = begun || std::ranges::equal(cells, heading);
        if (begun && lines.cut()) lines.fail("the file ends within this line: it was cut short");
    }
    if (!begun)
        throw InputError(file +
                         ": holds no registers; give the file of --registers, or results as a table or CSV");
    for (std::size_t i = 0; i < found.size(); ++i)
        for (std::size_t k = 0; k < integrator_count(station.channels[i].medium); ++k)
            if (!found[i][k])
                throw InputError(file, ": lacks the ", integrator(station.channels[i].medium, k).name,
                                 " register of ", station.channels[i].name);
    return registers;
}

void require_numbers(const Station& station, const StationRegisters& registers) {
    for (std::size_t i = 0; i < registers.size(); ++i)
        for (std::size_t k = 0; k < integrator_count(station.channels[i].medium); ++k) {
            const auto& [total, interval] = registers[i].reg[k];
            bool good = std::isfinite(total);
            for (const Interval& one : interval)
                good =
                    good && std::isfinite(one.time_s) && std::isfinite(one.start) && std::isfinite(one.result);
            if (!good)
                throw InputError("the ", integrator(station.channels[i].medium, k).name, " register of ",
                                 station.channels[i].name, " is no number any more; nothing is written");
        }
}

std::string print_registers(const Station& station, const StationRegisters& registers, TimeKind kind,
                            const std::string& prefix) {
    std::string text;
    for (const Cells& cells : rows(station, registers, kind)) text += prefix + joined(cells, {}, ",") + '\n';
    return text;
}

std::string print_registers_table(const Station& station, const StationRegisters& registers, TimeKind kind) {
    std::vector<Cells> all = rows(station, registers, kind);
    for (Cells& cells : all) cells.front().insert(0, "  ");
    return aligned(all, first_number);
}

}  // namespace kalorfix::tool::station
