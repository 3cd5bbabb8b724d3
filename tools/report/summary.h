// The outcome of a verification as text.
#pragma once

#include <string>

#include "tools/report/verification.h"

namespace kalorfix::tool::report {

/// A line a function, what differs as declared, what failed, and the verdict.
void print_summary(const Verification& verification);

/// Every compared value as a line of CSV.
[[nodiscard]] std::string csv(const Verification& verification);

}  // namespace kalorfix::tool::report
