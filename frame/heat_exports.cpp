// Exported functions of heat carriers: the channel functions of their state and properties, and the water and
// steam routines.
#include "frame/channel_call.h"
#include "props/water/iapws95_tables.h"
#include "props/water/water.h"
#include "runtime/judged.h"
#include "runtime/units.h"

namespace frame = kalorfix::frame;
namespace water = kalorfix::water;

const double T_kr = water::critical_temperature_K;
const double p_kr = water::critical_pressure_MPa;

namespace {

constexpr short saturated_vapour_mode = 3;

void store(double* output, double value) {
    if (output) *output = value;
}

}  // namespace

int mt_param_tn(int channel, float t, float p, float hA, float hB, float dP, float dT, char* status,
                short* phase, float* ps, float* ts) {
    short unwanted = 0;
    short& phase_out = phase ? *phase : unwanted;
    return frame::channel_call<frame::Undefined::where_there_is_none>(
        frame::heat_channels, channel, status, std::array{ps, ts},
        [=, &phase_out](cTeplo2005& calculator, auto& r) {
            return calculator.Param_tn(t, p, hA, hB, dP, dT, phase_out, r[0], r[1]);
        });
}

int mt_tf_param(int channel, char source, unsigned short phase_req, float x, char* status, float* ro, float* mu,
                float* h, float* kappa) {
    return frame::channel_call(frame::heat_channels, channel, status, std::array{ro, mu, h, kappa},
                               [=](cTeplo2005& calculator, auto& r) {
                                   return calculator.tf_Param(source, phase_req, x, r[0], r[1], r[2], r[3]);
                               });
}

short t_param_1(double t_C, double p_MPa, short mode, double* ro, double* mu, double* h, double* kappa) {
    const kalorfix::FloatEnvironment guard;
    const double T_K = t_C + kalorfix::units::zero_celsius_K;
    water::Properties found{};
    bool done = false;
    if (mode == saturated_vapour_mode)
        done = water::pressure_in_range(p_MPa) && water::saturated_vapour(T_K, found);
    else
        done = water::single_phase(T_K, p_MPa, found);
    if (!kalorfix::all_finite(found.rho_kgm3, found.mu_uPas, found.h_kJ_kg, found.kappa)) {
        done = false;
        found = {};
    }
    store(ro, found.rho_kgm3);
    store(mu, found.mu_uPas);
    store(h, found.h_kJ_kg);
    store(kappa, found.kappa);
    return done ? 0 : 1;
}

short t_phase_1(double p_MPa, double t_C, double dp_MPa, double* ps) {
    const kalorfix::FloatEnvironment guard;
    double saturation_MPa = 0.0;
    const water::Phase phase =
        water::phase(p_MPa, t_C + kalorfix::units::zero_celsius_K, dp_MPa, saturation_MPa);
    store(ps, saturation_MPa);
    return static_cast<short>(phase);
}
