// The outcome on the terminal: a line a function, and each value that failed.
#pragma once

#include "tools/report/verification.h"

namespace kalorfix::tool::report {

void print_summary(const Verification& verification);

}  // namespace kalorfix::tool::report
