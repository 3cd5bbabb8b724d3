/* What a host does with the library, every result written as its bits: two programs that load the library in different
 * ways must write the same text. */
#ifndef HOST_SESSION_H
#define HOST_SESSION_H

#include <stdio.h>

#include "kalorfix.h"

/* An opened library with the functions that the session calls. */
struct library {
    void* handle;
    int flags; /* of dlopen */
#define FUNCTION(name) __typeof__(&name) name;
#include "session_functions.h"
#undef FUNCTION
    void (*PF1_1)(float, float, float, float, float, float, float, float, float, float, float, float, float,
                  float, float);
    void (*PF1_2)(float, float, float, float, float, float, float, float, float, float, float, float, float,
                  float, float);
    float (*density_methods[2])(float T_K, float dp_kPa, float p_MPa, float N2, float CO2, float rho_c, short*);
    float (*methods[4])(float T_K, float dp_kPa, float p_MPa, short*);
    float (*routines[8])(void);
    float (*PF5)(unsigned long);
    float (*NF2_2)(float, float, float);
    int (*abs_clock)(void);
    void (*ini_make)(void* place, const char*, int mode);
    void (*ini_end)(void*);
    unsigned char (*ini_Open)(void*);
    unsigned char (*ini_Close)(void*);
    int (*ini_float)(void*, const char*, const char*, const char*, const char*, float*);
    int (*ini_short)(void*, const char*, const char*, const char*, const char*, short*);
    int (*ini_string)(void*, const char*, const char*, const char*, const char*, char*);
};

/* Opens the library and finds the functions: 0 done, 1 not, with a line on standard error. */
int library_open(struct library* library, const char* path, int flags);

/* The variable of that name which the library itself works on, as the loader's rules have it. */
void* library_variable(const struct library* library, const char* name);

/* Gas by every method, steam and water, totals, INI files, the plain functions; Init has to come before. */
void session_calls(const struct library* library, FILE* out);

/* Opening, Init, the calls, Done, closing: 0 done, 1 not. `finish` 0 leaves Done out. */
int session_run(const char* path, int flags, int finish, FILE* out);

#endif
