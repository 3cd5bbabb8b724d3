#include "tools/station/registers.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <string_view>

#include "tools/range.h"

namespace kalorfix::tool::station {
namespace {

constexpr std::array<std::string_view, 11> heading{"channel",     "integrator", "unit",     "exponent",
                                                   "time",        "total",      "hour_s",   "hour_start",
                                                   "hour_result", "day_s",      "day_start"};
constexpr std::string_view last_heading = "day_result";
constexpr std::size_t column_count = heading.size() + 1;
constexpr std::size_t longest_register_line = 4096;
constexpr std::string_view no_time = "-";

using Cells = std::array<std::string, column_count>;

Cells heading_cells() {
    Cells cells;
    std::copy(heading.begin(), heading.end(), cells.begin());
    cells.back() = last_heading;
    return cells;
}

std::vector<Cells> rows(const Station& station, const StationRegisters& registers, TimeKind kind) {
    std::vector<Cells> all{heading_cells()};
    for (std::size_t i = 0; i < station.channels.size(); ++i) {
        const Channel& c = station.channels[i];
        for (std::size_t k = 0; k < integrator_count(c.medium); ++k) {
            const Register& reg = registers[i].reg[k];
            Cells cells{c.name,
                        std::string(integrator(c.medium, k).name),
                        std::string(integrator(c.medium, k).unit),
                        fmt::format("{}", c.accounting[k].exponent),
                        registers[i].last_s ? print_time(kind, *registers[i].last_s) : std::string(no_time),
                        fmt::format("{}", reg.total)};
            std::size_t next = 6;
            for (const Interval& interval : reg.interval)
                for (const float value : {interval.time_s, interval.start, interval.result})
                    cells[next++] = fmt::format("{}", value);
            all.push_back(std::move(cells));
        }
    }
    return all;
}

std::string_view trimmed(std::string_view text) {
    const auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '#'; };
    while (!text.empty() && blank(text.front())) text.remove_prefix(1);
    while (!text.empty() && blank(text.back())) text.remove_suffix(1);
    return text;
}

// Cells of a line: between commas, or in a table between two blanks and more. False for another number of cells.
bool split(std::string_view line, Cells& cells) {
    const bool table = line.find(',') == std::string_view::npos;
    line = trimmed(line);
    for (std::size_t k = 0; k < cells.size(); ++k) {
        const std::size_t end = table ? line.find("  ") : line.find(',');
        if ((end == std::string_view::npos) != (k + 1 == cells.size())) return false;
        cells[k] = std::string(trimmed(line.substr(0, end)));
        if (k + 1 < cells.size()) line = table ? trimmed(line.substr(end)) : line.substr(end + 1);
    }
    return true;
}

class Reader {
public:
    Reader(const std::string& file, const Station& station, TimeKind kind)
        : file_(file), station_(station), kind_(kind), found_(station.channels.size()) {}

    StationRegisters read() {
        std::error_code failed;
        std::ifstream in(file_);
        if (!std::filesystem::is_regular_file(file_, failed) || !in)
            throw InputError{fmt::format("{}: cannot read these registers", file_)};
        StationRegisters registers(station_.channels.size());
        const Cells wanted = heading_cells();
        bool begun = false;
        Cells cells;
        for (std::string line; std::getline(in, line);) {
            ++line_;
            if (line.size() > longest_register_line) fail("too long for registers");
            if (!begun)
                begun = split(line, cells) && cells == wanted;
            else if (!trimmed(line).empty())
                take(line, registers);
        }
        if (!begun)
            throw InputError{
                fmt::format("{}: holds no registers; give the file of --registers, or results "
                            "as a table or CSV",
                            file_)};
        require_all();
        return registers;
    }

private:
    [[noreturn]] void fail(const std::string& what) const {
        throw InputError{fmt::format("{}:{}: {}", file_, line_, what)};
    }

    float number(const Cells& cells, std::size_t column) const {
        const std::string& text = cells[column];
        float value = 0.0F;
        const char* const end = text.data() + text.size();
        const auto [stop, error] = std::from_chars(text.data(), end, value);
        if (error != std::errc() || stop != end || !std::isfinite(value) || value < 0.0F)
            fail(fmt::format("{}: expected a number from 0 on, not '{}'", heading_cells()[column], text));
        return value;
    }

    void take(const std::string& line, StationRegisters& registers) {
        Cells cells;
        if (!split(line, cells))
            fail(fmt::format("expected {} cells as in the heading of the registers", column_count));
        const auto channel = std::find_if(station_.channels.begin(), station_.channels.end(),
                                          [&](const Channel& c) { return c.name == cells[0]; });
        if (channel == station_.channels.end())
            fail(fmt::format("registers of {}, which {} does not describe", cells[0], station_.file));
        const auto i = static_cast<std::size_t>(channel - station_.channels.begin());
        std::size_t k = 0;
        while (k < integrator_count(channel->medium) && integrator(channel->medium, k).name != cells[1]) ++k;
        if (k == integrator_count(channel->medium))
            fail(fmt::format("{} has no integrator '{}'", cells[0], cells[1]));
        if (found_[i][k]) fail(fmt::format("{} {} stands here for the second time", cells[0], cells[1]));
        found_[i][k] = true;
        if (cells[3] != fmt::format("{}", channel->accounting[k].exponent))
            fail(fmt::format("{} {} counts in 10^{}, the station in 10^{}", cells[0], cells[1], cells[3],
                             channel->accounting[k].exponent));
        if (cells[4] != no_time) {
            double time_s = 0.0;
            if (!parse_time(kind_, cells[4], time_s))
                fail(fmt::format("time: expected {} as in the readings, not '{}'",
                                 kind_ == TimeKind::seconds ? "seconds" : "a date", cells[4]));
            registers[i].last_s = time_s;
        }
        Register& reg = registers[i].reg[k];
        reg.total = number(cells, 5);
        std::size_t next = 6;
        for (Interval& interval : reg.interval)
            for (float* const value : {&interval.time_s, &interval.start, &interval.result})
                *value = number(cells, next++);
    }

    void require_all() const {
        for (std::size_t i = 0; i < found_.size(); ++i)
            for (std::size_t k = 0; k < integrator_count(station_.channels[i].medium); ++k)
                if (!found_[i][k])
                    throw InputError{fmt::format("{}: lacks the {} register of {}", file_,
                                                 integrator(station_.channels[i].medium, k).name,
                                                 station_.channels[i].name)};
    }

    const std::string& file_;
    const Station& station_;
    TimeKind kind_;
    std::vector<std::array<bool, most_integrators>> found_;
    int line_ = 0;
};

}  // namespace

StationRegisters read_registers(const std::string& file, const Station& station, TimeKind kind) {
    return Reader(file, station, kind).read();
}

std::string print_registers(const Station& station, const StationRegisters& registers, TimeKind kind,
                            const std::string& prefix) {
    std::string text;
    for (const Cells& cells : rows(station, registers, kind)) {
        text += prefix;
        for (std::size_t k = 0; k < cells.size(); ++k) text += (k == 0 ? "" : ",") + cells[k];
        text += '\n';
    }
    return text;
}

std::string print_registers_table(const Station& station, const StationRegisters& registers, TimeKind kind) {
    const std::vector<Cells> all = rows(station, registers, kind);
    std::array<std::size_t, column_count> width{};
    for (const Cells& cells : all)
        for (std::size_t k = 0; k < cells.size(); ++k) width[k] = std::max(width[k], cells[k].size());
    constexpr std::size_t first_number = 5;
    std::string text;
    for (const Cells& cells : all) {
        text += " ";
        for (std::size_t k = 0; k < cells.size(); ++k)
            text += k < first_number ? fmt::format(" {:<{}} ", cells[k], width[k])
                                     : fmt::format(" {:>{}} ", cells[k], width[k]);
        text.pop_back();
        text += '\n';
    }
    return text;
}

}  // namespace kalorfix::tool::station
