#include "tools/station/results.h"

#include <fmt/format.h>

#include <array>
#include <cmath>
#include <iterator>

#include "tools/station/result_columns.h"

namespace kalorfix::tool::station {
namespace {

// The reasons hold commas; they are the only cells that do.
std::string quoted(const std::string& text) {
    return text.find(',') == std::string::npos ? text : '"' + text + '"';
}

std::string json_text(std::string_view text) {
    std::string quote = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') quote += '\\';
        quote += c;
    }
    return quote + '"';
}

const char* phase_of(const Channel& channel, const Outcome& outcome) {
    return channel.medium == Medium::heat_carrier && outcome.passed(Step::state) ? phase_name(outcome.phase)
                                                                                 : "";
}

// Unit of the heats of combustion: only VNIC SMV has a choice.
const char* heat_unit_of(const Channel& channel) {
    constexpr short vnic = 3;
    if (channel.medium != Medium::gas) return "";
    const Gas& gas = channel.gas;
    if (gas.method != vnic) return "MJ/m3 at 20 degC";
    if (gas.heat_unit == 0) return gas.heat_basis == 0 ? "kJ/m3 at 0 degC" : "kJ/m3 at 20 degC";
    return gas.heat_basis == 0 ? "kcal/m3 at 0 degC" : "kcal/m3 at 20 degC";
}

// With an exponent the register counts tens, thousands and so on of its unit.
std::string unit_of(const Channel& channel, std::size_t k) {
    const std::string_view unit = integrator(channel.medium, k).unit;
    const short exponent = channel.accounting[k].exponent;
    return exponent == 0 ? std::string(unit) : fmt::format("x10^{} {}", exponent, unit);
}

class Csv : public Results {
public:
    Csv(const Station& station, TimeKind kind, OutputFile& out) : station_(station), kind_(kind), out_(out) {}

    void begin() override {
        std::string line = fmt::format("{},channel,status,step,reason,phase,heat_unit",
                                       kind_ == TimeKind::date ? "time" : "time_s");
        for (const ResultColumn& column : result_columns()) line += fmt::format(",{}", column.name);
        out_.write(line + '\n');
    }

    void cycle(const Channel& channel, const Measured& row, const Outcome& outcome,
               const Registers& registers) override {
        const bool done = outcome.reached == Step::done;
        line_.clear();
        auto to = std::back_inserter(line_);
        fmt::format_to(to, "{},{},{},{},{},{},{}", print_time(kind_, row.time_s), channel.name,
                       done ? "computed" : "refused", done ? "" : step_name(outcome.reached),
                       quoted(outcome.reason), phase_of(channel, outcome), heat_unit_of(channel));
        for (const ResultColumn& column : result_columns()) {
            const std::optional<float> value = column.get({channel, outcome, registers});
            value ? fmt::format_to(to, ",{}", *value) : fmt::format_to(to, ",");
        }
        line_ += '\n';
        out_.write(line_);
    }

    void end(const StationRegisters& registers, const std::vector<ChannelSummary>&, bool,
             bool with_registers) override {
        if (with_registers) out_.write("# registers\n" + print_registers(station_, registers, kind_, "# "));
    }

private:
    const Station& station_;
    TimeKind kind_;
    OutputFile& out_;
    std::string line_;
};

class Json : public Results {
public:
    Json(const Station& station, TimeKind kind, OutputFile& out) : station_(station), kind_(kind), out_(out) {}

    void begin() override {}

    void cycle(const Channel& channel, const Measured& row, const Outcome& outcome,
               const Registers& registers) override {
        const bool done = outcome.reached == Step::done;
        line_ = fmt::format("{{\"record\":\"cycle\",{},\"channel\":{},\"status\":\"{}\"", time(row.time_s),
                            json_text(channel.name), done ? "computed" : "refused");
        auto to = std::back_inserter(line_);
        if (!done)
            fmt::format_to(to, ",\"step\":\"{}\",\"reason\":{}", step_name(outcome.reached),
                           json_text(outcome.reason));
        if (const char* const phase = phase_of(channel, outcome); *phase)
            fmt::format_to(to, ",\"phase\":\"{}\"", phase);
        if (const char* const unit = heat_unit_of(channel); *unit)
            fmt::format_to(to, ",\"heat_unit\":\"{}\"", unit);
        for (const ResultColumn& column : result_columns())
            if (const std::optional<float> value = column.get({channel, outcome, registers}))
                fmt::format_to(to, ",\"{}\":{}", column.name, *value);
        line_ += "}\n";
        out_.write(line_);
    }

    void end(const StationRegisters& registers, const std::vector<ChannelSummary>& summaries, bool interrupted,
             bool with_registers) override {
        for (std::size_t i = 0; i < station_.channels.size(); ++i) {
            const Channel& channel = station_.channels[i];
            out_.write(
                fmt::format("{{\"record\":\"channel\",\"channel\":{},\"computed\":{},\"refused\":{},"
                            "\"interrupted\":{}}}\n",
                            json_text(channel.name), summaries[i].computed, summaries[i].refused, interrupted));
            for (std::size_t k = 0; with_registers && k < integrator_count(channel.medium); ++k)
                out_.write(register_line(channel, registers[i], k));
        }
    }

private:
    [[nodiscard]] std::string time(double seconds) const {
        return kind_ == TimeKind::date ? fmt::format("\"time\":\"{}\"", print_time(kind_, seconds))
                                       : fmt::format("\"time_s\":{}", print_time(kind_, seconds));
    }

    [[nodiscard]] std::string register_line(const Channel& channel, const ChannelRegisters& all,
                                            std::size_t k) const {
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
        for (const auto& [set, name] : {std::pair<std::size_t, const char*>{0, "hour"}, {1, "day"}})
            line += fmt::format(",\"{0}_s\":{1},\"{0}_start\":{2},\"{0}_result\":{3}", name,
                                number(reg.interval[set].time_s), number(reg.interval[set].start),
                                number(reg.interval[set].result));
        return line + "}\n";
    }

    const Station& station_;
    TimeKind kind_;
    OutputFile& out_;
    std::string line_;
};

std::string cell(const Outcome& outcome, Step step, float value, const char* layout) {
    return outcome.passed(step) ? fmt::format(fmt::runtime(layout), value) : std::string("-");
}

// For a person: cycles in columns (or none), hours (or none) and days as they close, at the end counts and registers.
class Table : public Results {
public:
    Table(const Station& station, TimeKind kind, OutputFile& out, Format format)
        : station_(station),
          kind_(kind),
          out_(out),
          cycles_(format == Format::table),
          first_set_(format == Format::days ? 1 : 0) {}

    void begin() override {
        if (!cycles_) return;
        out_.write(fmt::format(row_layout, "time", "channel", "t", "p", "dp", "density", "C", "epsilon", "mass",
                               "standard", "energy", "total") +
                   "\n" +
                   fmt::format(row_layout, kind_ == TimeKind::date ? "" : "s", "", "degC", "MPa", "kPa",
                               "kg/m3", "", "", "t/h", "m3/h", "GJ/h", "t") +
                   "\n");
    }

    void cycle(const Channel& channel, const Measured& row, const Outcome& outcome,
               const Registers& registers) override {
        if (cycles_) write_cycle(channel, row, outcome, registers);
        for (std::size_t set = first_set_; set < 2; ++set) write_closed(channel, row, registers, set);
    }

    void end(const StationRegisters& registers, const std::vector<ChannelSummary>& summaries, bool interrupted,
             bool with_registers) override {
        std::string text = interrupted ? "interrupted\n" : "";
        for (std::size_t i = 0; i < summaries.size(); ++i) {
            text += fmt::format("{:<11} {} cycles computed, {} refused\n", station_.channels[i].name,
                                summaries[i].computed, summaries[i].refused);
            if (summaries[i].refused > 0)
                text += fmt::format("{:<11} first refused at {}\n", "", summaries[i].first_refusal);
        }
        out_.write(text);
        if (with_registers) out_.write("registers\n" + print_registers_table(station_, registers, kind_));
    }

private:
    static constexpr const char* row_layout =
        "{:<19} {:<10}{:>8} {:>8} {:>8} {:>9} {:>8} {:>8} {:>9} {:>10} {:>9} {:>11}";

    void write_cycle(const Channel& channel, const Measured& row, const Outcome& o,
                     const Registers& registers) {
        const bool gas = channel.medium == Medium::gas;
        const bool standard = channel.device <= 9;
        const std::size_t energy = gas ? 3 : 2;
        std::string line = fmt::format(
            row_layout, print_time(kind_, row.time_s), channel.name, fmt::format("{:.2f}", o.input.t_C),
            fmt::format("{:.4f}", o.input.p_Pa * 1e-6F),
            is_meter(channel.device) ? std::string("-") : fmt::format("{:.3f}", o.input.dp * 1e-3F),
            cell(o, Step::properties, o.rho, "{:#.6g}"), standard ? cell(o, Step::flow, o.C, "{:.5f}") : "-",
            is_meter(channel.device) ? "-" : cell(o, Step::flow, o.epsilon, "{:.5f}"),
            cell(o, Step::flow, o.q[0], "{:.4f}"), gas ? cell(o, Step::flow, o.q[2], "{:.1f}") : "-",
            cell(o, Step::flow, o.q[energy], "{:.3f}"), fmt::format("{:.3f}", registers[0].total));
        if (o.reached != Step::done) line += fmt::format("  refused, {}: {}", step_name(o.reached), o.reason);
        out_.write(line + '\n');
    }

    void write_closed(const Channel& channel, const Measured& row, const Registers& registers,
                      std::size_t set) {
        std::string amounts;
        for (std::size_t k = 0; k < integrator_count(channel.medium); ++k) {
            const Interval& interval = registers[k].interval[set];
            if (interval.closed)
                amounts +=
                    fmt::format("{}{} {:#.7g} {}", amounts.empty() ? "" : ", ",
                                integrator(channel.medium, k).name, interval.result, unit_of(channel, k));
        }
        if (!amounts.empty())
            out_.write(fmt::format("{:<19} {:<10}  {}: {}\n", print_time(kind_, row.time_s), channel.name,
                                   set == 0 ? "hour" : "day ", amounts));
    }

    const Station& station_;
    TimeKind kind_;
    OutputFile& out_;
    bool cycles_;
    std::size_t first_set_;  // of the intervals that are told: 0 from hours on, 1 days only
};

}  // namespace

std::unique_ptr<Results> make_results(Format format, const Station& station, TimeKind kind, OutputFile& out) {
    switch (format) {
        case Format::csv:
            return std::make_unique<Csv>(station, kind, out);
        case Format::json:
            return std::make_unique<Json>(station, kind, out);
        default:
            return std::make_unique<Table>(station, kind, out, format);
    }
}

}  // namespace kalorfix::tool::station
