/* A natural-gas channel by composition (AGA8-92DC): pipeline constants once, then one cycle. */
#include <stdio.h>

#include "kalorfix.h"

int main(void) {
    enum { channel = 1, by_material = 1, flange_tappings = 3, aga8_92dc = 2, mole_percent = 0 };
    char status;
    float sum, K, rho_c, rho, mu, kappa, lower_heat, higher_heat;
    float D, d, beta, E, K_p, q_m, q_v, q_c, q_e, K_sh, C, Re, epsilon;

    Init(); /* loads gas.dat from the system directory, which the environment variable SYSTEM names */

    mg_init_tr(channel, 1, flange_tappings, by_material, 7, 32, 400, 220, 0.05F, 0.05F, 0, 1, 0, &status);
    if (status != 1) return puts("pipeline constants refused"), 1;

    mg_param_gs(channel, 15, 5.5e6F, 0, 0, aga8_92dc, mole_percent, 96.5F, 1.8F, 0.45F, 0.1F, 0.1F, 0.03F,
                0.05F, 0.07F, 0, 0, 0.3F, 0.6F, 0, 0, 0, 0, &status, &sum, &K, &rho_c);
    if (status != 1) return puts("state refused: is gas.dat in the system directory?"), 1;
    mg_tf_param(channel, 0, 0, 0, &status, &rho, &mu, &kappa, &lower_heat, &higher_heat);
    mg_param_tr(channel, &status, &D, &d, &beta, &E, &K_p);
    mg_mgn_param(channel, 1, 25000, rho, rho_c, lower_heat, &status, &q_m, &q_v, &q_c, &q_e, &K_sh, &C, &Re,
                 &epsilon);
    if (status != 1) return puts("a step of the cycle was refused"), 1;

    printf("K %.6f, %.4f t/h, %.1f m3/h at standard conditions, %.2f GJ/h\n", (double)K, (double)q_m,
           (double)q_c, (double)q_e);
    Done();
    return 0;
}
