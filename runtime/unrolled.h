// SPDX-License-Identifier: MIT
// Loops written out by the compiler, and two numbers at once.
#pragma once

#include <cstddef>
#include <utility>

namespace kalorfix {

/// Two numbers that the processor works on at once, where it can.
using Pair [[gnu::vector_size(2 * sizeof(double))]] = double;

/// Calls f.operator()<0>() to f.operator()<count - 1>(): straight-line code with constant indices.
template <std::size_t count, class Function>
void unrolled(Function&& f) {
    [&]<std::size_t... k>(std::index_sequence<k...>) { (f.template operator()<k>(), ...); }
    (std::make_index_sequence<count>{});
}

}  // namespace kalorfix
