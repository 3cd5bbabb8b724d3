// SPDX-License-Identifier: MIT
#include "tools/metering/flow.h"

#include "runtime/units.h"
#include "tools/metering/refusal.h"

namespace kalorfix::metering {
namespace {

// Constants of the channel, and the state that the steps before the geometry leave.
template <class Calculator>
bool prepare(const host::Library& library, const Pipeline& pipe, const Properties& medium, Calculator& c) {
    char first = 0;
    if (library->Init_TR(&c, pipe.metering_class, pipe.device, pipe.by_material ? 1 : 0, pipe.pipe_material,
                         pipe.device_material, pipe.D20_mm, pipe.d20_mm, pipe.roughness_mm, pipe.edge_radius_mm,
                         pipe.edge_at_end ? 1 : 0, pipe.interval_years, pipe.alpha_eps, first) != 1)
        return false;
    c.t = medium.t_C;
    c.T = medium.t_C + units::zero_celsius_K;
    c.p = medium.p_Pa;
    c.rho_w = medium.rho;
    c.mu = medium.mu_uPas * units::Pas_per_uPas;
    c.kappa = medium.kappa;
    c.phase = static_cast<unsigned short>(medium.phase);
    c.valid = 1;
    return true;
}

bool solve(const host::Library& library, cGas2005& c, const Properties& medium, double dp_Pa, FlowResult& out) {
    // Without a density at standard conditions there is no such flow, and any density does.
    const double rho_c = medium.rho_c > 0.0 ? medium.rho_c : 1.0;
    const bool good = library->gas_mgn_Param(&c, 1, dp_Pa, medium.rho, rho_c, medium.energy_MJ_m3, out.mass_th,
                                             out.volume_m3h, out.standard_m3h, out.energy_GJh, out.K_sh, out.C,
                                             out.Re, out.epsilon) == 1;
    if (!(medium.rho_c > 0.0)) out.standard_m3h = out.energy_GJh = 0.0;
    return good;
}

bool solve(const host::Library& library, cTeplo2005& c, const Properties& medium, double dp_Pa,
           FlowResult& out) {
    return library->heat_mgn_Param(&c, 1, dp_Pa, medium.rho, medium.h_kJ_kg, out.mass_th, out.volume_m3h,
                                   out.energy_GJh, out.K_sh, out.C, out.Re, out.epsilon) == 1;
}

// What no pipe can have, though the formulas of some devices give a flow for it.
std::string impossible(const Pipeline& pipe, const Properties& medium, double dp_Pa) {
    constexpr double kPa = 1e-3;
    if (!(pipe.d20_mm < pipe.D20_mm))
        return broken("device diameter", pipe.d20_mm, "not below the pipe's", pipe.D20_mm, "mm");
    if (dp_Pa > medium.p_Pa)
        return broken("dp", dp_Pa * kPa, "above the absolute pressure", medium.p_Pa * kPa, "kPa");
    return {};
}

template <class Calculator>
FlowResult run(const host::Library& library, const Point& point, const Properties& medium, double dp_Pa,
               Calculator& c) {
    FlowResult out;
    if (!prepare(library, point.pipe, medium, c)) {
        out.refused = "the library refuses the constants of this point";
        return out;
    }
    out.geometry_accepted = library->Param_tr(&c, out.D_mm, out.d_mm, out.beta, out.E, out.K_p) == 1;
    if (!out.geometry_accepted)
        explain_geometry(point.pipe, medium.t_C, out);
    else if (!solve(library, c, medium, dp_Pa, out))
        explain_flow(point.pipe, medium, dp_Pa, out);
    else
        out.refused = impossible(point.pipe, medium, dp_Pa);
    return out;
}

}  // namespace

FlowResult flow_at(const host::Library& library, const Point& point, const Properties& medium, double dp_Pa) {
    if (is_gas(point.medium)) return run(library, point, medium, dp_Pa, *library.gas_calculator());
    return run(library, point, medium, dp_Pa, *library.heat_calculator());
}

double mass_of(Flow kind, double flow, const Point& point, const Properties& medium) {
    switch (kind) {
        case Flow::mass: return flow;
        case Flow::volume: return flow * medium.rho * units::t_per_kg;
        case Flow::standard_volume: return flow * medium.rho_c * units::t_per_kg;
        case Flow::energy: break;
    }
    const double MJ_kg = is_gas(point.medium) ? medium.energy_MJ_m3 / medium.rho_c : medium.h_kJ_kg / 1000.0;
    return MJ_kg > 0.0 ? flow / MJ_kg : 0.0;
}

double flow_of_kind(Flow kind, const FlowResult& result) {
    switch (kind) {
        case Flow::mass: return result.mass_th;
        case Flow::volume: return result.volume_m3h;
        case Flow::standard_volume: return result.standard_m3h;
        case Flow::energy: break;
    }
    return result.energy_GJh;
}

}  // namespace kalorfix::metering
