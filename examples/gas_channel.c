// SPDX-License-Identifier: MIT
/* A natural-gas channel by composition (AGA8-92DC) as a host runs it: directories set, the library loaded and initialised,
 * pipeline constants once, then the steps of a cycle.
 *
 *   cc -std=c99 -D_POSIX_C_SOURCE=200112L -Iinclude examples/gas_channel.c -ldl -o gas && ./gas build/release/kalorfix.so build/release
 */
#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>

#include "kalorfix.h"

/* The header declares the functions; the loader finds them. */
#define LOAD(library, name)            \
    __typeof__(&name) p_##name = NULL; \
    *(void**)&p_##name = dlsym(library, #name)

int main(int argc, char** argv) {
    enum { channel = 1, by_material = 1, mole_percent = 0 };
    char status;
    float sum, K, rho_c, rho, mu, kappa, lower_heat, higher_heat;
    float D, d, beta, E, K_p, q_m, q_v, q_c, q_e, K_sh, C, Re, epsilon;

    /* The library reads its directories when it is loaded; gas.dat lies in the system directory. */
    if (argc > 2) setenv("SYSTEM", argv[2], 1);
    void* const library = dlopen(argc > 1 ? argv[1] : "kalorfix.so", RTLD_NOW);
    if (!library) return puts(dlerror()), 1;
    LOAD(library, Init);
    LOAD(library, Done);
    LOAD(library, mg_init_tr);
    LOAD(library, mg_param_gs);
    LOAD(library, mg_tf_param);
    LOAD(library, mg_param_tr);
    LOAD(library, mg_mgn_param);

    p_Init();
    p_mg_init_tr(channel, KALORFIX_CLASS_1, KALORFIX_ORIFICE_FLANGE, by_material, 7, 32, 400, 220, 0.05F, 0.05F,
                 0, 1, 0, &status);
    if (status != 1) return puts("pipeline constants refused"), 1;

    p_mg_param_gs(channel, 15, 5.5e6F, 0, 0, KALORFIX_AGA8_92DC, mole_percent, 96.5F, 1.8F, 0.45F, 0.1F, 0.1F,
                  0.03F, 0.05F, 0.07F, 0, 0, 0.3F, 0.6F, 0, 0, 0, 0, &status, &sum, &K, &rho_c);
    if (status != 1) return puts("state refused: is gas.dat in the system directory?"), 1;
    p_mg_tf_param(channel, 0, 0, 0, &status, &rho, &mu, &kappa, &lower_heat, &higher_heat);
    p_mg_param_tr(channel, &status, &D, &d, &beta, &E, &K_p);
    p_mg_mgn_param(channel, 1, 25000, rho, rho_c, lower_heat, &status, &q_m, &q_v, &q_c, &q_e, &K_sh, &C, &Re,
                   &epsilon);
    if (status != 1) return puts("a step of the cycle was refused"), 1;

    printf("K %.6f, %.4f t/h, %.1f m3/h at standard conditions, %.2f GJ/h\n", (double)K, (double)q_m,
           (double)q_c, (double)q_e);
    p_Done();
    return dlclose(library);
}
