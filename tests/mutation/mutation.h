// Included ahead of every file of the mutation build: the switches that mutate.py puts around numbers, comparisons and
// conditions. The environment variable MUTANT tells which one is thrown; the build itself is made once.
#pragma once

#include <cstdlib>
#include <type_traits>

namespace mutation {

inline const int chosen = std::getenv("MUTANT") ? std::atoi(std::getenv("MUTANT")) : -1;

/// A coefficient: times 1.0001, or with the other sign.
template <class Value>
inline Value number(int id, Value value) {
    const int which = chosen - id;
    return which == 0 ? value * static_cast<Value>(1.0001) : which == 1 ? -value : value;
}

/// A zero that becomes something else, and a whole number that becomes its neighbour.
template <class Value>
inline Value zero(int id, Value value) {
    return chosen == id ? value : static_cast<Value>(0);
}
template <class Value>
inline Value whole(int id, Value value) {
    const int which = chosen - id;
    return static_cast<Value>(which == 0 ? value + 1 : which == 1 ? value - 1 : value);
}

/// A coefficient of a table that is also read at compile time, where it keeps its value.
struct Number {
    int id;
    double value;
    constexpr operator double() const { return std::is_constant_evaluated() ? value : number(id, value); }
};

inline bool condition(int id, bool value) {
    const int which = chosen - id;
    return which == 0 ? false : which == 1 ? true : value;
}

/// a < b is written a < Comparison{id} < b: the grammar finds the operands. Mutants: the other kind of boundary (of an equality
/// its contrary), the contrary, false, true.
struct Comparison {
    int id;
};
template <class Left>
struct Half {
    const Left& left;
    int which;
};
#define KALORFIX_COMPARE(op, boundary, contrary)                          \
    template <class Left>                                                 \
    inline Half<Left> operator op(const Left& left, Comparison switch_) { \
        return {left, chosen - switch_.id};                               \
    }                                                                     \
    template <class Left, class Right>                                    \
    inline bool operator op(Half<Left> half, const Right& right) {        \
        switch (half.which) {                                             \
            case 0:                                                       \
                return half.left boundary right;                          \
            case 1:                                                       \
                return half.left contrary right;                          \
            case 2:                                                       \
                return false;                                             \
            case 3:                                                       \
                return true;                                              \
            default:                                                      \
                return half.left op right;                                \
        }                                                                 \
    }
KALORFIX_COMPARE(<, <=, >=)
KALORFIX_COMPARE(<=, <, >)
KALORFIX_COMPARE(>, >=, <=)
KALORFIX_COMPARE(>=, >, <)
KALORFIX_COMPARE(==, !=, !=)
KALORFIX_COMPARE(!=, ==, ==)
#undef KALORFIX_COMPARE

}  // namespace mutation
