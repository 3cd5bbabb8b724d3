// The grammar of INI values, on text and character streams, without the object.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
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
int skip_comment(std::FILE* file);

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
        if (!full()) bytes_[length_++] = static_cast<char>(static_cast<unsigned char>(c));
    }
    void drop_trailing_blanks() {
        while (length_ > 0 && is_blank(static_cast<unsigned char>(bytes_[length_ - 1]))) --length_;
    }

private:
    std::array<char, limit + 1> bytes_;
    std::size_t length_ = 0;
};

/// Text without spaces and tabs at its ends.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// Copies text and a terminating zero.
void copy_text(std::string_view text, char* result);

/// The words of a section header.
struct Words {
    std::array<std::string_view, 3> word;
    bool too_many;  ///< white space after the third word
};
[[nodiscard]] Words split_header(std::string_view header);

/// A decimal integer at the start of the text as strtol reads it on a machine with a 32-bit long: saturating, 0 when
/// there is none.
[[nodiscard]] std::int32_t parse_integer(std::string_view text);

/// A decimal number at the start of the text as strtod reads it in the C locale and rounding to nearest, whatever the
/// host's locale and rounding are; 0 when there is none.
[[nodiscard]] double parse_number(const char* text);

/// Reads the number characters of a value: digits, "-", and "." when `point`; spaces are dropped.
void read_number_text(std::FILE* file, bool point, Buffer<999>& text);

/// Reads a string value up to the end of the line, of the file or of the buffer, joining lines at "&".
template <std::size_t limit>
void read_string(std::FILE* file, bool colon_is_text, Buffer<limit>& text) {
    while (!text.full()) {
        int c = std::fgetc(file);
        if (c == EOF || is_line_end(c) || (c == ':' && !colon_is_text)) return;
        if (c == '&') {
            text.drop_trailing_blanks();
            do c = std::fgetc(file);
            while (is_blank(c) || is_line_end(c));
            // Whatever ends the gap is taken as it stands: at the end of the file that is the byte 0xFF.
        }
        text.append(c);
    }
}

}  // namespace kalorfix::ini
