// A heat-carrier channel as a host sees it: constants, measured values, the steps of its cycle and what they gave.
#pragma once

#include <string>

#include "tools/host.h"

namespace kalorfix::tool {

struct HeatPipeline {
    short device;
    float pipe_material, device_material;  ///< codes 1..39
    float D20_mm, d20_mm, roughness_mm, edge_radius_mm, interval_years;
};

struct HeatReading {
    float t_C, p_Pa, dp_Pa;
};

struct HeatResult {
    float ps_MPa = 0, ts_C = 0;
    float rho = 0, mu_uPas = 0, h_kJ_kg = 0, kappa = 0;
    float D_mm = 0, d_mm = 0, beta = 0, E = 0, K_p = 0;
    float q_m_th = 0, q_v_m3h = 0, q_h_GJh = 0, K_sh = 0, C = 0, Re = 0, epsilon = 0;
    short phase = 0;
    std::string refused;  ///< empty, or the step that was refused, in words
};

/// Stores the constants (class 1). False when they are refused.
[[nodiscard]] bool set_up(const host::Library& library, int channel, const HeatPipeline& pipeline);

/// Runs one cycle in the order of the interface: state, properties, geometry, flow.
[[nodiscard]] HeatResult run_cycle(const host::Library& library, int channel, const HeatReading& reading);

/// The registers that a host keeps for one integrator channel and its hourly interval.
struct Register {
    unsigned short integrator;
    float total = 0, hour_time_s = 0, hour_start = 0, hour_result = 0;
};

/// Totals one cycle. False when it is refused.
[[nodiscard]] bool totalise(const host::Library& library, int channel, Register& reg);

/// The device in words.
[[nodiscard]] const char* device_name(short device);

/// The phase of a heat carrier in words.
[[nodiscard]] const char* phase_name(short phase);

}  // namespace kalorfix::tool
