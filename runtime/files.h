// SPDX-License-Identifier: MIT
// Opening files that people and other programs leave about.
#pragma once

#include <cstdio>
#include <memory>

namespace kalorfix {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

/// Whether an open descriptor is a regular file.
[[nodiscard]] bool is_regular(int descriptor);

/// fopen for regular files, existing or to be made. A directory, a pipe or a device gives null: none of them holds
/// settings or tables, and a pipe would make the controller wait.
[[nodiscard]] File open_regular(const char* name, const char* mode);

/// Formats directory + file name into a buffer; false, with the buffer empty, when it does not fit: an over-long path
/// is never opened truncated.
[[nodiscard]] bool join_path(char* buffer, std::size_t size, const char* directory, const char* rest);

}  // namespace kalorfix
