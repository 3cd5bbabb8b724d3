// SPDX-License-Identifier: MIT
// Heat-carrier channel: state, phase and properties.
#include "props/heat_carrier.h"

#include <tuple>

#include "kalorfix_calculators.h"
#include "runtime/judged.h"
#include "runtime/units.h"

namespace units = kalorfix::units;
namespace water = kalorfix::water;
using kalorfix::judged;

char cTeplo2005::Param_tn(double t_in, double p_in, double hA, double hB, double dP, double dT,
                          short& phase_out, double& ps, double& ts) {
    if (t_in < 0.0 || p_in < 0.0) return judged(*this, false);
    p_sat = 0.0;
    T_sat = 0.0;
    t = t_in;
    phase_tn = 0;
    dP_sat = dP;
    bool good = metering_class == KALORFIX_CLASS_0 || metering_class == KALORFIX_CLASS_1;
    if (good) {
        p = p_in - units::standard_gravity * hA * hB;
        T = t_in + units::zero_celsius_K;
        const double p_MPa = p * units::MPa_per_Pa;
        good = water::carrier_accepted(T, p_MPa);
        if (good) {
            const water::CarrierState state = water::carrier_state(T, p_MPa, {dT, dP * units::MPa_per_Pa});
            p_sat = state.p_sat_MPa;
            T_sat = state.T_sat_K - units::zero_celsius_K;
            phase_tn = static_cast<short>(state.phase);
        }
    }
    std::tie(ps, ts, phase_out) = std::tie(p_sat, T_sat, phase_tn);
    return judged(*this, good);
}

char cTeplo2005::tf_Param(char source, unsigned short phase_req, double x, double& ro_out, double& mu_out,
                          double& h_out, double& kappa_out) {
    if (source != 0 && source != 1) return judged(*this, false);
    const bool has_state = valid != 0 && T != 0.0;
    phase = has_state && source == 0 ? static_cast<unsigned short>(phase_tn) : phase_req;
    water::CarrierProperties in_phase{};
    if (has_state)
        in_phase = water::carrier_properties(static_cast<water::Phase>(phase), t + units::zero_celsius_K,
                                             p * units::MPa_per_Pa, x);
    if (in_phase.at_saturation) p = p_sat * units::Pa_per_MPa;
    const water::Properties& found = in_phase.found;
    rho_w = found.rho_kgm3;
    mu = found.mu_uPas * units::Pas_per_uPas;
    h_w = found.h_kJ_kg;
    kappa = found.kappa;
    mu_out = mu * units::uPas_per_Pas;
    std::tie(ro_out, h_out, kappa_out) = std::tie(rho_w, h_w, kappa);
    return judged(*this, in_phase.good);
}
