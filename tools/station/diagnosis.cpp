// SPDX-License-Identifier: MIT
#include "tools/station/diagnosis.h"

#include <fmt/format.h>

#include "runtime/units.h"
#include "tools/metering/refusal.h"
#include "tools/station/point.h"

namespace kalorfix::tool::station {
namespace {

double d(float value) { return static_cast<double>(value); }

double corrected_pressure_Pa(const Channel& c, const Outcome& out) {
    return d(out.input.p_Pa) - units::standard_gravity * d(c.column_density) * d(c.column_height_m);
}

// State and properties as far as the library handed them out, in single precision.
metering::Properties properties_of(const Channel& c, const Outcome& out) {
    metering::Properties found;
    found.t_C = d(out.input.t_C);
    // Wet steam flows at the saturation pressure.
    const bool wet = !c.is_gas() && out.passed(Step::properties) && out.phase == KALORFIX_WET_STEAM;
    found.p_Pa = wet ? d(out.ps_MPa) / units::MPa_per_Pa : corrected_pressure_Pa(c, out);
    found.phase = c.is_gas() ? short{0} : out.phase;
    found.K = d(out.K);
    found.rho = d(out.rho);
    found.mu_uPas = d(out.mu_uPas);
    found.kappa = d(out.kappa);
    return found;
}

std::string flow_step(const Channel& c, const Outcome& out) {
    if (c.medium == Medium::heat_carrier && c.device == meter_standard_volume)
        return "a meter of standard volume has no meaning for a heat carrier";
    if (is_meter(c.device)) return metering::unexplained(step_name(Step::flow));
    metering::FlowResult flow;
    flow.E = d(out.E);
    flow.K_p = d(out.K_p);
    flow.Re = d(out.Re);
    metering::explain_flow(point_of(c).pipe, properties_of(c, out), d(out.input.dp), flow);
    return flow.refused;
}

std::string geometry(const Channel& c, const Outcome& out) {
    metering::FlowResult flow;
    metering::explain_geometry(point_of(c).pipe, d(out.input.t_C), flow);
    return flow.refused;
}

std::string totals(const Channel& c, const Outcome& out, const Registers& before, std::size_t accepted) {
    if (accepted >= integrator_count(c.medium)) return metering::unexplained("totals");
    const Integrator& one = integrator(c.medium, accepted);
    if (out.q[accepted] < 0.0F)
        return metering::broken(fmt::format("{} flow", one.name), d(out.q[accepted]), "below", 0.0,
                                one.flow_unit);
    if (before[accepted].total < 0.0F)
        return metering::broken(fmt::format("{} register", one.name), d(before[accepted].total), "below", 0.0,
                                one.unit);
    return metering::unexplained("totals");
}

}  // namespace

std::string diagnose(const host::Library& library, const Channel& c, const Outcome& out,
                     const Registers& before, std::size_t accepted) {
    switch (out.reached) {
        case Step::state: return metering::state_refusal(point_of(c), properties_of(c, out));
        case Step::properties: return metering::properties_refusal(library, point_of(c), properties_of(c, out));
        case Step::geometry: return geometry(c, out);
        case Step::flow: return flow_step(c, out);
        case Step::totals: return totals(c, out, before, accepted);
        case Step::done: break;
    }
    return {};
}

}  // namespace kalorfix::tool::station
