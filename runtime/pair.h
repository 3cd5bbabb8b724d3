// Two numbers that the processor works on at once, where it can.
#pragma once

namespace kalorfix {

using Pair [[gnu::vector_size(2 * sizeof(double))]] = double;

}  // namespace kalorfix
