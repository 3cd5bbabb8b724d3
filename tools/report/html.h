// SPDX-License-Identifier: MIT
// The report as one self-contained page.
#pragma once

#include <string>

#include "tools/report/verification.h"

namespace kalorfix::tool::report {

/// What a report says besides the compared values.
struct Surroundings {
    std::string library;   ///< file
    std::string gas_data;  ///< file; empty when none is in use
    std::string date;      ///< UTC
    Language language;
    std::string deviations;    ///< document on the deliberate deviations
    std::string not_verified;  ///< document on what no case covers
};

/// Throws InputError when one of the documents cannot be read.
[[nodiscard]] std::string html(const Verification& verification, const Surroundings& surroundings);

/// All compared values of one source, and what the rows have in common.
[[nodiscard]] std::string value_table(const Wording& w, Values values);

/// Tables of the cases NAME-in and NAME-out on the two sides of a limit, a table a source; a sentence where there are none.
[[nodiscard]] std::string limit_tables(const Wording& w, const Verification& verification);

/// The source of a table as its file has it, in English.
[[nodiscard]] std::string source_text(const Wording& w, const std::string& source);

}  // namespace kalorfix::tool::report
