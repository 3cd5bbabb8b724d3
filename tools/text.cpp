#include "tools/text.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <utility>

namespace kalorfix::tool {
namespace {

constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

// Bytes of the character of UTF-8 that the text begins with; 0 for a control character and for what is no UTF-8. The bytes
// 0x80..0x9F alone, and U+0080..U+009F, are the control characters C1.
std::size_t printable_length(std::string_view text) {
    constexpr unsigned del = 0x7F, first_behind_C1 = 0xA0;
    const auto byte = [text](std::size_t k) {
        return static_cast<unsigned>(static_cast<unsigned char>(text[k]));
    };
    const unsigned lead = byte(0);
    if (lead < 0x80) return lead < ' ' || lead == del ? 0 : 1;
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || length > text.size()) return 0;
    unsigned code = lead & (0xFFU >> (length + 1));
    for (std::size_t k = 1; k < length; ++k) {
        if ((byte(k) & 0xC0U) != 0x80U) return 0;
        code = code << 6U | (byte(k) & 0x3FU);
    }
    constexpr unsigned least[] = {first_behind_C1, 0x800, 0x10000};  // else it is longer than it need be
    return code < least[length - 2] ? 0 : length;
}

}  // namespace

std::string plain(double value) {
    std::array<char, 400> digits;
    return {digits.data(), std::to_chars(digits.begin(), digits.end(), value, std::chars_format::fixed).ptr};
}

std::string printable(std::string text) {
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = printable_length(std::string_view(text).substr(i));
        if (length == 0) text[i] = '?';
        i += std::max<std::size_t>(length, 1);
    }
    return text;
}

std::optional<double> number(std::string_view text) {
    const std::optional<double> value = parse<double>(text);
    return value && std::isfinite(*value) ? value : std::nullopt;
}

std::string Limits::text() const {
    return plain(low) + ".." + plain(high) + (unit.empty() ? "" : " ") + std::string(unit);
}

std::optional<double> number_within(std::string_view text, const Limits& limits) {
    const std::optional<double> value = number(text);
    return value && limits.low <= *value && *value <= limits.high ? value : std::nullopt;
}

std::string expected_within(std::string_view text, const Limits& limits) {
    return "expected a number within " + limits.text() + ", not " + quoted(text);
}

std::string quoted(std::string_view text) {
    constexpr std::size_t longest_quote = 40;
    return "'" + std::string(text.substr(0, longest_quote)) + (text.size() > longest_quote ? "...'" : "'");
}

std::string_view trimmed(std::string_view text, std::string_view blanks) {
    const std::size_t begin = text.find_first_not_of(blanks);
    if (begin == std::string_view::npos) return {};
    return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

std::string csv_cell(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
    std::string out = "\"";
    for (const char c : text) out.append(c == '"' ? 2 : 1, c);
    return out + '"';
}

std::string csv_text(const std::string& text) {
    const bool formula =
        !text.empty() && std::string_view("=+-@\t\r").find(text.front()) != std::string_view::npos;
    return csv_cell(formula ? "'" + text : text);
}

void split(std::string_view text, char separator, std::vector<std::string_view>& cells) {
    cells.clear();
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(separator, begin), text.size());
        const std::string_view cell = trimmed(text.substr(begin, end - begin));
        // An empty cell has its place too.
        cells.push_back(cell.empty() ? text.substr(begin, 0) : cell);
        begin = end + 1;
    }
}

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> cells;
    split(text, separator, cells);
    return cells;
}

std::vector<std::string_view> words(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n\v\f";
    std::vector<std::string_view> found;
    for (std::size_t begin = 0; (begin = text.find_first_not_of(blanks, begin)) != std::string_view::npos;) {
        const std::size_t end = std::min(text.find_first_of(blanks, begin), text.size());
        found.push_back(text.substr(begin, end - begin));
        begin = end;
    }
    return found;
}

std::string aligned(const std::vector<std::vector<std::string>>& rows, std::size_t left) {
    std::vector<std::size_t> width(rows.front().size());
    for (const auto& cells : rows)
        for (std::size_t k = 0; k < cells.size(); ++k) width[k] = std::max(width[k], cells[k].size());
    std::string text;
    for (const auto& cells : rows)
        for (std::size_t k = 0; k < cells.size(); ++k) {
            const std::string fill(width[k] - cells[k].size(), ' ');
            text += k < left ? cells[k] + fill : fill + cells[k];
            text += k + 1 < cells.size() ? "  " : "\n";
        }
    return text;
}

std::ifstream open_regular(const std::string& file) {
    std::error_code failed;
    std::ifstream in;
    if (std::filesystem::is_regular_file(file, failed))
        in.open(file, std::ios::binary);
    else
        in.setstate(std::ios::failbit);
    return in;
}

std::string why_unreadable(const std::string& file) {
    std::error_code failed;
    const auto type = std::filesystem::status(file, failed).type();
    if (type == std::filesystem::file_type::directory) return "it is a directory";
    if (std::filesystem::exists(std::filesystem::file_status(type)) &&
        type != std::filesystem::file_type::regular)
        return "it is no regular file";
    const int why = access(file.c_str(), R_OK) == 0 ? EIO : errno;
    return std::strerror(why);
}

std::optional<std::string> content_of(const std::string& file) {
    std::ifstream in = open_regular(file);
    if (!in) return std::nullopt;
    std::string content{std::istreambuf_iterator<char>(in), {}};
    return in.bad() ? std::nullopt : std::optional(std::move(content));
}

Lines::Lines(const std::string& file, const std::string& what)
    : file_(open_regular(file)), in_(file_), name_(file), buffer_(longest + 1) {
    if (!file_) throw InputError(file + ": cannot read " + what + ": " + why_unreadable(file));
    start_ = in_.tellg();
}

Lines::Lines(std::istream& in, std::string name)
    : in_(in), name_(std::move(name)), start_(in.tellg()), buffer_(longest + 1) {}

bool Lines::next(std::string_view& line) {
    in_.getline(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
    if (in_.bad()) throw InputError(name_ + ": cannot be read to its end");
    const auto taken = static_cast<std::size_t>(in_.gcount());
    if (in_.eof() && taken == 0) return false;
    ++number_;
    consumed_ += taken;
    if (in_.fail()) fail("longer than " + std::to_string(longest) + " characters");
    // What ended it was taken as well, but for the end of the file.
    cut_ = in_.eof();
    line = {buffer_.data(), cut_ ? taken : taken - 1};
    if (number_ == 1 && line.starts_with(byte_order_mark)) line.remove_prefix(byte_order_mark.size());
    if (line.ends_with('\r')) line.remove_suffix(1);
    begin_ = line.data();
    return true;
}

bool Lines::next_entry(std::string_view& line, std::string_view blanks) {
    const std::uint64_t last = number_;
    while (next(line))
        if (line = trimmed(line, blanks); !line.empty() && line.front() != '#') return true;
    number_ = last;
    return false;
}

void Lines::rewind() {
    in_.clear();
    in_.seekg(start_);
    if (!in_) throw InputError(name_ + ": cannot be read from its beginning");
    number_ = consumed_ = 0;
}

}  // namespace kalorfix::tool
