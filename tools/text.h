// SPDX-License-Identifier: MIT
// Text as people write it: numbers, cells, and the lines of a file with their place for messages.
#pragma once

#include <charconv>
#include <cstdint>
#include <fstream>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace kalorfix::tool {

/// In as few digits as tell it from others, without an exponent.
[[nodiscard]] std::string plain(double value);

/// Texts and numbers one behind the other.
template <class... Parts>
[[nodiscard]] std::string cat(const Parts&... parts) {
    std::string all;
    const auto add = [&all](const auto& part) {
        if constexpr (std::is_integral_v<std::remove_cvref_t<decltype(part)>>)
            all += std::to_string(part);
        else if constexpr (std::is_floating_point_v<std::remove_cvref_t<decltype(part)>>)
            all += plain(static_cast<double>(part));
        else
            all += part;
    };
    (add(parts), ...);
    return all;
}

/// With a question mark for each control character, C1 included, and for what is no UTF-8: a message is one line that commands no
/// terminal.
[[nodiscard]] std::string printable(std::string text);

/// Thrown for input that the user can put right: one line that says what, where and what would be right.
struct InputError : std::runtime_error {
    template <class... Parts>
    explicit InputError(const Parts&... parts) : std::runtime_error(printable(cat(parts...))) {}
};

/// A whole text as a number, nan and inf included; nothing for anything else. Integers may have a base.
template <class Number>
[[nodiscard]] std::optional<Number> parse(std::string_view text, auto... base) {
    Number value{};
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value, base...);
    if (error != std::errc() || stop != end) return std::nullopt;
    return value;
}

/// A finite number; nothing for anything else.
[[nodiscard]] std::optional<double> number(std::string_view text);

/// What a number may be, both ends included.
struct Limits {
    double low, high;
    std::string_view unit;
    [[nodiscard]] std::string text() const;  ///< "0..100 mol %"
};
/// A number within limits; nothing for anything else.
[[nodiscard]] std::optional<double> number_within(std::string_view text, const Limits& limits);
/// What to tell of a text that is none: "expected a number within 0..100 mol %, not 'x'".
[[nodiscard]] std::string expected_within(std::string_view text, const Limits& limits);

/// A text of a file within a message: a damaged file has cells of any length.
[[nodiscard]] std::string quoted(std::string_view text);

/// Without the blanks around it.
[[nodiscard]] std::string_view trimmed(std::string_view text, std::string_view blanks = " \t");

/// A cell of CSV, in quotes if it needs them.
[[nodiscard]] std::string csv_cell(const std::string& text);
/// The same for a text that others wrote: an apostrophe keeps a spreadsheet from taking it for a formula.
[[nodiscard]] std::string csv_text(const std::string& text);

/// The cells between separators, trimmed.
void split(std::string_view text, char separator, std::vector<std::string_view>& cells);
[[nodiscard]] std::vector<std::string_view> split(std::string_view text, char separator);

/// What blanks part.
[[nodiscard]] std::vector<std::string_view> words(std::string_view text);

/// "a, b, c": what `name` gives of each element.
template <class List, class Name = std::identity>
[[nodiscard]] std::string joined(const List& list, Name name = {}, std::string_view separator = ", ") {
    std::string all;
    std::string_view before;
    for (const auto& one : list) {
        (all += before) += std::invoke(name, one);
        before = separator;
    }
    return all;
}

/// Rows in columns two blanks apart, the first `left` of them to the left and the others to the right.
[[nodiscard]] std::string aligned(const std::vector<std::vector<std::string>>& rows, std::size_t left);

/// Why a file cannot be read as a regular file: it is not there, a directory, or the system's reason.
[[nodiscard]] std::string why_unreadable(const std::string& file);

/// Opens a regular file; nothing else, so that no pipe is waited for.
[[nodiscard]] std::ifstream open_regular(const std::string& file);

/// All bytes of a regular file; nothing when it cannot be read.
[[nodiscard]] std::optional<std::string> content_of(const std::string& file);

/// The lines of a text file one after another, in constant memory.
class Lines {
public:
    static constexpr std::size_t longest = 4096;

    /// Opens a regular file. Throws InputError: cannot read `what`, such as "this composition file".
    Lines(const std::string& file, const std::string& what);
    /// Goes on in a stream that outlives it; `name` is for messages.
    Lines(std::istream& in, std::string name);

    /// The next line without its end (and the first without a byte order mark), in place until the next call. Throws
    /// InputError for one that is too long and for a file that cannot be read to its end.
    bool next(std::string_view& line);
    /// The next that is neither empty nor a comment (#), without the blanks around it. At the end the place stays that of the last one.
    bool next_entry(std::string_view& line, std::string_view blanks = " \t");
    /// Back to where it began.
    void rewind();

    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] std::uint64_t number() const { return number_; }  ///< of the line at hand, from 1
    [[nodiscard]] std::uint64_t bytes_read() const { return consumed_; }
    [[nodiscard]] bool cut() const {
        return cut_;
    }  ///< the line at hand ends with the file, without an end of its own

    /// Throws InputError "file:line: what", or "file:line:column: what" for a part of the line.
    template <class... Parts>
    [[noreturn]] void fail(const Parts&... what) const {
        throw InputError(name_, ":", number_ == 0 ? 1 : number_, ": ", what...);
    }
    template <class... Parts>
    [[noreturn]] void fail_at(std::string_view part, const Parts&... what) const {
        throw InputError(name_, ":", number_, ":", part.data() - begin_ + 1, ": ", what...);
    }

private:
    std::ifstream file_;
    std::istream& in_;
    std::string name_;
    std::istream::pos_type start_;
    std::vector<char> buffer_;
    const char* begin_ = nullptr;  ///< of the line at hand
    std::uint64_t number_ = 0, consumed_ = 0;
    bool cut_ = false;
};

}  // namespace kalorfix::tool
