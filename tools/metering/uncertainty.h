// SPDX-License-Identifier: MIT
// How far the flow of a metering point can be trusted: the budget of a reading.
#pragma once

#include "tools/host.h"
#include "tools/metering/budget.h"
#include "tools/metering/instruments.h"
#include "tools/metering/point.h"

namespace kalorfix::metering {

struct Reading {
    double t_C = 0, p_Pa = 0, dp_Pa = 0;  ///< p measured, absolute
    double atmosphere_Pa = 0;             ///< in p, where the transmitter measures gauge pressure
};

/// The budget of a reading. Sensitivities are central differences through the library; docs/uncertainty.md has the steps.
[[nodiscard]] Budget budget_of(const host::Library& library, const Point& point, const Instruments& instruments,
                               const Reading& reading);

}  // namespace kalorfix::metering
