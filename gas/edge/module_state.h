// SPDX-License-Identifier: MIT
// The exported module state of the gas methods: the layout of its tables in the gas data file, and the working composition.
#pragma once

#include <array>
#include <cstddef>

#include "gas/composition.h"

namespace kalorfix::gas::edge {

/// One block of the file: a table of single-precision values, stored in index order.
struct Block {
    float** table;     ///< exported pointer
    const char* name;  ///< its name
    std::size_t values;
};

inline constexpr std::size_t block_count = 31;
inline constexpr std::size_t file_values = 1915;
inline constexpr std::size_t file_bytes = 4 * file_values;

/// The blocks in the order of the file.
extern const std::array<Block, block_count> blocks;

/// Puts the mole fractions into the exported working composition.
void store(const Composition& gas);

/// Takes them from there. Whatever a host has left in the exported list, every component taken is a valid one.
[[nodiscard]] Composition working_composition();

}  // namespace kalorfix::gas::edge
