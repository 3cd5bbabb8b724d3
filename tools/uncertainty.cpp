// SPDX-License-Identifier: MIT
// `kalorfix uncertainty`: how far the flows and amounts of a station can be trusted, over a file of readings.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <memory>

#include "tools/commands.h"
#include "tools/host.h"
#include "tools/output_file.h"
#include "tools/point_options.h"
#include "tools/runtime.h"
#include "tools/separate_files.h"
#include "tools/spreadsheet.h"
#include "tools/station/cycle.h"
#include "tools/station/point.h"
#include "tools/station/readings.h"
#include "tools/station/readings_stream.h"
#include "tools/text.h"
#include "tools/uncertainty_sheet.h"

namespace kalorfix::tool {
namespace {

using metering::Budget;
using metering::Period;
using station::TimeKind;

struct Request {
    std::string station, readings, channel, by, svg, decimal;
    bool csv = false, json = false;
};

constexpr double hour_s = 3600.0, day_s = 86400.0;

enum class By { reading, hour, day, month, all };
constexpr std::array<std::string_view, 5> by_words{"reading", "hour", "day", "month", "all"};

By by_of(const Request& request, TimeKind kind) {
    if (request.by.empty()) return kind == TimeKind::date ? By::day : By::all;
    const auto found = std::ranges::find(by_words, request.by);
    if (found == by_words.end())
        throw InputError("--by ", quoted(request.by), ": there are ", joined(by_words));
    const auto by = static_cast<By>(found - by_words.begin());
    if (by == By::month && kind == TimeKind::seconds)
        throw InputError("--by month: the readings have seconds and no dates; there are hour, day and all");
    return by;
}

// The hour or day that a time lies in, by its beginning: a day of the calendar begins at the contract hour.
struct Slot {
    double begin_s, end_s;
};
Slot slot_of(By by, const station::Channel& channel, double time_s) {
    const double length_s = by == By::hour ? hour_s : day_s;
    const double shift_s = by == By::hour ? 0.0 : hour_s * channel.contract_hour;
    const double begin_s = shift_s + length_s * std::floor((time_s - shift_s) / length_s);
    return {begin_s, begin_s + length_s};
}

std::string label_of(By by, TimeKind kind, const Slot& slot) {
    constexpr std::size_t to_hour = 13, to_day = 10, to_month = 7;
    const std::string begin = station::print_time(kind, slot.begin_s);
    if (kind == TimeKind::seconds) return begin;
    return begin.substr(0, by == By::hour ? to_hour : by == By::day ? to_day : to_month);
}

// What the readings of a channel add up to; periods in the order of time.
struct Account {
    const station::Channel* channel = nullptr;
    metering::Point point{};
    std::optional<double> last_s{};
    Period whole{};
    std::vector<std::pair<std::string, Period>> periods{};
    metering::Reading mean{};  ///< sums
    double most_dp_Pa = 0;
    std::string first_refusal{};

    // As the totals count: a flow lasts from the reading before it, unless that is too long ago.
    void add(const Budget& budget, const metering::Reading& reading, double time_s, By by, TimeKind kind) {
        const double from_s = last_s.value_or(time_s);
        last_s = time_s;
        const station::Elapsed elapsed{time_s - from_s, channel->longest_step_s};
        const bool counts = !elapsed.is_passed_over();
        whole.add(budget, counts ? elapsed.seconds / hour_s : 0.0);
        if (budget.accepted()) {
            mean.t_C += reading.t_C;
            mean.p_Pa += reading.p_Pa;
            mean.atmosphere_Pa += reading.atmosphere_Pa;
            most_dp_Pa = std::max(most_dp_Pa, reading.dp_Pa);
        }
        if (by == By::all || by == By::reading || !counts) return;
        for (double at_s = from_s; at_s < time_s;) {
            const Slot slot = slot_of(by, *channel, at_s);
            const double to_s = std::min(slot.end_s, time_s);
            const std::string label = label_of(by, kind, slot);
            if (periods.empty() || periods.back().first != label) periods.emplace_back(label, Period{});
            periods.back().second.add(budget, (to_s - at_s) / hour_s);
            at_s = to_s;
        }
    }
    [[nodiscard]] bool is_empty() const { return whole.computed() + whole.refused() == 0; }
    [[nodiscard]] bool is_complete() const {
        return tool::is_complete(whole.budget()) && !(whole.uncovered(0) > 0.0);
    }
    [[nodiscard]] metering::Reading typical() const {
        const auto n = static_cast<double>(whole.computed());
        return {mean.t_C / n, mean.p_Pa / n, most_dp_Pa, mean.atmosphere_Pa / n};
    }
};

BudgetRecord record_of(const Account& account, const std::string& when, const Period& period) {
    BudgetRecord record{account.channel->name, when, period.budget(), true, {}, period.why_uncovered()};
    for (std::size_t k = 0; k < record.uncovered.size(); ++k) record.uncovered[k] = period.uncovered(k);
    return record;
}

void print_machine(const Request& request, const BudgetRecord& record) {
    if (request.csv) fmt::print("{}", budget_csv(record));
    if (request.json) fmt::print("{{{}}}\n", budget_json(record));
}

// A line: what the uncertainty of each flow is, and which input has the largest share of the first.
std::vector<std::string> line_of(const BudgetRecord& record) {
    std::vector<std::string> cells{record.when};
    const Budget& budget = record.budget;
    for (std::size_t k = 0; k < budget.flow.size(); ++k) {
        const bool exists = budget.accepted() && budget.flow[k] != 0.0;
        const std::optional<double> expanded = exists ? metering::expanded_pct(budget, k) : std::nullopt;
        cells.push_back(exists ? fmt::format("{:.7g}", budget.flow[k]) : "-");
        cells.push_back(expanded ? fmt::format("{:.3f}", *expanded) : "-");
    }
    const auto largest = std::ranges::max_element(
        budget.entries, {}, [](const metering::Entry& entry) { return entry.contribution[0]; });
    const bool any = largest != budget.entries.end() && largest->contribution[0] > 0.0;
    cells.push_back(any ? largest->name : "-");
    std::string status = budget.accepted() ? status_of(budget, 0) : "refused: " + budget.refused;
    if (record.uncovered[0] > 0.0 && record.uncovered[0] < 1.0)
        status = fmt::format("without {:.3g} % of the amount", 100.0 * record.uncovered[0]);
    cells.push_back(status);
    return cells;
}

std::vector<std::vector<std::string>> lines_with_head(bool amount) {
    return {{"", "mass", "U", "standard", "U", "energy", "U", "largest", "status"},
            {"", amount ? "t" : "t/h", "%", amount ? "m3" : "m3/h", "%", amount ? "GJ" : "GJ/h", "%", "", ""}};
}

void print_account(const Account& account, By by, const std::vector<std::vector<std::string>>& readings) {
    const Period& whole = account.whole;
    if (account.is_empty()) {
        fmt::print("{}: no readings\n", account.channel->name);
        return;
    }
    fmt::print("{}: {} readings, {} of them without a flow{}\n", account.channel->name,
               whole.computed() + whole.refused(), whole.refused(),
               account.first_refusal.empty() ? "" : ", the first: " + account.first_refusal);
    const BudgetRecord record = record_of(account, "all", whole);
    fmt::print("{}", budget_sheet(record));
    std::vector<std::vector<std::string>> rows = lines_with_head(by != By::reading);
    if (by == By::reading) rows.insert(rows.end(), readings.begin(), readings.end());
    if (by != By::reading && by != By::all)
        for (const auto& [when, period] : account.periods)
            rows.push_back(line_of(record_of(account, when, period)));
    if (rows.size() > 2)
        fmt::print("{} by {}\n{}", account.channel->name, by_words[static_cast<std::size_t>(by)],
                   aligned(rows, 1));
    if (record.budget.accepted()) fmt::print("{}", budget_words(record.budget, true));
}

// The channels asked for; a meter has no differential pressure and is passed over.
std::vector<Account> accounts_of(const station::Station& station, const Request& request) {
    std::vector<Account> accounts(station.channels.size());
    bool any = false;
    for (std::size_t i = 0; i < accounts.size(); ++i) {
        const station::Channel& channel = station.channels[i];
        const bool named = request.channel == channel.name;
        if (station::is_meter(channel.device)) {
            if (named)
                throw InputError(station.file, ": [", channel.name,
                                 "] is a meter: it has no differential pressure");
            continue;
        }
        if (!named && !request.channel.empty()) continue;
        accounts[i].channel = &channel;
        accounts[i].point = station::point_of(channel);
        any = true;
    }
    if (!any && !request.channel.empty())
        throw InputError("--channel ", quoted(request.channel), ": ", station.file, " describes ",
                         joined(station.channels, &station::Channel::name));
    if (!any) throw InputError(station.file, ": has only meters, which have no differential pressure");
    if (!request.svg.empty() && std::ranges::count_if(accounts, [](const Account& a) { return a.channel; }) > 1)
        throw InputError("--svg: one channel is drawn; say --channel which");
    return accounts;
}

void check_request(const Request& request) {
    if (request.station.empty() || request.readings.empty())
        throw InputError("give a station file and readings, such as uncertainty station.ini readings.csv");
    if (request.csv && request.json) throw InputError("--csv, --json: give one of them");
}

Budget budget_at(const host::Library& library, const Account& account, const metering::Reading& reading) {
    const double cut_off_Pa = static_cast<double>(account.channel->cut_off_Pa);
    if (!std::isfinite(reading.t_C + reading.p_Pa + reading.dp_Pa))
        return {.refused = "a measured value is missing"};
    if (reading.dp_Pa < cut_off_Pa) return {.refused = "no flow: dp below the cut-off"};
    return metering::budget_of(library, account.point, account.channel->instruments, reading);
}

// The drawing does not take the place of what it is made from.
void keep_apart(const Installation& files, const Request& request, const station::Station& station) {
    std::vector<NamedFile> inputs{{"--lib", files.library},
                                  {"--gas-data", files.gas_data},
                                  {"STATION", request.station},
                                  {"READINGS", request.readings}};
    for (const station::Channel& channel : station.channels)
        inputs.push_back({"the composition of " + channel.name, channel.gas.composition_file});
    tool::keep_apart(inputs, {{"--svg", request.svg}});
}

void draw(const host::Library& library, const Account& one, OutputFile& file) {
    if (one.whole.computed() == 0)
        throw InputError("--svg: nothing to draw: ", one.is_empty() ? "no readings" : one.first_refusal);
    file.write(budget_drawing(library, one.channel->name, one.point, one.channel->instruments, one.typical()));
    file.finish();
}

int run(const Installation& files, const Request& request) {
    static const volatile std::sig_atomic_t interrupted = 0;
    check_request(request);
    const host::Runtime runtime(files.gas_data);
    const host::Library library(files.library);
    const station::Station station = station::read_station(library, request.station);
    std::vector<Account> accounts = accounts_of(station, request);
    keep_apart(files, request, station);
    for (const Account& one : accounts)
        if (one.channel) require_gas_data(files, one.point);
    const std::unique_ptr<std::istream> in = station::open_readings(request.readings, interrupted);
    station::Readings readings(station, *in, request.readings, decimal_mark(request.decimal));
    const TimeKind kind = readings.time_kind();
    const By by = by_of(request, kind);
    station::Measured row;
    // Every mistake is found before anything is printed.
    while (readings.next(row)) continue;
    readings.warn_of_end();
    readings.rewind();
    library->Init();

    std::optional<OutputFile> drawing;
    if (!request.svg.empty()) drawing.emplace(request.svg);
    const bool table = !request.csv && !request.json;
    if (request.csv) fmt::print("{}", budget_csv_head());
    std::vector<std::vector<std::vector<std::string>>> lines(accounts.size());
    while (readings.next(row)) {
        Account& account = accounts[row.channel];
        if (!account.channel) continue;
        const metering::Reading reading{row[station::Quantity::t_C], row[station::Quantity::p_Pa],
                                        row[station::Quantity::dp_Pa], row.atmosphere_Pa};
        const Budget budget = budget_at(library, account, reading);
        const std::string when = station::print_time(kind, row.time_s);
        if (!budget.accepted() && account.first_refusal.empty())
            account.first_refusal = when + ", " + budget.refused;
        account.add(budget, reading, row.time_s, by, kind);
        if (by != By::reading) continue;
        const BudgetRecord record{account.channel->name, when, budget, false, {}, {}};
        table ? lines[row.channel].push_back(line_of(record)) : print_machine(request, record);
    }
    bool any = false, complete = true;
    for (std::size_t i = 0; i < accounts.size(); ++i) {
        const Account& one = accounts[i];
        if (!one.channel) continue;
        any = any || !one.is_empty();
        complete = complete && (one.is_empty() || one.is_complete());
        if (drawing) draw(library, one, *drawing);
        if (table) print_account(one, by, lines[i]);
        if (!table && by != By::reading)
            for (const auto& [when, period] : one.periods) print_machine(request, record_of(one, when, period));
        if (!table && by == By::all && !one.is_empty())
            print_machine(request, record_of(one, "all", one.whole));
    }
    return any && complete ? 0 : 1;
}

}  // namespace

Command uncertainty_command() {
    const auto request = std::make_shared<Request>();
    Command command{
        "uncertainty",
        "How far flows and amounts can be trusted: the budget of a\nstation over a file of readings.",
        "The station file states the instruments with the keys below \"Instruments\" in kalorfix run\n"
        "--help, such as dp_range_kPa = 40 and dp_class_pct = 0.075. ISO 5167 gives the figures of its\n"
        "discharge coefficients and expansibility factors; all else is stated or said to be missing,\n"
        "first of all. Outside the range of a figure nothing is computed.\n\n"
        "Sensitivities are central differences through the library. Of an amount every error counts as\n"
        "systematic: contributions add with the amounts as weights, and the number of readings does not\n"
        "make them smaller. docs/uncertainty.md tells how.\n\n"
        "Example: kalorfix uncertainty station.ini readings.csv --channel 'GAS 2' --by day\n\n"
        "Exit status 1 where an input is not stated, lies outside its range, or no reading has a flow;\n"
        "2 for bad input.",
        {{"STATION", "STATION.ini", "station file with its instruments", &request->station},
         {"READINGS", "READINGS.csv|-", "measured values, as for kalorfix run; - is standard\ninput",
          &request->readings},
         {"--channel", "CHANNEL", "one channel, such as 'GAS 2'", &request->channel},
         {"--decimal", "MARK", "comma or point, where 1,234 can be 1234 as well", &request->decimal},
         {"--by", "PERIOD", "reading, hour, day (default with dates), month, all\n(default with seconds)",
          &request->by},
         {"--csv", "", "a line for each input of each budget", &request->csv},
         {"--json", "", "a line of JSON for each budget", &request->json},
         {"--svg", "FILE",
          "draw the uncertainty of a channel over its flow, with the\nshare of each input, into FILE as well",
          &request->svg}}};
    command.run = [request](const Installation& files) { return run(files, *request); };
    return command;
}

}  // namespace kalorfix::tool
