#include "tools/gasdat/gas_file.h"

#include <algorithm>
#include <filesystem>

#include "tools/text.h"

namespace kalorfix::tool::gasdat {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view missing = "-";
const std::string what = "this table of gas data";

std::vector<std::string> heading(const Sheet& sheet) {
    std::vector<std::string> names{std::string(sheet.row_name)};
    for (const Column& column : sheet.columns) names.push_back(column.name);
    return names;
}

// The values of one row, its label first.
void fill_row(const Sheet& sheet, const Lines& lines, const std::vector<std::string_view>& cells,
              std::vector<bool>& seen, Values& values) {
    const auto found = std::ranges::find(sheet.rows, cells.front());
    if (found == sheet.rows.end())
        lines.fail("no such row: ", quoted(cells.front()), "; ", sheet.name, " has ", joined(sheet.rows));
    const auto row = static_cast<std::size_t>(found - sheet.rows.begin());
    if (seen[row]) lines.fail("row " + *found + " stands here for the second time");
    seen[row] = true;
    if (cells.size() != 1 + sheet.columns.size())
        lines.fail("expected ", 1 + sheet.columns.size(), " columns, found ", cells.size());
    for (std::size_t column = 0; column < sheet.columns.size(); ++column) {
        const std::string_view cell = cells[column + 1];
        const std::optional<float> value = parse_number(cell);
        if (!value && cell == missing)
            lines.fail("no value for ", sheet.columns[column].name, "; a gas data file needs all of them");
        if (!value)
            lines.fail("expected a number for ", sheet.columns[column].name, " in single precision, not ",
                       quoted(cell));
        values[sheet.position(row, column)] = *value;
    }
}

// Puts the lines of one sheet, its heading first, into the values. A listing goes on with the next table, whose line it leaves
// in `line`; at the end of the file it returns false.
bool fill(const Sheet& sheet, Lines& lines, bool listing, std::string_view& line, Values& values) {
    std::vector<bool> seen(sheet.rows.size());
    bool begun = false, more = false;
    std::uint64_t last = 0;
    while ((more = lines.next_entry(line)) && !(listing && line.front() == '[')) {
        last = lines.number();
        const std::vector<std::string_view> cells = listing ? words(line) : split(line, ',');
        if (begun)
            fill_row(sheet, lines, cells, seen, values);
        else if (!std::ranges::equal(cells, heading(sheet)))
            lines.fail("expected the columns " + joined(heading(sheet)));
        begun = true;
    }
    if (!begun) throw InputError(lines.name(), ": the table ", sheet.name, " is empty");
    for (std::size_t row = 0; row < seen.size(); ++row)
        if (!seen[row])
            throw InputError(lines.name(), ":", last, ": row ", sheet.rows[row], " is missing in ", sheet.name);
    return more;
}

Values read_directory(const std::string& directory) {
    Values values{};
    std::vector<std::string> known;
    std::string_view line;
    for (const Sheet& sheet : sheets()) {
        known.push_back(cat(sheet.name, ".csv"));
        Lines lines((fs::path(directory) / known.back()).string(), what);
        fill(sheet, lines, false, line, values);
    }
    std::error_code failed;
    for (const auto& entry : fs::directory_iterator(directory, failed))
        if (entry.path().extension() == ".csv" &&
            std::ranges::find(known, entry.path().filename().string()) == known.end())
            throw InputError(entry.path().string() + ": no such table; there are " + joined(known));
    return values;
}

// A listing: each sheet under a line [name] and its title.
Values read_listing(const std::string& file) {
    Lines lines(file, what);
    Values values{};
    std::vector<bool> seen(sheets().size());
    std::string_view line;
    for (bool more = lines.next_entry(line); more;) {
        const std::size_t close = line.find(']');
        if (line.front() != '[' || close == std::string_view::npos)
            lines.fail("expected what gasdat show prints, a table such as [vnic_components] first, not " +
                       quoted(line));
        const std::string_view name = line.substr(1, close - 1);
        const auto sheet = std::ranges::find(sheets(), name, &Sheet::name);
        if (sheet == sheets().end())
            lines.fail("no such table: ", quoted(name), "; expected what gasdat show prints, with the tables ",
                       joined(sheets(), &Sheet::name));
        const auto index = static_cast<std::size_t>(sheet - sheets().begin());
        if (seen[index]) lines.fail("table ", name, " stands here for the second time");
        seen[index] = true;
        more = fill(*sheet, lines, true, line, values);
    }
    for (std::size_t index = 0; index < seen.size(); ++index)
        if (!seen[index]) throw InputError(file, ": table ", sheets()[index].name, " is missing");
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
        text += cat("# ", b.name, ": block ", last, ", bytes ", 4 * b.first, "..", 4 * (b.first + b.values) - 1,
                    ", ", b.what, "\n");
    }
    return text;
}

// Heading and rows as cells; what is beyond `count` values is missing.
std::vector<std::vector<std::string>> grid(const Sheet& sheet, const Values& values, std::size_t count) {
    std::vector<std::vector<std::string>> all{heading(sheet)};
    for (std::size_t row = 0; row < sheet.rows.size(); ++row) {
        all.push_back({sheet.rows[row]});
        for (std::size_t column = 0; column < sheet.columns.size(); ++column) {
            const std::size_t position = sheet.position(row, column);
            all.back().push_back(position < count ? number_text(values[position]) : std::string(missing));
        }
    }
    return all;
}

}  // namespace

Values read_sheets(const std::string& source) {
    std::error_code failed;
    return fs::is_directory(source, failed) ? read_directory(source) : read_listing(source);
}

std::string listing(const GasFile& file, const std::string& name) {
    // A line break in the name of the file would end the comment.
    std::string text = cat("# ", printable(name), ": ", file.size, " bytes; ", blocks().size(), " tables of ",
                           value_count, " values fill ", file_size, "\n");
    if (file.size < file_size)
        text += cat("# too short: the ", value_count - file.count,
                    " values shown as - are missing; the library takes 0 for them, in blocks 0 and 1 the last "
                    "value read\n");
    if (file.size > file_size)
        text += cat("# too long: the last ", file.size - file_size, " bytes are ignored\n");
    for (const Sheet& sheet : sheets())
        text += cat("\n[", sheet.name, "] ", sheet.title, "\n", describe(sheet),
                    aligned(grid(sheet, file.values, file.count), 1));
    return text;
}

std::string csv(const Sheet& sheet, const Values& values) {
    std::string text = cat("# ", sheet.title, "\n", describe(sheet));
    for (const auto& cells : grid(sheet, values, values.size())) text += joined(cells, {}, ",") + "\n";
    return text;
}

}  // namespace kalorfix::tool::gasdat
