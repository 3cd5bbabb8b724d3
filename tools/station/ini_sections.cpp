#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <map>
#include <memory>

#include "tools/station/station_keys.h"

namespace kalorfix::tool::station {
namespace {

constexpr std::size_t longest_line = 900;  // the reader cuts at 999
constexpr std::size_t most_lines = 100'000;
constexpr std::size_t longest_header = 200;

Section header(const Lines& lines, std::string_view text) {
    constexpr std::size_t most_words = 3;
    if (text.find(']') + 1 != text.size())
        lines.fail("expected a section header alone on its line, such as [GAS 1]");
    const std::string_view inside = text.substr(1, text.size() - 2);
    Section section{{}, static_cast<int>(lines.number()), {}};
    for (const std::string_view word : words(inside)) section.words.emplace_back(word);
    const std::size_t count = section.words.size();
    // A blank behind the third word would make the reader refuse the whole file.
    if (count == 0 || count > most_words || (count == most_words && inside != trimmed(inside)) ||
        text.size() > longest_header)
        lines.fail("expected a section header such as [GAS 1]");
    return section;
}

// The headers, and a refusal of every line that the reader would take for a comment though it is none.
std::vector<Section> scan(const std::string& file) {
    Lines lines(file, "this station file");
    std::vector<Section> sections;
    std::map<std::string, std::uint64_t> seen;
    for (std::string_view line; lines.next(line);) {
        if (lines.number() > most_lines) lines.fail("a station file has at most ", most_lines, " lines");
        if (line.size() > longest_line) lines.fail("longer than ", longest_line, " characters");
        if (std::ranges::any_of(line, [](char c) { return static_cast<unsigned char>(c) < ' ' && c != '\t'; }))
            lines.fail("contains a control character");
        const std::string_view whole = line.substr(0, line.find(':'));
        const std::string_view text = trimmed(whole);
        if (text.empty()) continue;
        if (text.front() == '[') {
            if (whole.front() != '[') lines.fail("a section header begins in the first column");
            sections.push_back(header(lines, text));
            const std::string title = sections.back().title();
            if (const auto [first, fresh] = seen.emplace(title, lines.number()); !fresh)
                lines.fail(title, " stands here for the second time, first in line ", first->second);
        } else if (text.find('[') != std::string_view::npos) {
            lines.fail("[ stands only in a section header");
        } else if (text.find('=') == std::string_view::npos) {
            lines.fail("expected key = value, a section header or, behind a colon, a comment, not '", text,
                       "'");
        } else if (sections.empty()) {
            lines.fail("expected a section header, such as [GAS 1], before the first key");
        }
    }
    return sections;
}

struct IniEnd {
    const host::Library& library;
    void operator()(IniFile* ini) const {
        library->ini_Close(ini);
        library->ini_end(ini);
    }
};

}  // namespace

std::string Section::title() const { return "[" + joined(words, {}, " ") + "]"; }

std::vector<Section> read_sections(const host::Library& library, const std::string& file) {
    constexpr int read_only = 1;
    std::vector<Section> sections = scan(file);
    // The library's reader in memory of this program, called through its exported members.
    alignas(IniFile) std::array<std::byte, sizeof(IniFile)> place;
    library->ini_make(place.data(), file.c_str(), read_only);
    const std::unique_ptr<IniFile, IniEnd> ini(reinterpret_cast<IniFile*>(place.data()), {library});
    if (library->ini_Open(ini.get()) != 0) throw InputError(file + ": cannot read this station file");
    std::array<char, 1000> key{}, value{};
    for (Section& section : sections) {
        const auto word = [&](std::size_t k) {
            return k < section.words.size() ? section.words[k].c_str() : "";
        };
        int line = 0;
        while (library->ini_GetNextKey(ini.get(), word(0), word(1), word(2), key.data(), value.data(), &line) ==
               0)
            if (key[0] != '\0' || value[0] != '\0') section.entries.push_back({key.data(), value.data(), line});
    }
    return sections;
}

}  // namespace kalorfix::tool::station
