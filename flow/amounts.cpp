// SPDX-License-Identifier: MIT
#include "flow/amounts.h"

#include "runtime/units.h"

namespace kalorfix::flow {

WorkingFlow working_flow(const DeviceRow& device, double q_m_kgs, double reading, double rho_kgm3) {
    switch (device.device) {
        case Device::meter_volume:
            return {reading * rho_kgm3 * units::t_per_kg, reading};
        case Device::meter_standard_volume:
        case Device::external:
        case Device::none:
            return {};
        default:
            const double q_m_th = device.device == Device::meter_mass ? reading : q_m_kgs * units::th_per_kgs;
            return {q_m_th, q_m_th * units::kg_per_t / rho_kgm3};
    }
}

GasFlow gas_flow(const DeviceRow& device, const WorkingFlow& working, double reading, double rho_kgm3,
                 double rho_c_kgm3, double factor) {
    GasFlow flow{.working = working};
    switch (device.device) {
        case Device::external:
            return flow;
        case Device::meter_mass:
            flow.q_c_m3h = reading * units::kg_per_t / rho_c_kgm3;
            break;
        case Device::meter_volume:
            flow.q_c_m3h = reading * rho_kgm3 / rho_c_kgm3;
            break;
        case Device::meter_standard_volume:
            flow.q_c_m3h = reading;
            flow.working = {reading * rho_c_kgm3 * units::t_per_kg, reading * rho_c_kgm3 / rho_kgm3};
            break;
        default:
            flow.q_c_m3h = working.q_m_th * units::kg_per_t / rho_c_kgm3;
    }
    flow.q_e = flow.q_c_m3h * units::per_thousand * factor;
    return flow;
}

double heat_flow(const DeviceRow& device, const WorkingFlow& working, double h_kJ_kg) {
    return device.family == Family::external ? 0.0 : working.q_m_th * units::per_thousand * h_kJ_kg;
}

}  // namespace kalorfix::flow
