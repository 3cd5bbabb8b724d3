#include "tools/station/cycle.h"

#include <fmt/format.h>

#include <tuple>

#include "tools/station/diagnosis.h"

namespace kalorfix::tool::station {
namespace {

constexpr char compute = 1;

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

bool gas_state(const host::Library& library, const Channel& c, Outcome& out) {
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
    constexpr float kJ_per_kcal = 4.1868F, MJ_per_kJ = 0.001F;
    // The volume of an ideal gas at 20 degC over that at 0 degC: a cubic metre at 20 degC holds so much less.
    constexpr float expansion = 293.15F / 273.15F;
    float heat = c.gas.by_higher_heat ? out.higher_heat : out.lower_heat;
    if (c.gas.method != vnic) return heat;
    if (c.gas.heat_unit == 1) heat *= kJ_per_kcal;
    if (c.gas.heat_basis == 0) heat /= expansion;
    return heat * MJ_per_kJ;
}

bool flow(const host::Library& library, const Channel& c, Outcome& out) {
    char status = 0;
    if (c.is_gas())
        library->mg_mgn_param(c.number, compute, out.input.dp, out.rho, out.rho_c, energy_factor(c, out),
                              &status, out.q.data(), &out.q[1], &out.q[2], &out.q[3], &out.K_sh, &out.C,
                              &out.Re, &out.epsilon);
    else
        library->mt_mgn_param(c.number, compute, out.input.dp, out.rho, out.h_kJ_kg, &status, out.q.data(),
                              &out.q[1], &out.q[2], &out.K_sh, &out.C, &out.Re, &out.epsilon);
    if (c.device == external_flow) out.q = out.input.external;
    return status == 1;
}

// Hour or day of one integrator. A running interval never has the time 0, so a time that went back is a new one.
void carry_on(const host::Library& library, const Channel& c, unsigned short number, unsigned short set,
              Interval& interval) {
    char status = 0;
    Interval next;
    (c.is_gas() ? library->mg_int_param_1 : library->mt_int_param_1)(c.number, number, set, interval.time_s,
                                                                     interval.start, interval.result, &status,
                                                                     &next.time_s, &next.start, &next.result);
    if (status != 1) return;
    next.closed = interval.time_s != 0.0F && next.time_s < interval.time_s;
    interval = next;
}

// Number of integrators that took the cycle: those after a refused one are refused with it.
std::size_t totals(const host::Library& library, const Channel& c, const Outcome& out, Registers& registers) {
    const auto int_param = c.is_gas() ? library->mg_int_param : library->mt_int_param;
    std::size_t accepted = 0;
    for (std::size_t k = 0; k < integrator_count(c.medium); ++k) {
        Register& reg = registers[k];
        for (Interval& interval : reg.interval) interval.closed = false;
        const auto number = static_cast<unsigned short>(k + 1);
        char status = 0;
        float downtime_part = 0, downtime_min = 0;
        int_param(c.number, number, out.input.external[k], reg.total, c.accounting[k].substitute,
                  c.accounting[k].exponent, &status, &reg.total, &downtime_part, &downtime_min);
        if (status != 1) continue;
        accepted += accepted == k ? 1 : 0;
        for (unsigned short set = 0; set < reg.interval.size(); ++set)
            carry_on(library, c, number, set, reg.interval[set]);
    }
    return accepted;
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

Outcome run_cycle(const host::Library& library, const Channel& c, const Measured& row, Registers& registers) {
    Outcome out = run_steps(library, c, row);
    // After a refusal too: the totals then pass the time over.
    const Registers before = registers;
    const std::size_t accepted = totals(library, c, out, registers);
    if (out.reached == Step::totals && accepted == integrator_count(c.medium)) out.reached = Step::done;
    if (out.reached != Step::done) out.reason = diagnose(library, c, out, before, accepted);
    return out;
}

}  // namespace kalorfix::tool::station
