// SPDX-License-Identifier: MIT
#include "tools/station/cycle.h"

#include <fmt/format.h>

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>

#include "tools/station/diagnosis.h"
#include "tools/units.h"

namespace kalorfix::tool::station {
namespace {

constexpr char at_rest = 0, compute = 1;  // calc

Input input_of(const Channel& c, const Measured& row) {
    Input in;
    in.t_C = static_cast<float>(row[Quantity::t_C]);
    in.p_Pa = static_cast<float>(row[Quantity::p_Pa]);
    in.dp = static_cast<float>(row[measured_by(c)]);
    const std::array<Quantity, most_integrators> flows{
        Quantity::mass, Quantity::volume, c.is_gas() ? Quantity::standard : Quantity::heat, Quantity::energy};
    for (std::size_t k = 0; k < integrator_count(c.medium); ++k)
        in.external[k] = static_cast<float>(row[flows[k]]);
    return in;
}

// A method by density on the spare channel leaves nitrogen and carbon dioxide, mole per cent, where AGA8-92DC looks for them.
void leave_contents(const host::Library& library, const Channel& c, const Outcome& in) {
    constexpr float any_density = 0.7F, percent = 100.0F;
    std::array<float, 15> x{};
    for (const std::size_t i : {nitrogen, carbon_dioxide}) x[i] = c.gas.x[i];
    if (c.gas.volume_fractions) {
        std::apply(library->PF1_2, c.gas.x);
        for (const std::size_t i : {nitrogen, carbon_dioxide}) x[i] = percent * library->gas.Xi[i];
    }
    char status = 0;
    float sum = 0, K = 0, rho_c = 0;
    const auto by_density = [&](auto... one) {
        library->mg_param_gs(c.contents_channel, in.input.t_C, in.input.p_Pa, c.column_density,
                             c.column_height_m, KALORFIX_GERG91, 0, one..., any_density, &status, &sum, &K,
                             &rho_c);
    };
    std::apply(by_density, x);
}

bool gas_state(const host::Library& library, const Channel& c, Outcome& out) {
    if (c.contents_channel != 0) leave_contents(library, c, out);
    char status = 0;
    const auto param_gs = [&](auto... x) {
        library->mg_param_gs(c.number, out.input.t_C, out.input.p_Pa, c.column_density, c.column_height_m,
                             c.gas.method, c.gas.volume_fractions ? 1 : 0, x..., c.gas.rho_c, &status, &out.sum,
                             &out.K, &out.rho_c);
    };
    std::apply(param_gs, c.gas.x);
    return status == 1;
}

bool gas_properties(const host::Library& library, const Channel& c, Outcome& out) {
    char status = 0;
    library->mg_tf_param(c.number, c.gas.heat_unit, c.gas.heat_basis, c.gas.vapour, &status, &out.rho,
                         &out.mu_uPas, &out.kappa, &out.lower_heat, &out.higher_heat);
    return status == 1;
}

bool state(const host::Library& library, const Channel& c, Outcome& out) {
    if (c.is_gas()) return gas_state(library, c, out);
    char status = 0;
    library->mt_param_tn(c.number, out.input.t_C, out.input.p_Pa, c.column_height_m, c.column_density,
                         c.heat.tolerance_Pa, c.heat.tolerance_K, &status, &out.phase, &out.ps_MPa, &out.ts_C);
    return status == 1;
}

bool properties(const host::Library& library, const Channel& c, Outcome& out) {
    if (c.is_gas()) return gas_properties(library, c, out);
    char status = 0;
    if (c.heat.phase) out.phase = static_cast<short>(*c.heat.phase);
    library->mt_tf_param(c.number, c.heat.phase ? 1 : 0, c.heat.phase.value_or(0), c.heat.x, &status, &out.rho,
                         &out.mu_uPas, &out.h_kJ_kg, &out.kappa);
    return status == 1;
}

bool geometry(const host::Library& library, const Channel& c, Outcome& out) {
    char status = 0;
    (c.is_gas() ? library->mg_param_tr : library->mt_param_tr)(c.number, &status, &out.D_mm, &out.d_mm,
                                                               &out.beta, &out.E, &out.K_p);
    return status == 1;
}

// The heat of combustion per cubic metre of the standard volume, MJ: q_e is q_c times 0.001 k, so that it comes out in GJ/h.
float energy_factor(const Channel& c, const Outcome& out) {
    const float heat = c.gas.by_higher_heat ? out.higher_heat : out.lower_heat;
    return c.gas.method == vnic ? heat_MJ_m3(heat, c.gas.heat_unit, c.gas.heat_basis) : heat;
}

bool flow(const host::Library& library, const Channel& c, Outcome& out) {
    char status = 0;
    out.at_rest = out.input.dp < c.cut_off_Pa && !is_meter(c.device);
    const char calc = out.at_rest ? at_rest : compute;
    if (c.is_gas())
        library->mg_mgn_param(c.number, calc, out.input.dp, out.rho, out.rho_c, energy_factor(c, out), &status,
                              out.q.data(), &out.q[1], &out.q[2], &out.q[3], &out.K_sh, &out.C, &out.Re,
                              &out.epsilon);
    else
        library->mt_mgn_param(c.number, calc, out.input.dp, out.rho, out.h_kJ_kg, &status, out.q.data(),
                              &out.q[1], &out.q[2], &out.K_sh, &out.C, &out.Re, &out.epsilon);
    if (c.device == external_flow) out.q = out.input.external;
    return status == 1 || out.at_rest;  // status 0 and flows of 0, and the channel stays valid
}

// A differential pressure that is no number voids the channel, so that the totals pass the time over.
void refuse_flow(const host::Library& library, const Channel& c, const Outcome& out) {
    Outcome ignored = out;
    ignored.input.dp = std::numeric_limits<float>::quiet_NaN();
    flow(library, c, ignored);
}

// Hour or day of one integrator. One that runs has seconds that grow with the time; minutes of a downtime count as seconds.
void carry_on(const host::Library& library, const Channel& c, unsigned short number, unsigned short set,
              double seconds, Interval& interval) {
    static const double tick_s = 1.0 / static_cast<double>(sysconf(_SC_CLK_TCK));
    char status = 0;
    Interval next;
    (c.is_gas() ? library->mg_int_param_1 : library->mt_int_param_1)(c.number, number, set, interval.time_s,
                                                                     interval.start, interval.result, &status,
                                                                     &next.time_s, &next.start, &next.result);
    if (status != 1) return;
    next.closed = interval.time_s != 0.0F && seconds > 0.0 && next.time_s <= interval.time_s;
    const auto before_s = static_cast<double>(interval.time_s);
    next.length_s = next.closed ? (before_s < tick_s ? 0.0 : before_s) + seconds : 0.0;
    interval = next;
}

// Integrators after a refused one are refused with it; flows from elsewhere are refused one by one.
void totals(const host::Library& library, const Channel& c, const Elapsed& elapsed, Outcome& out,
            Registers& registers) {
    constexpr double s_per_hour = 3600.0, min_per_hour = 60.0;
    constexpr float no_flow = -1.0F;  // is refused
    const auto int_param = c.is_gas() ? library->mg_int_param : library->mt_int_param;
    const std::array<float, most_integrators>& q = c.device == external_flow ? out.input.external : out.q;
    for (std::size_t k = 0; k < integrator_count(c.medium); ++k) {
        Register& reg = registers[k];
        for (Interval& interval : reg.interval) interval.closed = false;
        const auto number = static_cast<unsigned short>(k + 1);
        char status = 0;
        float downtime_part = 0, downtime_min = 0;
        // A flow that is no number would be refused too, but take the downtime along.
        const bool none = elapsed.is_passed_over() || std::isnan(out.input.external[k]);
        int_param(c.number, number, none ? no_flow : out.input.external[k], reg.total,
                  c.accounting[k].substitute, c.accounting[k].exponent, &status, &reg.total, &downtime_part,
                  &downtime_min);
        if (status != 1) continue;
        out.accepted += out.accepted == k ? 1 : 0;
        const auto minutes = static_cast<double>(downtime_min);
        out.counted[k] = static_cast<double>(q[k]) * elapsed.seconds / s_per_hour;
        out.filled[k] = static_cast<double>(c.accounting[k].substitute) * minutes / min_per_hour;
        for (unsigned short set = 0; set < reg.interval.size(); ++set)
            carry_on(library, c, number, set, elapsed.seconds + minutes, reg.interval[set]);
    }
}

// What a transmitter failed to give to the step that was refused; empty when it is not for that.
std::string missing(const Channel& c, const Outcome& out) {
    const Input& in = out.input;
    if (out.reached == Step::state && std::isnan(in.t_C)) return "no reading of the temperature";
    if (out.reached == Step::state && std::isnan(in.p_Pa)) return "no reading of the pressure";
    if (out.reached == Step::flow && std::isnan(in.dp))
        return is_meter(c.device) ? "no reading of the meter" : "no reading of the differential pressure";
    if (out.reached == Step::totals && out.accepted < integrator_count(c.medium) &&
        std::isnan(in.external[out.accepted]))
        return fmt::format("no reading of the {} flow", integrator(c.medium, out.accepted).name);
    return {};
}

}  // namespace

const char* step_name(Step step) {
    constexpr std::array names{"state", "properties", "geometry", "flow", "totals", "computed"};
    return names[static_cast<std::size_t>(step)];
}

void set_up(const host::Library& library, const Station& station, const Channel& c) {
    char status = 0;
    (c.is_gas() ? library->mg_init_tr : library->mt_init_tr)(
        c.number, c.metering_class, c.device, c.by_material ? 1 : 0, c.pipe_material, c.device_material,
        c.D20_mm, c.d20_mm, c.roughness_mm, c.edge_radius_mm, c.edge_at_end ? 1 : 0, c.interval_years,
        c.alpha_eps, &status);
    if (status != 1)
        throw InputError(station.file, ": [", c.name, "]: the library refuses the constants of this channel");
}

void set_up_contents(const host::Library& library, const Station& station) {
    const auto with = std::ranges::find_if(station.channels, &Channel::contents_channel);
    if (with == station.channels.end()) return;
    Channel spare = *with;  // any configuration
    spare.number = with->contents_channel;
    set_up(library, station, spare);
}

void prime_gas_state(const host::Library& library, const Station& station) {
    constexpr float mid_t_C = 20.0F, mid_p_Pa = 1e6F;
    for (const Channel& c : station.channels) {
        if (c.medium != Medium::gas || !is_by_density(c.gas.method)) continue;
        Outcome out;
        out.input.t_C = mid_t_C;
        out.input.p_Pa = mid_p_Pa;
        if (gas_state(library, c, out)) static_cast<void>(gas_properties(library, c, out));
    }
}

Outcome run_steps(const host::Library& library, const Channel& c, const Measured& row) {
    Outcome out;
    out.input = input_of(c, row);
    constexpr std::array steps{state, properties, geometry, flow};
    for (std::size_t k = 0; k < steps.size() && steps[k](library, c, out); ++k)
        out.reached = static_cast<Step>(k + 1);
    return out;
}

std::string refusal_of_steps(const host::Library& library, const Channel& c, const Outcome& out) {
    if (out.passed(Step::flow)) return {};
    const std::string reading = missing(c, out);
    return reading.empty() ? diagnose(library, c, out, {}, 0) : reading;
}

Outcome run_cycle(const host::Library& library, const Channel& c, const Measured& row, const Elapsed& elapsed,
                  Registers& registers) {
    Outcome out = run_steps(library, c, row);
    if (elapsed.is_passed_over()) refuse_flow(library, c, out);
    // After a refusal too: the totals then pass the time over.
    const Registers before = registers;
    totals(library, c, elapsed, out, registers);
    if (out.reached == Step::totals && out.accepted == integrator_count(c.medium)) out.reached = Step::done;
    if (out.reached == Step::done) return out;
    out.reason = missing(c, out);
    if (out.reason.empty() && out.reached == Step::totals && elapsed.is_passed_over())
        out.reason = fmt::format("not counted: {} s since the reading before are longer than {} s",
                                 plain(elapsed.seconds), plain(elapsed.longest_s));
    if (out.reason.empty()) out.reason = diagnose(library, c, out, before, out.accepted);
    // Flows from elsewhere need no state.
    if (out.reached < Step::totals && out.accepted > 0) out.reason += "; its flows are counted all the same";
    return out;
}

}  // namespace kalorfix::tool::station
