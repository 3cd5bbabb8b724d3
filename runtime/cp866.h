// SPDX-License-Identifier: MIT
// Messages in code page 866, written in the source as UTF-8 text.
#pragma once

#include <array>
#include <cstddef>

namespace kalorfix {

// Not defined: a text that would call it does not compile.
char no_such_character_in_the_code_page();

/// The byte of code page 866 for a character: ASCII and the Russian letters.
consteval char cp866_byte(char32_t character) {
    if (character < 0x80) return static_cast<char>(character);
    if (character >= U'А' && character <= U'п') return static_cast<char>(0x80 + (character - U'А'));
    if (character >= U'р' && character <= U'я') return static_cast<char>(0xE0 + (character - U'р'));
    if (character == U'Ё') return static_cast<char>(0xF0);
    if (character == U'ё') return static_cast<char>(0xF1);
    return no_such_character_in_the_code_page();
}

/// A text of N - 1 characters as bytes of code page 866, with the terminating zero.
template <std::size_t N>
consteval std::array<char, N> cp866(const char32_t (&text)[N]) {
    std::array<char, N> bytes{};
    for (std::size_t k = 0; k < N; ++k) bytes[k] = cp866_byte(text[k]);
    return bytes;
}

}  // namespace kalorfix
