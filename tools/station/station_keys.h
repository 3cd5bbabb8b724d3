// The keys of one section of a station file: known, given once, in range.
#pragma once

#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>

#include "tools/station/ini_sections.h"

namespace kalorfix::tool::station {

/// A word that a key accepts.
struct Choice {
    std::string_view word;
    short value;
};

/// Limits of a number.
struct Limits {
    double low, high;
    std::string_view unit;
};

class Keys {
public:
    /// Throws InputError for a key that is not among `known` and for one that stands twice.
    Keys(const std::string& file, const Section& section, std::span<const std::string> known);

    [[nodiscard]] bool has(std::string_view key) const;
    /// The text of a key; null when it is not given.
    const Entry* find(std::string_view key);

    float number(std::string_view key, const Limits& limits);
    float number(std::string_view key, const Limits& limits, float otherwise);
    short whole(std::string_view key, short low, short high, short otherwise);
    short choice(std::string_view key, std::span<const Choice> words, std::optional<short> otherwise = {});

    /// Throws InputError for a known key that nothing has asked for: it has no meaning beside the others.
    void finish(std::string_view because) const;

    [[noreturn]] void fail(const Entry& entry, const std::string& what) const;
    [[noreturn]] void fail(const std::string& what) const;

private:
    float parse(const Entry& entry, const Limits& limits) const;
    std::string file_;
    const Section& section_;
    std::set<std::string, std::less<>> asked_;
};

}  // namespace kalorfix::tool::station
