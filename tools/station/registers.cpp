#include "tools/station/registers.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <limits>

#include "tools/text.h"

namespace kalorfix::tool::station {
namespace {

constexpr std::array<std::string_view, 12> heading{"channel",     "integrator", "unit",      "exponent",
                                                   "time",        "total",      "hour_s",    "hour_start",
                                                   "hour_result", "day_s",      "day_start", "day_result"};
constexpr std::size_t first_number = 5;
constexpr std::string_view no_time = "-";

using Cells = std::vector<std::string>;

std::vector<Cells> rows(const Station& station, const StationRegisters& registers, TimeKind kind) {
    std::vector<Cells> all{{heading.begin(), heading.end()}};
    for (std::size_t i = 0; i < station.channels.size(); ++i) {
        const Channel& c = station.channels[i];
        for (std::size_t k = 0; k < integrator_count(c.medium); ++k) {
            const Register& reg = registers[i].reg[k];
            Cells cells{c.name,
                        std::string(integrator(c.medium, k).name),
                        std::string(integrator(c.medium, k).unit),
                        fmt::format("{}", c.accounting[k].exponent),
                        std::string(registers[i].last_s ? print_time(kind, *registers[i].last_s) : no_time),
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

class Reader {
public:
    Reader(const std::string& file, const Station& station, TimeKind kind)
        : lines_(file, "these registers"), station_(station), kind_(kind), found_(station.channels.size()) {}

    StationRegisters read() {
        StationRegisters registers(station_.channels.size());
        bool begun = false;
        for (std::string_view line; lines_.next(line);) {
            const std::vector<std::string_view> cells = cells_of(line);
            if (begun && !cells.empty()) take(cells, registers);
            begun = begun || std::ranges::equal(cells, heading);
        }
        if (!begun)
            throw InputError(
                lines_.name() +
                ": holds no registers; give the file of --registers, or results as a table or CSV");
        require_all();
        return registers;
    }

private:
    float number(const std::vector<std::string_view>& cells, std::size_t column) const {
        const std::optional<float> value = parse<float>(cells[column]);
        if (value && 0.0F <= *value && *value <= std::numeric_limits<float>::max()) return *value;
        lines_.fail(
            fmt::format("{}: expected a number from 0 on, not {}", heading[column], quoted(cells[column])));
    }

    void take(const std::vector<std::string_view>& cells, StationRegisters& registers) {
        if (cells.size() != heading.size())
            lines_.fail(fmt::format("expected {} cells as in the heading of the registers", heading.size()));
        const auto channel = std::ranges::find(station_.channels, cells[0], &Channel::name);
        if (channel == station_.channels.end())
            lines_.fail(fmt::format("registers of {}, which {} does not describe", cells[0], station_.file));
        const auto i = static_cast<std::size_t>(channel - station_.channels.begin());
        std::size_t k = 0;
        while (k < integrator_count(channel->medium) && integrator(channel->medium, k).name != cells[1]) ++k;
        if (k == integrator_count(channel->medium))
            lines_.fail(fmt::format("{} has no integrator {}", cells[0], quoted(cells[1])));
        if (found_[i][k]) lines_.fail(fmt::format("{} {} stands here for the second time", cells[0], cells[1]));
        found_[i][k] = true;
        if (cells[3] != fmt::format("{}", channel->accounting[k].exponent))
            lines_.fail(fmt::format("{} {} counts in 10^{}, the station in 10^{}", cells[0], cells[1], cells[3],
                                    channel->accounting[k].exponent));
        if (cells[4] != no_time) {
            registers[i].last_s = parse_time(kind_, cells[4]);
            if (!registers[i].last_s)
                lines_.fail(fmt::format("time: expected {} as in the readings, not {}",
                                        kind_ == TimeKind::seconds ? "seconds" : "a date", quoted(cells[4])));
        }
        Register& reg = registers[i].reg[k];
        reg.total = number(cells, first_number);
        std::size_t next = first_number + 1;
        for (Interval& interval : reg.interval)
            for (float* const value : {&interval.time_s, &interval.start, &interval.result})
                *value = number(cells, next++);
    }

    void require_all() const {
        for (std::size_t i = 0; i < found_.size(); ++i)
            for (std::size_t k = 0; k < integrator_count(station_.channels[i].medium); ++k)
                if (!found_[i][k])
                    throw InputError(fmt::format("{}: lacks the {} register of {}", lines_.name(),
                                                 integrator(station_.channels[i].medium, k).name,
                                                 station_.channels[i].name));
    }

    Lines lines_;
    const Station& station_;
    TimeKind kind_;
    std::vector<std::array<bool, most_integrators>> found_;
};

}  // namespace

StationRegisters read_registers(const std::string& file, const Station& station, TimeKind kind) {
    return Reader(file, station, kind).read();
}

std::string print_registers(const Station& station, const StationRegisters& registers, TimeKind kind,
                            const std::string& prefix) {
    std::string text;
    for (const Cells& cells : rows(station, registers, kind)) text += prefix + joined(cells, {}, ",") + '\n';
    return text;
}

std::string print_registers_table(const Station& station, const StationRegisters& registers, TimeKind kind) {
    const std::vector<Cells> all = rows(station, registers, kind);
    std::array<std::size_t, heading.size()> width{};
    for (const Cells& cells : all)
        for (std::size_t k = 0; k < cells.size(); ++k) width[k] = std::max(width[k], cells[k].size());
    std::string text;
    for (const Cells& cells : all) {
        for (std::size_t k = 0; k < cells.size(); ++k)
            text += k < first_number ? fmt::format("  {:<{}}", cells[k], width[k])
                                     : fmt::format("  {:>{}}", cells[k], width[k]);
        text += '\n';
    }
    return text;
}

}  // namespace kalorfix::tool::station
