// Exported channel functions of gas: state and properties.
#include "frame/channel_call.h"

namespace frame = kalorfix::frame;

namespace {

double widened(float value) { return static_cast<double>(value); }

}  // namespace

int mg_param_gs(int channel, float t, float p_meas, float rho_col, float h_col, short method, char fractions,
                float x0, float x1, float x2, float x3, float x4, float x5, float x6, float x7, float x8,
                float x9, float x10, float x11, float x12, float x13, float x14, float rho_c_in,
                char* valid_out, float* sum_out, float* K_out, float* rho_c_out) {
    return frame::channel_call(frame::gas_channels, channel, valid_out, std::array{sum_out, K_out, rho_c_out},
                               [=](cGas2005& calculator, auto& r) {
                                   return calculator.Param_gs(
                                       widened(t), widened(p_meas), widened(rho_col), widened(h_col), method,
                                       fractions, widened(x0), widened(x1), widened(x2), widened(x3),
                                       widened(x4), widened(x5), widened(x6), widened(x7), widened(x8),
                                       widened(x9), widened(x10), widened(x11), widened(x12), widened(x13),
                                       widened(x14), widened(rho_c_in), r[0], r[1], r[2]);
                               });
}

int mg_tf_param(int channel, char unit, char tempBasis, float roVap, char* status, float* ro_out, float* mu_out,
                float* kappa_out, float* hLow, float* hHigh) {
    return frame::channel_call(
        frame::gas_channels, channel, status, std::array{ro_out, mu_out, kappa_out, hLow, hHigh},
        [=](cGas2005& calculator, auto& r) {
            return calculator.tf_Param(unit, tempBasis, widened(roVap), r[0], r[1], r[2], r[3], r[4]);
        });
}
