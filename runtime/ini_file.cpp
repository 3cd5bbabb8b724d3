// SPDX-License-Identifier: MIT
// IniFile: the object, its section index and the searches.
#include <array>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <utility>

#include "kalorfix_runtime.h"
#include "runtime/files.h"
#include "runtime/ini_text.h"

namespace ini = kalorfix::ini;

/// One section of the file.
struct IniSection {
    char text[256];
    fpos_t position;  // just behind the "]"
    int line;         // of the "]"
    IniSection* next;
};

namespace {

constexpr std::size_t max_mode_string = 5;

using Words = std::array<std::string_view, 3>;

// The words of a section header; false where white space follows the third.
bool split_header(std::string_view header, Words& words) {
    std::size_t count = 0;
    for (std::size_t k = 0; k < header.size(); ++k) {
        const std::size_t begin = k;
        while (k < header.size() && !ini::is_space(header[k])) ++k;
        if (k == begin) continue;
        words[count++] = {header.data() + begin, k - begin};
        if (count == words.size()) return k == header.size();
    }
    return true;
}

bool matches(char const* wanted, std::string_view word) { return !wanted || word == wanted; }

}  // namespace

IniFile::IniFile() = default;

IniFile::IniFile(char const* file_name) : IniFile() { SetName(file_name); }

IniFile::IniFile(char const* file_name, int mode_bits) : IniFile(file_name) { SetMode(mode_bits); }

IniFile::~IniFile() { std::free(name_); }

void IniFile::SetName(char const* file_name) {
    if (!file_name || !*file_name) return;
    const std::size_t size = std::strlen(file_name) + 1;
    void* const copy = std::malloc(size);
    if (copy) std::memcpy(copy, file_name, size);
    std::free(std::exchange(name_, static_cast<char*>(copy)));
}

void IniFile::SetMode(int mode_bits) {
    mode_ = mode_bits;
    char* end = mode_string_;
    if (mode_bits & 1) *end++ = 'r';
    if (mode_bits & 2) *end++ = 'w';
    if (mode_bits & 4) *end++ = 'a';
    *end++ = mode_bits & 8 ? 'b' : 't';
    if (mode_bits & 16) *end++ = '+';
    *end = '\0';
}

int IniFile::SetSMode(char const* mode_string) {
    mode_ = 0;
    mode_string_[0] = '\0';
    const std::size_t length = mode_string ? std::strlen(mode_string) : 0;
    if (length >= 1 && length <= max_mode_string) std::memcpy(mode_string_, mode_string, length + 1);
    return static_cast<int>(length);
}

unsigned char IniFile::Open() {
    const bool was_open = file_ != nullptr;
    DeleteTableSection();
    file_ = kalorfix::open_regular(name_, mode_string_).release();
    if (!file_) return status_ = 1;
    if (CreatTableSection() != 0) return status_ = 3;
    return status_ = was_open ? 2 : 0;
}

unsigned char IniFile::Close() {
    DeleteTableSection();
    std::FILE* const file = std::exchange(file_, nullptr);
    if (!file) return status_ = 254;
    return status_ = std::fclose(file) == 0 ? 0 : 255;
}

int IniFile::CreatTableSection() {
    if (!file_) return 1;
    DeleteTableSection();
    std::rewind(file_);
    std::array<char, sizeof(IniSection::text)> header{};
    std::size_t length = 0;
    bool inside = false;
    int line = 1;
    for (int c = std::fgetc(file_); c != EOF; c = std::fgetc(file_)) {
        if (c == '\n') {
            ++line;
        } else if (c == ':') {
            if (inside) return 2;
            ini::skip_comment(file_);
            ++line;
        } else if (!inside) {
            inside = c == '[';
            length = 0;
        } else if (c == ']') {
            auto* const record = static_cast<IniSection*>(std::calloc(1, sizeof(IniSection)));
            if (!record) return 2;
            std::memcpy(record->text, header.data(), length);
            std::fgetpos(file_, &record->position);
            record->line = line;
            (previous_ ? previous_->next : first_) = record;
            previous_ = record;
            inside = false;
        } else {
            if (length == header.size() - 1) return 2;
            header[length++] = static_cast<char>(c);
        }
    }
    return inside ? 2 : 0;
}

int IniFile::DeleteTableSection() {
    for (current_ = first_; current_; current_ = previous_) {
        previous_ = current_->next;
        std::free(current_);
    }
    first_ = nullptr;
    previous_ = nullptr;
    section_count_ = 0;
    return 0;
}

int IniFile::SectionSearch(char const* section, char const* sub1, char const* sub2, int* line) {
    for (current_ = first_; current_; current_ = current_->next) {
        Words words;
        if (!split_header(current_->text, words)) return 1;
        if (!matches(section, words[0]) || !matches(sub1, words[1]) || !matches(sub2, words[2])) continue;
        std::fsetpos(file_, &current_->position);
        if (line) *line = current_->line;
        return 0;
    }
    return 2;
}

int IniFile::KeySearch(char const* key) {
    if (!file_) return 1;
    ini::Buffer<999> name;
    bool skip = false;
    for (;;) {
        const int c = std::fgetc(file_);
        if (c == EOF || (c == '[' && !skip)) return 1;
        if (c == '\n') {
            name.clear();
            skip = false;
        } else if (c == ':') {
            skip = true;
        } else if (c == '=') {
            // Compared even behind a comment's ":", with the name that was read before it.
            if (!key || name.text() == key) return 0;
            skip = true;
        } else if (!skip && !ini::is_space(c)) {
            if (name.full()) {
                // No key is that long: the line is lost, the section is not.
                ini::skip_comment(file_);
                name.clear();
            } else {
                name.append(c);
            }
        }
    }
}
