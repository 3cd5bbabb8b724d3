#include "tools/range.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <string_view>
#include <vector>

namespace kalorfix::tool {
namespace {

std::optional<double> number(std::string_view text) {
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) return std::nullopt;
    return value;
}

}  // namespace

Range parse_range(const std::string& option, const std::string& text) {
    const auto fail = [&](std::string_view what) {
        return InputError{fmt::format("{} {}: {}", option, text, what)};
    };
    std::vector<double> parts;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(':', begin), text.size());
        const std::optional<double> part = number(std::string_view(text).substr(begin, end - begin));
        if (!part) throw fail("expected a number or start:stop:step, such as 150 or 20:200:20");
        parts.push_back(*part);
        begin = end + 1;
    }
    if (parts.size() == 1) return {parts[0], 0.0, 1};
    if (parts.size() != 3) throw fail("expected a number or start:stop:step, such as 150 or 20:200:20");

    const double steps = (parts[1] - parts[0]) / parts[2];
    if (!(steps >= 0.0) || std::isinf(steps)) throw fail("the step must lead from start to stop");
    // The stop belongs to the range when rounding alone keeps a step from hitting it.
    constexpr double rounding = 1e-9;
    const double whole = std::floor(steps + rounding);
    if (whole + 1.0 > static_cast<double>(max_rows)) throw fail(fmt::format("at most {} values", max_rows));
    const double end = steps - whole < rounding ? parts[1] : parts[0] + whole * parts[2];
    return {parts[0], parts[2], static_cast<std::size_t>(whole) + 1, end};
}

void require_within(const std::string& option, const std::string& text, const Range& range, double low,
                    double high, const std::string& unit) {
    for (const double end : {range.start, range.last()})
        if (!(low <= end && end <= high))
            throw InputError{fmt::format("{} {}: must lie within {}..{} {}", option, text, low, high, unit)};
}

}  // namespace kalorfix::tool
