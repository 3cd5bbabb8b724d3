#include "tools/gasdat/text.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "tools/gasdat/number.h"
#include "tools/range.h"

namespace kalorfix::tool::gasdat {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t longest_line = 4000;
constexpr std::size_t most_lines = 5000;
constexpr std::size_t largest_file = 1'000'000;
constexpr std::size_t longest_quote = 40;
constexpr std::string_view missing = "-";
constexpr std::string_view blanks = " \t\r";

struct Line {
    std::size_t number;
    std::string text;
};

[[noreturn]] void fail(const std::string& file, std::size_t line, const std::string& what) {
    throw InputError{file + ":" + std::to_string(line) + ": " + what};
}

// Text of a file within a message; a damaged file has cells of any length.
std::string quoted(const std::string& text) {
    return text.size() > longest_quote ? text.substr(0, longest_quote) + "..." : text;
}

std::string trimmed(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(blanks);
    if (begin == std::string_view::npos) return {};
    return std::string(text.substr(begin, text.find_last_not_of(blanks) - begin + 1));
}

// The lines that are neither empty nor comments.
std::vector<Line> read_lines(const std::string& file) {
    std::error_code failed;
    std::ifstream in(file, std::ios::binary);
    if (!fs::is_regular_file(file, failed) || !in) throw InputError{file + ": cannot read this file"};
    // Known before reading: a single line may be as long as the file.
    if (const std::uintmax_t size = fs::file_size(file, failed); failed || size > largest_file)
        throw InputError{file + ": too long for gas data, at most " + std::to_string(largest_file) + " bytes"};
    std::vector<Line> lines;
    std::string text;
    for (std::size_t number = 1; std::getline(in, text); ++number) {
        if (text.size() > longest_line || number > most_lines) fail(file, number, "too long for gas data");
        if (number == 1 && text.starts_with("\xEF\xBB\xBF")) text.erase(0, 3);
        text = trimmed(text);
        if (!text.empty() && text.front() != '#') lines.push_back({number, text});
    }
    if (in.bad()) throw InputError{file + ": cannot read this file to its end"};
    return lines;
}

std::vector<std::string> cells_of(const std::string& text, bool commas) {
    std::vector<std::string> cells;
    if (!commas) {
        std::istringstream words(text);
        for (std::string word; words >> word;) cells.push_back(word);
        return cells;
    }
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(',', begin), text.size());
        cells.push_back(trimmed(std::string_view(text).substr(begin, end - begin)));
        begin = end + 1;
    }
    return cells;
}

std::string joined(const std::vector<std::string>& words) {
    std::string all;
    for (const std::string& word : words) all += (all.empty() ? "" : ", ") + word;
    return all;
}

std::vector<std::string> heading(const Sheet& sheet) {
    std::vector<std::string> names{std::string(sheet.row_name)};
    for (const Column& column : sheet.columns) names.push_back(column.name);
    return names;
}

// Puts the lines of one sheet, its heading first, into the values.
void fill(const Sheet& sheet, const std::string& file, const std::vector<Line>& lines, bool commas,
          Values& values) {
    if (lines.empty()) throw InputError{file + ": the table " + std::string(sheet.name) + " is empty"};
    const std::vector<std::string> names = heading(sheet);
    if (cells_of(lines.front().text, commas) != names)
        fail(file, lines.front().number, "expected the columns " + joined(names));
    std::vector<bool> seen(sheet.rows.size());
    for (auto line = lines.begin() + 1; line != lines.end(); ++line) {
        const std::vector<std::string> cells = cells_of(line->text, commas);
        const auto found = std::find(sheet.rows.begin(), sheet.rows.end(), cells.front());
        if (found == sheet.rows.end())
            fail(file, line->number,
                 "no such row: " + quoted(cells.front()) + "; " + std::string(sheet.name) + " has " +
                     joined(sheet.rows));
        const auto row = static_cast<std::size_t>(found - sheet.rows.begin());
        if (seen[row]) fail(file, line->number, "row " + cells.front() + " stands here for the second time");
        seen[row] = true;
        if (cells.size() != names.size())
            fail(
                file, line->number,
                "expected " + std::to_string(names.size()) + " columns, found " + std::to_string(cells.size()));
        for (std::size_t column = 0; column < sheet.columns.size(); ++column) {
            const std::string& cell = cells[column + 1];
            const std::optional<float> value = parse_number(cell);
            if (!value)
                fail(file, line->number,
                     cell == missing
                         ? "no value for " + names[column + 1] + "; a gas data file needs all of them"
                         : "expected a number for " + names[column + 1] + " in single precision, not '" +
                               quoted(cell) + "'");
            values[sheet.position(row, column)] = *value;
        }
    }
    for (std::size_t row = 0; row < seen.size(); ++row)
        if (!seen[row])
            fail(file, lines.back().number,
                 "row " + sheet.rows[row] + " is missing in " + std::string(sheet.name));
}

Values read_directory(const std::string& directory) {
    Values values{};
    std::vector<std::string> known;
    for (const Sheet& sheet : sheets()) {
        known.push_back(std::string(sheet.name) + ".csv");
        const std::string file = (fs::path(directory) / known.back()).string();
        fill(sheet, file, read_lines(file), true, values);
    }
    std::error_code failed;
    for (const auto& entry : fs::directory_iterator(directory, failed))
        if (entry.path().extension() == ".csv" &&
            std::find(known.begin(), known.end(), entry.path().filename().string()) == known.end())
            throw InputError{entry.path().string() + ": no such table; there are " + joined(known)};
    return values;
}

// A listing: each sheet under a line [name] and its title.
Values read_listing(const std::string& file) {
    const std::vector<Line> lines = read_lines(file);
    Values values{};
    std::vector<bool> seen(sheets().size());
    for (auto line = lines.begin(); line != lines.end();) {
        const std::size_t close = line->text.find(']');
        if (line->text.front() != '[' || close == std::string::npos)
            fail(file, line->number, "expected a table such as [components], found " + quoted(line->text));
        const std::string name = line->text.substr(1, close - 1);
        const auto sheet =
            std::find_if(sheets().begin(), sheets().end(), [&](const Sheet& s) { return s.name == name; });
        if (sheet == sheets().end()) fail(file, line->number, "no such table: " + quoted(name));
        const auto index = static_cast<std::size_t>(sheet - sheets().begin());
        if (seen[index]) fail(file, line->number, "table " + name + " stands here for the second time");
        seen[index] = true;
        const auto begin = line + 1;
        line = std::find_if(begin, lines.end(), [](const Line& l) { return l.text.front() == '['; });
        fill(*sheet, file, {begin, line}, false, values);
    }
    for (std::size_t index = 0; index < seen.size(); ++index)
        if (!seen[index])
            throw InputError{file + ": table " + std::string(sheets()[index].name) + " is missing"};
    return values;
}

// The blocks of a sheet, for its heading.
std::string describe(const Sheet& sheet) {
    std::string text;
    std::size_t last = blocks().size();
    for (const Column& column : sheet.columns) {
        if (column.block == last) continue;
        last = column.block;
        const Block& b = blocks()[last];
        text += "# " + std::string(b.name) + ": block " + std::to_string(last) + ", bytes " +
                std::to_string(4 * b.first) + ".." + std::to_string(4 * (b.first + b.values) - 1) + ", " +
                std::string(b.what) + "\n";
    }
    return text;
}

std::string padded(const std::string& text, std::size_t width, bool right) {
    const std::string fill(width - std::min(width, text.size()), ' ');
    return right ? fill + text : text + fill;
}

std::string aligned(const Sheet& sheet, const GasFile& file) {
    std::vector<std::vector<std::string>> grid{heading(sheet)};
    for (std::size_t row = 0; row < sheet.rows.size(); ++row) {
        grid.push_back({sheet.rows[row]});
        for (std::size_t column = 0; column < sheet.columns.size(); ++column) {
            const std::size_t position = sheet.position(row, column);
            grid.back().push_back(position < file.count ? number_text(file.values[position])
                                                        : std::string(missing));
        }
    }
    std::vector<std::size_t> width(sheet.columns.size() + 1);
    for (const auto& cells : grid)
        for (std::size_t c = 0; c < cells.size(); ++c) width[c] = std::max(width[c], cells[c].size());
    std::string text;
    for (const auto& cells : grid) {
        for (std::size_t c = 0; c < cells.size(); ++c)
            text += (c ? "  " : "") + padded(cells[c], width[c], c > 0);
        text += "\n";
    }
    return text;
}

}  // namespace

Values read_sheets(const std::string& source) {
    std::error_code failed;
    return fs::is_directory(source, failed) ? read_directory(source) : read_listing(source);
}

std::string listing(const GasFile& file, const std::string& name) {
    // A line break in the name of the file would end the comment.
    std::string shown = name;
    std::replace_if(
        shown.begin(), shown.end(), [](unsigned char c) { return c < ' '; }, '?');
    std::string text = "# " + shown + ": " + std::to_string(file.size) + " bytes; " +
                       std::to_string(blocks().size()) + " tables of " + std::to_string(value_count) +
                       " values fill " + std::to_string(file_size) + "\n";
    if (file.size < file_size)
        text += "# too short: the " + std::to_string(value_count - file.count) +
                " values shown as - are missing; the library takes 0 for them, in blocks 0 and 1 the last "
                "value read\n";
    if (file.size > file_size)
        text += "# too long: the last " + std::to_string(file.size - file_size) + " bytes are ignored\n";
    for (const Sheet& sheet : sheets())
        text += "\n[" + std::string(sheet.name) + "] " + std::string(sheet.title) + "\n" + describe(sheet) +
                aligned(sheet, file);
    return text;
}

std::string csv(const Sheet& sheet, const Values& values) {
    std::string text = "# " + std::string(sheet.title) + "\n" + describe(sheet);
    const std::vector<std::string> names = heading(sheet);
    for (std::size_t c = 0; c < names.size(); ++c) text += (c ? "," : "") + names[c];
    text += "\n";
    for (std::size_t row = 0; row < sheet.rows.size(); ++row) {
        text += sheet.rows[row];
        for (std::size_t column = 0; column < sheet.columns.size(); ++column)
            text += "," + number_text(values[sheet.position(row, column)]);
        text += "\n";
    }
    return text;
}

}  // namespace kalorfix::tool::gasdat
