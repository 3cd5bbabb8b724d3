// SPDX-License-Identifier: MIT
/* The module state of the gas methods: the tables of the gas data file and the working values.
 *
 * One copy for the process, shared by all gas channels. The names are those that hosts know, some of a single letter:
 * include this header only where they are wanted; kalorfix.h does not include it. The tables are null before Init, after a
 * failed load and after Done; from the load on they are for reading. All are single precision.
 */
#ifndef KALORFIX_GAS_H
#define KALORFIX_GAS_H

#include "kalorfix.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Full path of the gas data file, written by Init. */
KALORFIX_API extern char PATH_SRAM_FOR_LOADTABL[100];

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
KALORFIX_API extern float T;        /* temperature, K */
KALORFIX_API extern float P;        /* absolute pressure, MPa */
KALORFIX_API extern float DeltaP;   /* differential pressure, kPa */
KALORFIX_API extern float Z;        /* compressibility factor */
KALORFIX_API extern float K;        /* compressibility coefficient Z/Zc */
KALORFIX_API extern float Roc;      /* density at standard conditions, kg/m3 */
KALORFIX_API extern float Xa;       /* nitrogen, mole fraction */
KALORFIX_API extern float Xy;       /* carbon dioxide, mole fraction */
KALORFIX_API extern float FP;       /* acentric factor of the mixture */
KALORFIX_API extern float Tnk;      /* pseudo-critical temperature, K */
KALORFIX_API extern float Pnk;      /* pseudo-critical pressure, MPa */
KALORFIX_API extern float Tn;       /* reduced temperature */
KALORFIX_API extern float Rom;      /* molar density, kmol/m3 */
KALORFIX_API extern float Ron;      /* reduced density */
KALORFIX_API extern char VNIC_FLAG; /* 1 after the 8-component method, 0 after another full-composition one */

/* Properties of the last state. */
KALORFIX_API extern float Mu;       /* dynamic viscosity, uPa s */
KALORFIX_API extern float kk;       /* isentropic exponent */
KALORFIX_API extern float Ro;       /* density at working conditions, kg/m3 */
KALORFIX_API extern float SM;       /* molar mass of the mixture, kg/kmol */
KALORFIX_API extern char Plotnomer; /* 1 when Ro came from a densitometer */
KALORFIX_API extern float qmi;      /* mass flow, t/h, set by the host for NF6 and NF7 */
KALORFIX_API extern float qoi;      /* volume flow at working conditions, m3/h */
KALORFIX_API extern float qci;      /* volume flow at standard conditions, m3/h */

/* Constants of the gas methods: standard temperature (K) and pressure (MPa), molar gas constant (J/(mol K)). */
KALORFIX_API extern const float Tc;
KALORFIX_API extern const float Pc;
KALORFIX_API extern const float R;

#ifdef __cplusplus
} /* extern "C" */

/* ---- Exported with C++ names ------------------------------------------------------------------------------- */

/// Number of values in a block 0..30 of the gas data file; 0 for any other number.
KALORFIX_API int Step_Init(int block);

/// Checks that the file exists and allocates the 31 tables: 0 done, 1 failed.
KALORFIX_API int Watcom_Init();

/// Reads the file into the tables: 0 done, 1 not opened or no tables. Values missing at the end of a short file are 0
/// (in the first two blocks, the last value that was read), and a table that was not read whole counts as missing.
KALORFIX_API int Watcom_Load();

/// The whole load from PATH_SRAM_FOR_LOADTABL: 0 loaded, 1 failed. Sets Gas_Not_Init. Tables of an earlier load are released in
/// either case.
KALORFIX_API int INIT_GAS();

/// Releases the tables and sets their pointers to null.
KALORFIX_API void REINIT_GAS();

// The methods. They work on the module state above and leave it filled; mg_param_gs and mg_tf_param call them. T_K is the
// temperature in K, p_MPa the absolute pressure in MPa, dp_kPa a differential pressure in kPa that is only checked.
// A method fails (status 1, result 0) for T <= 70 or >= 1500 K, p <= 0 or >= 100 MPa, dp < 0 or >= 0.25 p; a NaN passes these
// limits and fails in the method. PF3_3 and PF3_4 fail too while the tables that they read are not loaded whole, and for
// a composition without any component. K of 0 or below, or not finite, is a failure of every method. Status 0 is success.

/// Working composition from 15 mole per cent (not normalised).
KALORFIX_API void PF1_1(float x0, float x1, float x2, float x3, float x4, float x5, float x6, float x7,
                        float x8, float x9, float x10, float x11, float x12, float x13, float x14);

/// Working composition from 15 volume fractions, normalised. Empty while the tables are not loaded.
KALORFIX_API void PF1_2(float r0, float r1, float r2, float r3, float r4, float r5, float r6, float r7,
                        float r8, float r9, float r10, float r11, float r12, float r13, float r14);

/// Density of the working composition at standard conditions, kg/m3, also in Roc; 0 while the tables are not loaded.
/// GOST 30319.1-96.
KALORFIX_API float PF2();

/// K by NX19 mod. (1) and GERG-91 mod. (2) from density at standard conditions, kg/m3, and nitrogen and carbon dioxide, mole
/// per cent. GOST 30319.2-96.
KALORFIX_API float NF1_1(float T_K, float dp_kPa, float p_MPa, float N2_pct, float CO2_pct, float rho_c,
                         short& status);
KALORFIX_API float NF1_2(float T_K, float dp_kPa, float p_MPa, float N2_pct, float CO2_pct, float rho_c,
                         short& status);

/// The same for the working composition and Roc (after PF1_1 or PF1_2, and PF2). Cube roots are taken as powers: that of
/// a negative number, as dense gas has, is a failure.
KALORFIX_API float PF3_1(float T_K, float dp_kPa, float p_MPa, short& status);
KALORFIX_API float PF3_2(float T_K, float dp_kPa, float p_MPa, short& status);

/// K of the working composition by AGA8-92DC, at the gas root: the density at which the pressure, rising along the
/// isotherm from density zero, reaches p_MPa before it first falls. Fails where there is none. AGA Report No. 8 (1992);
/// GOST 30319.2-96.
KALORFIX_API float PF3_3(float T_K, float dp_kPa, float p_MPa, short& status);

/// K of the working composition by VNIC SMV, at the gas root, as PF3_3. GOST 30319.2-96.
KALORFIX_API float PF3_4(float T_K, float dp_kPa, float p_MPa, short& status);

/// Working density Rom * SM, kg/m3, also in Ro; runs PF3_4 first when the last method was another one. SM is what the last
/// PF5 left.
KALORFIX_API float PF4_1();

/// Working density from the gas state, kg/m3, and from the reading of a densitometer (kg/m3, K, MPa); also in Ro.
KALORFIX_API float NF2_1();
KALORFIX_API float NF2_2(float rho_meter, float T_meter_K, float p_meter_MPa);

/// Viscosity, uPa s, and isentropic exponent from Roc, Xa, Xy; also in Mu and kk. GOST 30319.1-96.
KALORFIX_API float NF3();
KALORFIX_API float NF4();

/// Volume flow at working (Ro) and at standard conditions (Roc) of the mass flow qmi, m3/h; also in qoi and qci.
KALORFIX_API float NF6();
KALORFIX_API float NF7();

/// Viscosity, uPa s, of the working composition; runs PF3_4 first when the last method was another one. Also in Mu; 0 while
/// the tables are not loaded. The argument has no effect. GOST 30319.3-96.
KALORFIX_API float PF5(unsigned long);

/// Isentropic exponent from the state that PF3_4 left; also in kk; 0 while the tables are not loaded. GOST 30319.3-96.
KALORFIX_API float PF6();
#endif

#endif /* KALORFIX_GAS_H */
