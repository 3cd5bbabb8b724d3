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

bool venturi_discharge(const Bore& bore, double Re, Discharge& out) {
    double C = 0.0;
    if (bore.device == Device::venturi_machined) {
        if (!(40000.0 * bore.beta <= Re && Re <= 1e8 * bore.beta)) return false;
        C = machined_coefficient(bore.beta, Re);
    } else {
        if (!(Re >= 40000.0)) return false;
        if (bore.device == Device::venturi_cast)
            C = Re < constant_from_Re ? 0.991 - 1400.0 / Re : 0.984;
        else
            C = Re < constant_from_Re ? 0.992 - 1300.0 / Re : 0.985;
    }
    out = {C, 1.0};
    return true;
}

}  // namespace kalorfix::flow
