// What a host does with the library.
#pragma once

#include <cstdint>
#include <vector>

struct Results {
    std::vector<std::uint32_t> words, totals;  ///< the totals depend on the clock
    int computed = 0;                          ///< calls that ended well
};

/// Opens the library and calls it: gas by every method, steam and water, totals, INI numbers. Every result as its bits.
Results session(const char* library);

/// The clock that the library asks goes back to where it was at the start.
void restart_clock();
