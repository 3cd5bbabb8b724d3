// SPDX-License-Identifier: MIT
/* A host whose own functions and variables have the names of the library's, and are exported. The functions end the process
 * (they are made from the export list); the variables are of the same shape, so that the library may take them for its own, as
 * the loader's rules have it. The constants have other values: the library calculates with its own. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <stdio.h>

#include "host.h"
#include "kalorfix_gas.h"

short Is_already_init, Num_gas_trub;
double ProstoyTime;
const double T_kr = 1.0, p_kr = 1.0;
const char* SRV_Path[9];

char PATH_SRAM_FOR_LOADTABL[100], Gas_Not_Init;
float *V_Mi, *Roki, *Tki, *FPi, *Lij, *Xij, *Akl, *Bkl;
float *Eij_, *Uij, *Kij, *Gij_, *an, *bn, *cn, *kn, *un, *gn, *qn, *fn;
float *Mi, *Zci, *Rocui, *Bi, *Ei, *Ki, *Gi, *Qi, *Fi, *L1ij, *B1ij;
float Xi[15], Tmp_Xi[8], C[53], B[15], EIJM[15][15], GIJM[15][15], Ckl[10][8];
short Index[15], NumXi;
float T, P, DeltaP, Z, K, Roc, Xa, Xy, FP, Tnk, Pnk, Tn, Rom, Ron, Mu, kk, Ro, SM, qmi, qoi, qci;
char VNIC_FLAG, Plotnomer;
const float Tc = 1.0F, Pc = 1.0F, R = 1.0F;

enum { variables_shared, variables_apart };
const struct host_mode host_modes[] = {
#ifndef NO_DEEP_BINDING
    {"deep binding", RTLD_NOW | RTLD_LOCAL | RTLD_DEEPBIND, variables_apart},
#endif
    {"now, local", RTLD_NOW | RTLD_LOCAL, variables_shared},
    {"lazy, global", RTLD_LAZY | RTLD_GLOBAL, variables_shared}};
const int host_mode_count = sizeof host_modes / sizeof *host_modes;

int host_before(const struct host_mode* mode) {
    (void)mode;
    if (dlsym(RTLD_DEFAULT, "T") == &T && dlsym(RTLD_DEFAULT, "_Z3PF2v")) return 0;
    fputs("the program does not export its names\n", stderr);
    return 1;
}

int host_after(const struct host_mode* mode) {
    const int taken = Xi[0] > 0 && NumXi > 0 && SRV_Path[6] && Num_gas_trub == 2 && !V_Mi;
    if (taken == (mode->setting == variables_shared)) return 0;
    fprintf(stderr, "the library %s the program's variables for its own\n", taken ? "took" : "did not take");
    return 1;
}
