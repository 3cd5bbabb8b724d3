// SPDX-License-Identifier: MIT
// `kalorfix audit`: the archive of a device recomputed from its own means.
#include "tools/metering/audit.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "tools/archive.h"
#include "tools/commands.h"
#include "tools/gasdat/gas_file.h"
#include "tools/output_file.h"
#include "tools/runtime.h"
#include "tools/separate_files.h"
#include "tools/spreadsheet.h"
#include "tools/station/cycle.h"
#include "tools/text.h"

namespace kalorfix::tool {
namespace {

using metering::Compared;
using station::Channel;
using station::Quantity;
using station::Station;
using station::TimeKind;

constexpr double hour_s = 3600.0, day_s = 86400.0;

struct Request {
    std::string station_file, archive, interval, stamp = "start", day_starts, limit, csv, decimal;
    bool hours = false;
};

struct Settings {
    std::optional<double> interval_s, limit_pct, day_starts_h;
    bool stamped_at_end = false;
};

// A row recomputed.
struct Row {
    double time_s;
    std::array<std::optional<double>, station::most_integrators> device{}, reference{};
    std::optional<double> root{};  // relative effect of the mean, at most
    std::string refused{};
};

struct ChannelRows {
    std::vector<Row> rows;
    double interval_s = hour_s;
    std::vector<metering::Hole> holes{};
};

Settings read_settings(const Request& request) {
    Settings s;
    if (request.station_file.empty() || request.archive.empty())
        throw InputError("give a station file and an archive, such as audit station.ini archive.csv");
    if (request.interval == "hour")
        s.interval_s = hour_s;
    else if (request.interval == "day")
        s.interval_s = day_s;
    else if (!request.interval.empty())
        throw InputError("--interval: there are hour and day, not ", quoted(request.interval));
    if (request.stamp != "start" && request.stamp != "end")
        throw InputError("--stamp: there are start and end, not ", quoted(request.stamp));
    s.stamped_at_end = request.stamp == "end";
    const Limits hours{0.0, 23.0, "h"}, percent{0.0, 100.0, "%"};
    if (!request.day_starts.empty()) {
        s.day_starts_h = number_within(request.day_starts, hours);
        if (!s.day_starts_h) throw InputError("--day-starts: ", expected_within(request.day_starts, hours));
    }
    if (!request.limit.empty()) {
        s.limit_pct = number_within(request.limit, percent);
        if (!s.limit_pct) throw InputError("--limit: ", expected_within(request.limit, percent));
    }
    return s;
}

// The whole archive through the library, a row after the other as a run does.
std::vector<ChannelRows> recompute(const host::Library& library, const Station& s, station::Readings& archive) {
    std::vector<ChannelRows> all(s.channels.size());
    station::Measured measured;
    while (archive.next(measured)) {
        const Channel& channel = s.channels[measured.channel];
        const ArchiveRow own = archive_row(archive);
        const double mean_Pa = measured[Quantity::dp_Pa];
        if (own.spread.told() && std::isfinite(mean_Pa) && !own.spread.is_possible(mean_Pa))
            archive.lines().fail(channel.name,
                                 ": the mean dp does not lie between its least and its largest, or one of them "
                                 "or the standard deviation is negative");
        Row row{measured.time_s};
        const station::Outcome out = station::run_steps(library, channel, measured);
        const bool computed = out.passed(station::Step::flow);
        if (!computed)
            row.refused = fmt::format("{}: {}", station::step_name(out.reached),
                                      station::refusal_of_steps(library, channel, out));
        for (std::size_t i = 0; i < station::integrator_count(channel.medium); ++i) {
            row.device[i] = own.of(channel, i);
            if (computed) row.reference[i] = static_cast<double>(out.q[i]);  // an hour of it
        }
        if (!station::is_meter(channel.device)) row.root = metering::root_effect(mean_Pa, own.spread);
        all[measured.channel].rows.push_back(std::move(row));
    }
    return all;
}

void find_holes(const Settings& settings, const Station& s, const std::string& file,
                std::vector<ChannelRows>& all) {
    for (std::size_t i = 0; i < all.size(); ++i) {
        std::vector<double> times;
        for (const Row& row : all[i].rows) times.push_back(row.time_s);
        const std::optional<double> interval_s =
            settings.interval_s ? settings.interval_s : metering::interval_of(times);
        if (times.empty()) continue;
        if (!interval_s)
            throw InputError(file, ": ", s.channels[i].name,
                             ": its rows are neither an hour nor a day apart; give --interval hour or day");
        const auto found = metering::holes(times, *interval_s);
        if (!found)
            throw InputError(file, ": ", s.channels[i].name, ": its rows are not whole intervals of ",
                             *interval_s, " s apart");
        all[i].interval_s = *interval_s;
        all[i].holes = *found;
        for (Row& row : all[i].rows)
            for (std::optional<double>& amount : row.reference)
                if (amount) *amount *= *interval_s / hour_s;
    }
}

// ---- What is printed --------------------------------------------------------------------------------------------

std::string percent(const std::optional<double>& value) {
    if (!value) return "-";
    const std::string text = fmt::format("{:+.4f}", *value);
    return text == "-0.0000" || text == "+0.0000" ? "0.0000" : text;
}

std::vector<std::string> line(std::string period, const Compared& c) {
    const std::optional<double> root = c.root_percent();
    return {"  " + std::move(period),
            fmt::format("{:.7g}", c.reference),
            fmt::format("{:.7g}", c.device),
            c.difference() == 0.0 ? "0" : fmt::format("{:+.4g}", c.difference()),
            percent(c.percent()),
            root ? fmt::format("{:.4f}", *root) : "-"};
}

struct Printer {
    const Settings& settings;
    TimeKind kind;
    bool hours;
    bool exceeded = false, nothing = false;  // nothing: a channel with rows and nothing to compare

    [[nodiscard]] double start_of(const ChannelRows& rows, const Row& row) const {
        return settings.stamped_at_end ? row.time_s - rows.interval_s : row.time_s;
    }
    [[nodiscard]] double day_of(const Channel& channel, const ChannelRows& rows, const Row& row) const {
        const double starts_s = settings.day_starts_h.value_or(channel.contract_hour) * hour_s;
        return std::floor((start_of(rows, row) - starts_s) / day_s) * day_s;
    }
    [[nodiscard]] std::string day_name(double day) const {
        const std::string text = station::print_time(kind, std::max(day, 0.0));
        return "day " + (kind == TimeKind::date ? text.substr(0, 10) : text);
    }

    // Days, sum and worst row of one integrator; false when no row has both amounts.
    bool integrator(const Channel& channel, const ChannelRows& all, std::size_t k) {
        const station::Integrator& one = station::integrator(channel.medium, k);
        std::vector<std::vector<std::string>> table{{fmt::format("  {}, {}", one.name, one.unit), "recomputed",
                                                     "device", "difference", "%", "root, %"}};
        Compared sum, worst, day;
        double day_at = 0.0, worst_at = 0.0;
        const auto close_day = [&] {
            if (day.intervals > 0 && all.interval_s < day_s) table.push_back(line(day_name(day_at), day));
            day = {};
        };
        for (const Row& row : all.rows) {
            if (!row.device[k] || !row.reference[k]) continue;
            Compared here;
            here.add(*row.reference[k], *row.device[k], row.root);
            if (const double at = day_of(channel, all, row); at != day_at || day.intervals == 0) {
                close_day();
                day_at = at;
            }
            day.add(*row.reference[k], *row.device[k], row.root);
            sum.add(*row.reference[k], *row.device[k], row.root);
            if (hours) table.push_back(line(station::print_time(kind, row.time_s), here));
            if (worst.intervals > 0 && std::fabs(here.difference()) <= std::fabs(worst.difference())) continue;
            worst = here;
            worst_at = row.time_s;
        }
        close_day();
        if (sum.intervals == 0) return false;
        table.push_back(line("worst " + station::print_time(kind, worst_at), worst));
        table.push_back(line(fmt::format("sum of {}", sum.intervals), sum));
        fmt::print("{}", aligned(table, 1));
        if (settings.limit_pct && !(std::fabs(sum.percent().value_or(100.0)) <= *settings.limit_pct))
            exceeded = true;
        return true;
    }

    void channel(const Channel& c, const ChannelRows& all) {
        const auto count = [&](auto which) { return std::ranges::count_if(all.rows, which); };
        const auto refused = count([](const Row& row) { return !row.refused.empty(); });
        const auto without = count([](const Row& row) {
            return std::ranges::none_of(row.device, [](const auto& amount) { return amount.has_value(); });
        });
        std::size_t missing = 0;
        for (const metering::Hole& hole : all.holes) missing += hole.intervals;
        const std::string_view unit = all.interval_s == hour_s ? "hours" : "days";
        fmt::print("{}: {} {}, {} refused by the library, {} without an amount of the device, {} missing\n",
                   c.name, all.rows.size(), unit, refused, without, missing);
        constexpr std::size_t most_lines = 20;
        for (std::size_t k = 0; k < std::min(all.holes.size(), most_lines); ++k)
            fmt::print("  missing: {} from {} to {}\n", all.holes[k].intervals,
                       station::print_time(kind, all.holes[k].from_s),
                       station::print_time(kind, all.holes[k].to_s));
        if (all.holes.size() > most_lines) fmt::print("  and {} more holes\n", all.holes.size() - most_lines);
        not_compared(c, all, refused);
        bool any = false;
        for (std::size_t k = 0; k < station::integrator_count(c.medium); ++k) any |= integrator(c, all, k);
        if (any) return root(c, all);
        fmt::print("  nothing to compare\n");
        nothing = true;
    }

    // Amounts that the device counted while the library refuses the means: in no sum.
    void not_compared(const Channel& c, const ChannelRows& all, std::ptrdiff_t refused) const {
        if (refused == 0) return;
        std::array<double, station::most_integrators> lost{};
        bool first = true;
        for (const Row& row : all.rows) {
            if (row.refused.empty()) continue;
            if (first || hours)
                fmt::print("  refused{} {}: {}\n", first && !hours ? " first" : "",
                           station::print_time(kind, row.time_s), row.refused);
            first = false;
            for (std::size_t k = 0; k < lost.size(); ++k) lost[k] += row.device[k].value_or(0.0);
        }
        std::string amounts;
        for (std::size_t k = 0; k < station::integrator_count(c.medium); ++k)
            amounts += fmt::format("{}{} {:.7g} {}", k == 0 ? "" : ", ", station::integrator(c.medium, k).name,
                                   lost[k], station::integrator(c.medium, k).unit);
        fmt::print("  the device counted there, in no sum below: {}\n", amounts);
    }

    static void root(const Channel& c, const ChannelRows& all) {
        if (station::is_meter(c.device)) return;
        const auto bounded =
            std::ranges::count_if(all.rows, [](const Row& row) { return row.root.has_value(); });
        fmt::print("  A mean dp gives more than the mean of the root, which a device counts in every cycle.\n");
        if (bounded == 0)
            fmt::print(
                "  The archive tells no spread of dp, so that this is not bounded: a standard deviation of "
                "10 %\n  of dp makes about 0.13 %, at most 0.5 %; one of 30 % about 1.1 %, at most 4.2 %.\n");
        else
            fmt::print(
                "  By the spread in {} of {} rows the device may lie below by the last column at most for "
                "it.\n",
                bounded, all.rows.size());
    }
};

std::string csv(const Station& s, const std::vector<ChannelRows>& all, TimeKind kind) {
    std::string out = fmt::format(
        "{},channel,integrator,unit,recomputed,device,difference,difference_pct,root_at_most_pct,refused\n",
        kind == TimeKind::date ? "time" : "time_s");
    const auto cell = [](const std::optional<double>& value) { return value ? fmt::format("{}", *value) : ""; };
    for (std::size_t i = 0; i < all.size(); ++i)
        for (const Row& row : all[i].rows)
            for (std::size_t k = 0; k < station::integrator_count(s.channels[i].medium); ++k) {
                if (!row.device[k]) continue;
                Compared here;
                if (row.reference[k]) here.add(*row.reference[k], *row.device[k], row.root);
                const bool both = here.intervals > 0;
                const station::Integrator& one = station::integrator(s.channels[i].medium, k);
                out += fmt::format("{},{},{},{},{},{},{},{},{},{}\n", station::print_time(kind, row.time_s),
                                   s.channels[i].name, one.name, one.unit, cell(row.reference[k]),
                                   cell(row.device[k]), both ? fmt::format("{}", here.difference()) : "",
                                   both ? cell(here.percent()) : "", both ? cell(here.root_percent()) : "",
                                   csv_text(row.refused));
            }
    return out;
}

// Init to Done: the gas tables are released however it ends.
struct SessionEnd {
    void operator()(const host::Library* library) const { (*library)->Done(); }
};

int run(const Installation& files, const Request& request) {
    const Settings settings = read_settings(request);
    keep_apart({{"STATION", request.station_file},
                {"ARCHIVE", request.archive},
                {"--lib", files.library},
                {"--gas-data", files.gas_data}},
               {{"--csv", request.csv}});
    const host::Runtime runtime(files.gas_data);
    const host::Library library(files.library);
    const Station s = station::read_station(library, request.station_file);
    if (std::ranges::any_of(s.channels, &Channel::needs_gas_data)) gasdat::require_gas_data(files.gas_data);
    std::ifstream in = open_regular(request.archive);
    if (!in) throw InputError(request.archive, ": cannot read this archive: ", why_unreadable(request.archive));
    station::Readings archive(s, in, request.archive, decimal_mark(request.decimal), archive_columns());
    require_amounts(archive);
    if (library->Init() != 1) throw InputError("the library refuses to initialise");
    const std::unique_ptr<const host::Library, SessionEnd> session(&library);
    for (const Channel& channel : s.channels) station::set_up(library, s, channel);
    station::set_up_contents(library, s);
    station::prime_gas_state(library, s);
    std::vector<ChannelRows> all = recompute(library, s, archive);
    if (std::ranges::all_of(all, [](const ChannelRows& one) { return one.rows.empty(); }))
        throw InputError(request.archive, ": holds no rows");
    archive.warn_of_end();
    find_holes(settings, s, request.archive, all);
    if (!request.csv.empty()) write_file(request.csv, csv(s, all, archive.time_kind()));
    Printer printer{settings, archive.time_kind(), request.hours};
    std::vector<std::string> without;
    for (std::size_t i = 0; i < all.size(); ++i)
        all[i].rows.empty() ? without.push_back(s.channels[i].name) : printer.channel(s.channels[i], all[i]);
    if (!without.empty()) fmt::print("no rows of {}\n", joined(without));
    return printer.exceeded || printer.nothing ? 1 : 0;
}

}  // namespace

Command audit_command() {
    const auto request = std::make_shared<Request>();
    return {
        "audit",
        "The archive of a device, recomputed from its own means and compared.",
        "ARCHIVE.csv has a row an hour (or a day) and channel: the columns of readings\n"
        "(kalorfix run --help), here the means, and the device's own amounts of that time:\n  " +
            std::string(
                "mass_t or mass_kg, volume_m3, standard_volume_m3 or _1000m3, energy_GJ or _MJ,\n"
                "  heat_GJ or _Gcal; an empty cell is an amount that is not told.\n"
                "The spread of dp within a row, where the archive has it: dp_min_kPa and dp_max_kPa,\n"
                "or dp_sd_kPa (standard deviation), in Pa too. It bounds by how much the root of a mean\n"
                "lies above the mean of the root.\n\n"
                "Prints the difference of each day, of the worst row and of the sum, what is missing and\n"
                "what the library refuses: such rows are in no sum. Exit status 1 when a sum differs by\n"
                "more than --limit or a channel has nothing to compare, 2 for bad input."),
        {{"STATION", "STATION.ini", "station file: a section a channel", &request->station_file, true},
         {"ARCHIVE", "ARCHIVE.csv", "means and amounts, a row an interval and channel", &request->archive,
          true},
         {"--hours", "", "print every row, and why it is refused", &request->hours},
         {"--csv", "FILE", "every row and integrator as a line, with all digits", &request->csv},
         {"--interval", "hour|day", "length of a row (default: as far apart as they are)", &request->interval},
         {"--stamp", "start|end", "what the time of a row is of its interval (start)", &request->stamp},
         {"--day-starts", "HOUR", "hour at which a day begins (the contract hour\nof the channel)",
          &request->day_starts},
         {"--decimal", "MARK", "comma or point, where 1,234 can be 1234 as well", &request->decimal},
         {"--limit", "PERCENT", "permitted difference of a sum", &request->limit}},
        {},
        [request](const Installation& files) { return run(files, *request); }};
}

}  // namespace kalorfix::tool
