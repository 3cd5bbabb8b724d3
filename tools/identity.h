// SPDX-License-Identifier: MIT
// What identifies a library: for the id command and the report.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace kalorfix::tool {

/// Name and value of each item that the library file carries: version, compiler, flags, build, target.
[[nodiscard]] std::vector<std::pair<std::string, std::string>> build_items(const std::string& library_file);

/// SHA-256 of a file in hexadecimal digits; "no such file" when it cannot be read.
[[nodiscard]] std::string file_digest(const std::string& path);

}  // namespace kalorfix::tool
