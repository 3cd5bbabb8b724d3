/* The module state of the gas methods: the tables of the gas data file and the working values.
 *
 * One copy for the process, shared by all gas channels. The names are those that hosts know, some of a single letter:
 * include this header only where they are wanted; kalorfix.h does not include it. The tables are null before Init, after a
 * failed load and after Done. All are single precision.
 */
#ifndef KALORFIX_GAS_H
#define KALORFIX_GAS_H

#include "kalorfix.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Full path of the gas data file, written by Init. */
KALORFIX_API extern char PATH_SRAM_FOR_LOADTABL[100];

/* 1 when the tables were allocated and the file was read, 0 when the loading failed or never ran. The name says the
 * opposite. */
KALORFIX_API extern char Gas_Not_Init;

/* VNIC SMV, 8 components: methane, ethane, propane, n-butane, i-butane, nitrogen, carbon dioxide, hydrogen sulphide. */
KALORFIX_API extern float* V_Mi; /* [8] molar mass, kg/kmol */
KALORFIX_API extern float* Roki; /* [8] critical density, kg/m3 */
KALORFIX_API extern float* Tki;  /* [8] critical temperature, K */
KALORFIX_API extern float* FPi;  /* [8] acentric factor */
KALORFIX_API extern float* Lij;  /* [8][8] binary correction of the critical volume */
KALORFIX_API extern float* Xij;  /* [8][8] binary correction of the critical temperature */
KALORFIX_API extern float* Akl;  /* [10][8] coefficients of the equation, first part */
KALORFIX_API extern float* Bkl;  /* [10][8] coefficients multiplied by the acentric factor of the mixture */

/* AGA8-92DC, 15 components in the order of the composition. */
KALORFIX_API extern float* Eij_; /* [15][15] binary energy parameters */
KALORFIX_API extern float* Uij;  /* [15][15] binary energy parameters of the mixture energy */
KALORFIX_API extern float* Kij;  /* [15][15] binary size parameters */
KALORFIX_API extern float* Gij_; /* [15][15] binary orientation parameters */
KALORFIX_API extern float* an;   /* [53] coefficients of the terms */
KALORFIX_API extern float* bn;   /* [53] density exponents */
KALORFIX_API extern float* cn;   /* [53] */
KALORFIX_API extern float* kn;   /* [53] */
KALORFIX_API extern float* un;   /* [53] temperature exponents */
KALORFIX_API extern float* gn;   /* [53] */
KALORFIX_API extern float* qn;   /* [53] */
KALORFIX_API extern float* fn;   /* [53] */

/* Components of the composition. */
KALORFIX_API extern float* Mi;    /* [15] molar mass, kg/kmol */
KALORFIX_API extern float* Zci;   /* [15] compressibility factor at standard conditions */
KALORFIX_API extern float* Rocui; /* [15] ideal-gas density at standard conditions, kg/m3 */
KALORFIX_API extern float* Bi;    /* [15] summation factor */
KALORFIX_API extern float* Ei;    /* [15] energy parameter, K */
KALORFIX_API extern float* Ki;    /* [15] size parameter, (m3/kmol)^(1/3) */
KALORFIX_API extern float* Gi;    /* [15] orientation parameter */
KALORFIX_API extern float* Qi;    /* [15] quadrupole parameter */
KALORFIX_API extern float* Fi;    /* [15] high-temperature parameter */

/* Ideal-gas heat capacities of the 8 components. */
KALORFIX_API extern float* L1ij; /* [8][11] powers 0..10 */
KALORFIX_API extern float* B1ij; /* [8][6] powers -1..-6 */

/* Working composition. */
KALORFIX_API extern float Xi[15];    /* mole fractions */
KALORFIX_API extern short Index[15]; /* components whose fraction is not zero, ascending */
KALORFIX_API extern short NumXi;     /* how many of Index are in use */
KALORFIX_API extern float Tmp_Xi[8]; /* the composition folded onto the 8 components */

/* Working arrays that depend on the composition. */
KALORFIX_API extern float C[53];
KALORFIX_API extern float B[15];
KALORFIX_API extern float EIJM[15][15];
KALORFIX_API extern float GIJM[15][15];
KALORFIX_API extern float Ckl[10][8];

/* Results and intermediates of the last method that ran. */
KALORFIX_API extern float T;      /* temperature, K */
KALORFIX_API extern float P;      /* absolute pressure, MPa */
KALORFIX_API extern float DeltaP; /* differential pressure, kPa */
KALORFIX_API extern float Z;      /* compressibility factor */
KALORFIX_API extern float K;      /* compressibility coefficient Z/Zc */
KALORFIX_API extern float Roc;    /* density at standard conditions, kg/m3 */
KALORFIX_API extern float Xa;     /* nitrogen, mole fraction */
KALORFIX_API extern float Xy;     /* carbon dioxide, mole fraction */
KALORFIX_API extern float FP;     /* acentric factor of the mixture */
KALORFIX_API extern float Tnk;    /* pseudo-critical temperature, K */
KALORFIX_API extern float Pnk;    /* pseudo-critical pressure, MPa */
KALORFIX_API extern float Tn;     /* reduced temperature */
KALORFIX_API extern float Rom;    /* molar density, kmol/m3 */
KALORFIX_API extern float Ron;    /* reduced density */
KALORFIX_API extern char
    VNIC_FLAG; /* 1 after the 8-component method ran, 0 after another full-composition method */

#ifdef __cplusplus
} /* extern "C" */

/* ---- Exported with C++ names ------------------------------------------------------------------------------- */

/// Number of values in a block 0..30 of the gas data file; 0 for any other number.
KALORFIX_API int Step_Init(int block);

/// Checks that the file exists and allocates the 31 tables: 0 done, 1 failed.
KALORFIX_API int Watcom_Init();

/// Reads the file into the tables: 0 done, 1 not opened or no tables. Values missing at the end of a short file are 0
/// (in the first two blocks, the last value that was read).
KALORFIX_API int Watcom_Load();

/// The whole load from PATH_SRAM_FOR_LOADTABL: 0 loaded, 1 failed. Sets Gas_Not_Init.
KALORFIX_API int INIT_GAS();

/// Releases the tables and sets their pointers to null.
KALORFIX_API void REINIT_GAS();
#endif

#endif /* KALORFIX_GAS_H */
