// SPDX-License-Identifier: MIT
// The machine on which a report is made.
#pragma once

#include <string>

namespace kalorfix::tool::report {

/// System, release and architecture, as of uname.
[[nodiscard]] std::string machine_name();
/// Of the first processor, as the system names it; empty where it does not.
[[nodiscard]] std::string processor_name();

}  // namespace kalorfix::tool::report
