// Every limit from both sides, with the status obtained.
#pragma once

#include <string>

#include "tools/report/verification.h"

namespace kalorfix::tool::report {

/// Tables of the cases NAME-in and NAME-out, a table a source; a sentence where there are none.
[[nodiscard]] std::string limit_tables(const Verification& verification);

}  // namespace kalorfix::tool::report
