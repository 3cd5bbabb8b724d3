// SPDX-License-Identifier: MIT
#include "tools/spreadsheet.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kalorfix::tool {
namespace {

constexpr std::string_view digits = "0123456789";

// Blanks that part thousands: a space, the no-break space and the narrow one in UTF-8, an apostrophe.
std::string without_grouping(std::string_view cell) {
    std::string text(cell);
    for (const std::string_view blank : {" ", "\xC2\xA0", "\xE2\x80\xAF", "'"})
        for (std::size_t at = 0; (at = text.find(blank)) != std::string::npos;) text.erase(at, blank.size());
    return text;
}

// Whether a number with one comma can be thousands as well: one to three digits before it, the first no 0, three behind it.
bool can_be_thousands(std::string_view cell, std::size_t comma) {
    if (cell.starts_with('-')) {
        cell.remove_prefix(1);
        --comma;
    }
    return comma >= 1 && comma <= 3 && cell[0] != '0' && cell.size() == comma + 4 &&
           cell.find_first_not_of(digits, comma + 1) == std::string_view::npos;
}

}  // namespace

bool Spreadsheet::heading(Lines& lines, std::string_view& line) {
    if (!lines.next_entry(line)) return false;
    if (line.starts_with("PK\x03\x04") || line.starts_with("\xD0\xCF\x11\xE0"))
        lines.fail("this is a workbook, not text; save the sheet as CSV and give that file");
    if (line.starts_with("\x1F\x8B")) lines.fail("this is compressed; unpack it and give the text");
    if (line.starts_with("\xFF\xFE") || line.starts_with("\xFE\xFF") || line.find('\0') != line.npos)
        lines.fail("this is text in UTF-16; save it as CSV in UTF-8 and give that file");
    if (line.find('\r') != line.npos)
        lines.fail("its lines end with a carriage return alone; save it with the line ends of this system");
    if (line.size() <= 5 && line.starts_with("sep=") && !lines.next_entry(line)) return false;
    for (const char separator : {';', '\t', ','})
        if (line.find(separator) != std::string_view::npos) {
            separator_ = separator;
            break;
        }
    return true;
}

void Spreadsheet::split(const Lines& lines, std::string_view line, std::vector<std::string_view>& cells) const {
    if (line.find('"') == std::string_view::npos) return tool::split(line, separator_, cells);
    cells.clear();
    for (std::size_t begin = 0; begin <= line.size();) {
        std::size_t end = std::min(line.find(separator_, begin), line.size());
        const std::size_t first = line.find_first_not_of(' ', begin);
        if (first < end && line[first] == '"') {
            const std::size_t close = line.find('"', first + 1);
            if (close == std::string_view::npos)
                lines.fail_at(line.substr(first), "a quote that this line does not close");
            end = std::min(line.find(separator_, close), line.size());
            if (trimmed(line.substr(close + 1, end - close - 1)) != "")
                lines.fail_at(line.substr(first),
                              "text behind a closing quote, or a quote inside a quoted cell");
            cells.push_back(trimmed(line.substr(first + 1, close - first - 1)));
        } else {
            const std::string_view cell = trimmed(line.substr(begin, end - begin));
            cells.push_back(cell.empty() ? line.substr(begin, 0) : cell);
        }
        begin = end + 1;
    }
}

std::optional<double> Spreadsheet::number(const Lines& lines, std::string_view cell) {
    if (cell.size() > 1 && cell[0] == '+' && digits.find(cell[1]) != digits.npos) cell.remove_prefix(1);
    if (const std::optional<double> value = parse<double>(cell)) {
        if (mark_ != '.' && cell.find('.') != std::string_view::npos) note(lines, cell, '.');
        return std::isfinite(*value) ? value : std::nullopt;
    }
    if (const std::string joined = without_grouping(cell); joined.size() < cell.size()) {
        std::string point = joined;
        std::ranges::replace(point, ',', '.');
        if (parse<double>(point))
            lines.fail_at(cell, "thousands are not to be parted: write ", joined, ", not ", quoted(cell));
    }
    return cell.find(',') == std::string_view::npos ? std::nullopt : with_comma(lines, cell);
}

std::optional<double> Spreadsheet::with_comma(const Lines& lines, std::string_view cell) {
    constexpr std::size_t longest = 64;
    const std::size_t comma = cell.find(',');
    if (cell.size() > longest) return std::nullopt;
    std::string text(cell);
    const bool several = cell.find_first_of(",.", comma + 1) != std::string_view::npos ||
                         cell.find('.') != std::string_view::npos;
    if (several && cell.find_first_not_of("-,.0123456789") == std::string_view::npos &&
        cell.find_first_of(digits) != std::string_view::npos)
        lines.fail_at(cell, "more than one mark in ", quoted(cell),
                      "; write the number without parted thousands");
    text[comma] = '.';
    const std::optional<double> value = tool::number(text);
    if (!value || comma == 0 || comma + 1 == cell.size() || digits.find(cell[comma - 1]) == digits.npos)
        return std::nullopt;
    if (mark_ == ',') return value;
    if (mark_ == 0 && can_be_thousands(cell, comma)) {
        if (ambiguous_line_ == 0) {
            ambiguous_line_ = lines.number();
            ambiguous_ = text;
        }
        return value;
    }
    note(lines, cell, ',');
    return value;
}

void Spreadsheet::note(const Lines& lines, std::string_view cell, char mark) {
    const auto name = [](char c) { return c == ',' ? "comma" : "point"; };
    if (mark_ != 0 && told_)
        lines.fail_at(cell, quoted(cell), " has a decimal ", name(mark), "; --decimal says ", name(mark_));
    if (mark_ != 0)
        lines.fail_at(cell, quoted(cell), " has a decimal ", name(mark), ", line ", mark_line_, " a decimal ",
                      name(mark_), "; write all numbers of a file with the same mark");
    mark_ = mark;
    mark_line_ = lines.number();
}

void Spreadsheet::finish(const Lines& lines) const {
    if (ambiguous_line_ == 0 || mark_ == ',') return;
    std::string written = ambiguous_, thousands = ambiguous_;
    std::ranges::replace(written, '.', ',');
    std::erase(thousands, '.');
    throw InputError(lines.name(), ":", ambiguous_line_, ": ", written, " can be ", ambiguous_, " or ",
                     thousands,
                     mark_ == 0 ? ", and no other number of the file tells; say --decimal comma, or write "
                                : ", and other numbers of the file have a decimal point; write ",
                     ambiguous_, " or ", thousands);
}

char decimal_mark(const std::string& option) {
    if (option == "comma") return ',';
    if (!option.empty() && option != "point")
        throw InputError("--decimal: there are comma and point, not '", option, "'");
    return option.empty() ? '\0' : '.';
}

std::string Spreadsheet::wrong_count(std::size_t expected, std::size_t found) const {
    const std::string text = cat("expected ", expected, " cells as in the heading, not ", found);
    if (separator_ != ',' || found < expected) return text;
    return text + "; numbers with a decimal comma need semicolons or tabs between the cells, or quotes";
}

std::string with_decimal_commas(std::string_view line) {
    std::string out;
    for (std::size_t begin = 0; begin <= line.size();) {
        std::size_t end = begin;
        for (bool quoted = false; end < line.size() && (quoted || line[end] != ','); ++end)
            if (line[end] == '"') quoted = !quoted;
        std::string cell(line.substr(begin, end - begin));
        const bool last = end >= line.size();
        const std::string_view bare = trimmed(cell, "\n");
        if (parse<double>(bare))
            std::ranges::replace(cell, '.', ',');
        else if (cell.find(';') != std::string::npos && !cell.starts_with('"'))
            cell = '"' + cell + '"';
        out += cell;
        if (last) break;
        out += ';';
        begin = end + 1;
    }
    return out;
}

}  // namespace kalorfix::tool
