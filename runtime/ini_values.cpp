// IniFile: the value getters.
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "kalorfix_runtime.h"
#include "runtime/cp866.h"
#include "runtime/float_environment.h"
#include "runtime/ini_text.h"

namespace ini = kalorfix::ini;

namespace {

constexpr int section_not_found = 1;
constexpr int key_not_found = 2;

// Shared by all objects: the line that GetNextKey has reached.
int line_counter = 0;

constexpr auto line_too_long = kalorfix::cp866(U"Слишком длинная строка (>%d) в файле %s\n\r");

// The guard behind the reading loops, which cut every value one character short of its buffer: a text that reached the
// limit all the same would overrun the caller's memory, so the process stops here.
void guard_length(std::size_t length, int limit, const char* file_name) {
    if (length < static_cast<std::size_t>(limit)) return;
    std::printf(line_too_long.data(), limit, file_name ? file_name : "");
    std::exit(-1);
}

// Positions the file behind the "=" of a key; 0, or why it was not found.
int find(IniFile& file, char const* section, char const* sub1, char const* sub2, char const* key) {
    if (file.SectionSearch(section, sub1, sub2, nullptr) != 0) return section_not_found;
    return file.KeySearch(key) == 0 ? 0 : key_not_found;
}

template <class Integer>
int get_integer(IniFile& file, std::FILE*& stream, char const* section, char const* sub1, char const* sub2,
                char const* key, Integer& result) {
    const int missing = find(file, section, sub1, sub2, key);
    if (missing != 0) return missing;
    ini::Buffer<999> text;
    ini::read_number_text(stream, false, text);
    result = static_cast<Integer>(ini::parse_integer(text.text()));
    return 0;
}

}  // namespace

int IniFile::CfgGet(char const* section, char const* sub1, char const* sub2, char const* key, int& result) {
    return get_integer(*this, file_, section, sub1, sub2, key, result);
}

int IniFile::CfgGet(char const* section, char const* sub1, char const* sub2, char const* key, long& result) {
    return get_integer(*this, file_, section, sub1, sub2, key, result);
}

int IniFile::CfgGet(char const* section, char const* sub1, char const* sub2, char const* key, short& result) {
    return get_integer(*this, file_, section, sub1, sub2, key, result);
}

int IniFile::CfgGet(char const* section, char const* sub1, char const* sub2, char const* key, float& result) {
    const int missing = find(*this, section, sub1, sub2, key);
    if (missing != 0) return missing;
    ini::Buffer<999> text;
    ini::read_number_text(file_, true, text);
    const kalorfix::FloatEnvironment guard;  // the narrowing rounds
    result = static_cast<float>(ini::parse_number(text.zero_terminated()));
    return 0;
}

int IniFile::CfgGet(char const* section, char const* sub1, char const* sub2, char const* key, char* result) {
    const int missing = find(*this, section, sub1, sub2, key);
    if (missing != 0) return missing;
    ini::Buffer<999> text;
    ini::read_string(file_, false, text);
    guard_length(text.text().size(), 1000, name_);
    ini::copy_text(ini::trimmed(text.text()), result);
    return 0;
}

int IniFile::CfgGetMax(char const* section, char const* sub1, char const* sub2, char const* key, char* result) {
    const int missing = find(*this, section, sub1, sub2, key);
    if (missing != 0) return missing;
    ini::Buffer<1999> text;
    ini::read_string(file_, true, text);
    guard_length(text.text().size(), 2000, name_);
    ini::copy_text(ini::trimmed(text.text()), result);
    return 0;
}

int IniFile::GetNextKey(char const* section, char const* sub1, char const* sub2, char* key, char* value,
                        int* line) {
    if (!file_) iterating_ = 0;
    if (!iterating_) {
        if (SectionSearch(section, sub1, sub2, &line_counter) != 0) return 1;
        iterating_ = 1;
    }
    int c = std::fgetc(file_);
    for (; ini::is_line_end(c); c = std::fgetc(file_)) line_counter += c == '\n';
    if (c == EOF || c == '[') {
        iterating_ = 0;
        return 1;
    }

    ini::Buffer<999> text;
    for (; c != EOF && !ini::is_line_end(c); c = std::fgetc(file_)) {
        if (c == ':') {
            c = ini::skip_comment(file_);
            break;
        }
        text.append(c);
        if (text.full()) {
            c = 0;  // the rest of the line stays unread
            break;
        }
    }
    guard_length(text.text().size(), 1000, name_);
    if (line) *line = line_counter;
    line_counter += c == '\n';

    const std::string_view whole = text.text();
    const std::size_t equals = whole.find('=');
    const bool is_key = equals != std::string_view::npos;
    if (key) ini::copy_text(is_key ? ini::trimmed({whole.data(), equals}) : std::string_view(), key);
    if (value)
        ini::copy_text(
            is_key ? ini::trimmed({whole.data() + equals + 1, whole.size() - equals - 1}) : std::string_view(),
            value);
    return 0;
}
