// SPDX-License-Identifier: MIT
// What the page is put together from: tables by one template, Markdown, drawings, style.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/html.h"
#include "tools/report/verification.h"
#include "tools/svg.h"

namespace kalorfix::tool::report {

using html::Cell;
using html::Column;
using html::escape;
using html::Facts;
using html::facts_table;
using html::Html;
using html::Table;

/// "met" or "FAILED", each in its colour.
[[nodiscard]] Html verdict(const Wording& w, bool passed);
/// The same for many values, with the number of those that differ as declared.
[[nodiscard]] Html verdict(const Wording& w, const Statistics& statistics);

/// A Markdown file, with `first_section` only its first section. The heading of the document itself (#) is left out, its sections (##) become <h3>. With `named_entries` table rows
/// and list items that begin with a bold name get its id. Throws InputError when it cannot be read.
[[nodiscard]] std::string markdown(const std::string& file, bool named_entries, bool first_section);

/// The id of a named entry: "doubled cross term" is d-doubled-cross-term.
[[nodiscard]] std::string entry_id(std::string_view name);

/// Deviation over permitted deviation, point by point: a strip for each output that has permitted deviations; empty when there is
/// none.
[[nodiscard]] std::string deviation_chart(const Wording& w, const Section& section);

/// How the page looks, on a screen and on paper.
extern const std::string_view page_style;

}  // namespace kalorfix::tool::report
