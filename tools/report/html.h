// The report as one self-contained page.
#pragma once

#include <string>

#include "tools/host.h"
#include "tools/report/verification.h"

namespace kalorfix::tool::report {

/// What a report says besides the compared values.
struct Surroundings {
    std::string library;       ///< file
    std::string gas_data;      ///< file; empty when none is in use
    std::string date;          ///< UTC
    std::string gas_file;      ///< composition for the maps
    std::string deviations;    ///< document on the deliberate deviations
    std::string not_verified;  ///< document on what no case covers
};

/// Throws InputError when one of the documents cannot be read.
[[nodiscard]] std::string html(const Verification& verification, const Surroundings& surroundings);

}  // namespace kalorfix::tool::report
