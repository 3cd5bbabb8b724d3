// SPDX-License-Identifier: MIT
/* kalorfix.so: flow of natural gas, water and steam by differential pressure, and the properties behind it.
 *
 * This header is plain C. What is exported with C++ names stands in headers of its own: the calculator classes in
 * kalorfix_calculators.h, clock, directories and INI files in kalorfix_runtime.h. kalorfix_gas.h has the module state of the
 * gas methods.
 *
 * Channel functions (mg_ natural gas, mt_ heat carrier) take the channel first, 1..20000; gas and heat-carrier
 * channels are numbered apart, and a channel comes into being with the first call that names it. They return 1
 * always; success is the byte `*status`: 1 computed and within limits, 0 not computed. With a status of 1 every
 * number handed out is finite, but for ps and ts of mt_param_tn where they do not exist. When the status is 0 the
 * outputs hold what is said at each function; for a channel outside 1..20000, and when memory is short, all float
 * outputs are 0. A null pointer is allowed for any output that is not wanted.
 *
 * Threads: none are started and nothing is locked. All calls come from one thread at a time, whatever channel they
 * concern. The gas channels share the module state, so that mg_param_gs and mg_tf_param of a channel run back to back.
 *
 * No input stops the process, NaN and infinities included, nor, in the plain functions, does a trap that the host
 * has enabled for floating-point exceptions.
 */
#ifndef KALORFIX_H
#define KALORFIX_H

#if defined(__GNUC__)
#define KALORFIX_API __attribute__((visibility("default")))
#else
#define KALORFIX_API
#endif

/* Version of this header. */
#define KALORFIX_VERSION "1.0.0"
#define KALORFIX_VERSION_NUMBER 0x010000 /* two hexadecimal digits each for major, minor and patch */

/* ---- Codes ------------------------------------------------------------------------------------------------- */

/* Device of a channel, `device_type`. 10..18 are averaging devices, the first two with a linear, the others with a
 * tabulated flow coefficient. */
enum kalorfix_device {
    KALORFIX_ORIFICE_CORNER = 1, /* orifice plate, corner tappings */
    KALORFIX_ORIFICE_D_D2 = 2,   /* D and D/2 tappings */
    KALORFIX_ORIFICE_FLANGE = 3, /* flange tappings */
    KALORFIX_NOZZLE_ISA1932 = 4,
    KALORFIX_NOZZLE_LONG_RADIUS = 5,
    KALORFIX_VENTURI_NOZZLE = 6,
    KALORFIX_VENTURI_CAST = 7,     /* classical Venturi tube, as-cast convergent */
    KALORFIX_VENTURI_MACHINED = 8, /* machined convergent */
    KALORFIX_VENTURI_WELDED = 9,   /* rough-welded sheet-iron convergent */
    KALORFIX_AVERAGING_FIRST = 10,
    KALORFIX_AVERAGING_LAST = 18,
    KALORFIX_CONFIGURED_COEFFICIENT = 19, /* flow coefficient as configured, alpha_eps */
    KALORFIX_METER_MASS = 20,             /* t/h */
    KALORFIX_METER_VOLUME = 21,           /* m3/h */
    KALORFIX_METER_STANDARD_VOLUME = 22,  /* m3/h at standard conditions, gas only */
    KALORFIX_EXTERNAL_FLOW = 23           /* given to the totals */
};

/* Compressibility method of mg_param_gs; any other value means VNIC SMV. */
enum kalorfix_method { KALORFIX_NX19 = 0, KALORFIX_GERG91 = 1, KALORFIX_AGA8_92DC = 2, KALORFIX_VNIC_SMV = 3 };

/* Phase of a heat carrier. */
enum kalorfix_phase {
    KALORFIX_PHASE_UNDECIDED = 0,
    KALORFIX_WATER = 1,
    KALORFIX_STEAM = 2, /* superheated */
    KALORFIX_WET_STEAM = 3
};

/* Metering class: 1 is solved more closely, and keeps its first configuration. */
enum kalorfix_metering_class { KALORFIX_CLASS_0 = 0, KALORFIX_CLASS_1 = 1 };

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Lifecycle -------------------------------------------------------------------------------------------- */

/* Initialises the library: reads Num_gas_trub from tornkntr.ini in the settings directory, loads the gas tables from
 * gas.dat in the system directory, and measures the controller's downtime from the stamp file dat/timewait.dat in the data
 * directory. A missing file and short memory are no failure: defaults stay, and a message (code page 866) goes to standard
 * output for the settings. Returns 1; 0 is kept for an initialisation that fails, of which there is none. The settings
 * file stays open until the next Init that does something, or the unload. */
KALORFIX_API int Init(void);

/* Releases the gas tables; the channels stay. Returns 1. Init may follow again. */
KALORFIX_API int Done(void);

/* 1 between a successful Init and Done. */
KALORFIX_API extern short Is_already_init;

/* 1 when the last load allocated the gas tables and read the file, a short one too, 0 when it failed or there was none; Done
 * leaves it alone. The name says the opposite. */
KALORFIX_API extern char Gas_Not_Init;

/* Configured number of gas pipelines, at least 1 after Init; 5 by default. */
KALORFIX_API extern short Num_gas_trub;

/* ---- Pipeline ------------------------------------------------------------------------------------------- */

/* Stores the pipeline constants of a gas (mg_) or heat-carrier (mt_) channel.
 *
 *   metering_class  0 or 1. 1 solves the flow to 1e-5 instead of 1e-3 and freezes the configuration: later
 *                   calls with arguments in range report 1, and none changes anything
 *   device_type     1 orifice plate with corner tappings, 2 with D and D/2 tappings, 3 with flange tappings;
 *                   4 ISA 1932 nozzle, 5 long-radius nozzle, 6 Venturi nozzle; 7, 8, 9 Venturi tube with
 *                   as-cast, machined, rough-welded convergent; 10..18 averaging devices with a linear or
 *                   tabulated flow coefficient; 19 device with a configured flow coefficient; 20 mass meter,
 *                   21 volume meter, 22 meter of standard volume (gas only), 23 external flow
 *   by_material     1: mat_D and mat_d are material codes 1..39; 0: linear expansion coefficients, 1/degC
 *   mat_D, mat_d    pipe and device material (the fraction of a code is dropped)
 *   D20_mm, d20_mm  pipe and device diameter at 20 degC, mm, not negative
 *   R_sh_mm         equivalent uniform roughness of the pipe, mm, not negative
 *   r_n0_mm         initial radius of the orifice edge, mm, not negative
 *   r_n_at_end      1: edge radius at the end of the check interval; 0: its mean over the interval
 *   tau_years       interval between checks, not negative
 *   alpha_eps       flow coefficient of device 19, expansibility included, not negative
 *
 * Status 0: an argument outside its range; the channel stays as it was. */
KALORFIX_API int mg_init_tr(int channel, char metering_class, short device_type, char by_material, float mat_D,
                            float mat_d, float D20_mm, float d20_mm, float R_sh_mm, float r_n0_mm,
                            char r_n_at_end, float tau_years, float alpha_eps, char* status);
KALORFIX_API int mt_init_tr(int channel, char metering_class, short device_type, char by_material, float mat_D,
                            float mat_d, float D20_mm, float d20_mm, float R_sh_mm, float r_n0_mm,
                            char r_n_at_end, float tau_years, float alpha_eps, char* status);

/* Geometry at the working temperature: diameters in mm, their ratio, the velocity-of-approach factor and the
 * correction for the bluntness of an orifice edge. Needs the state of the medium and runs before the flow.
 *
 * Status 0: the step before failed (all outputs 0), the temperature is outside a material's range (all 0),
 * or a diameter or their ratio is outside the device's limits (what was computed up to there, the rest 0).
 * Devices 10..23 have no size limits and report 0 for beta, E and K_p. GOST 8.586.1..5-2005. */
KALORFIX_API int mg_param_tr(int channel, char* status, float* D_mm, float* d_mm, float* beta, float* E,
                             float* K_p);
KALORFIX_API int mt_param_tr(int channel, char* status, float* D_mm, float* d_mm, float* beta, float* E,
                             float* K_p);

/* ---- Flow ------------------------------------------------------------------------------------------------- */

/* Flow from the differential pressure. Needs state, properties and geometry of this cycle.
 *
 *   calc   0: compute nothing (status 0, flows 0, the channel stays valid); other values: compute
 *   dp     differential pressure, Pa; with meters their reading: device 20 t/h, 21 m3/h, 22 m3/h at standard
 *          conditions
 *   rho    density at working conditions, kg/m3
 *   rho_c  density at standard conditions (293.15 K, 101325 Pa), kg/m3
 *   k      factor of the host: q_e = q_c * 0.001 * k
 *   h      heat per mass, kJ/kg: q_h = q_m * 0.001 * h, in GJ/h for q_m in t/h
 *
 *   q_m mass flow t/h, q_v volume flow m3/h, q_c volume flow at standard conditions m3/h, q_h heat flow,
 *   K_sh roughness correction, C discharge coefficient, Re Reynolds number, epsilon expansibility
 *
 * Status 0: a step before failed; dp/p above 0.25 (devices 1..9, not water); dp 0 (devices 1..18) or negative
 * (1..19); Re outside the device's range; a pipe too rough; no convergence within 100 passes; device 22 with a heat
 * carrier; a result that is not finite. The flows are then 0 or as far as they were calculated: q_m may hold the last
 * pass's value in kg/s, or a NaN. The factors hold what the last pass left, 0 if it did not get there.
 * Ranges: Re by device as in GOST 8.586.2..5-2005. */
KALORFIX_API int mg_mgn_param(int channel, char calc, float dp, float rho, float rho_c, float k, char* status,
                              float* q_m, float* q_v, float* q_c, float* q_e, float* K_sh, float* C, float* Re,
                              float* epsilon);
KALORFIX_API int mt_mgn_param(int channel, char calc, float dp, float rho, float h, char* status, float* q_m,
                              float* q_v, float* q_h, float* K_sh, float* C, float* Re, float* epsilon);

/* ---- Totals ----------------------------------------------------------------------------------------------- */

/* Minutes of controller downtime, measured by Init. */
KALORFIX_API extern double ProstoyTime;

/* Totals one flow over the time since the last call for the same integrator channel; runs after the flow.
 *
 *   integrator  gas: 1 q_m, 2 q_v, 3 q_c, any other q_e; heat carrier: 1 q_m, 2 q_v, any other q_h
 *   q_ext       flow of device 23, per hour; other devices take their own
 *   total_host  the register as the host holds it: it is authoritative and replaces the library's own
 *   q_subst     flow (per hour) to fill the controller's downtime with; applied once, at the integrator's first call
 *   exp10       decimal exponent of the register: each increment is multiplied by 10^-exp10
 *
 *   total          total_host plus the increment, less 10^6, once, when it is above 10^6. So it lies in 0..10^6 when
 *                  total_host does and the increment is not above 10^6; of 3000000 there remain 2000000
 *   downtime_part  the increment of this step when a downtime was applied, else 0
 *   downtime_min   minutes of downtime applied at this call
 *
 * Status 1 says that a flow was counted, not that it was computed in this cycle: after `calc` 0 it is a flow of 0, and
 * where the flow step was left out it is the last flow again.
 *
 * Status 0: the flow was not computed (the time is passed over, so that the next good cycle does not count it); a flow
 * or register that is negative or not finite, a substitute flow that is not finite. `total` is then the host's own.
 * A refusal holds for the integrators after it in the cycle, but not with device 23. */
KALORFIX_API int mg_int_param(int channel, unsigned short integrator, float q_ext, float total_host,
                              float q_subst, short exp10, char* status, float* total, float* downtime_part,
                              float* downtime_min);
KALORFIX_API int mt_int_param(int channel, unsigned short integrator, float q_ext, float total_host,
                              float q_subst, short exp10, char* status, float* total, float* downtime_part,
                              float* downtime_min);

/* Carries the hourly (set 0) or daily (set 1) interval of an integrator channel on; runs after mg_/mt_int_param.
 *
 *   interval_time_host   seconds elapsed in the interval, as the host holds them; 0 starts a new interval
 *   interval_start_host  register at the start of the interval, as the host holds it
 *   last_result          result of the last closed interval, handed back while this one runs
 *
 *   interval_time, interval_start  to be kept by the host until the next call
 *   result                         amount of the last closed interval: the difference of the registers, plus 10^6
 *                                  when it is negative, so right while an interval holds less than 10^6
 *
 * An interval has closed when time passed and interval_time did not grow.
 *
 * Status 0, outputs 0: the step before failed, the set is above 1, or a number handed over is not finite. */
KALORFIX_API int mg_int_param_1(int channel, unsigned short integrator, unsigned short set,
                                float interval_time_host, float interval_start_host, float last_result,
                                char* status, float* interval_time, float* interval_start, float* result);
KALORFIX_API int mt_int_param_1(int channel, unsigned short integrator, unsigned short set,
                                float interval_time_host, float interval_start_host, float last_result,
                                char* status, float* interval_time, float* interval_start, float* result);

/* ---- Gas ---------------------------------------------------------------------------------------------------- */

/* State and compressibility of a gas; the first step of its cycle.
 *
 *   t               temperature, degC, -23.15..66.85, both exclusive
 *   p_meas          measured absolute pressure, Pa; after the correction for the column 0.001..30 MPa, both exclusive
 *   rho_col, h_col  density (kg/m3) and height (m) of the liquid column between tap and transmitter: p is lowered by
 *                   9.80665 * rho_col * h_col
 *   method          0 NX19 mod., 1 GERG-91 mod. (both by density, nitrogen and carbon dioxide), 2 AGA8-92DC, any other
 *                   value VNIC SMV (both by composition, with the gas data of Init)
 *   fractions       0: composition in mole per cent, 0..100; otherwise in volume fractions, 0..1. Methods 0 and 1 take
 *                   nitrogen and carbon dioxide in mole per cent, whatever stands here
 *   x0..x14         methane, ethane, propane, n-butane, i-butane, n-pentane, i-pentane, hexanes, heptanes, octanes,
 *                   nitrogen (x10), carbon dioxide (x11), hydrogen sulphide, helium, carbon monoxide. Mole per cent are
 *                   not normalised. The gas data decides on the pentanes and the last two
 *   rho_c_in        density at standard conditions (293.15 K, 101325 Pa), kg/m3, 0..1, for methods 0 and 1
 *
 *   sum_out    sum of the composition as given
 *   K_out      compressibility coefficient K = Z/Zc
 *   rho_c_out  density at standard conditions, kg/m3: given, or computed from the composition
 *
 * Status 0: channel never configured; state, density or contents out of range; the method failed, or a table that it
 * needs was not read whole; K is 0.9999 or more. The outputs are written all the same: K_out 0 where no method ran or
 * it failed, sum_out 0 for a channel never configured. Only a composition value out of range leaves all three 0.
 * mg_tf_param must follow with no other gas calculation in between.
 * GOST 30319.2-96; AGA Report No. 8 (1992). */
KALORFIX_API int mg_param_gs(int channel, float t, float p_meas, float rho_col, float h_col, short method,
                             char fractions, float x0, float x1, float x2, float x3, float x4, float x5,
                             float x6, float x7, float x8, float x9, float x10, float x11, float x12, float x13,
                             float x14, float rho_c_in, char* valid_out, float* sum_out, float* K_out,
                             float* rho_c_out);

/* Properties of a gas; the second step of its cycle.
 *
 *   unit, tempBasis  heats of combustion of methods 3 and above, in 0 kJ/m3 or 1 kcal/m3, the volume at 0: 0 degC or
 *                    1: 20 degC; unit + 2 * tempBasis above 3 gives 0. Methods up to 2 give MJ/m3 at 20 degC, whatever stands here
 *   roVap            water vapour in the working cubic metre, kg/m3; 0 or negative for dry gas
 *
 *   ro_out density at working conditions kg/m3, mu_out viscosity uPa s, kappa_out isentropic exponent, hLow and hHigh lower
 *   and higher heat of combustion
 *
 * Methods up to 2, method 2 included, take viscosity, exponent and heats from density, nitrogen and carbon dioxide; viscosity
 * and exponent with the contents that the last method by density left. Methods 3 and above take them from the composition.
 * The heats assume mole per cent.
 *
 * Status 0: the state is not valid (the outputs hold the last values, zeros where there was no state yet); roVap is
 * a NaN or more than a cubic metre holds, or above 0 where the saturation temperature of water at the gas pressure is
 * above 645 K (outputs 0, the state is void until the next mg_param_gs); methods 3 and above: a table is missing.
 * GOST 30319.1-96, GOST 30319.3-96. */
KALORFIX_API int mg_tf_param(int channel, char unit, char tempBasis, float roVap, char* status, float* ro_out,
                             float* mu_out, float* kappa_out, float* hLow, float* hHigh);

/* ---- Heat carrier ------------------------------------------------------------------------------------- */

/* State and phase of a heat carrier; the first step of its cycle.
 *
 *   t       temperature, degC, 0..1000
 *   p       measured absolute pressure, Pa; after the correction for the column 0.001..100 MPa
 *   hA, hB  height (m) and density (kg/m3) of the liquid column between tap and transmitter, in either
 *           order: p is lowered by 9.80665 * hA * hB
 *   dP      tolerance of the saturation test, Pa
 *   dT      tolerance of the saturation test, K
 *
 *   phase   1 water, 2 superheated steam, 3 wet steam, 0 undecided; written only when the channel exists and t
 *           and p are not negative
 *   ps      saturation pressure at t, MPa (NaN above the critical temperature, 373.946 degC)
 *   ts      saturation temperature at the corrected pressure, degC (above the critical pressure it falls again)
 *
 * Status 0: t or p negative, channel never configured, state out of range; ps and ts are then 0. */
KALORFIX_API int mt_param_tn(int channel, float t, float p, float hA, float hB, float dP, float dT,
                             char* status, short* phase, float* ps, float* ts);

/* Properties of a heat carrier; the second step of its cycle, once for each mt_param_tn: with wet steam a second call
 * would stand on the saturation line.
 *
 *   source     0: the phase decided by mt_param_tn; 1: `phase_req`; anything else is refused
 *   phase_req  1 water, 2 superheated steam, 3 wet steam (used with source 1)
 *   x          wet steam only: the share of the single-phase state in the mixture, 0..1; all four properties
 *              are (1 - x) * saturated vapour at t + x * state at (t, p), and the saturation pressure
 *              becomes the working pressure
 *
 *   ro density kg/m3, mu viscosity uPa s, h enthalpy kJ/kg, kappa isentropic exponent
 *
 * Status 0, all four 0: state not valid or none yet, phase not 1..3, state outside the range of t_param_1, x outside
 * 0..1. The channel's state is then void until the next mt_param_tn. */
KALORFIX_API int mt_tf_param(int channel, char source, unsigned short phase_req, float x, char* status,
                             float* ro, float* mu, float* h, float* kappa);

/* ---- Water and steam ---------------------------------------------------------------------------------- */

/* Critical constants of water: temperature in K, pressure in MPa. */
KALORFIX_API extern const double T_kr;
KALORFIX_API extern const double p_kr;

/* Properties of water and steam by IAPWS-95, viscosity by the IAPS formulation of 1985.
 *
 *   t_C    temperature, 0..800 degC
 *   p_MPa  absolute pressure, 0..100 MPa; at 0 the ideal-gas limits are given
 *   mode   3: saturated vapour at t_C, up to 371.85 degC, p_MPa only checked; any other value: the state at
 *          (t_C, p_MPa), liquid from the saturation pressure up
 *
 *   ro density kg/m3, mu viscosity uPa s, h specific enthalpy kJ/kg, kappa isentropic exponent
 *
 * Returns 0, or 1 when the state is out of range: all outputs are then 0. */
KALORFIX_API short t_param_1(double t_C, double p_MPa, short mode, double* ro, double* mu, double* h,
                             double* kappa);

/* Phase of water at p_MPa (0.001..100) and t_C (0..800) with the tolerance dp_MPa.
 *
 * Returns, decided in this order: 0 out of range; 2 steam from 371.85 degC or 21.5 MPa on; 1 water at or below 100 degC,
 * whatever the pressure; 3 saturated when p is within dp of the saturation pressure; 1 water above it, 2 steam below.
 * `ps` receives the saturation pressure at t_C in MPa (NaN above the critical temperature), 0 when out of range. */
KALORFIX_API short t_phase_1(double p_MPa, double t_C, double dp_MPa, double* ps);

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif /* KALORFIX_H */
