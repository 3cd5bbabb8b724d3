// Averaging devices (10..18) and the device with a configured flow coefficient (19): a direct formula.
#pragma once

#include "flow/medium.h"

namespace kalorfix::flow {

/// Pipe and device of such a metering point.
struct AveragingPoint {
    const DeviceRow& device;
    double D_m, d_m;
    double configured_alpha_eps;  ///< of device 19
};

/// Flow coefficient of devices 10..18 by the blockage m: 0.7269 - 0.8212 m for 10 and 11, (1 - A m) / sqrt(1 - B (1 - A m)^2) for
/// the others. 0 for any other device.
[[nodiscard]] double averaging_coefficient(Device device, double blockage);

/// The mass flow; the Reynolds number, of the velocity in the pipe with the width of the device as the length, must exceed the
/// least of the device.
[[nodiscard]] FlowSolution averaging_flow(const AveragingPoint& point, const Medium& medium,
                                          const Reading& reading);

}  // namespace kalorfix::flow
