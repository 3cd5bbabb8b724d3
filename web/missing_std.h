// SPDX-License-Identifier: MIT
// What the C++ library of emscripten 3.1 lacks of C++20, in the forms that the project uses. Included by the build of the page ahead
// of every file; no other build sees it.
#pragma once

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <iterator>
#include <string>
#include <system_error>
#include <type_traits>

namespace std {

template <class To, class From>
constexpr To bit_cast(const From& from) noexcept {
    return __builtin_bit_cast(To, from);
}

// Only "inf", "nan" and decimal numbers begin as strtod has it and std::from_chars too; the locale is always that of C.
inline from_chars_result from_chars(const char* first, const char* last, double& value) {
    if (first == last || *first == '+' || isspace(static_cast<unsigned char>(*first)))
        return {first, errc::invalid_argument};
    string text(first, last);
    // Hexadecimal numbers end behind their zero.
    if (const size_t x = text.find_first_of("xX"); x != string::npos) text.resize(x);
    char* end = nullptr;
    const double found = strtod(text.c_str(), &end);
    const char* const stop = first + (end - text.c_str());
    if (stop == first) return {first, errc::invalid_argument};
    if (__builtin_isinf(found) && text.find_first_of("iI") == string::npos)
        return {stop, errc::result_out_of_range};
    value = found;
    return {stop, errc()};
}
inline from_chars_result from_chars(const char* first, const char* last, float& value) {
    double wide = 0.0;
    const from_chars_result result = from_chars(first, last, wide);
    if (result.ec == errc()) value = static_cast<float>(wide);
    return result;
}

// The fewest digits behind the point that read back as the same number.
inline to_chars_result to_chars(char* first, char* last, double value, chars_format) {
    for (int digits = 0;; ++digits) {
        const int length = snprintf(first, static_cast<size_t>(last - first), "%.*f", digits, value);
        if (length >= last - first) return {last, errc::value_too_large};
        if (strtod(first, nullptr) == value || !__builtin_isfinite(value)) return {first + length, errc()};
    }
}

namespace ranges {

template <class Range, class Test, class Name = identity>
constexpr auto find_if(Range&& range, Test test, Name name = {}) {
    auto at = std::begin(range);
    while (at != std::end(range) && !invoke(test, invoke(name, *at))) ++at;
    return at;
}
template <class Range, class Value, class Name = identity>
constexpr auto find(Range&& range, const Value& value, Name name = {}) {
    return ranges::find_if(
        range, [&](const auto& one) { return one == value; }, name);
}
template <class Range, class Test>
constexpr auto count_if(Range&& range, Test test) {
    return std::count_if(std::begin(range), std::end(range), test);
}
template <class Range, class Test>
constexpr bool none_of(Range&& range, Test test) {
    return std::none_of(std::begin(range), std::end(range), test);
}
template <class Range, class Test>
constexpr bool all_of(Range&& range, Test test) {
    return std::all_of(std::begin(range), std::end(range), test);
}
template <class Range, class Test>
constexpr bool any_of(Range&& range, Test test) {
    return std::any_of(std::begin(range), std::end(range), test);
}
template <class Range, class Less = std::less<>, class Name = identity>
constexpr auto max_element(Range&& range, Less = {}, Name name = {}) {
    return std::max_element(std::begin(range), std::end(range),
                            [&](const auto& a, const auto& b) { return invoke(name, a) < invoke(name, b); });
}
template <class One, class Other, class Same = std::equal_to<>, class Name = identity,
          class OtherName = identity>
constexpr bool equal(One&& one, Other&& other, Same = {}, Name name = {}, OtherName other_name = {}) {
    return std::equal(std::begin(one), std::end(one), std::begin(other), std::end(other),
                      [&](const auto& a, const auto& b) { return invoke(name, a) == invoke(other_name, b); });
}
template <class Range, class Out, class Change>
constexpr void transform(Range&& range, Out out, Change change) {
    std::transform(std::begin(range), std::end(range), out, change);
}
template <class Range, class Out, class Test>
constexpr void copy_if(Range&& range, Out out, Test test) {
    std::copy_if(std::begin(range), std::end(range), out, test);
}
template <class Range, class Value>
constexpr void fill(Range&& range, const Value& value) {
    std::fill(std::begin(range), std::end(range), value);
}
template <class Range, class Value>
constexpr void replace(Range&& range, const Value& old, const Value& now) {
    std::replace(std::begin(range), std::end(range), old, now);
}
template <class Range, class Test, class Value>
constexpr void replace_if(Range&& range, Test test, const Value& now) {
    std::replace_if(std::begin(range), std::end(range), test, now);
}

}  // namespace ranges
}  // namespace std
