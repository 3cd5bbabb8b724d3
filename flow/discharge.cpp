#include "flow/discharge.h"

namespace kalorfix::flow {

DischargeLaw::DischargeLaw(const Bore& bore) : bore_(bore) {
    if (is_orifice(bore.device))
        orifice_ = orifice_constants(bore);
    else if (is_nozzle(bore.device))
        nozzle_ = nozzle_constants(bore);
}

bool DischargeLaw::at(double Re, Discharge& out) const {
    if (is_orifice(bore_.device)) return orifice_discharge(bore_, orifice_, Re, out);
    if (is_nozzle(bore_.device)) return nozzle_discharge(bore_, nozzle_, Re, out);
    return is_standard(bore_.device) && venturi_discharge(bore_, Re, out);
}

}  // namespace kalorfix::flow
