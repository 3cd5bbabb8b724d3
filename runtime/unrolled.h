// SPDX-License-Identifier: MIT
// Loops written out by the compiler, and two numbers at once.
#pragma once

#include <cstddef>
#include <utility>

namespace kalorfix {

/// Two numbers that the processor works on at once, where it can; elsewhere a vector would take the way over the memory.
#if defined(__SSE2__) || defined(__aarch64__)
using Pair [[gnu::vector_size(2 * sizeof(double))]] = double;
#else
struct Pair {
    double first, second;

    double operator[](std::size_t k) const { return k == 0 ? first : second; }
    friend Pair operator+(Pair a, Pair b) { return {a.first + b.first, a.second + b.second}; }
    friend Pair operator*(Pair a, Pair b) { return {a.first * b.first, a.second * b.second}; }
    friend Pair operator*(Pair a, double b) { return {a.first * b, a.second * b}; }
    friend Pair operator*(double a, Pair b) { return b * a; }
    Pair& operator+=(Pair b) { return *this = *this + b; }
    Pair& operator*=(double b) { return *this = *this * b; }
};
#endif

/// Calls f.operator()<0>() to f.operator()<count - 1>(): straight-line code with constant indices.
template <std::size_t count, class Function>
void unrolled(Function&& f) {
    [&]<std::size_t... k>(std::index_sequence<k...>) { (f.template operator()<k>(), ...); }
    (std::make_index_sequence<count>{});
}

}  // namespace kalorfix
