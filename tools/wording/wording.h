// SPDX-License-Identifier: MIT
// The words of the pages in two languages, from one catalogue. A text that the catalogue lacks does not compile.
#pragma once

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "tools/wording/catalogue.h"

namespace kalorfix::tool {

enum class Language { english, russian };

/// A text of the catalogue, by its English form.
class Text {
public:
    // Implicit, so that a literal is a text where it stands, and no text where the catalogue lacks it.
    consteval Text(const char* english) : place_(wording::place_of(english)) {
        if (place_ == wording::none) throw "not in tools/wording/catalogue.h";
    }

    [[nodiscard]] constexpr std::string_view in(Language language) const {
        const wording::Entry& entry = wording::catalogue[place_];
        return language == Language::russian ? entry.russian : entry.english;
    }

    /// With values in the holes {}.
    template <class... Values>
    [[nodiscard]] std::string filled(Language language, const Values&... values) const {
        return fmt::format(fmt::runtime(in(language)), values...);
    }

private:
    std::size_t place_;
};

/// The words of one language.
struct Wording {
    Language language;
    [[nodiscard]] std::string operator()(Text text) const { return std::string(text.in(language)); }
    template <class First, class... Values>
    [[nodiscard]] std::string operator()(Text text, const First& first, const Values&... values) const {
        return text.filled(language, first, values...);
    }
    /// A written number: Russian has a decimal comma.
    [[nodiscard]] std::string number(std::string text) const {
        if (language == Language::russian) std::ranges::replace(text, '.', ',');
        return text;
    }
};

/// Of a list whose texts are known to stand in the catalogue (below), and of units; any other text stays as it is.
[[nodiscard]] std::string_view translated(Language language, std::string_view english);

/// A source, a note or a word of a case file; empty where it is not known in that language.
[[nodiscard]] std::string_view of_case_file(Language language, std::string_view english);

/// en or ru; nothing for another word.
[[nodiscard]] std::optional<Language> language_of(std::string_view word);
[[nodiscard]] constexpr std::string_view language_code(Language language) {
    return language == Language::russian ? "ru" : "en";
}

}  // namespace kalorfix::tool
