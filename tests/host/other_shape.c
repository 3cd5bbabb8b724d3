/* A host that exports names of the library for things of another shape or kind: wider or shorter variables, constants in
 * read-only memory, functions. It must have the loader look into the library first (RTLD_DEEPBIND): without, the process ends
 * or the results are others. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <stdio.h>

#include "host.h"

/* With these alone it need not: the library calculates with constants of its own. */
const float Tc = 1.0F, Pc = 1.0F, R = 1.0F;
const double T_kr = 1.0, p_kr = 1.0;

#ifndef ONLY_CONSTANTS
double T = 1.0, P = 1.0, Roc = 2.0, qmi = 3.0;
void Xi(void);
void Xi(void) {}
char K[1], Mu[1];
struct of_the_host {
    int a;
    void* b;
} Z, SRV_Path;
const short Num_gas_trub = 3, NumXi = 1;
float C[2], B[1], EIJM[1][1], GIJM[2], Ckl[1], Tmp_Xi[1];
char Index[2], *an, PATH_SRAM_FOR_LOADTABL[4];
short V_Mi, Akl;
const char* const Uij = "a text";
/* Of a class of the same name. */
const short _ZTV8cGas2005 = 1, _ZTV10cTeplo2005 = 1, _ZTV11cCommon2005 = 1, _ZTI8cGas2005 = 1;
#endif

#ifdef ONLY_CONSTANTS
enum { same_when_shallow = 1 };
#else
enum { same_when_shallow = 0 };
#endif

const struct host_mode host_modes[] = {
    {"deep binding", RTLD_NOW | RTLD_LOCAL | RTLD_DEEPBIND, 1, 0, 0},
    {"deep binding, lazy, global", RTLD_LAZY | RTLD_GLOBAL | RTLD_DEEPBIND, 1, 0, 0},
    {"without deep binding", RTLD_NOW | RTLD_LOCAL, same_when_shallow, 1, 0}};
const int host_mode_count = 3;

int host_ready(void) {
    if (dlsym(RTLD_DEFAULT, "Tc") == &Tc) return 0;
    fputs("the program does not export its names\n", stderr);
    return 1;
}

int host_before(const struct host_mode* mode) { return mode->setting; }
int host_after(const struct host_mode* mode) { return mode->setting; }
