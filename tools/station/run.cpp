#include "tools/station/run.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <numeric>

#include "tools/range.h"
#include "tools/runtime.h"
#include "tools/simulated_clock.h"
#include "tools/station/progress.h"

namespace kalorfix::tool::station {
namespace {

volatile std::sig_atomic_t signal_received = 0;

void on_signal(int signal) { signal_received = signal; }

// While it lives, an interruption ends the run between two cycles, and a closed pipe is a failed write.
class Signals {
public:
    Signals() {
        signal_received = 0;
        struct sigaction act {};
        act.sa_handler = on_signal;  // no SA_RESTART: a waiting read ends
        sigemptyset(&act.sa_mask);
        sigaction(SIGINT, &act, &interrupt_);
        sigaction(SIGTERM, &act, &terminate_);
        act.sa_handler = SIG_IGN;
        sigaction(SIGPIPE, &act, &pipe_);
    }
    ~Signals() {
        sigaction(SIGINT, &interrupt_, nullptr);
        sigaction(SIGTERM, &terminate_, nullptr);
        sigaction(SIGPIPE, &pipe_, nullptr);
    }
    Signals(const Signals&) = delete;
    Signals& operator=(const Signals&) = delete;

private:
    struct sigaction interrupt_ {
    }, terminate_{}, pipe_{};
};

// Init to Done: the gas tables are released however the run ends.
class Session {
public:
    explicit Session(const host::Library& library) : library_(library) {
        if (library_->Init() != 1) throw InputError{"the library refuses to initialise"};
    }
    ~Session() { library_->Done(); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

private:
    const host::Library& library_;
};

bool needs_gas_data(const Station& station) {
    return std::any_of(station.channels.begin(), station.channels.end(), [](const Channel& c) {
        return c.medium == Medium::gas && !is_by_density(c.gas.method);
    });
}

struct Survey {
    std::uint64_t bytes = 0;
    std::vector<std::optional<double>>
        first_s;  ///< time of each channel's first reading that is to be computed
};

// Whether the registers hold a reading already: a run goes on from them with the same readings or with later ones.
bool is_counted(const ChannelRegisters& registers, const Measured& row) {
    return registers.last_s && row.time_s <= *registers.last_s;
}

// The first walk through the readings: every mistake is found before anything is written.
Survey check(const Station& station, Readings& readings, const LineSource& source,
             const StationRegisters& registers) {
    Survey survey{0, std::vector<std::optional<double>>(station.channels.size())};
    Measured row;
    bool any = false;
    while (!signal_received && readings.next(row)) {
        any = true;
        std::optional<double>& first = survey.first_s[row.channel];
        if (!first && !is_counted(registers[row.channel], row)) first = row.time_s;
    }
    survey.bytes = source.bytes_read();
    const auto given = [](const std::optional<double>& first) { return first.has_value(); };
    if (any && !signal_received && std::none_of(survey.first_s.begin(), survey.first_s.end(), given))
        throw InputError{
            fmt::format("{}: the registers of --continue hold all these readings already", source.name())};
    return survey;
}

void check_downtime(double downtime_min, const Station& station, const Survey& survey,
                    const StationRegisters& registers) {
    for (std::size_t i = 0; i < station.channels.size(); ++i) {
        if (!registers[i].last_s || !survey.first_s[i]) continue;
        constexpr double s_per_min = 60.0;
        const double gap_min = (*survey.first_s[i] - *registers[i].last_s) / s_per_min;
        if (gap_min < downtime_min)
            throw InputError{
                fmt::format("--downtime {}: only {} minutes lie between the last reading of {} and its next",
                            downtime_min, gap_min, station.channels[i].name)};
    }
}

// A channel counts its time from the moment it is made: the last reading of the run before, or its own first one. The
// channels of a medium come into being in ascending order, lower numbers with the higher ones.
void set_up_all(const host::Library& library, const Station& station, const Survey& survey,
                const StationRegisters& registers, double downtime_min, SimulatedClock& clock) {
    std::vector<std::size_t> order(station.channels.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return station.channels[a].number < station.channels[b].number;
    });
    for (const std::size_t i : order) {
        constexpr double s_per_min = 60.0;
        const std::optional<double>& last = registers[i].last_s;
        clock.set(last ? *last + downtime_min * s_per_min : survey.first_s[i].value_or(0.0));
        set_up(library, station, station.channels[i]);
    }
}

Format format_of(const RunRequest& request) {
    if (request.format) return *request.format;
    return request.out.empty() && isatty(STDOUT_FILENO) == 1 ? Format::table : Format::csv;
}

void note(ChannelSummary& summary, const Measured& row, const Outcome& outcome, TimeKind kind) {
    if (outcome.reached == Step::done) {
        ++summary.computed;
    } else if (++summary.refused == 1) {
        summary.first_refusal =
            fmt::format("{}, {}: {}", print_time(kind, row.time_s), step_name(outcome.reached), outcome.reason);
    }
}

// The second walk: every reading through the library.
std::vector<ChannelSummary> compute(const host::Library& library, const Station& station, Readings& readings,
                                    const LineSource& source, const Survey& survey, SimulatedClock& clock,
                                    StationRegisters& registers, Results& results, bool progress_wanted) {
    std::vector<ChannelSummary> summaries(station.channels.size());
    Progress progress(survey.bytes, progress_wanted);
    Measured row;
    readings.rewind();
    while (!signal_received && source.bytes_read() < survey.bytes && readings.next(row)) {
        const Channel& channel = station.channels[row.channel];
        ChannelRegisters& kept = registers[row.channel];
        progress.at(source.bytes_read());
        if (is_counted(kept, row)) continue;
        clock.set(row.time_s);
        const Outcome outcome = run_cycle(library, channel, row, kept.reg);
        kept.last_s = row.time_s;
        note(summaries[row.channel], row, outcome, readings.time_kind());
        results.cycle(channel, row, outcome, kept.reg);
    }
    return summaries;
}

}  // namespace

int run(const std::string& library_file, const std::string& gas_data_file, const RunRequest& request) {
    if (request.station_file.empty() || request.readings.empty())
        throw InputError{
            "give a station file and readings, such as run station.ini readings.csv; see kalorfix run --help"};
    if (!request.out.empty() && request.out == request.registers_file)
        throw InputError{fmt::format("--registers {}: is the file of --out already", request.out)};
    const Signals signals;
    const host::Runtime runtime(gas_data_file);
    const host::Library library(library_file);
    const Station station = read_station(library, request.station_file);
    if (gas_data_file.empty() && needs_gas_data(station))
        throw InputError{
            "--gas-data: there is no gas.dat beside the library, which methods by composition need; give the "
            "file"};

    LineSource source(request.readings, signal_received);
    const int interrupted_copying = signal_received;
    signal_received = 0;
    Readings readings(station, source);
    const TimeKind kind = readings.time_kind();
    StationRegisters registers(station.channels.size());
    if (!request.continue_file.empty()) registers = read_registers(request.continue_file, station, kind);
    const Survey survey = check(station, readings, source, registers);
    check_downtime(request.downtime_min, station, survey, registers);

    OutputFile out(request.out);
    std::optional<OutputFile> register_file;
    if (!request.registers_file.empty()) register_file.emplace(request.registers_file);

    SimulatedClock clock;
    const Session session(library);
    *library->ProstoyTime = request.downtime_min;
    set_up_all(library, station, survey, registers, request.downtime_min, clock);
    prime_gas_state(library, station);

    const std::unique_ptr<Results> results = make_results(format_of(request), station, kind, out);
    // On a terminal the results themselves show how far the run has come.
    const bool progress_wanted = !request.out.empty() || isatty(STDOUT_FILENO) == 0;
    results->begin();
    const std::vector<ChannelSummary> summaries =
        compute(library, station, readings, source, survey, clock, registers, *results, progress_wanted);
    const int ended_by = signal_received ? static_cast<int>(signal_received) : interrupted_copying;
    results->end(registers, summaries, ended_by != 0, !register_file);
    if (register_file) {
        register_file->write(print_registers(station, registers, kind, ""));
        register_file->finish();
    }
    out.finish();
    constexpr int by_signal = 128;
    return ended_by == 0 ? 0 : by_signal + ended_by;
}

}  // namespace kalorfix::tool::station
