// Maps over temperature and pressure as inline SVG.
#pragma once

#include <string>

#include "tools/composition_file.h"
#include "tools/report/verification.h"

namespace kalorfix::tool::report {

/// K of the four methods on one gas over 250..340 K and 0.1..12 MPa, and what the other three differ from AGA8-92DC.
/// Needs a library with gas data.
[[nodiscard]] std::string compressibility_maps(const host::Library& library, const GivenComposition& gas);

/// The points of water and steam over temperature and pressure, shaded by the deviation of their density, with the
/// saturation line; empty when there are none.
[[nodiscard]] std::string density_map(const host::Library& library, const Verification& verification);

}  // namespace kalorfix::tool::report
