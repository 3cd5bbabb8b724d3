// Every compared value as a line of CSV.
#pragma once

#include <string>

#include "tools/report/verification.h"

namespace kalorfix::tool::report {

[[nodiscard]] std::string csv(const Verification& verification);

}  // namespace kalorfix::tool::report
