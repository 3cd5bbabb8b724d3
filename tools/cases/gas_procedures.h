// What the text cases can ask of the gas methods.
#pragma once

#include <map>
#include <string>

#include "tools/cases/procedures.h"

namespace kalorfix::cases {

/// The procedures for gas, by name. They need a library that found its directories, with or without gas data: each calls
/// Init.
[[nodiscard]] std::map<std::string, Procedure, std::less<>> gas_procedures();

}  // namespace kalorfix::cases
