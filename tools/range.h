// Numbers and ranges as a person types them.
#pragma once

#include <cstddef>
#include <string>

namespace kalorfix::tool {

/// Thrown for input that the user can put right; the text is one line that says what, where and what would be right.
struct InputError {
    std::string text;
};

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

/// Reads "number" or "start:stop:step". Throws InputError naming the option.
[[nodiscard]] Range parse_range(const std::string& option, const std::string& text);

/// Throws InputError unless every value of the range lies within low..high.
void require_within(const std::string& option, const std::string& text, const Range& range, double low,
                    double high, const std::string& unit);

}  // namespace kalorfix::tool
