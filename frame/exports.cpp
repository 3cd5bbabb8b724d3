// SPDX-License-Identifier: MIT
// The exported plain functions. Those of a channel run a member of its calculator.
#include <functional>

#include "frame/channels.h"
#include "props/water/iapws95_tables.h"
#include "props/water/water.h"
#include "runtime/units.h"

// The registries are destroyed, and every calculator with them, when the library is unloaded.
namespace kalorfix::frame {
LocVect<cGas2005> gas_channels;
LocVect<cTeplo2005> heat_channels;
}  // namespace kalorfix::frame

namespace water = kalorfix::water;
using kalorfix::frame::gas_channels;
using kalorfix::frame::heat_channels;
using kalorfix::frame::run_step;
using kalorfix::frame::Undefined;

// ---- Pipeline ----

int mg_init_tr(int channel, char metering_class, short device_type, char by_material, float mat_D, float mat_d,
               float D20_mm, float d20_mm, float R_sh_mm, float r_n0_mm, char r_n_at_end, float tau_years,
               float alpha_eps, char* status) {
    char first_init = 0;  // of no use to a host
    return run_step<&cGas2005::Init_TR>(gas_channels, channel, status, std::array<float*, 0>{}, metering_class,
                                        device_type, by_material, mat_D, mat_d, D20_mm, d20_mm, R_sh_mm,
                                        r_n0_mm, r_n_at_end, tau_years, alpha_eps, std::ref(first_init));
}

int mt_init_tr(int channel, char metering_class, short device_type, char by_material, float mat_D, float mat_d,
               float D20_mm, float d20_mm, float R_sh_mm, float r_n0_mm, char r_n_at_end, float tau_years,
               float alpha_eps, char* status) {
    char first_init = 0;  // of no use to a host
    return run_step<&cTeplo2005::Init_TR>(
        heat_channels, channel, status, std::array<float*, 0>{}, metering_class, device_type, by_material,
        mat_D, mat_d, D20_mm, d20_mm, R_sh_mm, r_n0_mm, r_n_at_end, tau_years, alpha_eps, std::ref(first_init));
}

int mg_param_tr(int channel, char* status, float* D_mm, float* d_mm, float* beta, float* E, float* K_p) {
    return run_step<&cGas2005::Param_tr>(gas_channels, channel, status, std::array{D_mm, d_mm, beta, E, K_p});
}

int mt_param_tr(int channel, char* status, float* D_mm, float* d_mm, float* beta, float* E, float* K_p) {
    return run_step<&cTeplo2005::Param_tr>(heat_channels, channel, status,
                                           std::array{D_mm, d_mm, beta, E, K_p});
}

// ---- Flow and totals ----

int mg_mgn_param(int channel, char calc, float dp, float rho, float rho_c, float k, char* status, float* q_m,
                 float* q_v, float* q_c, float* q_e, float* K_sh, float* C, float* Re, float* epsilon) {
    return run_step<&cGas2005::mgn_Param>(gas_channels, channel, status,
                                          std::array{q_m, q_v, q_c, q_e, K_sh, C, Re, epsilon}, calc, dp, rho,
                                          rho_c, k);
}

int mt_mgn_param(int channel, char calc, float dp, float rho, float h, char* status, float* q_m, float* q_v,
                 float* q_h, float* K_sh, float* C, float* Re, float* epsilon) {
    return run_step<&cTeplo2005::mgn_Param>(heat_channels, channel, status,
                                            std::array{q_m, q_v, q_h, K_sh, C, Re, epsilon}, calc, dp, rho, h);
}

int mg_int_param(int channel, unsigned short integrator, float q_ext, float total_host, float q_subst,
                 short exp10, char* status, float* total, float* downtime_part, float* downtime_min) {
    return run_step<&cGas2005::int_Param>(gas_channels, channel, status,
                                          std::array{total, downtime_part, downtime_min}, integrator, q_ext,
                                          total_host, q_subst, exp10);
}

int mt_int_param(int channel, unsigned short integrator, float q_ext, float total_host, float q_subst,
                 short exp10, char* status, float* total, float* downtime_part, float* downtime_min) {
    return run_step<&cTeplo2005::int_Param>(heat_channels, channel, status,
                                            std::array{total, downtime_part, downtime_min}, integrator, q_ext,
                                            total_host, q_subst, exp10);
}

int mg_int_param_1(int channel, unsigned short integrator, unsigned short set, float interval_time_host,
                   float interval_start_host, float last_result, char* status, float* interval_time,
                   float* interval_start, float* result) {
    return run_step<&cGas2005::int2_Param>(gas_channels, channel, status,
                                           std::array{interval_time, interval_start, result}, integrator, set,
                                           interval_time_host, interval_start_host, last_result);
}

int mt_int_param_1(int channel, unsigned short integrator, unsigned short set, float interval_time_host,
                   float interval_start_host, float last_result, char* status, float* interval_time,
                   float* interval_start, float* result) {
    return run_step<&cTeplo2005::int2_Param>(heat_channels, channel, status,
                                             std::array{interval_time, interval_start, result}, integrator, set,
                                             interval_time_host, interval_start_host, last_result);
}

// ---- State and properties ----

int mg_param_gs(int channel, float t, float p_meas, float rho_col, float h_col, short method, char fractions,
                float x0, float x1, float x2, float x3, float x4, float x5, float x6, float x7, float x8,
                float x9, float x10, float x11, float x12, float x13, float x14, float rho_c_in,
                char* valid_out, float* sum_out, float* K_out, float* rho_c_out) {
    return run_step<&cGas2005::Param_gs>(
        gas_channels, channel, valid_out, std::array{sum_out, K_out, rho_c_out}, t, p_meas, rho_col, h_col,
        method, fractions, x0, x1, x2, x3, x4, x5, x6, x7, x8, x9, x10, x11, x12, x13, x14, rho_c_in);
}

int mg_tf_param(int channel, char unit, char tempBasis, float roVap, char* status, float* ro_out, float* mu_out,
                float* kappa_out, float* hLow, float* hHigh) {
    return run_step<&cGas2005::tf_Param>(gas_channels, channel, status,
                                         std::array{ro_out, mu_out, kappa_out, hLow, hHigh}, unit, tempBasis,
                                         roVap);
}

int mt_param_tn(int channel, float t, float p, float hA, float hB, float dP, float dT, char* status,
                short* phase, float* ps, float* ts) {
    short unwanted = 0;
    return run_step<&cTeplo2005::Param_tn, Undefined::where_there_is_none>(
        heat_channels, channel, status, std::array{ps, ts}, t, p, hA, hB, dP, dT,
        std::ref(phase ? *phase : unwanted));
}

int mt_tf_param(int channel, char source, unsigned short phase_req, float x, char* status, float* ro, float* mu,
                float* h, float* kappa) {
    return run_step<&cTeplo2005::tf_Param>(heat_channels, channel, status, std::array{ro, mu, h, kappa}, source,
                                           phase_req, x);
}

// ---- Water and steam ----

const double T_kr = water::critical_temperature_K;
const double p_kr = water::critical_pressure_MPa;

namespace {

constexpr short saturated_vapour_mode = 3;

void store(double* output, double value) {
    if (output) *output = value;
}

}  // namespace

short t_param_1(double t_C, double p_MPa, short mode, double* ro, double* mu, double* h, double* kappa) {
    const kalorfix::FloatEnvironment guard;
    const double T_K = t_C + kalorfix::units::zero_celsius_K;
    water::Properties found{};
    const bool done = mode == saturated_vapour_mode
                          ? water::pressure_in_range(p_MPa) && water::saturated_vapour(T_K, found)
                          : water::single_phase(T_K, p_MPa, found);
    store(ro, found.rho_kgm3);
    store(mu, found.mu_uPas);
    store(h, found.h_kJ_kg);
    store(kappa, found.kappa);
    return done ? 0 : 1;
}

short t_phase_1(double p_MPa, double t_C, double dp_MPa, double* ps) {
    const kalorfix::FloatEnvironment guard;
    double saturation_MPa = 0.0;
    const water::Phase phase =
        water::phase(p_MPa, t_C + kalorfix::units::zero_celsius_K, dp_MPa, saturation_MPa);
    store(ps, saturation_MPa);
    return static_cast<short>(phase);
}
