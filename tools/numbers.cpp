#include "tools/numbers.h"

#include <fmt/format.h>

#include <cmath>
#include <vector>

namespace kalorfix::tool {

std::string Limits::text() const { return fmt::format("{}..{}{}{}", low, high, unit.empty() ? "" : " ", unit); }

std::optional<double> number(std::string_view text) {
    const std::optional<double> value = parse<double>(text);
    return value && std::isfinite(*value) ? value : std::nullopt;
}

std::optional<double> number_within(std::string_view text, const Limits& limits) {
    const std::optional<double> value = number(text);
    return value && limits.low <= *value && *value <= limits.high ? value : std::nullopt;
}

std::string expected_within(std::string_view text, const Limits& limits) {
    return fmt::format("expected a number within {}, not {}", limits.text(), quoted(text));
}

Range parse_range(std::string_view option, const std::string& text, const Limits& limits, bool ends_excluded) {
    const auto fail = [&](std::string_view what) {
        return InputError(fmt::format("{} {}: {}", option, text, what));
    };
    constexpr std::string_view forms = "expected a number or start:stop:step, such as 150 or 20:200:20";
    std::vector<double> parts;
    for (const std::string_view part : split(text, ':')) {
        const std::optional<double> value = number(part);
        if (!value) throw fail(forms);
        parts.push_back(*value);
    }
    Range range{parts[0], 0.0, 1};
    if (parts.size() != 1) {
        if (parts.size() != 3) throw fail(forms);
        const double steps = (parts[1] - parts[0]) / parts[2];
        if (!(steps >= 0.0) || std::isinf(steps)) throw fail("the step must lead from start to stop");
        // The stop belongs to the range when rounding alone keeps a step from hitting it.
        constexpr double rounding = 1e-9;
        const double whole = std::floor(steps + rounding);
        if (whole + 1.0 > static_cast<double>(max_rows)) throw fail(fmt::format("at most {} values", max_rows));
        const double end = steps - whole < rounding ? parts[1] : parts[0] + whole * parts[2];
        range = {parts[0], parts[2], static_cast<std::size_t>(whole) + 1, end};
    }
    for (const double end : {range.start, range.last()})
        if (!(ends_excluded ? limits.low < end && end < limits.high : limits.low <= end && end <= limits.high))
            throw fail(
                fmt::format("must lie within {}{}", limits.text(), ends_excluded ? ", the ends excluded" : ""));
    return range;
}

}  // namespace kalorfix::tool
