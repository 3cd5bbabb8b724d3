#include "flow/discharge.h"

namespace kalorfix::flow {

bool discharge(const Bore& bore, double Re, Discharge& out) {
    switch (bore.device) {
        case Device::orifice_corner:
        case Device::orifice_d_d2:
        case Device::orifice_flange:
            return orifice_discharge(bore, Re, out);
        case Device::nozzle_isa1932:
        case Device::nozzle_long_radius:
        case Device::venturi_nozzle:
            return nozzle_discharge(bore, Re, out);
        case Device::venturi_cast:
        case Device::venturi_machined:
        case Device::venturi_welded:
            return venturi_discharge(bore, Re, out);
        default:
            return false;
    }
}

}  // namespace kalorfix::flow
