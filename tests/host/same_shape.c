/* A host whose own functions and variables have the names of the library's, and are exported. The functions end the process
 * (they are made from the export list); the variables are of the same shape, so that the library may take them for its own,
 * as the loader's rules have it. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <stdio.h>

#include "host.h"
#include "kalorfix_gas.h"

short Is_already_init, Num_gas_trub;
double ProstoyTime;
const double T_kr = 647.096, p_kr = 22.064;
const char* SRV_Path[9];

char PATH_SRAM_FOR_LOADTABL[100], Gas_Not_Init;
float *V_Mi, *Roki, *Tki, *FPi, *Lij, *Xij, *Akl, *Bkl;
float *Eij_, *Uij, *Kij, *Gij_, *an, *bn, *cn, *kn, *un, *gn, *qn, *fn;
float *Mi, *Zci, *Rocui, *Bi, *Ei, *Ki, *Gi, *Qi, *Fi, *L1ij, *B1ij;
float Xi[15], Tmp_Xi[8], C[53], B[15], EIJM[15][15], GIJM[15][15], Ckl[10][8];
short Index[15], NumXi;
float T, P, DeltaP, Z, K, Roc, Xa, Xy, FP, Tnk, Pnk, Tn, Rom, Ron, Mu, kk, Ro, SM, qmi, qoi, qci;
char VNIC_FLAG, Plotnomer;
const float Tc = 293.15F, Pc = 0.101325F, R = 8.31451F;

const struct host_mode host_modes[] = {{"now, local", RTLD_NOW | RTLD_LOCAL, 1, 1, 0},
                                       {"lazy, global", RTLD_LAZY | RTLD_GLOBAL, 1, 1, 0}};
const int host_mode_count = 2;

static const char* const names[] = {
#define NAME(name) #name,
#include "library_names.h"
};

int host_ready(void) {
    for (size_t k = 0; k < sizeof names / sizeof *names; ++k) {
        Dl_info found, here;
        void* const place = dlsym(RTLD_DEFAULT, names[k]);
        if (!place || !dladdr(place, &found) || !dladdr(&T, &here) || found.dli_fbase != here.dli_fbase) {
            fprintf(stderr, "the program does not export %s\n", names[k]);
            return 1;
        }
    }
    return 0;
}

int host_before(const struct host_mode* mode) { return mode->setting; }

int host_after(const struct host_mode* mode) {
    if (Xi[0] > 0 && NumXi > 0 && SRV_Path[6] && Num_gas_trub == 7 && !V_Mi) return mode->setting;
    fputs("the library did not take the program's variables for its own\n", stderr);
    return 1;
}
