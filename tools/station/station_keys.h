// A station file: its sections, read with the library's own INI reader, what each key is and accepts, and the keys of one section, known,
// given once, in range.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "tools/station/station.h"
#include "tools/text.h"

namespace kalorfix::tool::station {

struct Entry {
    std::string key, value;
    int line;
};

struct Section {
    std::vector<std::string> words;  ///< of the header, 1..3
    int line;
    std::vector<Entry> entries;

    /// The header as it stands in the file, such as [GAS 1].
    [[nodiscard]] std::string title() const;
};

/// Reads every section with its keys. Throws InputError with file and line for what the reader would pass over in
/// silence: text that is no key, a header in mid-line, lines that are too long, control characters.
[[nodiscard]] std::vector<Section> read_sections(const host::Library& library, const std::string& file);

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

/// What longest_step_s and --longest-step accept.
inline constexpr Limits longest_step{0.0, 1e8, "s"};

/// The reference of all keys, in lines for a person.
[[nodiscard]] std::string key_reference();

/// The lines of that reference on one key; nothing when there is no such key.
[[nodiscard]] std::string key_help(std::string_view name);
[[nodiscard]] std::vector<std::string> key_names();

class Keys {
public:
    /// Throws InputError for a key that sections of this medium ([STATION]: none) do not have and for one that stands twice.
    Keys(const std::string& file, const Section& section, std::optional<Medium> medium);

    [[nodiscard]] bool has(std::string_view key) const;
    [[nodiscard]] std::string title() const { return section_.title(); }
    /// The text of a key; null when it is not given.
    const Entry* find(std::string_view key);

    /// A number within its limits, or the number of a word. `otherwise` holds where the key is left out, before that of the table.
    float number(std::string_view key, std::optional<float> otherwise = {});
    short choice(std::string_view key) { return static_cast<short>(number(key)); }

    /// Throws InputError for a known key that nothing has asked for: it has no meaning beside the others.
    void finish(std::string_view because) const;

    /// Throws InputError with the place and what is wrong with an entry, or with the section.
    template <class... Parts>
    [[noreturn]] void fail(const Entry& entry, const Parts&... what) const {
        throw InputError(file_, ":", entry.line, ": ", section_.title(), " ", entry.key, ": ", what...);
    }
    template <class... Parts>
    [[noreturn]] void fail_section(const Parts&... what) const {
        throw InputError(file_, ":", section_.line, ": ", section_.title(), " ", what...);
    }

private:
    std::string file_;
    const Section& section_;
    const std::vector<Key>& known_;
    std::set<std::string, std::less<>> asked_;
};

}  // namespace kalorfix::tool::station
