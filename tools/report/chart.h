// Deviation over permitted deviation, point by point, as inline SVG.
#pragma once

#include <string>

#include "tools/report/verification.h"

namespace kalorfix::tool::report {

/// A strip for each output that has permitted deviations; empty when there is none.
[[nodiscard]] std::string deviation_chart(const Section& section);

}  // namespace kalorfix::tool::report
