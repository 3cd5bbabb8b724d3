// SPDX-License-Identifier: MIT
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <map>
#include <memory>
#include <span>
#include <utility>

#include "tools/runtime.h"
#include "tools/station/station_keys.h"

namespace kalorfix::tool::station {
namespace {

constexpr std::size_t longest_line = 900;      // the reader cuts at 999
constexpr std::size_t most_lines = 2'000'000;  // 20000 channels of both media with every key and a comment each
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

struct Scanned {
    std::vector<Section> sections;
    std::vector<std::uint64_t> begins;  // of the header of each, in bytes; behind them the end of the file
};

// The headers, and a refusal of every line that the reader would take for a comment though it is none.
Scanned scan(const std::string& file) {
    Lines lines(file, "this station file");
    Scanned scanned;
    auto& [sections, begins] = scanned;
    std::uint64_t begin = 0;
    std::map<std::string, std::uint64_t> seen;
    for (std::string_view line; lines.next(line); begin = lines.bytes_read()) {
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
            begins.push_back(begin);
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
    begins.push_back(lines.bytes_read());
    return scanned;
}

struct IniEnd {
    const host::Library& library;
    void operator()(IniFile* ini) const {
        library->ini_Close(ini);
        library->ini_end(ini);
    }
};

using Sections = std::span<Section>;

// The entries of sections that stand in a file, which begins `lines_before` lines behind the beginning of the station file.
void read_entries(const host::Library& library, const std::string& file, Sections sections, int lines_before) {
    constexpr int read_only = 1;
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
            if (key[0] != '\0' || value[0] != '\0')
                section.entries.push_back({key.data(), value.data(), lines_before + line});
    }
}

// The reader looks for each section from the first one on: in parts the time of a large file does not grow with its square.
void read_in_parts(const host::Library& library, const std::string& file, Scanned& scanned) {
    constexpr std::size_t sections_of_part = 128;
    const host::TemporaryDirectory place;
    const std::string part = place.path() + "/part.ini";
    std::ifstream in = open_regular(file);
    auto& [sections, begins] = scanned;
    for (std::size_t first = 0; first < sections.size(); first += sections_of_part) {
        const std::size_t count = std::min(sections_of_part, sections.size() - first);
        std::string text(static_cast<std::size_t>(begins[first + count] - begins[first]), '\0');
        in.seekg(static_cast<std::streamoff>(begins[first]));
        in.read(text.data(), static_cast<std::streamsize>(text.size()));
        std::ofstream copy(part, std::ios::binary);
        if (!in || !(copy << text).flush()) throw InputError(file + ": cannot read this station file in parts");
        read_entries(library, part, Sections(sections).subspan(first, count), sections[first].line - 1);
    }
}

}  // namespace

std::string Section::title() const { return "[" + joined(words, {}, " ") + "]"; }

std::vector<Section> read_sections(const host::Library& library, const std::string& file) {
    constexpr std::size_t read_at_once = 512;
    Scanned scanned = scan(file);
    if (scanned.sections.size() <= read_at_once)
        read_entries(library, file, scanned.sections, 0);
    else
        read_in_parts(library, file, scanned);
    return std::move(scanned.sections);
}

}  // namespace kalorfix::tool::station
