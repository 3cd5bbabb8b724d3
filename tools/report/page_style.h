// How the page looks, on a screen and on paper.
#pragma once

#include <string_view>

namespace kalorfix::tool::report {

extern const std::string_view page_style;

}  // namespace kalorfix::tool::report
