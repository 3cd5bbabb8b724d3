// The few forms of Markdown that the project's documents use, as HTML: headings, paragraphs, lists, tables, code, bold.
#pragma once

#include <istream>
#include <string>
#include <string_view>

namespace kalorfix::tool::report {

/// The heading of the document itself (#) is left out; its sections (##) become <h3>. With `named_entries` table rows and list
/// items that begin with a bold name get its id.
[[nodiscard]] std::string prose(std::istream& in, bool named_entries = false);

/// The id of a named entry: "doubled cross term" is d-doubled-cross-term.
[[nodiscard]] std::string entry_id(std::string_view name);

}  // namespace kalorfix::tool::report
