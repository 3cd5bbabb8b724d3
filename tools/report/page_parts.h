// What the page is put together from: tables by one template, Markdown, drawings, style.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/report/verification.h"
#include "tools/svg.h"

namespace kalorfix::tool::report {

using svg::escape;

/// What is HTML already.
struct Html {
    std::string text;
};

/// A cell of a table; text is escaped.
struct Cell {
    std::string html;
    Cell(const Html& markup) : html(markup.text) {}
    Cell(const std::string& text) : html(escape(text)) {}
    Cell(const char* text) : html(escape(text)) {}
    Cell(std::size_t number) : html(std::to_string(number)) {}
};

class Table {
public:
    /// Headings with commas between them, each with its unit behind a bar; "<" before one sets its column to the left. `kind` is the
    /// class of the table in the style.
    explicit Table(std::string_view headings, std::string_view kind = {});
    void row(const std::vector<Cell>& cells);
    /// Empty without rows.
    [[nodiscard]] std::string html() const;

private:
    std::string head_, rows_;
    std::vector<bool> left_;
};

/// Two columns, a name and what it is; what is empty is left out.
[[nodiscard]] std::string facts_table(const std::vector<std::pair<std::string, Cell>>& facts);

/// "met" or "FAILED", each in its colour.
[[nodiscard]] Html verdict(bool passed);
/// The same for many values, with the number of those that differ as declared.
[[nodiscard]] Html verdict(const Statistics& statistics);

/// A Markdown file. The heading of the document itself (#) is left out, its sections (##) become <h3>. With `named_entries` table rows
/// and list items that begin with a bold name get its id. Throws InputError when it cannot be read.
[[nodiscard]] std::string markdown(const std::string& file, bool named_entries);

/// The id of a named entry: "doubled cross term" is d-doubled-cross-term.
[[nodiscard]] std::string entry_id(std::string_view name);

/// Deviation over permitted deviation, point by point: a strip for each output that has permitted deviations; empty when there is
/// none.
[[nodiscard]] std::string deviation_chart(const Section& section);

/// How the page looks, on a screen and on paper.
extern const std::string_view page_style;

}  // namespace kalorfix::tool::report
