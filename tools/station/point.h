// SPDX-License-Identifier: MIT
// A channel of a station as a metering point.
#pragma once

#include "tools/metering/point.h"
#include "tools/station/station.h"

namespace kalorfix::tool::station {

/// Pipe, device and medium of a channel, with the single-precision constants that the controller stores.
[[nodiscard]] metering::Point point_of(const Channel& channel);

}  // namespace kalorfix::tool::station
