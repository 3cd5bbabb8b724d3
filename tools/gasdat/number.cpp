#include "tools/gasdat/number.h"

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace kalorfix::tool::gasdat {
namespace {

constexpr std::string_view nan_mark = "nan:";

}  // namespace

std::string number_text(float value) {
    std::array<char, 32> digits;
    char* const end = digits.data() + digits.size();
    const std::to_chars_result written =
        std::isnan(value) ? std::to_chars(digits.data(), end, std::bit_cast<std::uint32_t>(value), 16)
                          : std::to_chars(digits.data(), end, value);
    return std::string(std::isnan(value) ? nan_mark : "") + std::string(digits.data(), written.ptr);
}

std::optional<float> parse_number(std::string_view text) {
    const bool bits_given = text.starts_with(nan_mark);
    if (bits_given) text.remove_prefix(nan_mark.size());
    const char* const end = text.data() + text.size();
    if (bits_given) {
        std::uint32_t bits = 0;
        const auto [stop, error] = std::from_chars(text.data(), end, bits, 16);
        const float value = std::bit_cast<float>(bits);
        if (error != std::errc() || stop != end || !std::isnan(value)) return std::nullopt;
        return value;
    }
    float value = 0.0F;
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end || std::isnan(value)) return std::nullopt;
    return value;
}

}  // namespace kalorfix::tool::gasdat
