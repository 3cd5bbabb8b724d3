// SPDX-License-Identifier: MIT
// Pages for screen and paper: text escaped, tables, the frame of a page. Everything that is written as HTML goes through here.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kalorfix::tool::html {

/// Text for HTML and XML, attributes included. Control characters become blanks, what is no UTF-8 and what turns the direction of writing
/// becomes U+FFFD.
[[nodiscard]] std::string escape(std::string_view text);

/// What is HTML already.
struct Html {
    std::string text;
};

/// A cell of a table; text is escaped. There is none from a literal: a text comes from the catalogue of words or from data.
struct Cell {
    std::string html;
    Cell(const Html& markup) : html(markup.text) {}
    Cell(const std::string& text) : html(escape(text)) {}
    Cell(std::string_view text) : html(escape(text)) {}
    Cell(const char* text) = delete;
    Cell(std::size_t number) : html(std::to_string(number)) {}
};

/// The heading of a column.
struct Column {
    std::string title, unit{};
    bool left = false;         ///< text, not numbers
    bool screen_only = false;  ///< not on paper
};

class Table {
public:
    /// `kind` is the class of the table in the style.
    explicit Table(const std::vector<Column>& columns, std::string_view kind = {});
    void row(const std::vector<Cell>& cells);
    /// Empty without rows. On a narrow screen it scrolls by itself.
    [[nodiscard]] std::string html() const;

private:
    std::string head_, rows_;
    std::vector<std::string> attributes_;  ///< of the cells of each column
};

using Facts = std::vector<std::pair<std::string, Cell>>;
/// Two columns, a name and what it is; what is empty is left out.
[[nodiscard]] std::string facts_table(const Facts& facts, std::string_view kind = "facts");

/// One self-contained page. `body` is HTML.
[[nodiscard]] std::string page(std::string_view language, std::string_view title, std::string_view style,
                               std::string_view body);

}  // namespace kalorfix::tool::html
