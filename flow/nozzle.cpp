// ISA 1932 nozzle, long-radius nozzle and Venturi nozzle.
#include <cmath>

#include "flow/discharge.h"

namespace kalorfix::flow {
namespace {

bool isa1932_reynolds_accepted(double beta, double Re) {
    if (0.3 <= beta && beta < 0.44) return 70000.0 <= Re && Re <= 5e7;
    if (0.44 <= beta && beta <= 0.8) return 20000.0 <= Re && Re <= 5e7;
    return true;
}

// GOST 8.586.3-2005, 5.1.6.2.
double isa1932_coefficient(double beta, double Re) {
    return 0.99 - 0.2262 * std::pow(beta, 4.1) -
           (0.00175 * beta * beta - 0.0033 * std::pow(beta, 4.15)) * std::pow(million / Re, 1.15);
}

// GOST 8.586.3-2005, 5.2.6.2.
double long_radius_coefficient(double beta, double Re) {
    return 0.9965 - 0.00653 * std::sqrt(million * beta / Re);
}

// GOST 8.586.3-2005, 5.3.4.2.
double venturi_nozzle_coefficient(double beta) { return 0.9858 - 0.196 * std::pow(beta, 4.5); }

// False when the pipe is too rough. A pipe is smooth up to the limit of the table; where the limit is
// undefined the comparison fails and the pipe counts as smooth.
bool roughness_correction(const Bore& bore, double Re, double& K_sh) {
    K_sh = 1.0;
    if (!(nozzle_roughness_limit(bore.beta) < 1e4 * bore.R_a_m / bore.D_m)) return true;
    if (bore.R_sh_m > 30.0 * bore.D_m / 1e4) return false;
    const double decades = std::log10(Re) - 6.0;
    const double f = Re >= million ? 1.0 : 1.0 - 0.25 * decades * decades;
    const double beta2 = bore.beta * bore.beta;
    K_sh = 1.0 + beta2 * beta2 * f * (0.045 * std::log10(1e4 * bore.R_sh_m / bore.D_m) - 0.025);
    return !(bore.device == Device::nozzle_isa1932 && 0.5 < bore.D_m && bore.D_m <= 1.0 && K_sh > 1.03);
}

}  // namespace

double nozzle_roughness_limit(double beta) {
    NozzleRoughness below{0.0, 0.0}, above{0.0, 0.0};
    for (const NozzleRoughness& row : nozzle_roughness) {
        if (row.beta <= beta) below = row;
        if (row.beta >= beta) {
            above = row;
            break;
        }
    }
    return below.limit + (above.limit - below.limit) * (beta - below.beta) / (above.beta - below.beta);
}

bool nozzle_discharge(const Bore& bore, double Re, Discharge& out) {
    if (bore.device == Device::nozzle_long_radius) {
        if (!(1e4 <= Re && Re <= 1e7)) return false;
        out = {long_radius_coefficient(bore.beta, Re), 1.0};
        return true;
    }
    const bool isa = bore.device == Device::nozzle_isa1932;
    if (isa ? !isa1932_reynolds_accepted(bore.beta, Re) : !(150000.0 <= Re && Re <= 2e6)) return false;
    double K_sh = 1.0;
    if (!roughness_correction(bore, Re, K_sh)) return false;
    out = {isa ? isa1932_coefficient(bore.beta, Re) : venturi_nozzle_coefficient(bore.beta), K_sh};
    return true;
}

}  // namespace kalorfix::flow
