// IniFile: lists of channel numbers.
#include <algorithm>
#include <cstring>
#include <string_view>

#include "kalorfix_runtime.h"
#include "runtime/ini_text.h"

namespace ini = kalorfix::ini;

namespace {

constexpr std::size_t max_digits = 9;

// Walks the text once; every look-ahead moves on.
class Scanner {
public:
    explicit Scanner(std::string_view text) : rest_(text) {}

    [[nodiscard]] bool at_end() const { return rest_.empty(); }

    // The next run of digits, 0 when there is none left.
    int number() {
        while (!rest_.empty() && !ini::is_digit(rest_.front())) rest_.remove_prefix(1);
        int value = 0;
        for (std::size_t k = 0; k < max_digits && !rest_.empty() && ini::is_digit(rest_.front()); ++k) {
            value = 10 * value + (rest_.front() - '0');
            rest_.remove_prefix(1);
        }
        return value;
    }

    // Moves behind the next of the given characters; 0 at the end of the text.
    char skip_to(std::string_view characters) {
        const std::size_t found = rest_.find_first_of(characters);
        if (found == std::string_view::npos) {
            rest_ = {};
            return 0;
        }
        const char c = rest_[found];
        rest_.remove_prefix(found + 1);
        return c;
    }

private:
    std::string_view rest_;
};

template <class Number>
int list_numbers(char const* text, Number max, Number* out) {
    const std::string_view whole = text ? text : "";
    for (const std::string_view all : {"all", "All", "ALL"})
        if (whole.starts_with(all)) {
            for (int k = 0; k < max; ++k) out[k] = static_cast<Number>(k + 1);
            return max;
        }

    int count = 0;
    bool range = false;
    Number start = 0;
    for (Scanner scanner(whole); !scanner.at_end();) {
        const auto number = static_cast<Number>(scanner.number());
        if (range) {
            const int end = std::min(number, max);
            for (int k = start + 1; k <= end; ++k) out[count++] = static_cast<Number>(k);
            range = false;
        } else if (number >= 1 && number <= max) {
            out[count++] = number;
            range = scanner.skip_to(",-") == '-';
            start = number;
        } else {
            scanner.skip_to(",");
        }
    }
    return count;
}

}  // namespace

int IniFile::ConvertStrToListVar(char const* text, short max, short* out) {
    return list_numbers(text, max, out);
}

int IniFile::ConvertStrToListVar(char const* text, int max, int* out) { return list_numbers(text, max, out); }
