#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <new>

#include "tools/station/station_keys.h"

namespace kalorfix::tool::station {
namespace {

constexpr std::size_t longest_line = 900;  // the reader cuts at 999
constexpr std::size_t most_lines = 100'000;
constexpr std::size_t longest_header = 200;

Section header(const Lines& lines, std::string_view text) {
    constexpr std::size_t most_words = 3;
    const std::size_t end = text.find(']');
    if (end + 1 != text.size()) lines.fail("expected a section header alone on its line, such as [GAS 1]");
    if (text.size() > longest_header) lines.fail("this section header is too long");
    const std::string_view inside = text.substr(1, end - 1);
    Section section{{}, static_cast<int>(lines.number()), {}};
    for (const std::string_view word : words(inside)) section.words.emplace_back(word);
    // A blank behind the third word would make the reader refuse the whole file.
    if (section.words.empty() || section.words.size() > most_words ||
        (section.words.size() == most_words && inside != trimmed(inside)))
        lines.fail("expected a section header such as [GAS 1]");
    return section;
}

// The headers, and a refusal of every line that the reader would take for a comment though it is none.
std::vector<Section> scan(const std::string& file) {
    Lines lines(file, "this station file");
    std::vector<Section> sections;
    std::map<std::string, std::uint64_t> seen;
    for (std::string_view line; lines.next(line);) {
        if (lines.number() > most_lines)
            lines.fail(fmt::format("a station file has at most {} lines", most_lines));
        if (line.size() > longest_line) lines.fail(fmt::format("longer than {} characters", longest_line));
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
                lines.fail(
                    fmt::format("{} stands here for the second time, first in line {}", title, first->second));
        } else if (text.find('[') != std::string_view::npos) {
            lines.fail("[ stands only in a section header");
        } else if (text.find('=') == std::string_view::npos) {
            lines.fail(fmt::format(
                "expected key = value, a section header or, behind a colon, a comment, not '{}'", text));
        } else if (sections.empty()) {
            lines.fail("expected a section header, such as [GAS 1], before the first key");
        }
    }
    return sections;
}

// The library's reader in memory of this program, called through its exported members.
class Reader {
public:
    Reader(const host::Library& library, const std::string& file)
        : library_(library), place_(::operator new(sizeof(IniFile))) {
        constexpr int read_only = 1;
        library_->ini_make(place_.get(), file.c_str(), read_only);
        if (library_->ini_Open(ini()) == 0) return;
        library_->ini_end(ini());
        throw InputError(fmt::format("{}: cannot read this station file", file));
    }
    ~Reader() {
        library_->ini_Close(ini());
        library_->ini_end(ini());
    }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    void read(Section& section) {
        constexpr std::size_t size = 1000;
        std::array<char, size> key{}, value{};
        const auto word = [&](std::size_t k) {
            return k < section.words.size() ? section.words[k].c_str() : "";
        };
        int line = 0;
        while (library_->ini_GetNextKey(ini(), word(0), word(1), word(2), key.data(), value.data(), &line) == 0)
            if (key[0] != '\0' || value[0] != '\0') section.entries.push_back({key.data(), value.data(), line});
    }

private:
    struct Release {
        void operator()(void* place) const { ::operator delete(place); }
    };
    IniFile* ini() { return static_cast<IniFile*>(place_.get()); }
    const host::Library& library_;
    std::unique_ptr<void, Release> place_;
};

}  // namespace

std::string Section::title() const { return "[" + joined(words, {}, " ") + "]"; }

std::vector<Section> read_sections(const host::Library& library, const std::string& file) {
    std::vector<Section> sections = scan(file);
    Reader reader(library, file);
    for (Section& section : sections) reader.read(section);
    return sections;
}

}  // namespace kalorfix::tool::station
