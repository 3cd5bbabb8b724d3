// Heat-carrier channel: state, phase and properties.
#include "props/water/iapws95_tables.h"
#include "props/water/saturation.h"
#include "props/water/water.h"

#include "kalorfix.h"
#include "runtime/judged.h"

namespace water = kalorfix::water;
using kalorfix::all_finite;
using kalorfix::judged;

namespace {

constexpr double MPa_per_Pa = 1e-6;
constexpr double Pa_per_MPa = 1e6;
constexpr double uPas_per_Pas = 1e6;
constexpr double Pas_per_uPas = 1e-6;
constexpr double standard_gravity = 9.80665;  // m/s2

// Range of the state. The temperature reaches higher than that of the properties, on purpose.
constexpr double state_max_K = 1273.15;
constexpr double state_min_MPa = 0.001;

struct SaturationTest {
    double T_K, p_MPa;
    double T_sat_K, p_sat_MPa;
    double tolerance_K, tolerance_MPa;
};

water::Phase decide_phase(const SaturationTest& s) {
    if (s.T_K + s.tolerance_K > water::near_critical_K) return water::Phase::steam;
    if (s.p_MPa - s.tolerance_MPa <= s.p_sat_MPa && s.p_sat_MPa <= s.p_MPa + s.tolerance_MPa) {
        if (s.T_K - s.tolerance_K <= s.T_sat_K && s.T_sat_K <= s.T_K + s.tolerance_K)
            return water::Phase::saturated;
        if (s.T_sat_K < s.T_K - s.tolerance_K) return water::Phase::steam;
        return s.T_sat_K > s.T_K + s.tolerance_K ? water::Phase::water : water::Phase::undecided;
    }
    return s.p_MPa - s.tolerance_MPa > s.p_sat_MPa ? water::Phase::water : water::Phase::steam;
}

double mix(double x, double vapour, double single) { return (1.0 - x) * vapour + x * single; }

water::Properties mix(double x, const water::Properties& vapour, const water::Properties& single) {
    return {mix(x, vapour.rho_kgm3, single.rho_kgm3), mix(x, vapour.mu_uPas, single.mu_uPas),
            mix(x, vapour.h_kJ_kg, single.h_kJ_kg), mix(x, vapour.kappa, single.kappa)};
}

}  // namespace

char cTeplo2005::Param_tn(double t_in, double p_in, double hA, double hB, double dP, double dT,
                          short& phase_out, double& ps, double& ts) {
    if (t_in < 0.0 || p_in < 0.0) {
        valid = 0;
        return 0;
    }
    p_sat = 0.0;
    T_sat = 0.0;
    t = t_in;
    phase_tn = 0;
    dP_sat = dP;
    valid = 0;
    if (metering_class == 0 || metering_class == 1) {
        p = p_in - standard_gravity * hA * hB;
        T = t_in + water::zero_celsius_K;
        const double p_MPa = p * MPa_per_Pa;
        if (water::min_temperature_K <= T && T <= state_max_K && state_min_MPa <= p_MPa &&
            p_MPa <= water::max_pressure_MPa) {
            valid = 1;
            p_sat = water::saturation_pressure_MPa(T);
            T_sat = water::saturation_temperature_K(p_MPa, water::SaturationTemperatureSet::heat_carrier);
            phase_tn = static_cast<short>(decide_phase({T, p_MPa, T_sat, p_sat, dT, dP * MPa_per_Pa}));
            T_sat -= water::zero_celsius_K;
        }
    }
    ps = p_sat;
    ts = T_sat;
    phase_out = phase_tn;
    return static_cast<char>(valid);
}

char cTeplo2005::tf_Param(char source, unsigned short phase_req, double x, double& ro_out, double& mu_out,
                          double& h_out, double& kappa_out) {
    constexpr unsigned short saturated = static_cast<unsigned short>(water::Phase::saturated);
    if (source != 0 && source != 1) {
        valid = 0;
        return 0;
    }
    phase = phase_req;
    water::Properties found{};
    const bool has_state = valid != 0 && T != 0.0;
    valid = 0;
    if (has_state) {
        if (source == 0) phase = static_cast<unsigned short>(phase_tn);
        if (phase >= 1 && phase <= saturated &&
            water::single_phase(t + water::zero_celsius_K, p * MPa_per_Pa, found)) {
            valid = 1;
            if (phase == saturated) {
                water::Properties vapour{};
                valid = 0.0 <= x && x <= 1.0 && water::saturated_vapour(t + water::zero_celsius_K, vapour);
                p = p_sat * Pa_per_MPa;  // wet steam flows at the saturation pressure
                found = mix(x, vapour, found);
            }
        }
    }
    judged(*this, valid != 0 && all_finite(found.rho_kgm3, found.mu_uPas, found.h_kJ_kg, found.kappa));
    if (valid == 0) found = water::Properties{};
    rho_w = found.rho_kgm3;
    mu = found.mu_uPas * Pas_per_uPas;
    h_w = found.h_kJ_kg;
    kappa = found.kappa;
    ro_out = rho_w;
    mu_out = mu * uPas_per_Pas;
    h_out = h_w;
    kappa_out = kappa;
    return static_cast<char>(valid);
}
