// SPDX-License-Identifier: MIT
// How a step of a calculator ends: in `valid`, which is also its status.
#pragma once

namespace kalorfix {

/// The difference of a number from itself is 0, unless it is infinite or none at all.
template <class... Numbers>
[[nodiscard]] bool all_finite(Numbers... numbers) {
    return (... + (numbers - numbers)) == 0;
}

/// Leaves the outcome in `valid` and returns it. A step is good only if every number that it hands out is finite.
template <class Calculator>
char judged(Calculator& calculator, bool good) {
    calculator.valid = good;
    return static_cast<char>(good);
}

}  // namespace kalorfix
