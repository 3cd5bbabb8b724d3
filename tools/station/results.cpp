#include "tools/station/results.h"

#include <fmt/format.h>

#include <array>
#include <cmath>
#include <iterator>

#include "tools/fold.h"
#include "tools/spreadsheet.h"

namespace kalorfix::tool::station {
namespace {

// ---- The columns of a cycle, for CSV and JSON alike -----------------------------------------------------------

// The integrators of both media.
struct Kind {
    const char *flow, *amount;
    int of_gas, of_heat_carrier;  // number less one; -1 where the medium has no such
};
constexpr std::array<Kind, 5> kinds{{{"q_m_t_h", "mass_t", 0, 0},
                                     {"q_v_m3_h", "volume_m3", 1, 1},
                                     {"q_c_m3_h", "standard_volume_m3", 2, -1},
                                     {"q_e_GJ_h", "energy_GJ", 3, -1},
                                     {"q_h_GJ_h", "heat_GJ", -1, 2}}};

const std::vector<std::string>& column_names() {
    static const std::vector<std::string> all = [] {
        std::vector<std::string> names{"t_C", "p_Pa", "dp_Pa"};
        for (const Result& one : cycle_results)
            if (!one.name.empty()) names.emplace_back(one.name);
        for (const Kind& kind : kinds) names.emplace_back(kind.flow);
        for (const char* const prefix : {"total_", "hour_", "day_"})
            for (const Kind& kind : kinds) names.push_back(std::string(prefix) + kind.amount);
        return names;
    }();
    return all;
}

// A value for each of the names, or nothing where it does not exist or the step that gives it did not pass.
using Values = std::vector<std::optional<float>>;

void fill(const Cycle& cycle, Values& values) {
    const auto& [c, row, out, registers] = cycle;
    values.clear();
    const auto add = [&values](bool given, float value) {
        values.push_back(given && std::isfinite(value) ? std::optional(value) : std::nullopt);
    };
    add(true, out.input.t_C);
    add(true, out.input.p_Pa);
    add(!is_meter(c.device), out.input.dp);
    for (const Result& one : cycle_results) {
        if (one.name.empty()) continue;
        // The Reynolds number is told of a refused flow too.
        const bool told =
            one.value == &Outcome::Re ? out.passed(Step::geometry) && out.Re != 0.0F : out.passed(one.step);
        add(told && has(c, one.whose), out.*one.value);
    }
    std::array<int, kinds.size()> index{};
    for (std::size_t k = 0; k < kinds.size(); ++k)
        index[k] = c.is_gas() ? kinds[k].of_gas : kinds[k].of_heat_carrier;
    const auto at = [](int k) { return static_cast<std::size_t>(std::max(k, 0)); };
    for (const int k : index) add(k >= 0 && out.passed(Step::flow), out.q[at(k)]);
    for (const int k : index) add(k >= 0, registers[at(k)].total);
    for (std::size_t set = 0; set < 2; ++set)
        for (const int k : index) {
            const Interval& interval = registers[at(k)].interval[set];
            add(k >= 0 && interval.closed, interval.result);
        }
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
        : Results(station, kind, out), decimal_commas_(decimal_commas) {}

    void begin() override {
        write(fmt::format("{},channel,status,step,reason,phase,heat_unit,{}\n",
                          kind_ == TimeKind::date ? "time" : "time_s", joined(column_names(), {}, ",")));
    }

    void cycle(const Cycle& cycle) override {
        const Outcome& outcome = cycle.outcome;
        line_.clear();
        auto to = std::back_inserter(line_);
        fmt::format_to(to, "{},{},{},{},{},{},{}", print_time(kind_, cycle.row.time_s), cycle.channel.name,
                       cycle.done() ? "computed" : "refused", cycle.done() ? "" : step_name(outcome.reached),
                       csv_cell(outcome.reason), phase_title(cycle), cycle.channel.heat_unit());
        fill(cycle, values_);
        for (const std::optional<float>& value : values_)
            value ? fmt::format_to(to, ",{}", *value) : fmt::format_to(to, ",");
        line_ += '\n';
        write(line_);
    }

    // The registers stay as --continue reads them.
    void end(const RunEnd& end) override {
        if (end.with_registers)
            out_.write("# registers\n" + print_registers(station_, end.registers, kind_, "# "));
    }

private:
    void write(const std::string& line) { out_.write(decimal_commas_ ? with_decimal_commas(line) : line); }

    bool decimal_commas_;
    std::string line_;
    Values values_;
};

class Json : public Results {
public:
    using Results::Results;

    void cycle(const Cycle& cycle) override {
        line_ =
            fmt::format("{{\"record\":\"cycle\",{},\"channel\":{},\"status\":\"{}\"", time(cycle.row.time_s),
                        json_text(cycle.channel.name), cycle.done() ? "computed" : "refused");
        auto to = std::back_inserter(line_);
        if (!cycle.done())
            fmt::format_to(to, ",\"step\":\"{}\",\"reason\":{}", step_name(cycle.outcome.reached),
                           json_text(cycle.outcome.reason));
        if (const std::string_view phase = phase_title(cycle); !phase.empty())
            fmt::format_to(to, ",\"phase\":\"{}\"", phase);
        if (const std::string_view unit = cycle.channel.heat_unit(); !unit.empty())
            fmt::format_to(to, ",\"heat_unit\":\"{}\"", unit);
        fill(cycle, values_);
        for (std::size_t k = 0; k < values_.size(); ++k)
            if (values_[k]) fmt::format_to(to, ",\"{}\":{}", column_names()[k], *values_[k]);
        line_ += "}\n";
        out_.write(line_);
    }

    void end(const RunEnd& end) override {
        for (std::size_t i = 0; i < station_.channels.size(); ++i) {
            const Channel& channel = station_.channels[i];
            const ChannelSummary& summary = end.summaries[i];
            out_.write(fmt::format(
                "{{\"record\":\"channel\",\"channel\":{},\"computed\":{},\"refused\":{},\"interrupted\":{}}}\n",
                json_text(channel.name), summary.computed, summary.refused, end.interrupted));
            for (std::size_t k = 0; end.with_registers && k < integrator_count(channel.medium); ++k)
                out_.write(register_line(channel, end.registers[i], k));
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
        for (std::size_t set = 0; set < 2; ++set)
            line += fmt::format(",\"{0}_s\":{1},\"{0}_start\":{2},\"{0}_result\":{3}",
                                set == 0 ? "hour" : "day", number(reg.interval[set].time_s),
                                number(reg.interval[set].start), number(reg.interval[set].result));
        return line + "}\n";
    }

    std::string line_;
    Values values_;
};

// For a person: cycles in columns (or none), hours (or none) and days as they close, at the end counts and registers.
class Table : public Results {
public:
    Table(const Station& station, TimeKind kind, OutputFile& out, bool cycles, std::size_t first_set,
          bool folded)
        : Results(station, kind, out), cycles_(cycles), first_set_(first_set), folded_(folded) {}

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
        std::string text = end.interrupted ? "interrupted\n" : "";
        for (std::size_t i = 0; i < end.summaries.size(); ++i) {
            const ChannelSummary& summary = end.summaries[i];
            text += fmt::format("{:<11} {} cycles computed, {} refused\n", station_.channels[i].name,
                                summary.computed, summary.refused);
            if (summary.refused > 0)
                text += words_folded(fmt::format("{:<11} first refused at {}", "", summary.first_refusal));
        }
        out_.write(text);
        if (!end.with_registers) return;
        const std::string registers = print_registers_table(station_, end.registers, kind_);
        out_.write("registers\n" +
                   (folded_ ? fold_table(registers, "hour_s", "unit") : registers));
    }

private:
    [[nodiscard]] std::string words_folded(const std::string& line) const {
        return (folded_ ? fold_words(line, 32) : line) + "\n";
    }

    // Folded, a row goes on below its channel, with the flows.
    template <class... Cells>
    void write_row(const Cells&... cells) {
        constexpr std::size_t flows = 75, indent = 28;
        const std::string row = fmt::format(
            "{:<19} {:<10}{:>8} {:>8} {:>8} {:>9} {:>8} {:>8} {:>9} {:>10} {:>9} {:>11}{}\n", cells...);
        out_.write(folded_ ? fold_at(row, flows, indent) : row);
    }

    void write_cycle(const Cycle& cycle) {
        const auto& [c, row, o, registers] = cycle;
        const bool solved = o.passed(Step::flow), meter = is_meter(c.device);
        const auto cell = [](bool given, const char* layout, float value) {
            return given ? fmt::format(fmt::runtime(layout), value) : std::string("-");
        };
        write_row(print_time(kind_, row.time_s), c.name, fmt::format("{:.2f}", o.input.t_C),
                  fmt::format("{:.4f}", o.input.p_Pa * 1e-6F), cell(!meter, "{:.3f}", o.input.dp * 1e-3F),
                  cell(o.passed(Step::properties), "{:#.6g}", o.rho),
                  cell(solved && has(c, Of::standard_device), "{:.5f}", o.C),
                  cell(solved && !meter, "{:.5f}", o.epsilon), cell(solved, "{:.4f}", o.q[0]),
                  cell(solved && c.is_gas(), "{:.1f}", o.q[2]), cell(solved, "{:.3f}", o.q[c.is_gas() ? 3 : 2]),
                  fmt::format("{:.3f}", registers[0].total),
                  cycle.done() ? "" : fmt::format("  refused, {}: {}", step_name(o.reached), o.reason));
    }

    void write_closed(const Cycle& cycle, std::size_t set) {
        const Channel& channel = cycle.channel;
        std::string amounts;
        for (std::size_t k = 0; k < integrator_count(channel.medium); ++k)
            if (const Interval& interval = cycle.registers[k].interval[set]; interval.closed)
                amounts +=
                    fmt::format("{}{} {:#.7g} {}", amounts.empty() ? "" : ", ",
                                integrator(channel.medium, k).name, interval.result, unit_of(channel, k));
        if (!amounts.empty())
            out_.write(words_folded(fmt::format("{:<19} {:<10}  {}: {}", print_time(kind_, cycle.row.time_s),
                                                channel.name, set == 0 ? "hour" : "day ", amounts)));
    }

    bool cycles_;
    std::size_t first_set_;  // of the intervals that are told: 0 from hours on, 1 days only
    bool folded_;            // to fit 80 columns
};

}  // namespace

bool has(const Channel& c, Of whose) {
    if (whose == Of::gas || whose == Of::heat_carrier) return c.is_gas() == (whose == Of::gas);
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
