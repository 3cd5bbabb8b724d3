// SPDX-License-Identifier: MIT
/* The calculator classes of kalorfix.so, exported with C++ names.
 *
 * One object is one measuring channel: a pipeline with its differential-pressure device (or flow meter) and
 * the medium in it. The objects that the mg_ and mt_ functions use are owned by the library; a C++ program may
 * also make its own. Every field is public and keeps the place in the object given here: the order is part of
 * the binary interface. Lengths in m, pressures in Pa, temperatures in degrees C unless said otherwise.
 *
 * The steps of a cycle hand their outcome on through `valid`: the state operation sets it, each following step
 * requires it, clears it while it works and sets it again on success. All operations return the status:
 * 1 computed, within limits and finite, 0 not computed. None throws. Nothing is locked: all calls come from one thread
 * at a time, also those of different objects.
 */
#ifndef KALORFIX_CALCULATORS_H
#define KALORFIX_CALCULATORS_H

#include "kalorfix.h"

/// What gas and heat-carrier channels have in common: pipeline, device and the flow equation.
class KALORFIX_API cCommon2005 {
public:
    cCommon2005();
    virtual ~cCommon2005();

    cCommon2005(const cCommon2005&) = delete;
    cCommon2005& operator=(const cCommon2005&) = delete;

    /// 1 for natural gas, 0 for a heat carrier.
    virtual bool IsGas() = 0;

    /// Stores the pipeline constants (units as in mt_init_tr). Refused input leaves the object as it was.
    /// A channel configured with class 1 keeps its first configuration: later calls with arguments in range return 1, and
    /// none changes anything. `first_init` receives 1 when the channel is configured for the first time, else 0.
    char Init_TR(char class_code, short type_code, char material_codes, double pipe_material,
                 double device_material, double D20_mm, double d20_mm, double R_sh_mm, double r_n0_mm,
                 char radius_at_end, double interval_years, double alpha_eps_configured, char& first_init);

    /// Diameters at the working temperature `t` and the size limits of the device.
    /// GOST 8.586.1-2005, 5.5 and annex G; size limits GOST 8.586.2..5.
    char CountDd();

    /// Diameter ratio, velocity-of-approach factor, correction for the bluntness of an orifice edge.
    /// GOST 8.586.2-2005, 5.3.2.4.
    char CountbetaEKp();

    /// Runs the two above when `valid` is 1 and hands out the results (diameters in mm); zeros where a step
    /// did not run. Devices 10..23 have no beta, E and K_p.
    char Param_tr(double& D_mm, double& d_mm, double& beta_out, double& E_out, double& K_p_out);

    /// The whole flow computation. `calc` 0: nothing is computed, the flows are 0 and the status 0, `valid`
    /// stays. `dp` in Pa; for meters the meter's reading: 20 t/h, 21 m3/h, 22 m3/h at standard conditions.
    /// `q_m_out` in t/h, `q_v_out` in m3/h; on failure 0, but q_m may hold the last pass's kg/s.
    char mg_Param(char calc, double dp, double rho, double& q_m_out, double& q_v_out);

    /// One pass of the flow equation for devices 1..9: Re from the flow of the pass before (10^6 in pass 0),
    /// C, K_sh and q_m in kg/s. Refusals leave C, K_sh and q_m as they were.
    char Countq_mReCK_sh(int pass, double dp, double rho, double q_prev);

    /// Devices 10..19: epsilon, alpha_eps, q_m in kg/s and Re without iteration.
    char CountqmalphaepsilonRe(double dp, double rho);

    /// Expansibility factor for devices 1..9; refused above dp/p = 0.25, exactly 1 for liquid water.
    char Countepsilon(double dp);

    /// One integration step of a flow q (per hour) over dt seconds. With `apply_downtime` the downtime measured at
    /// Init is filled in with q_subst (per hour, its 1/60 a minute). `total` = increment * 10^-exp10 + total_prev, less 10^6
    /// once when above it. Refused, outputs unwritten: q or total_prev negative or not finite, q_subst not finite.
    char in_Param(double q, double total_prev, double dt_s, short exp10, double q_subst, char apply_downtime,
                  double& downtime_min_out, double& total_out, double& downtime_part);

    /// One step of an hourly (set 0) or daily (set 1) interval; closes it with the difference of totals as its
    /// result, plus 10^6 when it is negative. Returns 1; 0 for a set above 1, with the outputs unwritten, and for numbers
    /// that are not finite.
    char in2_Param(float dt_s, float downtime_minutes, unsigned short set, double total_now,
                   double interval_time_s, double interval_start_total, double last_result,
                   double& interval_time_out, double& interval_start_out, double& result);

    unsigned char metering_class = 3;  ///< 0 or 1; 3 = never configured
    unsigned char device_type = 0;     ///< 1..23
    unsigned char by_material = 0;     ///< 1: mat_D, mat_d are codes 1..39; 0: expansion coefficients
    double mat_D = 0.0;                ///< pipe: material code, or linear expansion coefficient, 1/degC
    double mat_d = 0.0;                ///< device: the same
    double D20 = 0.0;                  ///< pipe inner diameter at 20 degC, m
    double d20 = 0.0;                  ///< device diameter at 20 degC, m
    double R_sh = 0.0;                 ///< equivalent uniform roughness of the pipe wall, m
    double r_n0 = 0.0;                 ///< initial radius of the orifice inlet edge, m
    unsigned char r_n_at_end = 0;      ///< 1: edge radius at the end of the check interval, 0: its mean
    double tau = 0.0;                  ///< interval between checks, years
    double alpha_eps = 0.0;            ///< alpha*epsilon of devices 10..19
    unsigned char valid = 0;           ///< outcome of the last step
    double t = 0.0;                    ///< temperature, degC
    double T = 0.0;                    ///< temperature, K
    double p = 0.0;                    ///< absolute pressure, Pa
    double R_a = 0.0;                  ///< arithmetic mean roughness, m
    double D = 0.0;                    ///< pipe diameter at `t`, m
    double d = 0.0;                    ///< device diameter at `t`, m
    double beta = 0.0;                 ///< d/D
    double E = 0.0;                    ///< velocity-of-approach factor
    double K_p = 0.0;                  ///< correction for edge bluntness
    double rho_w = 0.0;                ///< density at working conditions, kg/m3
    double mu = 0.0;                   ///< dynamic viscosity, Pa s
    double kappa = 0.0;                ///< isentropic exponent
    unsigned short phase = 0;          ///< phase of a heat carrier: 1 water, 2 steam, 3 wet steam; 0 for gas
    double q_m = 0.0;                  ///< mass flow: kg/s while it is solved, then t/h
    double q_v = 0.0;                  ///< volume flow at working conditions, m3/h
    double Re = 0.0;                   ///< Reynolds number of the pipe
    double C = 0.0;                    ///< discharge coefficient
    double K_sh = 0.0;                 ///< correction for pipe roughness
    double epsilon = 0.0;              ///< expansibility factor
};

/// A natural-gas channel.
class KALORFIX_API cGas2005 : public cCommon2005 {
public:
    cGas2005();
    ~cGas2005() override;
    bool IsGas() override;

    /// State and compressibility of the gas (arguments as in mg_param_gs). The results are written on every return, except
    /// when a value of a full composition is out of range.
    char Param_gs(double t_in, double p_meas, double rho_col, double h_col, short method, char fractions,
                  double x0, double x1, double x2, double x3, double x4, double x5, double x6, double x7,
                  double x8, double x9, double x10, double x11, double x12, double x13, double x14,
                  double rho_c_in, double& sum_out, double& K_out, double& rho_c_out);

    /// Density, viscosity (uPa s), isentropic exponent and heats of combustion (arguments as in mg_tf_param). On a state
    /// that is not valid the last values are handed out, zeros where there was none yet; outside the range of the water
    /// vapour nothing is written.
    char tf_Param(char unit, char tempBasis, double roVap, double& ro_out, double& mu_out, double& kappa_out,
                  double& hLow, double& hHigh);

    /// Flow of a gas channel. rho_c: density at standard conditions, kg/m3; k: the host's factor.
    /// `q_c_out` m3/h at standard conditions, `q_e_out` = q_c * 0.001 * k.
    char mgn_Param(char calc, double dp, double rho, double rho_c, double k, double& q_m_out, double& q_v_out,
                   double& q_c_out, double& q_e_out, double& K_sh_out, double& C_out, double& Re_out,
                   double& epsilon_out);

    /// One totalising step of an integrator channel (arguments as in mg_int_param). The total handed out on a refusal
    /// is the host's own.
    char int_Param(unsigned short integrator, double q_ext, float total_host, double q_subst, short exp10,
                   double& total_out, double& downtime_part, double& downtime_min_out);

    /// One interval step of an integrator channel (arguments as in mg_int_param_1). A refusal leaves the outputs
    /// unwritten.
    char int2_Param(unsigned short integrator, unsigned short set, float interval_time_host,
                    float interval_start_host, double last_result, double& interval_time_out,
                    double& interval_start_out, double& result);

    short Method = 0;               ///< compressibility method as given
    double Xi_in[15]{};             ///< composition as given
    double Xi_sum = 0.0;            ///< its sum
    double Ro_c = 0.0;              ///< density at standard conditions, kg/m3
    double K_c = 0.0;               ///< compressibility coefficient K = Z/Zc
    double H_low = 0.0;             ///< lower heat of combustion
    double H_high = 0.0;            ///< higher heat of combustion
    double Ro_vap = 0.0;            ///< water vapour in the working cubic metre, kg/m3
    double q_c = 0.0;               ///< volume flow at standard conditions, m3/h
    double q_e = 0.0;               ///< q_c * 0.001 * factor of the host
    double total[4]{};              ///< running totals
    double interval_start[2][4]{};  ///< total at the start of the hour [0] and the day [1]
    double interval_time[2][4]{};   ///< seconds elapsed in the hour and the day
    unsigned char first_call[4]{};  ///< 1 until the first totalising call
    unsigned long last_tick[4]{};   ///< clock at the last totalising call
    float dt[4]{};                  ///< seconds between the last two calls
    float downtime_min[4]{};        ///< minutes of downtime applied at the last call
};

/// A heat-carrier channel: water, superheated or wet steam.
class KALORFIX_API cTeplo2005 : public cCommon2005 {
public:
    cTeplo2005();
    ~cTeplo2005() override;
    bool IsGas() override;

    /// State and phase of the carrier (arguments as in mt_param_tn). Below 0 degC or 0 Pa the outputs are
    /// not written; other refusals write zeros.
    char Param_tn(double t_in, double p_in, double hA, double hB, double dP, double dT, short& phase_out,
                  double& ps, double& ts);

    /// Density, viscosity (uPa s), enthalpy (kJ/kg), isentropic exponent (arguments as in mt_tf_param). A
    /// source other than 0 and 1 leaves the outputs unwritten; other refusals write zeros.
    char tf_Param(char source, unsigned short phase_req, double x, double& ro_out, double& mu_out,
                  double& h_out, double& kappa_out);

    /// Flow of a heat-carrier channel. h: heat per mass, kJ/kg; `q_h_out` = q_m * 0.001 * h. Device 22 is
    /// refused after its (zero) flow was computed.
    char mgn_Param(char calc, double dp, double rho, double h, double& q_m_out, double& q_v_out,
                   double& q_h_out, double& K_sh_out, double& C_out, double& Re_out, double& epsilon_out);

    /// One totalising step of an integrator channel (arguments as in mt_int_param). The total handed out on a refusal
    /// is the host's own.
    char int_Param(unsigned short integrator, double q_ext, float total_host, double q_subst, short exp10,
                   double& total_out, double& downtime_part, double& downtime_min_out);

    /// One interval step of an integrator channel (arguments as in mt_int_param_1). A refusal leaves the outputs
    /// unwritten.
    char int2_Param(unsigned short integrator, unsigned short set, float interval_time_host,
                    float interval_start_host, double last_result, double& interval_time_out,
                    double& interval_start_out, double& result);

    double dP_sat = 0.0;            ///< pressure tolerance of the saturation test, Pa
    double T_sat = 0.0;             ///< saturation temperature at `p`, degC
    double p_sat = 0.0;             ///< saturation pressure at `T`, MPa
    short phase_tn = 0;             ///< phase decided by Param_tn; 0 undecided
    double h_w = 0.0;               ///< specific enthalpy, kJ/kg
    double q_h = 0.0;               ///< heat flow
    double total[3]{};              ///< running totals
    double interval_start[2][3]{};  ///< total at the start of the hour [0] and the day [1]
    double interval_time[2][3]{};   ///< seconds elapsed in the hour and the day
    unsigned char first_call[3]{};  ///< 1 until the first totalising call
    unsigned long last_tick[3]{};   ///< clock at the last totalising call
    float dt[3]{};                  ///< seconds between the last two calls
    float downtime_min[3]{};        ///< minutes of downtime applied at the last call
};

#endif /* KALORFIX_CALCULATORS_H */
