// Expansibility of the medium in a standard device.
#pragma once

#include "flow/medium.h"

namespace kalorfix::flow {

/// Expansibility of an orifice plate at the pressure ratio tau = 1 - dp/p. The coefficient of beta^4 is 0.265, not the 0.256 of
/// the standard: kept on purpose. GOST 8.586.2-2005, 5.3.2.2.
[[nodiscard]] double orifice_expansibility(double beta, double kappa, double tau);

/// Expansibility of nozzles and Venturi tubes, adiabatic. GOST 8.586.3-2005, 5.1.6.3.
[[nodiscard]] double nozzle_expansibility(double beta, double kappa, double tau);

/// The one that the device asks for, 1 for a liquid; `epsilon` is left alone by other devices and where dp/p is above its limit.
[[nodiscard]] Limit expand(const DeviceRow& device, double beta, const Medium& medium, double dp_Pa,
                           double& epsilon);

}  // namespace kalorfix::flow
