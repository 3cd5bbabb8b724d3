// Where the ticks come from.
#pragma once

namespace kalorfix {

/// What times() returns: ticks since an arbitrary moment, or -1 with errno set. In a file of its own, so that a test
/// can put a clock of its making in its place.
long process_ticks();

}  // namespace kalorfix
