// SPDX-License-Identifier: MIT
#include "tools/wording/wording.h"

#include <algorithm>

#include "tools/names.h"

namespace kalorfix::tool {
namespace {

constexpr std::size_t holes(std::string_view text) {
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find('{', at)) != std::string_view::npos; ++at) ++count;
    return count;
}

constexpr bool is_complete() {
    for (const wording::Entry& entry : wording::catalogue) {
        if (entry.english.empty() || entry.russian.empty() || holes(entry.english) != holes(entry.russian))
            return false;
        // Found again at another place: it stands there twice.
        if (&wording::catalogue[wording::place_of(entry.english)] != &entry) return false;
    }
    return true;
}
static_assert(is_complete(), "an entry lacks a language or a hole, or stands twice");

template <class List, class Name>
constexpr bool holds(const List& list, Name name) {
    for (const auto& one : list)
        if (wording::place_of(name(one)) == wording::none) return false;
    return true;
}
static_assert(holds(devices, [](const Device& device) { return device.title; }));
static_assert(holds(components, [](std::string_view component) { return component; }));

}  // namespace

std::string_view translated(Language language, std::string_view english) {
    const std::size_t place = wording::place_of(english);
    if (language == Language::english || place == wording::none) return english;
    return wording::catalogue[place].russian;
}

std::optional<Language> language_of(std::string_view word) {
    for (const Language one : {Language::english, Language::russian})
        if (word == language_code(one)) return one;
    return std::nullopt;
}

}  // namespace kalorfix::tool
