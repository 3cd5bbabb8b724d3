// Classical Venturi tubes.
#include <cmath>

#include "flow/discharge.h"

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

}  // namespace

Discharge venturi_discharge(const Bore& bore, double Re) {
    switch (bore.device.device) {
        case Device::venturi_machined:
            return {machined_coefficient(bore.beta, Re), 1.0};
        case Device::venturi_cast:
            return {Re < constant_from_Re ? 0.991 - 1400.0 / Re : 0.984, 1.0};
        default:  // rough-welded
            return {Re < constant_from_Re ? 0.992 - 1300.0 / Re : 0.985, 1.0};
    }
}

}  // namespace kalorfix::flow
