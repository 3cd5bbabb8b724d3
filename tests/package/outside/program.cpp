// SPDX-License-Identifier: MIT
// The same water through a calculator of this program's own.
#include <kalorfix_calculators.h>

#include <cstdio>

int main() {
    constexpr double mm_pipe = 300, mm_device = 180, roughness_mm = 0.1;
    cTeplo2005 channel;
    char first = 0;
    if (channel.Init_TR(1, 4, 1, 7, 32, mm_pipe, mm_device, roughness_mm, 0, 0, 1, 0, first) != 1) return 1;
    short phase = 0;
    double ps = 0, ts = 0, rho = 0, mu = 0, h = 0, kappa = 0;
    if (channel.Param_tn(150, 0.6e6, 0, 0, 1000, 0.5, phase, ps, ts) != 1 || channel.IsGas()) return 1;
    if (channel.tf_Param(0, 0, 0, rho, mu, h, kappa) != 1) return 1;
    std::printf("%.3f kg/m3, %.3f K\n", rho, T_kr);
    return 0;
}
