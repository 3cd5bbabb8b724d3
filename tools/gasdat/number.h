// Single-precision values as text and back, to the last bit.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kalorfix::tool::gasdat {

/// The shortest decimal number that reads back as the same value; inf, -inf; nan: with the bits in hexadecimal.
[[nodiscard]] std::string number_text(float value);

/// The nearest single-precision value of a decimal number, or what number_text has written. Nothing for anything else.
[[nodiscard]] std::optional<float> parse_number(std::string_view text);

}  // namespace kalorfix::tool::gasdat
