// What a metrologist identifies the software by.
#pragma once

#include "tools/host.h"

namespace kalorfix::tool {

/// Prints version, build and target of the library, digests of library and gas data, and the directories in force.
void identity(const host::Library& library);

}  // namespace kalorfix::tool
