// SPDX-License-Identifier: MIT
// One cycle of a station's channel: the steps in the order of the interface, and what each gave.
#pragma once

#include <array>
#include <string>

#include "tools/station/readings.h"
#include "tools/station/station.h"

namespace kalorfix::tool::station {

enum class Step { state, properties, geometry, flow, totals, done };
[[nodiscard]] const char* step_name(Step step);

/// Hour or day of one integrator, as the host holds it between two cycles.
struct Interval {
    float time_s = 0, start = 0, result = 0;
    bool closed = false;    ///< by the last cycle, with `result`
    double length_s = 0.0;  ///< of the one that closed
};

struct Register {
    float total = 0;
    std::array<Interval, 2> interval{};  ///< hour, day
};
using Registers = std::array<Register, most_integrators>;

/// The measured values as the interface takes them.
struct Input {
    float t_C = 0, p_Pa = 0, dp = 0;                 ///< dp in Pa, or the reading of a meter
    std::array<float, most_integrators> external{};  ///< flows of device 23, per hour
};

/// An amount of each integrator in its unit, whatever the exponent of its register.
using Amounts = std::array<double, most_integrators>;

/// Results of the steps before `reached`; of the refused step what it handed out.
struct Outcome {
    Step reached = Step::state;  ///< the step that was refused, or done
    std::string reason;          ///< empty when done
    bool at_rest = false;        ///< below the cut-off: no flow, the time counts
    std::size_t accepted = 0;    ///< integrators that took the cycle
    Amounts counted{};           ///< over the time since the cycle before
    Amounts filled{};            ///< with the substitute flow, for a downtime
    Input input;
    short phase = 0;
    float ps_MPa = 0, ts_C = 0, h_kJ_kg = 0;                           // heat carrier
    float sum = 0, K = 0, rho_c = 0, lower_heat = 0, higher_heat = 0;  // gas
    float rho = 0, mu_uPas = 0, kappa = 0;
    float D_mm = 0, d_mm = 0, beta = 0, E = 0, K_p = 0;
    float K_sh = 0, C = 0, Re = 0, epsilon = 0;
    std::array<float, most_integrators> q{};  ///< flow of each integrator: mass t/h, volume m3/h, ...

    [[nodiscard]] bool passed(Step step) const { return reached > step; }
};

/// The record of one cycle; the registers are those that it left.
struct Cycle {
    const Channel& channel;
    const Measured& row;
    const Outcome& outcome;
    const Registers& registers;

    [[nodiscard]] bool done() const { return outcome.reached == Step::done; }
};

/// The time that a cycle counts: since the channel's cycle before, or since it was made. Time that is not to be counted is passed over
/// as that of a refused cycle is.
struct Elapsed {
    double seconds = 0.0;
    double longest_s = 0.0;  ///< that may count; 0 for any
    [[nodiscard]] bool is_passed_over() const { return longest_s > 0.0 && seconds > longest_s; }
};

/// Stores the constants of a channel. Throws InputError when the library refuses them.
void set_up(const host::Library& library, const Station& station, const Channel& channel);

/// The same for the spare channel that AGA8-92DC takes its contents from, behind all others. Nothing where no channel has one.
void set_up_contents(const host::Library& library, const Station& station);

/// State and properties of every channel by density once, at a state in mid-range: AGA8-92DC takes its
/// viscosity and exponent with the nitrogen and carbon dioxide that the last such calculation left, so that without it the
/// first cycle would differ from all others.
void prime_gas_state(const host::Library& library, const Station& station);

/// State, properties, geometry and flow, without the totals; `reached` is Step::totals when all succeeded.
[[nodiscard]] Outcome run_steps(const host::Library& library, const Channel& channel, const Measured& row);

/// Why these steps were refused; empty when all succeeded.
[[nodiscard]] std::string refusal_of_steps(const host::Library& library, const Channel& channel,
                                           const Outcome& outcome);

/// Runs a cycle: state, properties, geometry, flow, then totals and both intervals of every integrator.
[[nodiscard]] Outcome run_cycle(const host::Library& library, const Channel& channel, const Measured& row,
                                const Elapsed& elapsed, Registers& registers);

}  // namespace kalorfix::tool::station
