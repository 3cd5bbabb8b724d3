#include "tools/station/station_keys.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>

#include "tools/range.h"

namespace kalorfix::tool::station {
namespace {

std::string accepted(const Limits& limits) {
    return fmt::format("{}..{}{}{}", limits.low, limits.high, limits.unit.empty() ? "" : " ", limits.unit);
}

std::string list(std::span<const Choice> words) {
    std::string text;
    for (const Choice& choice : words) text += (text.empty() ? "" : ", ") + std::string(choice.word);
    return text;
}

}  // namespace

Keys::Keys(const std::string& file, const Section& section, std::span<const std::string> known)
    : file_(file), section_(section) {
    for (const Entry& entry : section.entries) {
        if (std::find(known.begin(), known.end(), entry.key) == known.end()) {
            std::string names;
            for (const std::string& key : known) names += (names.empty() ? "" : ", ") + key;
            fail(entry, fmt::format("no such key; there are {}", names));
        }
        const auto same = [&](const Entry& other) { return other.key == entry.key; };
        const auto first = std::find_if(section.entries.begin(), section.entries.end(), same);
        if (&*first != &entry)
            fail(entry, fmt::format("stands here for the second time, first in line {}", first->line));
    }
}

bool Keys::has(std::string_view key) const {
    return std::any_of(section_.entries.begin(), section_.entries.end(),
                       [key](const Entry& entry) { return entry.key == key; });
}

const Entry* Keys::find(std::string_view key) {
    asked_.emplace(key);
    for (const Entry& entry : section_.entries)
        if (entry.key == key) return &entry;
    return nullptr;
}

float Keys::parse(const Entry& entry, const Limits& limits) const {
    double value = 0.0;
    const char* const end = entry.value.data() + entry.value.size();
    const auto [stop, error] = std::from_chars(entry.value.data(), end, value);
    if (error != std::errc() || stop != end || !std::isfinite(value))
        fail(entry, fmt::format("expected a number within {}, not '{}'", accepted(limits), entry.value));
    if (!(limits.low <= value && value <= limits.high))
        fail(entry, fmt::format("must lie within {}, not {}", accepted(limits), entry.value));
    return static_cast<float>(value);
}

float Keys::number(std::string_view key, const Limits& limits) {
    const Entry* const entry = find(key);
    if (!entry) fail(fmt::format("lacks {} (accepted: {})", key, accepted(limits)));
    return parse(*entry, limits);
}

float Keys::number(std::string_view key, const Limits& limits, float otherwise) {
    const Entry* const entry = find(key);
    return entry ? parse(*entry, limits) : otherwise;
}

short Keys::whole(std::string_view key, short low, short high, short otherwise) {
    const Entry* const entry = find(key);
    if (!entry) return otherwise;
    short value = 0;
    const char* const end = entry->value.data() + entry->value.size();
    const auto [stop, error] = std::from_chars(entry->value.data(), end, value);
    if (error != std::errc() || stop != end || value < low || value > high)
        fail(*entry, fmt::format("expected a whole number within {}..{}, not '{}'", low, high, entry->value));
    return value;
}

short Keys::choice(std::string_view key, std::span<const Choice> words, std::optional<short> otherwise) {
    const Entry* const entry = find(key);
    if (!entry) {
        if (otherwise) return *otherwise;
        fail(fmt::format("lacks {} (accepted: {})", key, list(words)));
    }
    for (const Choice& choice : words)
        if (choice.word == entry->value) return choice.value;
    fail(*entry, fmt::format("expected one of {}, not '{}'", list(words), entry->value));
}

void Keys::finish(std::string_view because) const {
    for (const Entry& entry : section_.entries)
        if (!asked_.contains(entry.key)) fail(entry, fmt::format("has no meaning {}; leave it out", because));
}

void Keys::fail(const Entry& entry, const std::string& what) const {
    throw InputError{fmt::format("{}:{}: {} {}: {}", file_, entry.line, section_.title(), entry.key, what)};
}

void Keys::fail(const std::string& what) const {
    throw InputError{fmt::format("{}:{}: {} {}", file_, section_.line, section_.title(), what)};
}

}  // namespace kalorfix::tool::station
