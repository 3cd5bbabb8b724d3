// The sections of a station file, read with the library's own INI reader.
#pragma once

#include <string>
#include <vector>

#include "tools/host.h"

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

}  // namespace kalorfix::tool::station
