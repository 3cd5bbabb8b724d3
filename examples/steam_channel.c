// SPDX-License-Identifier: MIT
/* One steam channel as a host runs it: the library loaded, constants once, then state, properties, geometry and flow in each
 * cycle.
 *
 *   cc -std=c99 -Iinclude examples/steam_channel.c -ldl -o steam && ./steam build/release/kalorfix.so
 */
#include <dlfcn.h>
#include <stdio.h>

#include "kalorfix.h"

/* The header declares the functions; the loader finds them. */
#define LOAD(library, name)            \
    __typeof__(&name) p_##name = NULL; \
    *(void**)&p_##name = dlsym(library, #name)

int main(int argc, char** argv) {
    enum { channel = 1, by_material = 1 };
    char status;
    short phase;
    float ps, ts, rho, mu, h, kappa, D, d, beta, E, K_p, q_m, q_v, q_h, K_sh, C, Re, epsilon;

    void* const library = dlopen(argc > 1 ? argv[1] : "kalorfix.so", RTLD_NOW);
    if (!library) return puts(dlerror()), 1;
    LOAD(library, mt_init_tr);
    LOAD(library, mt_param_tn);
    LOAD(library, mt_tf_param);
    LOAD(library, mt_param_tr);
    LOAD(library, mt_mgn_param);

    p_mt_init_tr(channel, KALORFIX_CLASS_1, KALORFIX_NOZZLE_ISA1932, by_material, 7, 32, 300, 180, 0.1F, 0, 0,
                 1, 0, &status);
    if (status != 1) return puts("pipeline constants refused"), 1;

    p_mt_param_tn(channel, 300, 1.2e6F, 0, 0, 1000, 0.5F, &status, &phase, &ps, &ts);
    p_mt_tf_param(channel, 0, 0, 0, &status, &rho, &mu, &h, &kappa);
    p_mt_param_tr(channel, &status, &D, &d, &beta, &E, &K_p);
    p_mt_mgn_param(channel, 1, 40000, rho, h, &status, &q_m, &q_v, &q_h, &K_sh, &C, &Re, &epsilon);
    if (status != 1) return puts("a step of the cycle was refused"), 1;

    printf("%.4f t/h, %.4f GJ/h\n", (double)q_m, (double)q_h);
    return dlclose(library);
}
