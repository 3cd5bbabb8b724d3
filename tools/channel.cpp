#include "tools/channel.h"

namespace kalorfix::tool {

namespace {

void run_geometry(const host::Library& library, Medium medium, int channel, CycleResult& r) {
    char status = 0;
    (medium == Medium::gas ? library->mg_param_tr : library->mt_param_tr)(channel, &status, &r.D_mm, &r.d_mm,
                                                                          &r.beta, &r.E, &r.K_p);
    if (status != 1) r.refused = "geometry: temperature, diameters or their ratio outside the limits";
}

constexpr const char* flow_refused = "flow: pressure ratio, Reynolds number or roughness outside the limits";
constexpr float no_column = 0.0F;
constexpr char compute = 1;

}  // namespace

bool set_up(const host::Library& library, Medium medium, int channel, const Pipeline& p) {
    constexpr char commercial_class = 1, by_material = 1, mean_edge_radius = 0;
    char status = 0;
    (medium == Medium::gas ? library->mg_init_tr : library->mt_init_tr)(
        channel, commercial_class, p.device, by_material, p.pipe_material, p.device_material, p.D20_mm,
        p.d20_mm, p.roughness_mm, p.edge_radius_mm, mean_edge_radius, p.interval_years, 0.0F, &status);
    return status == 1;
}

HeatResult run_cycle(const host::Library& library, int channel, const Reading& reading) {
    constexpr float tolerance_Pa = 1000.0F, tolerance_K = 0.5F;
    constexpr char from_state = 0;
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
    run_geometry(library, Medium::heat_carrier, channel, r);
    if (!r.refused.empty()) return r;
    library->mt_mgn_param(channel, compute, reading.dp_Pa, r.rho, r.h_kJ_kg, &status, &r.q_m_th, &r.q_v_m3h,
                          &r.q_h_GJh, &r.K_sh, &r.C, &r.Re, &r.epsilon);
    if (status != 1) r.refused = flow_refused;
    return r;
}

GasResult run_cycle(const host::Library& library, int channel, const GasKind& gas, const Reading& reading) {
    constexpr char mole_percent = 0, kJ = 0, at_20_degC = 1;
    constexpr float dry = 0.0F;
    constexpr short first_composition_method = 3;
    const std::array<float, 15>& x = gas.x;
    GasResult r;
    char status = 0;
    library->mg_param_gs(channel, reading.t_C, reading.p_Pa, no_column, no_column, gas.method, mole_percent,
                         x[0], x[1], x[2], x[3], x[4], x[5], x[6], x[7], x[8], x[9], x[10], x[11], x[12], x[13],
                         x[14], gas.rho_c, &status, &r.sum, &r.K, &r.rho_c);
    if (status != 1) {
        r.refused = "state: temperature, pressure or composition out of range, or no gas data";
        return r;
    }
    library->mg_tf_param(channel, kJ, at_20_degC, dry, &status, &r.rho, &r.mu_uPas, &r.kappa, &r.lower_heat,
                         &r.higher_heat);
    if (status != 1) {
        r.refused = "properties: state out of range";
        return r;
    }
    run_geometry(library, Medium::gas, channel, r);
    if (!r.refused.empty()) return r;
    // q_e is the standard volume flow times 0.001 k: with k in MJ/m3 it is in GJ/h.
    const float MJ_m3 = gas.method < first_composition_method ? r.lower_heat : 0.001F * r.lower_heat;
    library->mg_mgn_param(channel, compute, reading.dp_Pa, r.rho, r.rho_c, MJ_m3, &status, &r.q_m_th,
                          &r.q_v_m3h, &r.q_c_m3h, &r.q_e_GJh, &r.K_sh, &r.C, &r.Re, &r.epsilon);
    if (status != 1) r.refused = flow_refused;
    return r;
}

bool totalise(const host::Library& library, Medium medium, int channel, Register& reg) {
    constexpr short units = 0;
    constexpr unsigned short hourly = 0;
    const bool gas = medium == Medium::gas;
    char status = 0;
    float downtime_part = 0, downtime_min = 0;
    (gas ? library->mg_int_param : library->mt_int_param)(channel, reg.integrator, 0.0F, reg.total, 0.0F, units,
                                                          &status, &reg.total, &downtime_part, &downtime_min);
    if (status != 1) return false;
    (gas ? library->mg_int_param_1 : library->mt_int_param_1)(
        channel, reg.integrator, hourly, reg.hour_time_s, reg.hour_start, reg.hour_result, &status,
        &reg.hour_time_s, &reg.hour_start, &reg.hour_result);
    return status == 1;
}

const char* method_name(short method) {
    switch (method) {
        case 0:
            return "NX19 mod.";
        case 1:
            return "GERG-91 mod.";
        case 2:
            return "AGA8-92DC";
        default:
            return "VNIC SMV";
    }
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
