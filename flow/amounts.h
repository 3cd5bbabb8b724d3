// SPDX-License-Identifier: MIT
// From a solved mass flow, or the reading of a meter, to the flows that are handed out and totalled.
#pragma once

#include "flow/device.h"

namespace kalorfix::flow {

/// Mass flow t/h and volume flow m3/h at the device. `reading` is that of a meter: t/h, m3/h or standard m3/h.
struct WorkingFlow {
    double q_m_th = 0.0;
    double q_v_m3h = 0.0;
};
[[nodiscard]] WorkingFlow working_flow(const DeviceRow& device, double q_m_kgs, double reading,
                                       double rho_kgm3);

/// What a gas channel adds: standard volume flow, and that times 0.001 and the host's factor. A meter of standard volume gives the
/// working flow as well.
struct GasFlow {
    WorkingFlow working;
    double q_c_m3h = 0.0;
    double q_e = 0.0;
};
[[nodiscard]] GasFlow gas_flow(const DeviceRow& device, const WorkingFlow& working, double reading,
                               double rho_kgm3, double rho_c_kgm3, double factor);

/// Heat flow: the mass flow times 0.001 and the host's enthalpy; 0 where the flow is external.
[[nodiscard]] double heat_flow(const DeviceRow& device, const WorkingFlow& working, double h_kJ_kg);

}  // namespace kalorfix::flow
