// Exported channel functions of gas: state and properties.
#include "frame/channel_call.h"

namespace frame = kalorfix::frame;

int mg_param_gs(int channel, float t, float p_meas, float rho_col, float h_col, short method, char fractions,
                float x0, float x1, float x2, float x3, float x4, float x5, float x6, float x7, float x8,
                float x9, float x10, float x11, float x12, float x13, float x14, float rho_c_in,
                char* valid_out, float* sum_out, float* K_out, float* rho_c_out) {
    return frame::channel_call(frame::gas_channels, channel, valid_out, std::array{sum_out, K_out, rho_c_out},
                               [=](cGas2005& calculator, auto& r) {
                                   return calculator.Param_gs(t, p_meas, rho_col, h_col, method, fractions, x0,
                                                              x1, x2, x3, x4, x5, x6, x7, x8, x9, x10, x11, x12,
                                                              x13, x14, rho_c_in, r[0], r[1], r[2]);
                               });
}

int mg_tf_param(int channel, char unit, char tempBasis, float roVap, char* status, float* ro_out, float* mu_out,
                float* kappa_out, float* hLow, float* hHigh) {
    return frame::channel_call(
        frame::gas_channels, channel, status, std::array{ro_out, mu_out, kappa_out, hLow, hHigh},
        [=](cGas2005& calculator, auto& r) {
            return calculator.tf_Param(unit, tempBasis, roVap, r[0], r[1], r[2], r[3], r[4]);
        });
}
