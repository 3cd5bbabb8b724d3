// SPDX-License-Identifier: MIT
#include "tools/station/run.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <numeric>

#include "tools/commands.h"
#include "tools/fold.h"
#include "tools/gasdat/gas_file.h"
#include "tools/runtime.h"
#include "tools/separate_files.h"
#include "tools/simulated_clock.h"
#include "tools/spreadsheet.h"
#include "tools/station/example.h"
#include "tools/station/progress.h"
#include "tools/station/readings.h"
#include "tools/station/readings_stream.h"
#include "tools/station/room.h"
#include "tools/station/station_keys.h"
#include "tools/station/stops.h"
#include "tools/text.h"

namespace kalorfix::tool {
namespace station {
namespace {

constexpr double s_per_min = 60.0;
volatile std::sig_atomic_t signal_received = 0;

void on_signal(int signal) { signal_received = signal; }

// An interruption ends the run between two cycles; so does the end of the terminal, unless nohup has it ignored.
void watch_signals() {
    signal_received = 0;
    struct sigaction act {};
    act.sa_handler = on_signal;  // no SA_RESTART: a waiting read ends
    sigaction(SIGINT, &act, nullptr);
    sigaction(SIGTERM, &act, nullptr);
    struct sigaction before {};
    if (sigaction(SIGHUP, nullptr, &before) == 0 && before.sa_handler != SIG_IGN)
        sigaction(SIGHUP, &act, nullptr);
}

// Init to Done: the gas tables are released however the run ends.
struct SessionEnd {
    void operator()(const host::Library* library) const { (*library)->Done(); }
};
using Session = std::unique_ptr<const host::Library, SessionEnd>;

// What the walks through the readings share.
struct Job {
    const Station& station;
    Readings& readings;
    StationRegisters registers;
    double downtime_min;
    std::uint64_t bytes = 0;  // of the readings
    std::vector<std::optional<double>>
        first_s{};  // time of each channel's first reading that is to be computed
    std::vector<TemperatureSpan> temperatures{};
    std::vector<Peaks> peaks{};  // of the same readings

    // A channel counts its time from the moment it is made: the last reading of the run before, or its own first one.
    [[nodiscard]] double made_s(std::size_t i) const {
        const std::optional<double>& last = registers[i].last_s;
        return last ? *last + downtime_min * s_per_min : first_s[i].value_or(0.0);
    }
};

// Whether the registers hold a reading already: a run goes on from them with the same readings or with later ones.
bool is_counted(const ChannelRegisters& registers, const Measured& row) {
    return registers.last_s && row.time_s <= *registers.last_s;
}

// Times of another offset would be passed over as counted, or leave a hole that is none.
void require_one_clock(const Job& job) {
    const std::optional<int> now = job.readings.offset_s();
    for (const ChannelRegisters& one : job.registers)
        if (now && one.offset_s && *now != *one.offset_s)
            throw InputError(job.readings.name(), ": the times have the offset ", print_offset(*now),
                             " from UTC, those of the registers ", print_offset(*one.offset_s),
                             "; say the station's own, such as zone = +03:00 in a section [STATION]");
}

// The first walk through the readings: every mistake is found before anything is written.
void check(Job& job) {
    job.first_s.resize(job.station.channels.size());
    job.temperatures.resize(job.station.channels.size());
    job.peaks.resize(job.station.channels.size());
    std::vector<std::optional<double>> counted_to(job.station.channels.size());
    Measured row;
    bool any = false;
    while (!signal_received && job.readings.next(row)) {
        if (!any) require_one_clock(job);
        any = true;
        job.temperatures[row.channel].add(row[Quantity::t_C]);
        if (is_counted(job.registers[row.channel], row)) continue;
        std::optional<double>& first = job.first_s[row.channel];
        if (!first) first = row.time_s;
        const Channel& channel = job.station.channels[row.channel];
        const double from_s = counted_to[row.channel].value_or(job.made_s(row.channel));
        counted_to[row.channel] = row.time_s;
        const Elapsed elapsed{row.time_s - from_s, channel.longest_step_s};
        if (elapsed.seconds > longest_gap_s)
            throw InputError(job.readings.name(), ": ", print_time(job.readings.time_kind(), row.time_s),
                             " lies more than ", longest_gap_s / 86400.0, " days after what the registers of ",
                             channel.name, " hold; begin anew without --continue");
        if (!elapsed.is_passed_over()) job.peaks[row.channel].note_step(elapsed.seconds);
        job.peaks[row.channel].note(row, channel);
    }
    if (!any && !signal_received)
        throw InputError(job.readings.name(), ": holds no readings below its heading");
    job.bytes = job.readings.bytes_read();
    const auto given = [](const std::optional<double>& first) { return first.has_value(); };
    if (any && !signal_received && std::ranges::none_of(job.first_s, given))
        throw InputError(job.readings.name(), ": the registers of --continue hold all these readings already");
    for (std::size_t i = 0; i < job.station.channels.size(); ++i) {
        if (!job.registers[i].last_s || !job.first_s[i]) continue;
        const double gap_min = (*job.first_s[i] - *job.registers[i].last_s) / s_per_min;
        if (gap_min < job.downtime_min)
            throw InputError("--downtime ", job.downtime_min, ": only ", gap_min,
                             " minutes lie between the last reading of ", job.station.channels[i].name,
                             " and its next");
    }
}

// The channels of a medium come into being in ascending order, lower numbers with the higher ones.
void set_up_all(const host::Library& library, const Job& job, SimulatedClock& clock) {
    std::vector<std::size_t> order(job.station.channels.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::sort(order, {}, [&](std::size_t i) { return job.station.channels[i].number; });
    for (const std::size_t i : order) {
        clock.set(job.made_s(i));
        set_up(library, job.station, job.station.channels[i]);
    }
    set_up_contents(library, job.station);
}

void note(ChannelSummary& summary, const Measured& row, const Outcome& outcome, const Elapsed& elapsed,
          TimeKind kind) {
    if (outcome.at_rest && outcome.reached == Step::done) {
        ++summary.at_rest;
        summary.lowest_dp_Pa = std::min(summary.lowest_dp_Pa, outcome.input.dp);
    }
    if (elapsed.seconds > summary.longest_s) {
        summary.longest_s = elapsed.seconds;
        summary.longest_end_s = row.time_s;
        summary.longest_counted = outcome.accepted > 0;
        summary.longest_amount = outcome.counted;
    }
    if (elapsed.is_passed_over()) {
        ++summary.passed_over;
        summary.passed_over_s += elapsed.seconds;
    }
    if (outcome.reached == Step::done) {
        ++summary.computed;
    } else if (++summary.refused == 1) {
        summary.first_refusal =
            fmt::format("{}, {}: {}", print_time(kind, row.time_s), step_name(outcome.reached), outcome.reason);
    }
}

// What a run tells of its channels when it has ended.
struct Account {
    std::vector<ChannelSummary> summaries;
    std::vector<Calendar> calendars;
};

// The second walk: every reading through the library.
Account compute(const host::Library& library, Job& job, SimulatedClock& clock, Results& results,
                bool progress_wanted) {
    Account account;
    std::vector<double> made;  // the registers at hand tell it only before the first cycle
    std::vector<Room> rooms;
    for (std::size_t i = 0; i < job.station.channels.size(); ++i) {
        account.calendars.emplace_back(job.station.channels[i].contract_hour);
        made.push_back(job.made_s(i));
        rooms.emplace_back(job.station, job.station.channels[i], job.registers[i].reg);
    }
    account.summaries.resize(job.station.channels.size());
    std::vector<double> counted_to = made;
    Progress progress(job.bytes, progress_wanted);
    Measured row;
    job.readings.rewind();
    while (!signal_received && job.readings.bytes_read() < job.bytes && job.readings.next(row)) {
        const Channel& channel = job.station.channels[row.channel];
        ChannelRegisters& kept = job.registers[row.channel];
        progress.at(job.readings.bytes_read());
        if (is_counted(kept, row)) {
            ++account.summaries[row.channel].held;
            continue;
        }
        clock.set(row.time_s);
        double& from_s = counted_to[row.channel];
        const Elapsed elapsed{row.time_s - from_s, channel.longest_step_s};
        const Outcome outcome = run_cycle(library, channel, row, elapsed, kept.reg);
        rooms[row.channel].add(outcome, kept.reg);
        const double made_s = made[row.channel];
        Calendar& calendar = account.calendars[row.channel];
        calendar.add(from_s, row.time_s, outcome.counted, outcome.accepted == integrator_count(channel.medium));
        if (outcome.filled != Amounts{})
            calendar.add(made_s - job.downtime_min * s_per_min, made_s, outcome.filled, false);
        from_s = kept.last_s.emplace(row.time_s);
        kept.offset_s = job.readings.offset_s();
        note(account.summaries[row.channel], row, outcome, elapsed, job.readings.time_kind());
        results.cycle({channel, row, outcome, kept.reg});
    }
    if (!signal_received && job.readings.bytes_read() < job.bytes)
        throw InputError(job.readings.name(), ": has become shorter while it was read");
    return account;
}

constexpr int by_signal = 128;

std::string cause(int signal) {
    if (signal == SIGINT) return "interrupted";
    return signal == SIGHUP ? "hung up" : "terminated";
}

void tell(const std::string& what) { std::fprintf(stderr, "kalorfix: %s\n", printable(what).c_str()); }

int nothing_done(int signal) {
    tell(cause(signal) + " before the first cycle; nothing is written");
    return by_signal + signal;
}

// Time of the last reading that the registers hold; empty when they hold none.
std::string latest(const StationRegisters& registers, TimeKind kind) {
    std::optional<double> last;
    for (const ChannelRegisters& one : registers) last = std::max(last, one.last_s);
    return last ? print_time(kind, *last) : "";
}

std::string how_to_go_on(int signal, const RunRequest& request, const std::string& until) {
    std::string text =
        cause(signal) + (until.empty() ? " before the first reading" : " after the reading of " + until);
    const std::string& file = request.registers_file.empty() ? request.out : request.registers_file;
    if (request.registers_file.empty() && request.format == "json")
        return text + "; there are no registers in JSON to go on from";
    return text + "; go on with --continue " +
           (file.empty() ? "and the file of these results" : printable(file)) +
           (request.registers_file.empty() || request.out.empty() ? "" : " and another --out");
}

// The registers may go on in their own file; else what is read is not written.
void keep_files_apart(const Installation& files, const RunRequest& request, const Station& station) {
    std::vector<NamedFile> inputs{{"STATION", request.station_file},
                                  {"READINGS", request.readings},
                                  {"--lib", files.library},
                                  {"--gas-data", files.gas_data}};
    for (const Channel& channel : station.channels)
        inputs.push_back({"the composition of " + channel.name, channel.gas.composition_file});
    const NamedFile registers{"--registers", request.registers_file};
    keep_apart(inputs, {registers});
    inputs.push_back({"--continue", request.continue_file});
    keep_apart(inputs, {{"--out", request.out}});
    keep_apart({}, {{"--out", request.out}, registers});
}

std::unique_ptr<Results> results_of(const RunRequest& request, const Station& station, TimeKind kind,
                                    OutputFile& out) {
    const bool terminal = request.out.empty() && isatty(STDOUT_FILENO) == 1;
    constexpr std::size_t table_width = 128;
    if (request.decimal_commas) return make_results("csv_commas", station, kind, out);
    const std::string format = !request.format.empty() ? request.format : terminal ? "table" : "csv";
    const bool folded = terminal && narrow_terminal(table_width) && format != "csv" && format != "json";
    return make_results(folded ? format + "_folded" : format, station, kind, out);
}

// Everything that can be wrong with the request itself; the minutes of the downtime.
double check_request(const RunRequest& request) {
    constexpr std::array<std::string_view, 6> formats{"", "table", "csv", "json", "hours", "days"};
    constexpr Limits downtime_min{0.0, 500000.0, ""};
    if (request.station_file.empty() || request.readings.empty())
        throw InputError(
            "give a station file and readings, such as run station.ini readings.csv; run --example DIR writes "
            "both to start from");
    if (std::ranges::find(formats, request.format) == formats.end())
        throw InputError("--format: there are table, csv, json, hours and days, not '", request.format, "'");
    static_cast<void>(decimal_mark(request.decimal));
    if (request.decimal_commas && !request.format.empty() && request.format != "csv")
        throw InputError("--decimal-commas: has no meaning with --format ", request.format, "; leave it out");
    const std::optional<double> minutes = number_within(request.downtime, downtime_min);
    if (!minutes)
        throw InputError("--downtime: expected minutes within ", downtime_min.text(), ", not '",
                         request.downtime, "'");
    return *minutes;
}

void take_longest_step(const RunRequest& request, Station& station) {
    if (request.longest_step.empty()) return;
    const std::optional<double> longest_s = number_within(request.longest_step, longest_step);
    if (!longest_s) throw InputError("--longest-step: ", expected_within(request.longest_step, longest_step));
    for (Channel& channel : station.channels) channel.longest_step_s = *longest_s;
}

}  // namespace

int run(const Installation& files, const RunRequest& request, const ResultsMaker& make) {
    const double downtime_min = check_request(request);
    keep_files_apart(files, request, {});
    watch_signals();
    const host::Runtime runtime(files.gas_data);
    const host::Library library(files.library);
    Station station = read_station(library, request.station_file);
    take_longest_step(request, station);
    const bool needs_gas_data = std::ranges::any_of(station.channels, &Channel::needs_gas_data);
    // The demo goes without.
    if (needs_gas_data && !(make && files.gas_data.empty())) gasdat::require_gas_data(files.gas_data);

    keep_files_apart(files, request, station);

    const std::unique_ptr<std::istream> in = open_readings(request.readings, signal_received);
    const int interrupted_copying = signal_received;
    if (interrupted_copying && (!in || in->peek() == std::istream::traits_type::eof()))
        return nothing_done(interrupted_copying);
    signal_received = 0;
    Readings readings(station, *in, request.readings, decimal_mark(request.decimal));
    const TimeKind kind = readings.time_kind();
    Job job{station, readings, StationRegisters(station.channels.size()), downtime_min};
    if (!request.continue_file.empty()) job.registers = read_registers(request.continue_file, station, kind);
    check(job);
    if (signal_received) return nothing_done(signal_received);
    readings.warn_of_end();
    name_stops(station, job.temperatures);

    OutputFile out(request.out);
    std::optional<OutputFile> register_file;
    if (!request.registers_file.empty()) register_file.emplace(request.registers_file);

    SimulatedClock clock;
    if (library->Init() != 1) throw InputError("the library refuses to initialise");
    const Session session(&library);
    *library->ProstoyTime = downtime_min;
    set_up_all(library, job, clock);
    require_room(library, station, job.peaks, kind, downtime_min);
    prime_gas_state(library, station);

    const std::unique_ptr<Results> results =
        make ? make(station, kind, out) : results_of(request, station, kind, out);
    // On a terminal the results themselves show how far the run has come.
    const bool progress_wanted = !request.out.empty() || isatty(STDOUT_FILENO) == 0;
    results->begin();
    const Account account = compute(library, job, clock, *results, progress_wanted);
    const int ended_by = signal_received ? static_cast<int>(signal_received) : interrupted_copying;
    const std::string interrupted = ended_by == 0 ? ""
                                    : make        ? cause(ended_by)
                                           : how_to_go_on(ended_by, request, latest(job.registers, kind));
    require_numbers(station, job.registers);
    results->end({job.registers, account.summaries, account.calendars, interrupted, !register_file});
    if (register_file) register_file->write(print_registers(station, job.registers, kind, ""));
    // Registers that went ahead of lost results could never produce them again.
    out.complete();
    if (register_file) register_file->complete();
    out.finish();
    if (register_file) register_file->finish();
    if (ended_by != 0) {
        tell(interrupted);
        return by_signal + ended_by;
    }
    const bool nothing = std::ranges::any_of(
        account.summaries, [](const ChannelSummary& one) { return one.has_readings() && one.computed == 0; });
    return nothing ? 1 : 0;
}

}  // namespace station

Command run_command() {
    const auto request = std::make_shared<station::RunRequest>();
    Command command{
        "run",
        "A station over a file of readings: flows, totals, hours, days.",
        "STATION.ini has a section [GAS N] or [HEAT N] for each channel, N from 1 to 20000;\n"
        "examples/station.ini explains every key. A wrong, unknown, missing or repeated key\n"
        "is named with its line and what is accepted.\n\n"
        "READINGS.csv begins with a heading: time_s (seconds) or time (2026-03-01T06:00:00,\n"
        "01.03.2026 06:00, +03:00 behind it or not); channel (GAS 1); and, with a unit each:\n" +
            station::column_reference() +
            "Cells are parted by commas, semicolons or tabs, numbers have a decimal point or a\n"
            "decimal comma, as a spreadsheet writes them. Rows are in the order of time.\n\n"
            "Results: state, properties, geometry, factors, flows and registers of each cycle, the\n"
            "amount of each hour and day where it closes (3600 s and 86400 s of computed time, else\n"
            "with their length), those of the calendar at the end with the seconds counted in each,\n"
            "and the longest step between two readings. A refused cycle names the step and the first\n"
            "limit that it broke; its time is passed over. An empty cell or nan is a transmitter that\n"
            "failed: a refused cycle; an external flow that no row of its channel has is none. A\n"
            "station whose day does not fit its registers (10^6 units) is refused with the exponents\n"
            "that would do.\n\n"
            "Exit status 0; 1 when a channel with readings computed nothing; 2 for bad input or a full\n"
            "disk, which leaves the old files; 130 when interrupted (129 by SIGHUP, 143 by SIGTERM):\n"
            "what was computed is kept, with the registers to go on from, and standard error says how.\n\n" +
            station::key_reference(),
        {{"STATION", "STATION.ini", "station file: a section a channel", &request->station_file},
         {"READINGS", "READINGS.csv|-", "measured values: a row a cycle and channel; -\nis standard input",
          &request->readings},
         {"--format", "FORMAT",
          "table (default on a terminal), csv (default\nelsewhere), json (a line each), hours, days "
          "(what\nclosed, and the registers)",
          &request->format},
         {"--decimal", "MARK",
          "comma or point: the decimal mark of the readings,\nwhere 1,234 can be 1234 as well",
          &request->decimal},
         {"--decimal-commas", "", "CSV with semicolons and decimal commas", &request->decimal_commas},
         {"--out", "FILE", "file for the results, complete or not there at all", &request->out},
         {"--registers", "FILE", "file for the registers; else they end the results", &request->registers_file},
         {"--continue", "FILE",
          "go on from the registers that a run left, in their\nfile or in its table or CSV",
          &request->continue_file},
         {"--example", "DIR",
          "write a station, readings and a composition into DIR\nto start from, and do nothing else",
          &request->example},
         {"--longest-step", "SECONDS",
          "longer steps between two readings of a channel are\nnot counted; 0 counts any (default: the key\n"
          "longest_step_s)",
          &request->longest_step},
         {"--downtime", "MINUTES",
          "minutes before the first reading in which the\ncontroller was down, filled with the substitute "
          "flows",
          &request->downtime}}};
    command.run = [request](const Installation& files) {
        if (request->example.empty()) return station::run(files, *request);
        if (!request->station_file.empty())
            throw InputError(request->station_file, ": nothing expected here beside --example");
        station::write_example(request->example);
        return 0;
    };
    return command;
}

}  // namespace kalorfix::tool
