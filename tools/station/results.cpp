// SPDX-License-Identifier: MIT
#include "tools/station/results.h"

#include <fmt/compile.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>

#include "tools/fold.h"
#include "tools/spreadsheet.h"
#include "tools/station/cycle_columns.h"
#include "tools/station/line.h"

namespace kalorfix::tool::station {
namespace {

// Hours or days that are not as long as they should be say how long they were.
std::string length_of(const Interval& interval, std::size_t set) {
    constexpr std::array<double, 2> lengths{3600.0, 86400.0};
    if (std::fabs(interval.length_s - lengths[set]) < tick_s) return {};
    return fmt::format(" in {:.8g} s", interval.length_s);
}

// What a channel's readings came to, in lines for a person.
std::string summary_of(const Channel& c, const ChannelSummary& summary, TimeKind kind) {
    std::string text =
        fmt::format("{:<11} {} cycles computed, {} refused\n", c.name, summary.computed, summary.refused);
    if (c.needs_gas_data())
        text += fmt::format("{:<11} composition sums to {:.7g} %{}\n", "", c.gas.sum_pct,
                            c.gas.normalised ? ", scaled to 100 %" : "");
    if (summary.held > 0)
        text +=
            fmt::format("{:<11} readings that the registers hold already, passed over: {}\n", "", summary.held);
    if (summary.refused > 0) text += fmt::format("{:<11} first refused at {}\n", "", summary.first_refusal);
    if (summary.at_rest > 0)
        text += fmt::format("{:<11} at rest, below the cut-off: {} of the computed, lowest dp {:.7g} kPa\n", "",
                            summary.at_rest, summary.lowest_dp_Pa * 1e-3F);
    if (summary.passed_over > 0)
        text += fmt::format("{:<11} steps too long to count: {}, {:.8g} s in all\n", "", summary.passed_over,
                            summary.passed_over_s);
    if (summary.longest_s == 0.0) return text;
    text += fmt::format("{:<11} longest step {:.8g} s, to {}", "", summary.longest_s,
                        print_time(kind, summary.longest_end_s));
    if (!summary.longest_counted) return text + ", not counted\n";
    for (std::size_t k = 0; k < integrator_count(c.medium); ++k)
        text += fmt::format("{}{} {:.7g} {}", k == 0 ? ", counted as " : ", ", integrator(c.medium, k).name,
                            summary.longest_amount[k], integrator(c.medium, k).unit);
    return text + "\n";
}

// ---- The formats ----------------------------------------------------------------------------------------------

std::string json_text(std::string_view text) {
    std::string quote = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') quote += '\\';
        quote += c;
    }
    return quote + '"';
}

std::string_view phase_title(const Cycle& cycle) {
    const bool decided = !cycle.channel.is_gas() && cycle.outcome.passed(Step::state);
    return decided ? phase_of(cycle.outcome.phase).title : "";
}

// With an exponent the register counts tens, thousands and so on of its unit.
std::string unit_of(const Channel& channel, std::size_t k) {
    const std::string_view unit = integrator(channel.medium, k).unit;
    const short exponent = channel.accounting[k].exponent;
    return exponent == 0 ? std::string(unit) : fmt::format("x10^{} {}", exponent, unit);
}

class Csv : public Results {
public:
    Csv(const Station& station, TimeKind kind, OutputFile& out, bool decimal_commas)
        : Results(station, kind, out), decimal_commas_(decimal_commas), line_(kind) {}

    void begin() override {
        write(fmt::format("{},channel,status,step,reason,phase,heat_unit,{}\n",
                          kind_ == TimeKind::date ? "time" : "time_s", joined(column_names(), {}, ",")));
    }

    void cycle(const Cycle& cycle) override {
        const Outcome& outcome = cycle.outcome;
        line_.clear();
        line_.add(line_.time(cycle.row.time_s), ',', cycle.channel.name, ',');
        if (cycle.done())
            line_.add("computed,,");
        else
            line_.add("refused,", step_name(outcome.reached), ',', csv_cell(outcome.reason));
        line_.add(',', phase_title(cycle), ',', cycle.channel.heat_unit());
        fill(cycle, values_);
        for (const std::optional<float>& value : values_) {
            line_.add(',');
            if (value) line_.add(*value);
        }
        write(line_.add('\n').text());
    }

    // The registers stay as --continue reads them.
    void end(const RunEnd& end) override {
        if (!end.interrupted.empty()) out_.write("# " + end.interrupted + "\n");
        for (std::size_t i = 0; i < end.summaries.size(); ++i) {
            const std::string text = summary_of(station_.channels[i], end.summaries[i], kind_);
            for (const std::string_view line : split(text, '\n'))
                if (!line.empty()) out_.write(fmt::format("# {}\n", line));
        }
        walk_calendar(station_, end.calendars, kind_, Calendar::hour,
                      [this](const auto& row) { write("# " + joined(row, {}, ",") + "\n"); });
        if (end.with_registers)
            out_.write("# registers\n" + print_registers(station_, end.registers, kind_, "# "));
    }

private:
    void write(std::string_view line) {
        decimal_commas_ ? out_.write(with_decimal_commas(line)) : out_.write(line);
    }

    bool decimal_commas_;
    Line line_;
    Values values_;
};

class Json : public Results {
public:
    Json(const Station& station, TimeKind kind, OutputFile& out) : Results(station, kind, out), line_(kind) {}

    void cycle(const Cycle& cycle) override {
        line_.clear();
        line_.add(R"({"record":"cycle",)", time(cycle.row.time_s), R"(,"channel":)",
                  json_text(cycle.channel.name), R"(,"status":")", cycle.done() ? "computed" : "refused", '"');
        if (!cycle.done())
            line_.add(R"(,"step":")", step_name(cycle.outcome.reached), R"(","reason":)",
                      json_text(cycle.outcome.reason));
        if (const std::string_view phase = phase_title(cycle); !phase.empty())
            line_.add(R"(,"phase":")", phase, '"');
        if (const std::string_view unit = cycle.channel.heat_unit(); !unit.empty())
            line_.add(R"(,"heat_unit":")", unit, '"');
        fill(cycle, values_);
        for (std::size_t k = 0; k < values_.size(); ++k)
            if (values_[k]) line_.add(",\"", column_names()[k], "\":", *values_[k]);
        out_.write(line_.add("}\n").text());
    }

    void end(const RunEnd& end) override {
        for (std::size_t i = 0; i < station_.channels.size(); ++i) {
            const Channel& channel = station_.channels[i];
            const ChannelSummary& summary = end.summaries[i];
            std::string line = fmt::format(
                "{{\"record\":\"channel\",\"channel\":{},\"computed\":{},\"refused\":{},\"interrupted\":{},"
                "\"at_rest\":{},\"held\":{},\"passed_over_s\":{},\"longest_step_s\":{}",
                json_text(channel.name), summary.computed, summary.refused, !end.interrupted.empty(),
                summary.at_rest, summary.held, summary.passed_over_s, summary.longest_s);
            for (std::size_t k = 0; summary.longest_s > 0.0 && k < integrator_count(channel.medium); ++k)
                line += fmt::format(",\"longest_step_{}\":{}", integrator(channel.medium, k).name,
                                    summary.longest_amount[k]);
            out_.write(line + "}\n");
            for (std::size_t k = 0; end.with_registers && k < integrator_count(channel.medium); ++k)
                out_.write(register_line(channel, end.registers[i], k));
        }
        std::vector<std::string> heading;
        walk_calendar(station_, end.calendars, kind_, Calendar::hour, [&](const auto& row) {
            heading.empty() ? void(heading = row) : out_.write(calendar_line(heading, row));
        });
    }

private:
    [[nodiscard]] std::string time(double seconds) {
        const std::string_view text = line_.time(seconds);
        return kind_ == TimeKind::date ? fmt::format(FMT_COMPILE("\"time\":\"{}\""), text)
                                       : fmt::format(FMT_COMPILE("\"time_s\":{}"), text);
    }

    [[nodiscard]] std::string calendar_line(const std::vector<std::string>& heading,
                                            const std::vector<std::string>& row) const {
        std::string line = "{\"record\":\"calendar\"";
        for (std::size_t k = 0; k < row.size(); ++k) {
            if (row[k].empty()) continue;
            const bool text = k < 2 || (k == 2 && kind_ == TimeKind::date);
            line += fmt::format(",{}:{}", json_text(k == 0 ? "period" : heading[k]),
                                text ? json_text(row[k]) : row[k]);
        }
        return line + "}\n";
    }

    [[nodiscard]] std::string register_line(const Channel& channel, const ChannelRegisters& all,
                                            std::size_t k) {
        const Register& reg = all.reg[k];
        const auto number = [](float value) {
            return std::isfinite(value) ? fmt::format("{}", value) : "null";
        };
        std::string line = fmt::format(
            "{{\"record\":\"register\",\"channel\":{},\"integrator\":\"{}\",\"unit\":\"{}\","
            "\"exponent\":{},\"total\":{}",
            json_text(channel.name), integrator(channel.medium, k).name, integrator(channel.medium, k).unit,
            channel.accounting[k].exponent, number(reg.total));
        if (all.last_s) line += "," + time(*all.last_s);
        for (std::size_t set = 0; set < 2; ++set)
            line += fmt::format(",\"{0}_s\":{1},\"{0}_start\":{2},\"{0}_result\":{3}",
                                set == 0 ? "hour" : "day", number(reg.interval[set].time_s),
                                number(reg.interval[set].start), number(reg.interval[set].result));
        return line + "}\n";
    }

    Line line_;
    Values values_;
};

// For a person: cycles in columns (or none), hours (or none) and days as they close, at the end counts and registers.
class Table : public Results {
public:
    Table(const Station& station, TimeKind kind, OutputFile& out, bool cycles, std::size_t first_set,
          bool folded)
        : Results(station, kind, out), cycles_(cycles), first_set_(first_set), folded_(folded), line_(kind) {}

    void begin() override {
        if (!cycles_) return;
        write_row("time", "channel", "t", "p", "dp", "density", "C", "epsilon", "mass", "standard", "energy",
                  "total", "");
        write_row(kind_ == TimeKind::date ? "" : "s", "", "degC", "MPa", "kPa", "kg/m3", "", "", "t/h", "m3/h",
                  "GJ/h", "t", "");
    }

    void cycle(const Cycle& cycle) override {
        if (cycles_) write_cycle(cycle);
        for (std::size_t set = first_set_; set < 2; ++set) write_closed(cycle, set);
    }

    void end(const RunEnd& end) override {
        std::string text = end.interrupted.empty() ? "" : end.interrupted + "\n";
        for (std::size_t i = 0; i < end.summaries.size(); ++i)
            text += summary_of(station_.channels[i], end.summaries[i], kind_);
        write_lines(text, 14);
        write_calendar(end);
        if (!end.with_registers) return;
        const std::string registers = print_registers_table(station_, end.registers, kind_);
        out_.write("registers\n" + (folded_ ? fold_table(registers, {"hour_s", "day_s"}, "unit") : registers));
    }

private:
    // Folded, a line goes on so many blanks in.
    void write_lines(const std::string& text, std::size_t indent) {
        out_.write(folded_ ? fold_lines(text, indent) : text);
    }

    // Folded, a row goes on below its channel, with the flows.
    template <class... Cells>
    void write_row(const Cells&... cells) {
        constexpr std::size_t flows = 75, indent = 28;
        const std::string row = fmt::format(
            FMT_COMPILE("{:<19} {:<10}{:>8} {:>8} {:>8} {:>9} {:>8} {:>8} {:>9} {:>10} {:>9} {:>11}{}\n"),
            std::string_view(cells)...);
        out_.write(folded_ ? fold_lines(fold_at(row, flows, indent), indent) : row);
    }

    void write_cycle(const Cycle& cycle) {
        const auto& [c, row, o, registers] = cycle;
        const bool solved = o.passed(Step::flow), meter = is_meter(c.device);
        const auto cell = [](bool given, const auto& layout, float value) {
            return given ? fmt::format(layout, value) : std::string("-");
        };
        const auto given = [&](const auto& layout, float value) {
            return cell(!std::isnan(value), layout, value);
        };
        write_row(
            line_.time(row.time_s), c.name, given(FMT_COMPILE("{:.2f}"), o.input.t_C),
            given(FMT_COMPILE("{:.4f}"), o.input.p_Pa * 1e-6F),
            meter ? "-" : given(FMT_COMPILE("{:.3f}"), o.input.dp * 1e-3F),
            cell(o.passed(Step::properties), FMT_COMPILE("{:#.6g}"), o.rho),
            cell(solved && !o.at_rest && has(c, Of::standard_device), FMT_COMPILE("{:.5f}"), o.C),
            cell(solved && !o.at_rest && !meter, FMT_COMPILE("{:.5f}"), o.epsilon),
            cell(solved, FMT_COMPILE("{:.4f}"), o.q[0]),
            cell(solved && c.is_gas(), FMT_COMPILE("{:.1f}"), o.q[2]),
            cell(solved, FMT_COMPILE("{:.3f}"), o.q[c.is_gas() ? 3 : 2]),
            cell(true, FMT_COMPILE("{:.3f}"), in_unit(c, 0, registers[0].total)),
            cycle.done() ? std::string() : fmt::format("  refused, {}: {}", step_name(o.reached), o.reason));
    }

    void write_calendar(const RunEnd& end) {
        std::vector<std::vector<std::string>> rows;
        walk_calendar(station_, end.calendars, kind_, static_cast<Calendar::Set>(first_set_),
                      [&](const auto& row) {
                          rows.push_back(row);
                          std::ranges::replace(rows.back(), std::string(), std::string("-"));
                      });
        if (rows.size() < 2) return;
        constexpr std::ptrdiff_t texts = 3, in_first = 6;
        std::vector<std::vector<std::string>> second = rows;
        if (folded_)
            for (std::size_t i = 0; i < rows.size(); ++i) {
                rows[i].resize(in_first);
                second[i].erase(second[i].begin() + texts, second[i].begin() + in_first);
            }
        out_.write(aligned(rows, texts));
        if (folded_) out_.write(aligned(second, texts));
    }

    void write_closed(const Cycle& cycle, std::size_t set) {
        const Channel& channel = cycle.channel;
        std::string amounts;
        for (std::size_t k = 0; k < integrator_count(channel.medium); ++k)
            if (const Interval& interval = cycle.registers[k].interval[set]; interval.closed)
                amounts += fmt::format("{}{} {:#.7g} {}{}", amounts.empty() ? "" : ", ",
                                       integrator(channel.medium, k).name, interval.result, unit_of(channel, k),
                                       length_of(interval, set));
        if (!amounts.empty())
            write_lines(fmt::format("{:<19} {:<10}  {}: {}\n", line_.time(cycle.row.time_s), channel.name,
                                    set == 0 ? "hour" : "day ", amounts),
                        32);
    }

    bool cycles_;
    std::size_t first_set_;  // of the intervals that are told: 0 from hours on, 1 days only
    bool folded_;            // to fit 80 columns
    Line line_;
};

}  // namespace

bool has(const Channel& c, Of whose) {
    if (whose == Of::gas || whose == Of::heat_carrier) return c.is_gas() == (whose == Of::gas);
    if (whose == Of::composition) return c.needs_gas_data();
    if (whose == Of::standard_device) return c.device <= static_cast<short>(standard_devices);
    return whose == Of::all || !is_meter(c.device);
}

std::unique_ptr<Results> make_results(const std::string& format, const Station& station, TimeKind kind,
                                      OutputFile& out) {
    if (format == "csv" || format == "csv_commas")
        return std::make_unique<Csv>(station, kind, out, format == "csv_commas");
    if (format == "json") return std::make_unique<Json>(station, kind, out);
    const bool folded = format.ends_with("_folded");
    const auto table = [&](bool cycles, std::size_t first_set) {
        return std::make_unique<Table>(station, kind, out, cycles, first_set, folded);
    };
    if (format.starts_with("table")) return table(true, 0);
    if (format.starts_with("hours")) return table(false, 0);
    if (format.starts_with("days")) return table(false, 1);
    return nullptr;
}

}  // namespace kalorfix::tool::station
