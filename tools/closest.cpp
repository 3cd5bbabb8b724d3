#include "tools/closest.h"

#include <algorithm>
#include <cctype>

namespace kalorfix::tool {
namespace {

char lower(char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); }

// Letters to insert, drop, change or exchange with their neighbour to make one word of the other; a change of case is a half.
std::size_t distance_in_halves(std::string_view a, std::string_view b) {
    std::vector<std::vector<std::size_t>> d(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i) d[i][0] = 2 * i;
    for (std::size_t j = 0; j <= b.size(); ++j) d[0][j] = 2 * j;
    for (std::size_t i = 1; i <= a.size(); ++i)
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const char x = a[i - 1], y = b[j - 1];
            const std::size_t change = x == y ? 0U : lower(x) == lower(y) ? 1U : 2U;
            d[i][j] = std::min({d[i - 1][j] + 2, d[i][j - 1] + 2, d[i - 1][j - 1] + change});
            if (i > 1 && j > 1 && x == b[j - 2] && a[i - 2] == y)
                d[i][j] = std::min(d[i][j], d[i - 2][j - 2] + 2);
        }
    return d[a.size()][b.size()];
}

// A word that was not typed to its end.
bool begins(std::string_view word, std::string_view typed) {
    return typed.size() >= 3 && word.starts_with(typed);
}

}  // namespace

std::string did_you_mean(std::string_view typed, const std::vector<std::string>& words) {
    constexpr std::size_t longest = 64;
    if (typed.size() > longest) return {};
    std::size_t least = 2 * std::max<std::size_t>(1, typed.size() / 3) + 1;
    const std::string* best = nullptr;
    for (const std::string& word : words)
        if (const std::size_t d = begins(word, typed) ? 2 : distance_in_halves(typed, word); d < least) {
            least = d;
            best = &word;
        }
    return best ? "; did you mean " + *best + "?" : std::string();
}

}  // namespace kalorfix::tool
