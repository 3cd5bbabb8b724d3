// SPDX-License-Identifier: MIT
/* Density of water at 150 degC and 0.6 MPa, and its critical temperature, by the library this program is linked with. */
#include <kalorfix.h>
#include <stdio.h>

int main(void) {
    double rho, mu, h, kappa;
    if (t_param_1(150, 0.6, 0, &rho, &mu, &h, &kappa) != 0) return 1;
    printf("%.3f kg/m3, %.3f K\n", rho, T_kr);
    return 0;
}
