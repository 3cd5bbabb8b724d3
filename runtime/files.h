// SPDX-License-Identifier: MIT
// Opening files that people and other programs leave about.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>

namespace kalorfix {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

/// Whether a name is that of a regular file, or of none yet. A directory, a pipe or a device holds neither settings nor tables, and
/// a pipe would make the controller wait.
[[nodiscard]] bool is_regular_or_new(const char* name);

/// Four bytes of a file, little-endian on every machine.
[[nodiscard]] constexpr std::uint32_t little_endian(const unsigned char* bytes) {
    return bytes[0] | static_cast<std::uint32_t>(bytes[1]) << 8 | static_cast<std::uint32_t>(bytes[2]) << 16 |
           static_cast<std::uint32_t>(bytes[3]) << 24;
}

/// fopen for such names; null for others.
[[nodiscard]] File open_regular(const char* name, const char* mode);

/// Formats directory + file name into a buffer; false, with the buffer empty, when it does not fit: an over-long path
/// is never opened truncated.
[[nodiscard]] bool join_path(char* buffer, std::size_t size, const char* directory, const char* rest);

}  // namespace kalorfix
