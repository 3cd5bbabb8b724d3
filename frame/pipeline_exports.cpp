// Exported channel functions of pipeline and flow, for both media.
#include "frame/channel_call.h"

namespace frame = kalorfix::frame;

// The registries are destroyed, and every calculator with them, when the library is unloaded.
namespace kalorfix::frame {
LocVect<cGas2005> gas_channels;
LocVect<cTeplo2005> heat_channels;
}  // namespace kalorfix::frame

namespace {

struct PipelineConstants {
    char metering_class;
    short device_type;
    char by_material;
    float mat_D, mat_d, D20_mm, d20_mm, R_sh_mm, r_n0_mm;
    char r_n_at_end;
    float tau_years, alpha_eps;
};

template <class Calculator>
int init_tr(LocVect<Calculator>& registry, int channel, const PipelineConstants& c, char* status) {
    return frame::channel_call(
        registry, channel, status, std::array<float*, 0>{}, [&c](cCommon2005& calculator, auto&) {
            char first_init = 0;
            return calculator.Init_TR(c.metering_class, c.device_type, c.by_material, c.mat_D, c.mat_d,
                                      c.D20_mm, c.d20_mm, c.R_sh_mm, c.r_n0_mm, c.r_n_at_end, c.tau_years,
                                      c.alpha_eps, first_init);
        });
}

template <class Calculator>
int param_tr(LocVect<Calculator>& registry, int channel, char* status, const std::array<float*, 5>& outputs) {
    return frame::channel_call(registry, channel, status, outputs, [](cCommon2005& calculator, auto& r) {
        return calculator.Param_tr(r[0], r[1], r[2], r[3], r[4]);
    });
}

}  // namespace

int mg_init_tr(int channel, char metering_class, short device_type, char by_material, float mat_D, float mat_d,
               float D20_mm, float d20_mm, float R_sh_mm, float r_n0_mm, char r_n_at_end, float tau_years,
               float alpha_eps, char* status) {
    return init_tr(frame::gas_channels, channel,
                   {metering_class, device_type, by_material, mat_D, mat_d, D20_mm, d20_mm, R_sh_mm, r_n0_mm,
                    r_n_at_end, tau_years, alpha_eps},
                   status);
}

int mt_init_tr(int channel, char metering_class, short device_type, char by_material, float mat_D, float mat_d,
               float D20_mm, float d20_mm, float R_sh_mm, float r_n0_mm, char r_n_at_end, float tau_years,
               float alpha_eps, char* status) {
    return init_tr(frame::heat_channels, channel,
                   {metering_class, device_type, by_material, mat_D, mat_d, D20_mm, d20_mm, R_sh_mm, r_n0_mm,
                    r_n_at_end, tau_years, alpha_eps},
                   status);
}

int mg_param_tr(int channel, char* status, float* D_mm, float* d_mm, float* beta, float* E, float* K_p) {
    return param_tr(frame::gas_channels, channel, status, {D_mm, d_mm, beta, E, K_p});
}

int mt_param_tr(int channel, char* status, float* D_mm, float* d_mm, float* beta, float* E, float* K_p) {
    return param_tr(frame::heat_channels, channel, status, {D_mm, d_mm, beta, E, K_p});
}

int mg_mgn_param(int channel, char calc, float dp, float rho, float rho_c, float k, char* status, float* q_m,
                 float* q_v, float* q_c, float* q_e, float* K_sh, float* C, float* Re, float* epsilon) {
    return frame::channel_call(frame::gas_channels, channel, status,
                               std::array{q_m, q_v, q_c, q_e, K_sh, C, Re, epsilon},
                               [=](cGas2005& calculator, auto& r) {
                                   return calculator.mgn_Param(calc, dp, rho, rho_c, k, r[0], r[1], r[2], r[3],
                                                               r[4], r[5], r[6], r[7]);
                               });
}

int mt_mgn_param(int channel, char calc, float dp, float rho, float h, char* status, float* q_m, float* q_v,
                 float* q_h, float* K_sh, float* C, float* Re, float* epsilon) {
    return frame::channel_call(
        frame::heat_channels, channel, status, std::array{q_m, q_v, q_h, K_sh, C, Re, epsilon},
        [=](cTeplo2005& calculator, auto& r) {
            return calculator.mgn_Param(calc, dp, rho, h, r[0], r[1], r[2], r[3], r[4], r[5], r[6]);
        });
}
