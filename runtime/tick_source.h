// Where the ticks come from.
#pragma once

#include <cerrno>
#include <cstdint>

namespace kalorfix {

/// What times() returns: ticks since an arbitrary moment, or -1 with errno set. In a file of its own, so that a test
/// can put a clock of its making in its place.
long process_ticks();

/// The tick counter, 32 bits on every machine; the negated errno where times() fails.
[[nodiscard]] inline std::uint32_t tick_count() {
    const long ticks = process_ticks();
    return static_cast<std::uint32_t>(ticks == -1 ? -errno : ticks);
}

}  // namespace kalorfix
