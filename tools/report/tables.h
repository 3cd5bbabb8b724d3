// The tables of the report as HTML.
#pragma once

#include <string>

#include "tools/report/verification.h"

namespace kalorfix::tool::report {

/// Method, document, range, points, sources.
[[nodiscard]] std::string description_table(const Section& section);

/// Worst and mean of each output.
[[nodiscard]] std::string statistics_table(const Section& section);

/// All compared values of one source.
[[nodiscard]] std::string value_table(const Block& block);

/// "met" or "FAILED", each in its colour.
[[nodiscard]] std::string verdict(bool passed);

/// The same for many values, with the number of those that differ as declared.
[[nodiscard]] std::string verdict(const Statistics& statistics);

/// What the case files declare, by reason, with a link to the entry; empty when they declare nothing.
[[nodiscard]] std::string declaration_table(const Verification& verification);

}  // namespace kalorfix::tool::report
