// Numbers and ranges as a person types them.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "tools/text.h"

namespace kalorfix::tool {

struct Limits {
    double low, high;  ///< both inclusive
    std::string_view unit;

    /// As they are told: "0..100 mol %".
    [[nodiscard]] std::string text() const;
};

/// A finite number; nothing for anything else.
[[nodiscard]] std::optional<double> number(std::string_view text);
/// A number within limits; nothing for anything else.
[[nodiscard]] std::optional<double> number_within(std::string_view text, const Limits& limits);
/// What to tell of a text that is none: "expected a number within 0..100 mol %, not 'x'".
[[nodiscard]] std::string expected_within(std::string_view text, const Limits& limits);

/// start, start + step, ... up to stop; a single number has one value.
struct Range {
    double start = 0.0;
    double step = 0.0;
    std::size_t count = 1;
    double end = 0.0;  ///< the last of several values

    // The last value is kept: counted up it may miss the stop, and then a limit, by a rounding error.
    double operator[](std::size_t k) const {
        return count > 1 && k + 1 == count ? end : start + static_cast<double>(k) * step;
    }
    [[nodiscard]] double last() const { return (*this)[count - 1]; }
};

inline constexpr std::size_t max_rows = 1'000'000;

/// Reads "number" or "start:stop:step" with every value within limits, without their ends if these are excluded. Throws
/// InputError naming the option.
[[nodiscard]] Range parse_range(std::string_view option, const std::string& text, const Limits& limits,
                                bool ends_excluded = false);

}  // namespace kalorfix::tool
