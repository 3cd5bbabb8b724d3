// SPDX-License-Identifier: MIT
// A line of results in the making: what stands in every line of a million is written without looking at a layout first.
#pragma once

#include <fmt/compile.h>

#include <array>
#include <string>
#include <string_view>

#include "tools/station/readings.h"

namespace kalorfix::tool::station {

class Line {
public:
    explicit Line(TimeKind kind) : kind_(kind) {}

    void clear() { text_.clear(); }
    [[nodiscard]] std::string_view text() const { return text_; }

    template <class... Parts>
    Line& add(const Parts&... parts) {
        (append(parts), ...);
        return *this;
    }

    /// The time of a reading, which is rendered once, however often it is told.
    [[nodiscard]] std::string_view time(double seconds) {
        if (seconds != time_s_) time_text_ = print_time(kind_, time_s_ = seconds);
        return time_text_;
    }

private:
    void append(std::string_view part) { text_ += part; }
    void append(char part) { text_ += part; }
    void append(float value) {
        constexpr std::size_t longest = 32;
        std::array<char, longest> digits;
        char* const end = fmt::format_to(digits.data(), FMT_COMPILE("{}"), value);
        text_.append(digits.data(), end);
    }

    TimeKind kind_;
    double time_s_ = -1.0;
    std::string text_, time_text_;
};

}  // namespace kalorfix::tool::station
