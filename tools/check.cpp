// SPDX-License-Identifier: MIT
// `kalorfix check`: is a station set up right, and within which limits.
#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <tuple>

#include "tools/commands.h"
#include "tools/host.h"
#include "tools/metering/check.h"
#include "tools/point_options.h"
#include "tools/runtime.h"
#include "tools/text.h"

namespace kalorfix::tool {
namespace {

using metering::Measure;
using metering::Rule;
using metering::Verdict;

struct Request : PointRequest {
    std::string t, p, dp;
    bool csv = false;
};

std::string_view word_of(Verdict verdict) {
    constexpr std::string_view words[] = {"OK", "WARN", "STOP", "-"};
    return words[static_cast<std::size_t>(verdict)];
}

metering::Envelope read_envelope(const Request& request) {
    if (request.t.empty() || request.p.empty())
        throw InputError("--t, --p: give the ranges that the point will meet, such as --t 0:40 --p 1:6MPa");
    metering::Envelope e;
    std::tie(e.t_low_C, e.t_high_C) = read_span("--t", request.t, Measure::temperature, "C");
    std::tie(e.p_low_Pa, e.p_high_Pa) = read_span("--p", request.p, Measure::pressure, "MPa");
    if (request.dp.empty()) return e;
    const auto [low, high] = read_span("--dp", request.dp, Measure::pressure, "kPa");
    if (!(low >= 0.0)) throw InputError("--dp: must not be below 0");
    e.dp_low_Pa = low;
    e.dp_high_Pa = high;
    return e;
}

// What the registers of a channel count; a point given by options has none.
std::vector<metering::Account> accounts_of(const DescribedPoint& point) {
    std::vector<metering::Account> accounts;
    if (!point.channel) return accounts;
    const station::Channel& c = *point.channel;
    using enum metering::Flow;
    const std::array<metering::Flow, station::most_integrators> kinds{
        mass, volume, c.is_gas() ? standard_volume : energy, energy};
    for (std::size_t k = 0; k < station::integrator_count(c.medium); ++k) {
        const station::Integrator& one = station::integrator(c.medium, k);
        accounts.push_back({std::string(one.name), std::string(one.unit), kinds[k], c.accounting[k].exponent});
    }
    return accounts;
}

// Below the cut-off of a channel there is no flow, and nothing is refused.
metering::Envelope envelope_of(const DescribedPoint& point, metering::Envelope envelope) {
    if (point.channel && envelope.dp_low_Pa)
        envelope.dp_low_Pa = std::clamp(static_cast<double>(point.channel->cut_off_Pa), *envelope.dp_low_Pa,
                                        *envelope.dp_high_Pa);
    return envelope;
}

void print_table(const DescribedPoint& point, const std::vector<Rule>& rules) {
    std::vector<std::vector<std::string>> rows;
    for (const Rule& rule : rules)
        rows.push_back({std::string(word_of(rule.verdict)), rule.what, rule.value, rule.limit, rule.clause});
    const std::string text = aligned(rows, rows.front().size());
    if (!point.name.empty()) fmt::print("{}\n", point.name);
    for (const std::string_view line : split(text, '\n'))
        if (!line.empty()) fmt::print("{}\n", line);
}

void print_csv(const DescribedPoint& point, const std::vector<Rule>& rules) {
    for (const Rule& rule : rules)
        fmt::print("{},{},{},{},{},{}\n", point.name, word_of(rule.verdict), csv_cell(rule.what),
                   csv_cell(rule.value), csv_cell(rule.limit), csv_cell(rule.clause));
}

int run(const Installation& files, const Request& request) {
    const host::Runtime runtime(files.gas_data);
    const host::Library library(files.library);
    const std::vector<DescribedPoint> points = read_points(library, request);
    const metering::Envelope envelope = read_envelope(request);
    for (const DescribedPoint& one : points) {
        if (!one.bore_given) throw InputError("--d20: give the device at 20 degC, such as 220mm");
        require_gas_data(files, one.point);
    }
    library->Init();
    if (request.csv) fmt::print("channel,verdict,rule,value,limit,clause\n");
    bool stopped = false;
    for (const DescribedPoint& one : points) {
        const std::vector<Rule> rules =
            metering::check(library, one.point, envelope_of(one, envelope), accounts_of(one));
        stopped = stopped || std::ranges::find(rules, Verdict::stop, &Rule::verdict) != rules.end();
        request.csv ? print_csv(one, rules) : print_table(one, rules);
    }
    return stopped ? 1 : 0;
}

}  // namespace

Command check_command() {
    const auto request = std::make_shared<Request>();
    Command command{
        "check",
        "A metering point before it is commissioned: each limit with\nits value, clause and OK, WARN or STOP.",
        "The ranges are those that the point will meet; the state is tried at their four corners.\n"
        "Examples:\n"
        "  kalorfix check station.ini --t 0:40 --p 1:6MPa --dp 0:40kPa\n"
        "  kalorfix check station.ini 'GAS 2' --t 0:40 --p 1:6MPa\n\n"
        "STOP: the library refuses this, or an amount comes out wrong. WARN: a part is refused, or\n"
        "a document ends there. A dash: not checked, since no source is on record here (straight\n"
        "lengths, velocity). Units as for kalorfix calc. Exit status 1 when a rule says STOP.",
        point_options(*request)};
    const std::vector<Option> own{
        {"--t", "LOW:HIGH", "temperatures", &request->t},
        {"--p", "LOW:HIGH", "absolute pressures, as measured", &request->p},
        {"--dp", "LOW:HIGH", "differential pressures, such as the range of the\ntransmitter", &request->dp},
        {"--csv", "", "comma-separated", &request->csv}};
    command.options.insert(command.options.end(), own.begin(), own.end());
    command.run = [request](const Installation& files) { return run(files, *request); };
    return command;
}

}  // namespace kalorfix::tool
