// Gas channel: the state, that is temperature, pressure, composition and compressibility.
#include <algorithm>
#include <array>
#include <cstddef>

#include "gas/composition.h"
#include "kalorfix.h"
#include "kalorfix_gas.h"
#include "runtime/judged.h"

using kalorfix::all_finite;
using kalorfix::judged;
using kalorfix::gas::carbon_dioxide;
using kalorfix::gas::nitrogen;

namespace {

constexpr double zero_celsius_K = 273.15;
constexpr double standard_gravity = 9.80665;  // m/s2
constexpr double MPa_per_Pa = 1e-6;

constexpr short nx19_method = 0;
constexpr short gerg91_method = 1;
constexpr short aga8_method = 2;

constexpr double highest_accepted_K = 0.9999;

using Values = std::array<double, kalorfix::gas::component_count>;

bool within_window(double T_K, double p_MPa) {
    return 250.0 < T_K && T_K < 340.0 && 0.001 < p_MPa && p_MPa < 30.0;
}

// A NaN is neither below nor above: it is left to the method.
bool any_outside(const Values& x, double upper) {
    for (const double value : x)
        if (value < 0.0 || value > upper) return true;
    return false;
}

void set_composition(const Values& x, bool volume_fractions) {
    const auto f = [&x](std::size_t i) { return static_cast<float>(x[i]); };
    (volume_fractions ? PF1_2 : PF1_1)(f(0), f(1), f(2), f(3), f(4), f(5), f(6), f(7), f(8), f(9), f(10), f(11),
                                       f(12), f(13), f(14));
}

// Runs the channel's method at its temperature and p_MPa; K_c, and of a full composition Ro_c, are set. True when the
// method succeeded.
bool run_method(cGas2005& c, double p_MPa, bool volume_fractions) {
    constexpr float no_dp = 0.0F;
    short failed = 1;
    const auto T_single = static_cast<float>(c.T);
    const auto p_single = static_cast<float>(p_MPa);
    if (c.Method == nx19_method || c.Method == gerg91_method) {
        const double N2 = c.Xi_in[nitrogen];
        const double CO2 = c.Xi_in[carbon_dioxide];
        if (!(0.0 <= c.Ro_c && c.Ro_c <= 1.0 && 0.0 <= N2 && N2 <= 100.0 && 0.0 <= CO2 && CO2 <= 100.0))
            return false;
        c.K_c = static_cast<double>((c.Method == nx19_method ? NF1_1 : NF1_2)(
            T_single, no_dp, p_single, static_cast<float>(N2), static_cast<float>(CO2),
            static_cast<float>(c.Ro_c), failed));
    } else {
        set_composition(std::to_array(c.Xi_in), volume_fractions);
        c.Ro_c = static_cast<double>(PF2());
        c.K_c =
            static_cast<double>((c.Method == aga8_method ? PF3_3 : PF3_4)(T_single, no_dp, p_single, failed));
        if (!(c.Ro_c > 0.0)) return false;  // no flow at standard conditions follows from it
    }
    return failed == 0;
}

}  // namespace

char cGas2005::Param_gs(double t_in, double p_meas, double rho_col, double h_col, short method, char fractions,
                        double x0, double x1, double x2, double x3, double x4, double x5, double x6, double x7,
                        double x8, double x9, double x10, double x11, double x12, double x13, double x14,
                        double rho_c_in, double& sum_out, double& K_out, double& rho_c_out) {
    const Values x{x0, x1, x2, x3, x4, x5, x6, x7, x8, x9, x10, x11, x12, x13, x14};
    Xi_sum = 0.0;
    K_c = 0.0;
    t = t_in;
    std::copy(x.begin(), x.end(), Xi_in);
    Method = method;
    Ro_c = rho_c_in;
    valid = 0;
    if (metering_class == 0 || metering_class == 1) {
        for (const double value : x) Xi_sum += value;
        p = p_meas + rho_col * (h_col * -standard_gravity);
        T = t_in + zero_celsius_K;
        const double p_MPa = p * MPa_per_Pa;
        if (within_window(T, p_MPa)) {
            const bool by_composition = method != nx19_method && method != gerg91_method;
            if (by_composition && any_outside(x, fractions == 0 ? 100.0 : 1.0)) return 0;
            const bool found = run_method(*this, p_MPa, fractions != 0);
            judged(*this, found && K_c < highest_accepted_K && all_finite(Xi_sum, K_c, Ro_c));
        }
    }
    sum_out = Xi_sum;
    K_out = K_c;
    rho_c_out = Ro_c;
    return static_cast<char>(valid);
}
