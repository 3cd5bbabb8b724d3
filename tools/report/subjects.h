// What the report says of a function besides its numbers: method, document and edition, range of use.
#pragma once

#include <string>
#include <vector>

#include "tools/cases/case_file.h"

namespace kalorfix::tool::report {

struct Subject {
    std::string key;  ///< the function, with the method behind a dot where that decides
    std::string title;
    std::string method;
    std::string document;  ///< with edition
    std::string range;     ///< of use, as the interface states it
};

/// The subject of a case. A function that is not described here is described by its procedure alone.
[[nodiscard]] Subject subject_of(const std::string& function, const cases::Values& inputs);

/// The keys in the order of the report.
[[nodiscard]] std::vector<std::string> subject_order();

}  // namespace kalorfix::tool::report
