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
    for (const wording::Entry& entry : entries)
        if (entry.english.empty() || entry.russian.empty() || holes(entry.english) != holes(entry.russian))
            return false;
    return true;
}

// By lengths first, and loops alone: compilers count the steps.
constexpr bool is_unique(std::span<const wording::Entry> entries) {
    const std::size_t count = entries.size();
    const wording::Entry* const all = entries.data();
    for (std::size_t k = 0; k < count; ++k) {
        const std::string_view english = all[k].english;
        const std::size_t length = english.size();
        for (std::size_t other = k + 1; other < count; ++other)
            if (all[other].english.size() == length && all[other].english == english) return false;
    }
    return true;
}

constexpr bool is_sound(std::span<const wording::Entry> entries) {
    return is_complete(entries) && is_unique(entries);
}
// An entry lacks a language or a hole, or stands twice.
static_assert(is_sound(wording::catalogue));
static_assert(is_sound(wording::case_sources));
static_assert(is_sound(wording::case_notes));
static_assert(is_sound(wording::case_words));

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
