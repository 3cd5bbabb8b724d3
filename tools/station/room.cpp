// SPDX-License-Identifier: MIT
#include "tools/station/room.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "runtime/units.h"
#include "tools/station/station_keys.h"

namespace kalorfix::tool::station {
namespace {

constexpr double wrap = 1e6, day_s = 86400.0, s_per_hour = 3600.0, min_per_hour = 60.0;
constexpr int most_decades = 9;

double units_of(const Accounting& accounting) { return std::pow(10.0, accounting.exponent); }

// The exponent with which an amount stays below 10^6.
std::string key_for(const Integrator& one, double amount) {
    int decades = 0;
    while (amount >= wrap * std::pow(10.0, decades)) ++decades;
    if (decades > most_decades) return fmt::format("no {} would do", exponent_key(one));
    return fmt::format("{} = {} would do", exponent_key(one), decades);
}

// Largest flow of an integrator and the time of its reading.
struct Peak {
    double flow = 0.0, time_s = 0.0;
};
std::array<Peak, most_integrators> peaks_of(const host::Library& library, const Channel& c,
                                            const std::vector<Measured>& rows) {
    std::array<Peak, most_integrators> all{};
    for (const Measured& row : rows) {
        const Outcome out = run_steps(library, c, row);
        if (out.reached != Step::totals && c.device != external_flow) continue;
        const auto& flows = c.device == external_flow ? out.input.external : out.q;
        for (std::size_t k = 0; k < all.size(); ++k)
            if (const auto q = static_cast<double>(flows[k]); q > all[k].flow) all[k] = {q, row.time_s};
    }
    return all;
}

}  // namespace

void Peaks::note(const Measured& row, const Channel& channel) {
    const double reading = row[measured_by(channel)];
    const double T = row[Quantity::t_C] + units::zero_celsius_K, p = row[Quantity::p_Pa];
    // Density rises with p/T: mass flow goes with the one, volume flow with the other.
    const std::array<double, 3 + most_integrators> now{
        reading,
        reading * p / T,
        reading * T / p,
        row[Quantity::mass],
        row[Quantity::volume],
        row[channel.is_gas() ? Quantity::standard : Quantity::heat],
        row[Quantity::energy]};
    rows.resize(now.size(), row);
    for (std::size_t k = 0; k < now.size(); ++k)
        if (now[k] > largest_[k] && std::isfinite(now[k])) {
            largest_[k] = now[k];
            rows[k] = row;
        }
}

void Peaks::note_step(double seconds) {
    longest_step_s = std::max(longest_step_s, seconds);
    since_s_ += seconds;
    longest_day_s = std::max(longest_day_s, since_s_);
    if (since_s_ >= day_s) since_s_ = 0.0;
}

void require_room(const host::Library& library, const Station& station, const std::vector<Peaks>& peaks,
                  TimeKind kind, double downtime_min) {
    std::string lacking;
    for (std::size_t i = 0; i < peaks.size(); ++i) {
        const Channel& c = station.channels[i];
        const std::array<Peak, most_integrators> largest = peaks_of(library, c, peaks[i].rows);
        if (peaks[i].longest_step_s == 0.0 && downtime_min == 0.0) continue;  // no time, no amounts
        const double longest_s = peaks[i].longest_day_s;
        for (std::size_t k = 0; k < integrator_count(c.medium); ++k) {
            const Integrator& one = integrator(c.medium, k);
            const double filled = peaks[i].rows.empty() ? 0.0
                                                        : static_cast<double>(c.accounting[k].substitute) *
                                                              downtime_min / min_per_hour;
            const double amount = largest[k].flow * longest_s / s_per_hour + filled;
            if (amount < wrap * units_of(c.accounting[k])) continue;
            lacking += fmt::format(
                "{}[{}] {:.7g} {} at {} bring {:.7g} {} in {} s{}: {}{}", lacking.empty() ? "" : "; ", c.name,
                largest[k].flow, one.flow_unit, print_time(kind, largest[k].time_s), amount, one.unit,
                plain(longest_s), filled > 0.0 ? " and a downtime" : "", key_for(one, amount),
                peaks[i].longest_step_s > day_s ? ", or --longest-step to leave such steps out" : "");
        }
    }
    if (!lacking.empty())
        throw InputError(station.file, ": a day must stay below 10^6 units of its register: ", lacking);
}

Room::Room(const Station& station, const Channel& channel, const Registers& registers)
    : station_(station), channel_(channel) {
    for (std::size_t k = 0; k < registers.size(); ++k) {
        unit_[k] = units_of(channel.accounting[k]);
        for (std::size_t set = 0; set < since_[k].size(); ++set) {
            const Interval& interval = registers[k].interval[set];
            running_[k][set] = interval.time_s != 0.0F;
            const double since = static_cast<double>(registers[k].total) - static_cast<double>(interval.start);
            since_[k][set] = !running_[k][set] ? 0.0 : since < 0.0 ? since + wrap : since;
        }
    }
}

void Room::add(const Outcome& outcome, const Registers& registers) {
    for (std::size_t k = 0; k < integrator_count(channel_.medium); ++k) {
        const double increment = (outcome.counted[k] + outcome.filled[k]) / unit_[k];
        for (std::size_t set = 0; set < since_[k].size(); ++set) {
            double& since = since_[k][set];
            const Interval& interval = registers[k].interval[set];
            // What the step brought that opened an interval is not in it.
            if (running_[k][set]) since += increment;
            running_[k][set] = interval.time_s != 0.0F;
            if (since >= wrap) {
                const Integrator& one = integrator(channel_.medium, k);
                throw InputError(
                    station_.file, ": [", channel_.name, "] ", one.name, ": ", set == 0 ? "an hour" : "a day",
                    " has come to 10^6 units of its register or more; ", key_for(one, since * unit_[k]));
            }
            if (interval.closed) since = 0.0;
        }
    }
}

}  // namespace kalorfix::tool::station
