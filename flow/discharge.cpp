#include "flow/discharge.h"

namespace kalorfix::flow {

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
        case Family::orifice:
            return orifice_discharge(bore_, orifice_, Re, out);
        case Family::nozzle:
            return nozzle_discharge(bore_, nozzle_, Re, out);
        case Family::venturi_tube:
            out = venturi_discharge(bore_, Re);
            return Limit::none;
        default:
            return Limit::unknown_device;
    }
}

}  // namespace kalorfix::flow
