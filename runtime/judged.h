// How a step of a calculator ends: in `valid`, which is also its status.
#pragma once

#include <cmath>

namespace kalorfix {

template <class... Numbers>
[[nodiscard]] bool all_finite(Numbers... numbers) {
    return (std::isfinite(numbers) && ...);
}

/// Leaves the outcome in `valid` and returns it. A step is good only if every number that it hands out is finite.
template <class Calculator>
char judged(Calculator& calculator, bool good) {
    calculator.valid = good;
    return static_cast<char>(good);
}

}  // namespace kalorfix
