#include "runtime/ini_text.h"

#include <locale.h>
#include <stdlib.h>

#include <algorithm>
#include <limits>

#include "runtime/float_environment.h"

namespace kalorfix::ini {

namespace {

// The C library's own "C" locale: nothing is allocated, nothing can fail.
const locale_t c_locale = newlocale(LC_ALL_MASK, "C", nullptr);

}  // namespace

int skip_comment(std::FILE* file) {
    int c = 0;
    do c = std::fgetc(file);
    while (c != '\n' && c != EOF);
    return c;
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && is_blank(static_cast<unsigned char>(text.front()))) text.remove_prefix(1);
    while (!text.empty() && is_blank(static_cast<unsigned char>(text.back()))) text.remove_suffix(1);
    return text;
}

void copy_text(std::string_view text, char* result) { *std::copy(text.begin(), text.end(), result) = '\0'; }

Words split_header(std::string_view header) {
    Words words{};
    std::size_t count = 0;
    bool in_word = false;
    std::size_t begin = 0;
    for (std::size_t k = 0; k < header.size(); ++k) {
        const bool space = is_space(static_cast<unsigned char>(header[k]));
        if (!space && !in_word) {
            begin = k;
            in_word = true;
        } else if (space && in_word) {
            words.word[count++] = {header.data() + begin, k - begin};
            in_word = false;
            if (count == words.word.size()) {
                words.too_many = true;
                return words;
            }
        }
    }
    if (in_word) words.word[count] = {header.data() + begin, header.size() - begin};
    return words;
}

std::int32_t parse_integer(std::string_view text) {
    constexpr std::int64_t lowest = std::numeric_limits<std::int32_t>::min();
    constexpr std::int64_t highest = std::numeric_limits<std::int32_t>::max();
    const bool negative = !text.empty() && text.front() == '-';
    if (negative) text.remove_prefix(1);
    std::int64_t value = 0;
    for (const char c : text) {
        if (!is_digit(c)) break;
        value = std::min<std::int64_t>(10 * value + (c - '0'), highest + 1);
    }
    return static_cast<std::int32_t>(std::clamp(negative ? -value : value, lowest, highest));
}

double parse_number(const char* text) {
    const FloatEnvironment guard;
    return strtod_l(text, nullptr, c_locale);
}

void read_number_text(std::FILE* file, bool point, Buffer<999>& text) {
    while (!text.full()) {
        const int c = std::fgetc(file);
        if (c == ' ') continue;
        if (!is_digit(c) && c != '-' && !(point && c == '.')) return;
        text.append(c);
    }
}

}  // namespace kalorfix::ini
