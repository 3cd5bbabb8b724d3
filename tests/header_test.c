// SPDX-License-Identifier: MIT
/* The public header in a C program that is linked against the library. */
#include "kalorfix.h"

#include <math.h>
#include <stdio.h>
#include <string.h>

int main(void) {
    double rho = 0, mu = 0, h = 0, kappa = 0, ps = 0;
    char status = 0;
    short phase = 0;
    float ps_f = 0, ts_f = 0;
    char version[16];

    if (t_param_1(20.0, 0.101325, 1, &rho, &mu, &h, &kappa) != 0 || fabs(rho - 998.2071504679) > 1e-9) {
        printf("density %.12g\n", rho);
        return 1;
    }
    if (t_phase_1(1.0, 200.0, 0.0, &ps) != 2 || T_kr != 647.096 || p_kr != 22.064) return 2;
    if (mt_init_tr(5, 1, 1, 0, 0, 0, 100, 50, 0, 0, 1, 0, 0, &status) != 1 || status != 1) return 3;
    if (mt_param_tn(5, 150, 476160, 0, 0, 1000, 1, &status, &phase, &ps_f, &ts_f) != 1 || phase != 3) return 4;
    snprintf(version, sizeof version, "%d.%d.%d", KALORFIX_VERSION_NUMBER >> 16,
             KALORFIX_VERSION_NUMBER >> 8 & 0xff, KALORFIX_VERSION_NUMBER & 0xff);
    if (strcmp(version, KALORFIX_VERSION) != 0) return 5;
    puts("C program: header and library agree");
    return 0;
}
