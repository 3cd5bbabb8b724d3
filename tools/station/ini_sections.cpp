#include "tools/station/ini_sections.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <memory>
#include <new>
#include <sstream>
#include <string_view>

#include "tools/range.h"

namespace kalorfix::tool::station {
namespace {

constexpr std::size_t longest_line = 900;  // the reader cuts at 999
constexpr int most_lines = 100'000;
constexpr std::size_t longest_header = 200;

[[noreturn]] void fail(const std::string& file, int line, const std::string& what) {
    throw InputError{fmt::format("{}:{}: {}", file, line, what)};
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r";
    const std::size_t begin = text.find_first_not_of(blanks);
    if (begin == std::string_view::npos) return {};
    return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

Section header(const std::string& file, int line, std::string_view text) {
    constexpr std::size_t most_words = 3;
    const std::size_t end = text.find(']');
    if (end == std::string_view::npos || !trimmed(text.substr(end + 1)).empty())
        fail(file, line, "expected a section header alone on its line, such as [GAS 1]");
    if (text.size() > longest_header) fail(file, line, "this section header is too long");
    const std::string_view inside = text.substr(1, end - 1);
    Section section{{}, line, {}};
    std::istringstream words{std::string(inside)};
    for (std::string word; words >> word;) section.words.push_back(word);
    // A blank behind the third word would make the reader refuse the whole file.
    if (section.words.empty() || section.words.size() > most_words ||
        (section.words.size() == most_words && (inside.back() == ' ' || inside.back() == '\t')))
        fail(file, line, "expected a section header such as [GAS 1]");
    return section;
}

// The headers, and a refusal of every line that the reader would take for a comment though it is none.
std::vector<Section> scan(const std::string& file) {
    std::error_code failed;
    std::ifstream in(file, std::ios::binary);
    if (!std::filesystem::is_regular_file(file, failed) || !in)
        throw InputError{fmt::format("{}: cannot read this station file", file)};
    std::vector<Section> sections;
    int number = 0;
    for (std::string line; std::getline(in, line);) {
        ++number;
        if (number > most_lines)
            fail(file, number, fmt::format("a station file has at most {} lines", most_lines));
        if (line.size() > longest_line)
            fail(file, number, fmt::format("longer than {} characters", longest_line));
        if (number == 1 && line.starts_with("\xEF\xBB\xBF")) line.erase(0, 3);
        if (!line.empty() && line.back() == '\r') line.pop_back();
        const auto is_control = [](char c) { return static_cast<unsigned char>(c) < ' ' && c != '\t'; };
        if (std::any_of(line.begin(), line.end(), is_control))
            fail(file, number, "contains a control character");
        const std::string_view whole = std::string_view(line).substr(0, line.find(':'));
        const std::string_view text = trimmed(whole);
        if (text.empty()) continue;
        if (text.front() == '[') {
            if (whole.front() != '[') fail(file, number, "a section header begins in the first column");
            sections.push_back(header(file, number, text));
        } else if (text.find('[') != std::string_view::npos) {
            fail(file, number, "[ stands only in a section header");
        } else if (text.find('=') == std::string_view::npos) {
            fail(file, number,
                 fmt::format("expected key = value, a section header or, behind a colon, a comment, not '{}'",
                             text));
        } else if (sections.empty()) {
            fail(file, number, "expected a section header, such as [GAS 1], before the first key");
        }
    }
    return sections;
}

// The library's reader, called through its exported members.
class Reader {
public:
    Reader(const host::Library& library, const std::string& file)
        : library_(library), place_(::operator new(sizeof(IniFile))) {
        constexpr int read_only = 1;
        library_->ini_make(place_.get(), file.c_str(), read_only);
        ini_ = static_cast<IniFile*>(place_.get());
        const unsigned char outcome = library_->ini_Open(ini_);
        opened_ = outcome == 0;
    }
    ~Reader() {
        library_->ini_Close(ini_);
        library_->ini_end(ini_);
    }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    [[nodiscard]] bool opened() const { return opened_; }

    void read(Section& section) {
        constexpr std::size_t size = 1000;
        std::array<char, size> key{}, value{};
        const auto word = [&](std::size_t k) {
            return k < section.words.size() ? section.words[k].c_str() : "";
        };
        int line = 0;
        while (library_->ini_GetNextKey(ini_, word(0), word(1), word(2), key.data(), value.data(), &line) == 0)
            if (key[0] != '\0' || value[0] != '\0') section.entries.push_back({key.data(), value.data(), line});
    }

private:
    struct Release {
        void operator()(void* place) const { ::operator delete(place); }
    };
    const host::Library& library_;
    std::unique_ptr<void, Release> place_;
    IniFile* ini_ = nullptr;
    bool opened_ = false;
};

}  // namespace

std::string Section::title() const {
    std::string text;
    for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
    return "[" + text + "]";
}

std::vector<Section> read_sections(const host::Library& library, const std::string& file) {
    std::vector<Section> sections = scan(file);
    for (auto later = sections.begin(); later != sections.end(); ++later)
        for (auto earlier = sections.begin(); earlier != later; ++earlier)
            if (earlier->words == later->words)
                fail(file, later->line,
                     fmt::format("{} stands here for the second time, first in line {}", later->title(),
                                 earlier->line));
    Reader reader(library, file);
    if (!reader.opened()) throw InputError{fmt::format("{}: cannot read this station file", file)};
    for (Section& section : sections) reader.read(section);
    return sections;
}

}  // namespace kalorfix::tool::station
