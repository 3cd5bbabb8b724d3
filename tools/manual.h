// SPDX-License-Identifier: MIT
// The manual page of the tool, by the descriptions that its help comes from.
#pragma once

#include <string>

#include "tools/commands.h"

namespace kalorfix::tool {

/// The page in roff: a template in which @SYNOPSIS@, @OPTIONS@ (those of the program) and the name of a command, as in @run@, stand on
/// lines of their own. Throws InputError with file and line for another word, and for a command that the template leaves out.
[[nodiscard]] std::string manual_page(const Command& program, const std::string& template_file);

}  // namespace kalorfix::tool
