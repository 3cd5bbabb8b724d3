// A measuring channel as a host sees it: constants, measured values, the steps of its cycle and what they gave.
#pragma once

#include <array>
#include <string>

#include "tools/host.h"

namespace kalorfix::tool {

enum class Medium { gas, heat_carrier };

struct Pipeline {
    short device;
    float pipe_material, device_material;  ///< codes 1..39
    float D20_mm, d20_mm, roughness_mm, edge_radius_mm, interval_years;
};

struct Reading {
    float t_C, p_Pa, dp_Pa;
};

/// What a gas channel knows of its gas. Methods by density need rho_c, nitrogen and carbon dioxide (x[10], x[11]), the
/// others the whole composition; mole per cent.
struct GasKind {
    short method;  ///< 0 NX19 mod., 1 GERG-91 mod., 2 AGA8-92DC, 3 VNIC SMV
    float rho_c;
    std::array<float, 15> x;
};

/// What a cycle of either medium gives.
struct CycleResult {
    float rho = 0, mu_uPas = 0, kappa = 0;
    float D_mm = 0, d_mm = 0, beta = 0, E = 0, K_p = 0;
    float q_m_th = 0, q_v_m3h = 0, K_sh = 0, C = 0, Re = 0, epsilon = 0;
    std::string refused;  ///< empty, or the step that was refused, in words
};

struct HeatResult : CycleResult {
    float ps_MPa = 0, ts_C = 0, h_kJ_kg = 0, q_h_GJh = 0;
    short phase = 0;
};

struct GasResult : CycleResult {
    float sum = 0, K = 0, rho_c = 0;
    float lower_heat = 0, higher_heat = 0;  ///< MJ/m3 at 20 degC, kJ/m3 for VNIC SMV
    float q_c_m3h = 0, q_e_GJh = 0;
};

/// Stores the constants (class 1). False when they are refused.
[[nodiscard]] bool set_up(const host::Library& library, Medium medium, int channel, const Pipeline& pipeline);

/// Runs one cycle in the order of the interface: state, properties, geometry, flow. The energy flow of gas is the standard
/// volume flow times the lower heat of combustion.
[[nodiscard]] HeatResult run_cycle(const host::Library& library, int channel, const Reading& reading);
[[nodiscard]] GasResult run_cycle(const host::Library& library, int channel, const GasKind& gas,
                                  const Reading& reading);

/// The registers that a host keeps for one integrator channel and its hourly interval.
struct Register {
    unsigned short integrator;
    float total = 0, hour_time_s = 0, hour_start = 0, hour_result = 0;
};

/// Totals one cycle. False when it is refused.
[[nodiscard]] bool totalise(const host::Library& library, Medium medium, int channel, Register& reg);

/// The device in words.
[[nodiscard]] const char* device_name(short device);

/// The compressibility method in words.
[[nodiscard]] const char* method_name(short method);

/// The phase of a heat carrier in words.
[[nodiscard]] const char* phase_name(short phase);

}  // namespace kalorfix::tool
