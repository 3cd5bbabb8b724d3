// SPDX-License-Identifier: MIT
// `kalorfix calc`: one reading, solved for what is missing of it.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "flow/device.h"
#include "flow/geometry.h"
#include "runtime/units.h"
#include "tools/calc_sheet.h"
#include "tools/commands.h"
#include "tools/host.h"
#include "tools/output_file.h"
#include "tools/point_options.h"
#include "tools/runtime.h"
#include "tools/separate_files.h"
#include "tools/station/instrument_keys.h"
#include "tools/station/results.h"
#include "tools/svg.h"
#include "tools/text.h"
#include "tools/uncertainty_sheet.h"

namespace kalorfix::tool {
namespace {

using metering::Answer;
using metering::Measure;
using metering::Question;
using metering::Unknown;

constexpr double kPa = 1e-3;
constexpr std::size_t most_answers = 100'000;

struct Request : PointRequest {
    std::string t, p, dp, q, round, svg, instruments;
    bool csv = false, json = false, uncertainty = false;
};

// What is known, each a number or a range; the product of the ranges is asked.
struct Questions {
    Question common{};
    std::vector<double> t_C, p_Pa, dp_Pa, flow;

    [[nodiscard]] std::size_t size() const { return t_C.size() * p_Pa.size() * dp_Pa.size() * flow.size(); }
    template <class Visit>
    void for_each(Visit&& visit) const {
        Question q = common;
        for (const double t : t_C)
            for (const double p : p_Pa)
                for (const double dp : dp_Pa)
                    for (const double flow_value : flow) {
                        q.t_C = t, q.p_Pa = p, q.dp_Pa = dp, q.flow = flow_value;
                        visit(q);
                    }
    }
};

bool asked(const std::string& text) { return text.empty() || text == "?"; }

Unknown unknown_of(const Request& request, bool bore_given) {
    const bool dp = asked(request.dp), flow = asked(request.q);
    const int count = int{dp} + int{flow} + int{!bore_given};
    if (count == 0) throw InputError("--d20, --dp, --q: one of them is to be found; leave it out or give ?");
    if (count > 1)
        throw InputError("--d20, --dp, --q: give two of them, and the third is found; missing are ",
                         bore_given   ? ""
                         : dp && flow ? "d20, "
                                      : "d20 and ",
                         dp ? "dp" : "", dp && flow ? " and " : "", flow ? "q" : "");
    if (!bore_given) return Unknown::bore;
    return dp ? Unknown::dp : Unknown::flow;
}

std::vector<double> positive(std::string_view option, std::vector<double> values) {
    for (const double value : values)
        if (!(value > 0.0)) throw InputError(option, ": must be above 0");
    return values;
}

Questions read_questions(const Request& request, const DescribedPoint& described) {
    Questions all;
    all.common.unknown = unknown_of(request, described.bore_given);
    if (request.t.empty()) throw InputError("--t: give the temperature, such as --t 15 or 60F");
    if (request.p.empty()) throw InputError("--p: give the absolute pressure, such as --p 5.5MPa");
    all.t_C = read_values("--t", request.t, Measure::temperature, "C");
    all.p_Pa = positive("--p", read_values("--p", request.p, Measure::pressure, "MPa"));
    all.dp_Pa = all.flow = {0.0};
    if (!asked(request.dp))
        all.dp_Pa = positive("--dp", read_values("--dp", request.dp, Measure::pressure, "kPa"));
    const auto* const given = std::get_if<metering::GivenMedium>(&described.point.medium);
    const bool standard = metering::is_gas(described.point.medium) && (!given || given->rho_c);
    all.common.kind = standard ? metering::Flow::standard_volume : metering::Flow::mass;
    if (!asked(request.q)) {
        const metering::Unit* unit = nullptr;
        all.flow = positive("--q", read_values("--q", request.q, Measure::flow, "", &unit));
        all.common.kind = metering::flow_kind(*unit);
    }
    if (!request.round.empty()) {
        if (all.common.unknown != Unknown::bore)
            throw InputError("--round: has no meaning without a bore to be found; leave it out");
        all.common.round_mm = read_value("--round", request.round, Measure::length, "mm", 0, 100);
    }
    for (const std::size_t count : {all.t_C.size(), all.p_Pa.size(), all.dp_Pa.size(), all.flow.size()})
        if (count > most_answers)
            throw InputError("--t, --p, --dp, --q: at most ", most_answers, " answers in all");
    if (static_cast<double>(all.t_C.size()) * static_cast<double>(all.p_Pa.size()) *
            static_cast<double>(all.dp_Pa.size()) * static_cast<double>(all.flow.size()) >
        static_cast<double>(most_answers))
        throw InputError("--t, --p, --dp, --q: at most ", most_answers, " answers in all");
    return all;
}

std::string flow_label(metering::Flow kind) {
    constexpr std::string_view labels[] = {"mass flow, t/h", "volume flow, m3/h",
                                           "flow at standard conditions, m3/h", "energy flow, GJ/h"};
    return std::string(labels[static_cast<std::size_t>(kind)]);
}

// Flow over the differential pressure at the state of each answer, up to the largest that was asked, or twice a single one, as far as it
// is accepted; the ends of the accepted range as upright lines.
void draw(const host::Library& library, const std::string& file, const std::string& name, const Question& q,
          const std::vector<Answer>& answers, bool whole_range) {
    constexpr int dots = 400, most_with_limits = 3;
    constexpr double visible = 0.002;
    svg::Plot plot{(name.empty() ? "" : name + ": ") + "flow over differential pressure",
                   "differential pressure, kPa",
                   flow_label(q.kind),
                   {},
                   {}};
    double top = 0.0;
    const double beyond = whole_range ? 1.0 : 2.0;
    for (const Answer& a : answers) top = std::max(top, beyond * a.dp_Pa);
    for (const Answer& a : answers) {
        if (!a.range.any) continue;
        const double end = top > a.range.low.at ? std::min(top, a.range.high.at) : a.range.high.at;
        svg::Curve curve{fmt::format("{:.4g} degC, {:.4g} MPa", a.medium.t_C, a.medium.p_Pa * 1e-6), {}};
        for (int k = 0; k <= dots; ++k) {
            const double dp_Pa = a.range.low.at + (end - a.range.low.at) * k / dots;
            const metering::FlowResult flow = metering::flow_at(library, a.point, a.medium, dp_Pa);
            curve.points.emplace_back(dp_Pa * kPa,
                                      flow.accepted() ? metering::flow_of_kind(q.kind, flow) : std::nan(""));
        }
        plot.curves.push_back(std::move(curve));
        if (answers.size() > most_with_limits) continue;  // two more lines each
        for (const metering::End* limit : {&a.range.low, &a.range.high})
            if (visible * end < limit->at && limit->at <= end && !limit->because.empty())
                plot.curves.push_back(
                    {fmt::format("{} {:.5g} kPa", limit == &a.range.low ? "least" : "most", limit->at * kPa),
                     {{limit->at * kPa, 0.0}, {limit->at * kPa, metering::flow_of_kind(q.kind, limit->flow)}}});
    }
    if (plot.curves.empty()) throw InputError("--svg: nothing to draw: ", answers.front().why);
    write_file(file, svg::draw(plot));
}

metering::Instruments read_instruments(const Request& request, const DescribedPoint& described) {
    using station::Medium;
    metering::Instruments stated;
    std::optional<Medium> medium;  // a given one may state everything
    if (described.channel) stated = described.channel->instruments;
    if (!std::holds_alternative<metering::GivenMedium>(described.point.medium))
        medium = metering::is_gas(described.point.medium) ? Medium::gas : Medium::heat_carrier;
    if (request.instruments.empty()) return stated;
    if (!request.uncertainty)
        throw InputError("--instruments: has no meaning without --uncertainty; leave it out");
    station::state_instruments("--instruments", request.instruments, medium, stated);
    return stated;
}

// What a person should know of answers that are right for what was typed; each is said once, of the first answer.
class Warnings {
public:
    void of(const DescribedPoint& described, const Answer& answer) {
        if (!answer.solved()) return;
        const metering::Pipeline& pipe = answer.point.pipe;
        if (answer.flow.K_sh > flow::max_roughness_correction)
            say(roughness_, fmt::format("a roughness of {:g} mm adds {:.2g} % to the flow; is it in mm?",
                                        pipe.roughness_mm, percent * (answer.flow.K_sh - 1.0)));
        const double edge_mm = flow::limit_edge_radius_m(false, false) * units::mm_per_m;
        if (pipe.edge_radius_mm > edge_mm)
            say(edge_,
                fmt::format("an edge of {:g} mm is blunter than {:g} mm, to which edges wear; is it in mm?",
                            pipe.edge_radius_mm, edge_mm));
        const auto* const heat = std::get_if<metering::HeatCarrier>(&answer.point.medium);
        if (heat && metering::is_mixed(*heat, answer.medium.phase))
            say(mixed_,
                fmt::format(
                    "the density of wet steam, {:.6g} kg/m3, is mixed linearly: with water in it that of "
                    "the mixture is lower, and so is the flow",
                    answer.medium.rho));
        // The controller counts no flow there, whatever the formula gives.
        const double cut_off_Pa = described.channel ? static_cast<double>(described.channel->cut_off_Pa) : 0.0;
        if (answer.dp_Pa < cut_off_Pa)
            say(cut_off_,
                fmt::format("at dp {:.6g} kPa, below cut_off_kPa = {:.6g} of {}, the host counts no flow",
                            answer.dp_Pa * kPa, cut_off_Pa * kPa, described.name));
    }

private:
    static constexpr double percent = 100.0;
    bool roughness_ = false, edge_ = false, mixed_ = false, cut_off_ = false;

    static void say(bool& said, const std::string& words) {
        if (!said) fmt::print(stderr, "kalorfix: warning: {}\n", words);
        said = true;
    }
};

int run(const Installation& files, const Request& request) {
    if (request.csv && request.json) throw InputError("--csv, --json: give one of them");
    const std::size_t colon = request.gas.find(':');  // METHOD:FILE
    keep_apart({{"--lib", files.library},
                {"--gas-data", files.gas_data},
                {"STATION", request.station},
                {"--gas", colon == std::string::npos ? "" : request.gas.substr(colon + 1)}},
               {{"--svg", request.svg}});
    const host::Runtime runtime(files.gas_data);
    const host::Library library(files.library);
    const DescribedPoint described = read_point(library, request);
    require_gas_data(files, described.point);
    const Questions questions = read_questions(request, described);
    const metering::Instruments instruments = read_instruments(request, described);
    library->Init();
    const std::size_t states = questions.t_C.size() * questions.p_Pa.size();
    const bool bores = questions.common.unknown == Unknown::bore;
    if (!request.svg.empty() && (bores ? questions.size() : states) > svg::most_curves)
        throw InputError("--svg: at most ", svg::most_curves, " curves, one a state or bore");
    bool all_solved = true, complete = true;
    std::string text;
    std::vector<Answer> drawn;
    Warnings warnings;
    questions.for_each([&](const Question& q) {
        Answer answer = metering::solve(library, described.point, q);
        all_solved = all_solved && answer.solved();
        warnings.of(described, answer);
        std::vector<Cell> cells = cells_of(q, answer);
        BudgetRecord record{described.name, {}, {answer.why}, false, {}, {}};
        if (request.uncertainty) {
            if (answer.solved())
                record.budget =
                    metering::budget_of(library, answer.point, instruments, {q.t_C, q.p_Pa, answer.dp_Pa});
            complete = complete && is_complete(record.budget);
            add_budget_cells(record.budget, cells);
        }
        const std::string budget = request.uncertainty ? "\"budget\":{" + budget_json(record) + "}" : "";
        if (request.json)
            text += calc_json(answer, cells, budget);
        else if (request.csv || questions.size() > 1)
            text += (text.empty() ? calc_csv_head(cells) : "") + calc_csv_row(answer, cells);
        else
            text += calc_sheet(described.name, q, answer);
        if (request.uncertainty && questions.size() == 1 && !request.csv && !request.json)
            text += station::sheet_step("uncertainty", status_of(record.budget, 0)) + budget_sheet(record) +
                    budget_words(record.budget, false);
        if (request.svg.empty()) return;
        const bool same = !drawn.empty() && !bores && drawn.back().medium.t_C == answer.medium.t_C &&
                          drawn.back().medium.p_Pa == answer.medium.p_Pa;
        if (same)
            drawn.back().dp_Pa = std::max(drawn.back().dp_Pa, answer.dp_Pa);
        else
            drawn.push_back(std::move(answer));
    });
    if (!request.svg.empty() && request.uncertainty)
        write_file(request.svg,
                   budget_drawing(library, described.name, drawn.front().point, instruments,
                                  {questions.t_C.front(), questions.p_Pa.front(), drawn.front().dp_Pa}));
    else if (!request.svg.empty())
        draw(library, request.svg, described.name, questions.common, drawn, questions.size() > drawn.size());
    fmt::print("{}", text);
    return all_solved && complete ? 0 : 1;
}

}  // namespace

Command calc_command() {
    const auto request = std::make_shared<Request>();
    Command command{
        "calc", "One reading of a metering point, solved for the flow, the\ndifferential pressure or the bore.",
        "Two of bore (--d20), differential pressure (--dp) and flow (--q) are given, the third\n"
        "is found. A station file gives the bore; --d20 ? asks for it, --d20 220mm replaces it.\n\n"
        "Examples:\n"
        "  kalorfix calc station.ini 'GAS 2' --t 15 --p 5.5MPa --dp 25kPa\n"
        "  kalorfix calc station.ini 'GAS 2' --t 15 --p 5.5MPa --q 250000m3/h-std\n"
        "  kalorfix calc --device orifice_flange --D20 400mm --d20 ? --materials 7,32 \\\n"
        "      --roughness 0.05mm --edge 0.05mm --gas aga8:natural_gas.csv \\\n"
        "      --t 15 --p 5.5MPa --dp 25kPa --q 150000m3/h-std\n"
        "  kalorfix calc --device venturi_machined --D20 200mm --d20 100mm --materials 7,32 \\\n"
        "      --water --t 60 --p 6bar --dp 1:40:1kPa\n\n"
        "Units: lengths " +
            metering::unit_words(Measure::length) + ";\npressures, absolute, " +
            metering::unit_words(Measure::pressure) + ";\ntemperatures " +
            metering::unit_words(Measure::temperature) + "; flows " +
            "kg/s, kg/h, t/h, t/d, l/s,\nm3/s, m3/h, m3/d, m3/h-std (at 20 degC and 101.325 kPa; also /s, "
            "/d),\nGJ/h, MW, kW, Gcal/h; viscosities " +
            metering::unit_words(Measure::viscosity) +
            ".\nWithout a unit: mm, MPa, kPa for --dp, degC, kg/m3, uPas; a flow needs one.\n"
            "Ranges such as 1:40:1kPa of t, p, dp and q give a table as CSV, at most 100000 rows.\n\n"
            "The sheet ends with the permanent pressure loss, the Reynolds numbers of the device and\n"
            "the range of differential pressure and flow that the library accepts at this state.\n"
            "Exit status 1 where something has no solution, or a budget lacks an entry: the sheet says\n"
            "why; 2 for bad input.",
        point_options(*request)};
    const std::vector<Option> own{
        {"--t", "T", "temperature", &request->t},
        {"--p", "P", "absolute pressure, as measured", &request->p},
        {"--dp", "DP", "differential pressure; left out: to be found", &request->dp},
        {"--q", "Q", "flow with its unit; left out: to be found", &request->q},
        {"--round", "R", "a bore is made to a multiple of this (0.01mm)", &request->round},
        {"--uncertainty", "", "the budget of the answer as well; --svg then draws it", &request->uncertainty},
        {"--instruments", "KEY=N,...",
         "with it: what is stated of the instruments, over what\nthe station states, such as "
         "dp_range_kPa=40,dp_class_pct=0.075",
         &request->instruments},
        {"--csv", "", "comma-separated values with all digits", &request->csv},
        {"--json", "", "a line of JSON for each answer", &request->json},
        {"--svg", "FILE", "draw the flow over dp with its limits into FILE as well", &request->svg}};
    command.options.insert(command.options.end(), own.begin(), own.end());
    command.run = [request](const Installation& files) { return run(files, *request); };
    return command;
}

}  // namespace kalorfix::tool
