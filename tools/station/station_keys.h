// The keys of a station file: what each is and accepts, and the keys of one section, known, given once, in range.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "tools/numbers.h"
#include "tools/station/ini_sections.h"
#include "tools/station/station.h"

namespace kalorfix::tool::station {

/// What a key is and accepts.
struct Key {
    std::string name;
    std::string what;
    Limits limits{};                             ///< of a number
    std::optional<float> otherwise{};            ///< where the key is left out; without it the key is needed
    std::vector<std::string_view> words{};       ///< of a choice, by their numbers
    bool whole = false;                          ///< a whole number
    [[nodiscard]] std::string accepted() const;  ///< "0..100 mm", or the words
};

/// The key of a component's share, x_methane_pct, and of an integrator's accounting, mass_substitute_t_h, mass_exponent.
[[nodiscard]] std::string component_key(std::size_t i);
[[nodiscard]] std::string substitute_key(const Integrator& one);
[[nodiscard]] std::string exponent_key(const Integrator& one);

/// The reference of all keys, in lines for a person.
[[nodiscard]] std::string key_reference();

class Keys {
public:
    /// Throws InputError for a key that sections of this medium do not have and for one that stands twice.
    Keys(const std::string& file, const Section& section, Medium medium);

    [[nodiscard]] bool has(std::string_view key) const;
    /// The text of a key; null when it is not given.
    const Entry* find(std::string_view key);

    /// A number within its limits. `otherwise` holds where the key is left out, before that of the table.
    float number(std::string_view key, std::optional<float> otherwise = {});
    /// The number of a word.
    short choice(std::string_view key);

    /// Throws InputError for a known key that nothing has asked for: it has no meaning beside the others.
    void finish(std::string_view because) const;

    [[noreturn]] void fail(const Entry& entry, const std::string& what) const;
    [[noreturn]] void fail(const std::string& what) const;

private:
    [[nodiscard]] const Key& known(std::string_view key) const;
    std::string file_;
    const Section& section_;
    const std::vector<Key>& known_;
    std::set<std::string, std::less<>> asked_;
};

}  // namespace kalorfix::tool::station
