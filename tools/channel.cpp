#include "tools/channel.h"

namespace kalorfix::tool {

bool set_up(const host::Library& library, int channel, const HeatPipeline& p) {
    constexpr char commercial_class = 1, by_material = 1, mean_edge_radius = 0;
    char status = 0;
    library->mt_init_tr(channel, commercial_class, p.device, by_material, p.pipe_material, p.device_material,
                        p.D20_mm, p.d20_mm, p.roughness_mm, p.edge_radius_mm, mean_edge_radius,
                        p.interval_years, 0.0F, &status);
    return status == 1;
}

HeatResult run_cycle(const host::Library& library, int channel, const HeatReading& reading) {
    constexpr float no_column = 0.0F, tolerance_Pa = 1000.0F, tolerance_K = 0.5F;
    constexpr char from_state = 0, compute = 1;
    HeatResult r;
    char status = 0;
    library->mt_param_tn(channel, reading.t_C, reading.p_Pa, no_column, no_column, tolerance_Pa, tolerance_K,
                         &status, &r.phase, &r.ps_MPa, &r.ts_C);
    if (status != 1) {
        r.refused = "state: temperature or pressure out of range";
        return r;
    }
    library->mt_tf_param(channel, from_state, 0, 0.0F, &status, &r.rho, &r.mu_uPas, &r.h_kJ_kg, &r.kappa);
    if (status != 1) {
        r.refused = "properties: state out of range";
        return r;
    }
    library->mt_param_tr(channel, &status, &r.D_mm, &r.d_mm, &r.beta, &r.E, &r.K_p);
    if (status != 1) {
        r.refused = "geometry: temperature, diameters or their ratio outside the limits";
        return r;
    }
    library->mt_mgn_param(channel, compute, reading.dp_Pa, r.rho, r.h_kJ_kg, &status, &r.q_m_th, &r.q_v_m3h,
                          &r.q_h_GJh, &r.K_sh, &r.C, &r.Re, &r.epsilon);
    if (status != 1) r.refused = "flow: pressure ratio, Reynolds number or roughness outside the limits";
    return r;
}

bool totalise(const host::Library& library, int channel, Register& reg) {
    constexpr short units = 0;
    constexpr unsigned short hourly = 0;
    char status = 0;
    float downtime_part = 0, downtime_min = 0;
    library->mt_int_param(channel, reg.integrator, 0.0F, reg.total, 0.0F, units, &status, &reg.total,
                          &downtime_part, &downtime_min);
    if (status != 1) return false;
    library->mt_int_param_1(channel, reg.integrator, hourly, reg.hour_time_s, reg.hour_start, reg.hour_result,
                            &status, &reg.hour_time_s, &reg.hour_start, &reg.hour_result);
    return status == 1;
}

const char* device_name(short device) {
    switch (device) {
        case 1:
            return "orifice plate, corner tappings";
        case 2:
            return "orifice plate, D and D/2 tappings";
        case 3:
            return "orifice plate, flange tappings";
        case 4:
            return "ISA 1932 nozzle";
        case 5:
            return "long-radius nozzle";
        case 6:
            return "Venturi nozzle";
        case 7:
            return "Venturi tube, as-cast convergent";
        case 8:
            return "Venturi tube, machined convergent";
        case 9:
            return "Venturi tube, rough-welded convergent";
        default:
            return "other device";
    }
}

const char* phase_name(short phase) {
    switch (phase) {
        case 1:
            return "water";
        case 2:
            return "superheated steam";
        case 3:
            return "wet steam";
        default:
            return "undecided";
    }
}

}  // namespace kalorfix::tool
