// SPDX-License-Identifier: MIT
#include "tools/wording/wording.h"

#include <algorithm>
#include <span>

#include "tools/names.h"
#include "tools/wording/case_notes.h"
#include "tools/wording/case_sources.h"

namespace kalorfix::tool {
namespace {

constexpr std::size_t holes(std::string_view text) {
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find('{', at)) != std::string_view::npos; ++at) ++count;
    return count;
}

constexpr bool is_complete(std::span<const wording::Entry> entries) {
    for (const wording::Entry& entry : entries) {
        if (entry.english.empty() || entry.russian.empty() || holes(entry.english) != holes(entry.russian))
            return false;
        // Found again at another place: it stands there twice.
        if (&*std::ranges::find(entries, entry.english, &wording::Entry::english) != &entry) return false;
    }
    return true;
}
static_assert(is_complete(wording::catalogue) && is_complete(wording::case_sources) &&
                  is_complete(wording::case_notes) && is_complete(wording::case_words),
              "an entry lacks a language or a hole, or stands twice");

template <class List, class Name>
constexpr bool holds(const List& list, Name name) {
    for (const auto& one : list)
        if (wording::place_of(name(one)) == wording::none) return false;
    return true;
}
static_assert(holds(devices, [](const Device& device) { return device.title; }));
static_assert(holds(methods, [](const Method& method) { return method.title; }));
static_assert(holds(components, [](std::string_view component) { return component; }));

}  // namespace

std::string_view translated(Language language, std::string_view english) {
    const std::size_t place = wording::place_of(english);
    if (language == Language::english || place == wording::none) return english;
    return wording::catalogue[place].russian;
}

std::string_view of_case_file(Language language, std::string_view english) {
    if (language == Language::english) return english;
    for (const std::span<const wording::Entry> entries :
         {std::span<const wording::Entry>(wording::case_sources),
          std::span<const wording::Entry>(wording::case_notes),
          std::span<const wording::Entry>(wording::case_words)})
        if (const auto found = std::ranges::find(entries, english, &wording::Entry::english);
            found != entries.end())
            return found->russian;
    return {};
}

std::optional<Language> language_of(std::string_view word) {
    for (const Language one : {Language::english, Language::russian})
        if (word == language_code(one)) return one;
    return std::nullopt;
}

}  // namespace kalorfix::tool
