// SPDX-License-Identifier: MIT
// What the reader of INI files asks of single characters, and the text that it gathers of them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdio>
#include <string_view>

namespace kalorfix::ini {

/// Characters are read into int: every byte is an ordinary character, only EOF ends a file.
[[nodiscard]] constexpr bool is_blank(int c) { return c == ' ' || c == '\t'; }
[[nodiscard]] constexpr bool is_line_end(int c) { return c == '\n' || c == '\r'; }
[[nodiscard]] constexpr bool is_digit(int c) { return c >= '0' && c <= '9'; }
/// White space of the C locale, whatever the host's locale is.
[[nodiscard]] constexpr bool is_space(int c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

/// Skips a comment up to and including the newline; returns that newline, or EOF.
inline int skip_comment(std::FILE* file) {
    int c = 0;
    do c = std::fgetc(file);
    while (c != '\n' && c != EOF);
    return c;
}

/// Text of bounded length that drops what does not fit.
template <std::size_t limit>
class Buffer {
public:
    [[nodiscard]] bool full() const { return length_ == limit; }
    [[nodiscard]] std::string_view text() const { return {bytes_.data(), length_}; }
    [[nodiscard]] const char* zero_terminated() {
        bytes_[length_] = '\0';
        return bytes_.data();
    }
    void clear() { length_ = 0; }
    void append(int c) {
        if (!full()) bytes_[length_++] = static_cast<char>(c);
    }
    void drop_trailing_blanks() {
        while (length_ > 0 && is_blank(bytes_[length_ - 1])) --length_;
    }

private:
    std::array<char, limit + 1> bytes_;
    std::size_t length_ = 0;
};

}  // namespace kalorfix::ini
