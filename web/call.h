// SPDX-License-Identifier: MIT
// What the calls of the page share.
#pragma once

#include "tools/host.h"
#include "web/form.h"
#include "web/json.h"

namespace kalorfix::page {

/// The library that is linked in.
[[nodiscard]] const host::Library& library();

/// The text of an answer, which lives until the next one.
[[nodiscard]] const char* hand_out(const Json& json);

/// The answer to a form that has a fault.
[[nodiscard]] Json fault(const Form& form);

}  // namespace kalorfix::page
