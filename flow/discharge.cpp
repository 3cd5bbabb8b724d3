// SPDX-License-Identifier: MIT
// The discharge coefficient of any standard device, and that of the classical Venturi tubes.
#include "flow/discharge.h"

#include <cmath>

namespace kalorfix::flow {
namespace {

constexpr double constant_from_Re = 200000.0;

// Machined convergent, GOST 8.586.4-2005, 5.5.3. The coefficient has steps, so that a flow can alternate
// between two values for ever; the solution of the flow equation caps its passes.
double machined_coefficient(double beta, double Re) {
    if (Re < 5e5 * beta) return 1.009 * std::pow(million * beta / Re, -0.013);
    if (Re <= 1e6 * beta) return 0.995;
    return Re <= 2e6 * beta ? 1.0 : 1.01;
}

// GOST 8.586.4-2005, 5.5.2 to 5.5.4.
Discharge venturi_discharge(const Bore& bore, double Re) {
    switch (bore.device.device) {
        case Device::venturi_machined: return {machined_coefficient(bore.beta, Re), 1.0};
        case Device::venturi_cast: return {Re < constant_from_Re ? 0.991 - 1400.0 / Re : 0.984, 1.0};
        default:  // rough-welded
            return {Re < constant_from_Re ? 0.992 - 1300.0 / Re : 0.985, 1.0};
    }
}

}  // namespace

DischargeLaw::DischargeLaw(const Bore& bore)
    : bore_(bore), reynolds_(bore.device.reynolds(bore.beta, bore.D_m)) {
    if (bore.device.family == Family::orifice)
        orifice_ = orifice_constants(bore);
    else if (bore.device.family == Family::nozzle)
        nozzle_ = nozzle_constants(bore);
}

Limit DischargeLaw::at(double Re, Discharge& out) const {
    if (!reynolds_.contains(Re)) return Limit::reynolds;
    switch (bore_.device.family) {
        case Family::orifice: return orifice_discharge(bore_, orifice_, Re, out);
        case Family::nozzle: return nozzle_discharge(bore_, nozzle_, Re, out);
        case Family::venturi_tube: out = venturi_discharge(bore_, Re); return Limit::none;
        default: return Limit::unknown_device;
    }
}

}  // namespace kalorfix::flow
