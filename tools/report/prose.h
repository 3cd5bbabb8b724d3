// The few forms of Markdown that the project's documents use, as HTML: headings, paragraphs, lists, tables, code, bold.
#pragma once

#include <istream>
#include <string>

namespace kalorfix::tool::report {

/// The heading of the document itself (#) is left out; its sections (##) become <h3>.
[[nodiscard]] std::string prose(std::istream& in);

}  // namespace kalorfix::tool::report
