// Properties and phase of water and steam on the command line.
#pragma once

#include <string>

#include "tools/curves.h"
#include "tools/host.h"

namespace kalorfix::tool {

struct WaterRequest {
    std::string t;  ///< degC, number or range
    std::string p;  ///< MPa, number or range; not needed for saturated vapour
    bool saturated = false;
    double dp_MPa = 0.001;  ///< tolerance of the saturation test
    bool csv = false;
    Drawing drawing;
};

/// Prints one state as a sheet, ranges as a table or as CSV, and draws a quantity if asked to. Throws InputError before anything is printed.
void water(const host::Library& library, const WaterRequest& request);

}  // namespace kalorfix::tool
