// Straight-line code from a compile-time count.
#pragma once

#include <cstddef>
#include <utility>

namespace kalorfix {

/// Calls f.operator()<0>() to f.operator()<count - 1>(): every index is a constant.
template <std::size_t count, class Function>
constexpr void unrolled(Function&& f) {
    [&]<std::size_t... k>(std::index_sequence<k...>) { (f.template operator()<k>(), ...); }
    (std::make_index_sequence<count>{});
}

}  // namespace kalorfix
