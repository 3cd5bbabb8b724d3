// SPDX-License-Identifier: MIT
// What a command reads and what it writes are different files.
#pragma once

#include <string>
#include <vector>

namespace kalorfix::tool {

/// A file of a command, named for messages: "READINGS" or "--out". Without a name it counts for nothing; "-" is standard input.
struct NamedFile {
    std::string what, file;
};

/// Throws InputError for an output that is an input or another output, however it is spelled or linked, also where it does not
/// exist yet. Standard output is one of the outputs when it goes to a file. Devices are nobody's file.
void keep_apart(const std::vector<NamedFile>& inputs, const std::vector<NamedFile>& outputs);

/// The file itself: where links lead, also those that lead to nothing yet.
[[nodiscard]] std::string behind_links(const std::string& file);

}  // namespace kalorfix::tool
