// SPDX-License-Identifier: MIT
// IniFile: the value getters and the lists of channel numbers.
#include <locale.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string_view>

#include "kalorfix_runtime.h"
#include "runtime/cp866.h"
#include "runtime/float_environment.h"
#include "runtime/ini_text.h"

namespace ini = kalorfix::ini;

namespace {

constexpr int section_not_found = 1;
constexpr int key_not_found = 2;

// Shared by all objects: the line that GetNextKey has reached.
int line_counter = 0;

constexpr auto line_too_long = kalorfix::cp866(U"Слишком длинная строка (>%d) в файле %s\n\r");

// The C library's own "C" locale: nothing is allocated, nothing can fail.
const locale_t c_locale = newlocale(LC_ALL_MASK, "C", nullptr);

// The guard behind the reading loops, which cut every value one character short of its buffer: a text that reached the
// limit all the same would overrun the caller's memory, so the process stops here.
void guard_length(std::size_t length, std::size_t limit, const char* file_name) {
    if (length < limit) return;
    std::printf(line_too_long.data(), static_cast<int>(limit), file_name ? file_name : "");
    std::exit(-1);
}

// Hands out text and a terminating zero, without spaces and tabs at its ends.
void hand_out(std::string_view text, char* result) {
    while (!text.empty() && ini::is_blank(text.front())) text.remove_prefix(1);
    while (!text.empty() && ini::is_blank(text.back())) text.remove_suffix(1);
    *std::copy(text.begin(), text.end(), result) = '\0';
}

// The characters of a number: digits, "-", and "." when `point`; spaces are dropped.
ini::Buffer<999> number_text(std::FILE* file, bool point) {
    ini::Buffer<999> text;
    while (!text.full()) {
        const int c = std::fgetc(file);
        if (c == ' ') continue;
        if (!ini::is_digit(c) && c != '-' && !(point && c == '.')) break;
        text.append(c);
    }
    return text;
}

// A decimal integer as strtol reads it on a machine with a 32-bit long: saturating, 0 when there is none.
std::int32_t read_integer(std::FILE* file) {
    using Limits = std::numeric_limits<std::int32_t>;
    const ini::Buffer<999> buffer = number_text(file, false);
    const std::string_view text = buffer.text();
    std::int32_t value = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
    if (read.ec == std::errc::result_out_of_range) return text.front() == '-' ? Limits::min() : Limits::max();
    return value;
}

// A decimal number as strtod reads it in the C locale and rounding to nearest, whatever the host's locale and rounding
// are; 0 when there is none.
float read_number(std::FILE* file) {
    const kalorfix::FloatEnvironment guard;
    return static_cast<float>(strtod_l(number_text(file, true).zero_terminated(), nullptr, c_locale));
}

// A string up to the end of the line, of the file or of the buffer, its lines joined at "&".
template <std::size_t limit>
void read_string(std::FILE* file, bool colon_is_text, const char* file_name, char* result) {
    ini::Buffer<limit - 1> text;
    while (!text.full()) {
        int c = std::fgetc(file);
        if (c == EOF || ini::is_line_end(c) || (c == ':' && !colon_is_text)) break;
        if (c == '&') {
            text.drop_trailing_blanks();
            do c = std::fgetc(file);
            while (ini::is_blank(c) || ini::is_line_end(c));
            // Whatever ends the gap is taken as it stands: at the end of the file that is the byte 0xFF.
        }
        text.append(c);
    }
    guard_length(text.text().size(), limit, file_name);
    hand_out(text.text(), result);
}

// Reads the value behind the "=" of a key; 0, or why it was not found.
template <class Read>
int read_value(IniFile& file, const char* section, const char* sub1, const char* sub2, const char* key,
               Read&& read) {
    if (file.SectionSearch(section, sub1, sub2, nullptr) != 0) return section_not_found;
    if (file.KeySearch(key) != 0) return key_not_found;
    read();
    return 0;
}

// Takes the next run of digits off a text, 0 when there is none left.
int take_number(std::string_view& rest) {
    constexpr std::size_t max_digits = 9;
    while (!rest.empty() && !ini::is_digit(rest.front())) rest.remove_prefix(1);
    int value = 0;
    const char* const most = rest.data() + std::min(rest.size(), max_digits);
    rest.remove_prefix(static_cast<std::size_t>(std::from_chars(rest.data(), most, value).ptr - rest.data()));
    return value;
}

// Moves behind the next of the given characters; 0 at the end of the text.
char skip_to(std::string_view characters, std::string_view& rest) {
    const std::size_t found = std::min(rest.find_first_of(characters), rest.size());
    const char c = found < rest.size() ? rest[found] : '\0';
    rest.remove_prefix(std::min(found + 1, rest.size()));
    return c;
}

template <class Number>
int list_numbers(char const* text, Number max, Number* out) {
    std::string_view rest = text ? text : "";
    int count = 0;
    const auto append_range = [&](int first, int last) {
        for (int k = first; k <= last; ++k) out[count++] = static_cast<Number>(k);
    };
    if (rest.starts_with("all") || rest.starts_with("All") || rest.starts_with("ALL")) {
        append_range(1, max);
        return max;
    }
    while (!rest.empty()) {
        const auto number = static_cast<Number>(take_number(rest));
        if (number < 1 || number > max) {
            skip_to(",", rest);
            continue;
        }
        out[count++] = number;
        if (skip_to(",-", rest) == '-')
            append_range(number + 1, std::min(static_cast<Number>(take_number(rest)), max));
    }
    return count;
}

}  // namespace

int IniFile::CfgGet(char const* section, char const* sub1, char const* sub2, char const* key, int& result) {
    return read_value(*this, section, sub1, sub2, key, [&] { result = read_integer(file_); });
}

int IniFile::CfgGet(char const* section, char const* sub1, char const* sub2, char const* key, long& result) {
    return read_value(*this, section, sub1, sub2, key, [&] { result = read_integer(file_); });
}

int IniFile::CfgGet(char const* section, char const* sub1, char const* sub2, char const* key, short& result) {
    return read_value(*this, section, sub1, sub2, key,
                      [&] { result = static_cast<short>(read_integer(file_)); });
}

int IniFile::CfgGet(char const* section, char const* sub1, char const* sub2, char const* key, float& result) {
    return read_value(*this, section, sub1, sub2, key, [&] { result = read_number(file_); });
}

int IniFile::CfgGet(char const* section, char const* sub1, char const* sub2, char const* key, char* result) {
    return read_value(*this, section, sub1, sub2, key, [&] { read_string<1000>(file_, false, name_, result); });
}

int IniFile::CfgGetMax(char const* section, char const* sub1, char const* sub2, char const* key, char* result) {
    return read_value(*this, section, sub1, sub2, key, [&] { read_string<2000>(file_, true, name_, result); });
}

int IniFile::GetNextKey(char const* section, char const* sub1, char const* sub2, char* key, char* value,
                        int* line) {
    if (!file_) iterating_ = 0;
    if (!iterating_) {
        if (SectionSearch(section, sub1, sub2, &line_counter) != 0) return 1;
        iterating_ = 1;
    }
    int c = std::fgetc(file_);
    for (; ini::is_line_end(c); c = std::fgetc(file_)) line_counter += c == '\n';
    if (c == EOF || c == '[') {
        iterating_ = 0;
        return 1;
    }

    ini::Buffer<999> text;
    for (; c != EOF && !ini::is_line_end(c); c = std::fgetc(file_)) {
        if (c == ':') {
            c = ini::skip_comment(file_);
            break;
        }
        text.append(c);
        if (text.full()) {
            c = 0;  // the rest of the line stays unread
            break;
        }
    }
    guard_length(text.text().size(), 1000, name_);
    if (line) *line = line_counter;
    line_counter += c == '\n';

    // Without "=" both sides are empty.
    std::string_view rest = text.text();
    const bool pair = rest.find('=') != std::string_view::npos;
    if (key) hand_out({rest.data(), pair ? rest.find('=') : 0}, key);
    rest.remove_prefix(pair ? rest.find('=') + 1 : rest.size());
    if (value) hand_out(rest, value);
    return 0;
}

int IniFile::ConvertStrToListVar(char const* text, short max, short* out) {
    return list_numbers(text, max, out);
}

int IniFile::ConvertStrToListVar(char const* text, int max, int* out) { return list_numbers(text, max, out); }
