// SPDX-License-Identifier: MIT
// What a host does with the library.
#pragma once

#include <cstdint>
#include <vector>

struct Results {
    std::vector<std::uint64_t> words;
    int computed = 0;  ///< calls that ended well
};

/// Opens the library and calls it: text cases, channels, INI numbers. Every result as its bits.
Results session(const char* library);
