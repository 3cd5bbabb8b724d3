// SPDX-License-Identifier: MIT
// Files, pipes and standard input as streams that can be walked through twice.
#pragma once

#include <csignal>
#include <istream>
#include <memory>
#include <string>

namespace kalorfix::tool::station {

/// The readings of a file, or with the name "-" of standard input, as a stream that can be walked through twice: a pipe is copied
/// to an unnamed temporary file, which an interruption ends behind a whole line. Null when it comes before a pipe is open. Throws InputError when they cannot
/// be read.
[[nodiscard]] std::unique_ptr<std::istream> open_readings(const std::string& name,
                                                          const volatile std::sig_atomic_t& interrupted);

}  // namespace kalorfix::tool::station
