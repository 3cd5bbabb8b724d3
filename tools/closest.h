// The word that somebody who mistyped another one probably meant.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kalorfix::tool {

/// "; did you mean D20_mm?", or nothing when no word is near: at most a third of the letters differ, a change of case or two
/// neighbours exchanged counting as one.
[[nodiscard]] std::string did_you_mean(std::string_view typed, const std::vector<std::string>& words);

}  // namespace kalorfix::tool
