// SPDX-License-Identifier: MIT
// What the gas data file holds: 31 blocks of single-precision values without a header, arranged here in sheets that a person
// can read. A sheet is either a matrix, which is one block, or a list in which every column is a block of its own.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kalorfix::tool::gasdat {

inline constexpr std::size_t value_count = 1915;
inline constexpr std::size_t file_size = 4 * value_count;

using Values = std::array<float, value_count>;

/// One column of a sheet.
struct Column {
    std::string name;      ///< as in the heading of the sheet
    std::size_t block;     ///< 0..30
    std::size_t first;     ///< position of its first value in the file, counted in values
    std::size_t step = 1;  ///< distance from row to row: 1 in a list, the number of columns in a matrix
};

/// One block of the file.
struct Block {
    std::string_view name;  ///< of the table that the library loads it into
    std::string_view what;  ///< meaning and unit
    std::size_t values;
    double low, high;       ///< what a value may be
    bool whole = false;     ///< only whole numbers
    std::size_t first = 0;  ///< position in the file, counted in values
};

struct Sheet {
    std::string_view name;
    std::string_view title;
    std::string_view row_name;  ///< heading of the labels of the rows
    std::vector<std::string> rows;
    std::vector<Column> columns;

    [[nodiscard]] std::size_t position(std::size_t row, std::size_t column) const {
        return columns[column].first + row * columns[column].step;
    }
};

/// The blocks in the order of the file.
[[nodiscard]] const std::vector<Block>& blocks();

/// The sheets in the order of the file. Every value stands in exactly one of them.
[[nodiscard]] const std::vector<Sheet>& sheets();

/// Values of a block, for whoever judges them.
[[nodiscard]] const Block& block(std::string_view name);

}  // namespace kalorfix::tool::gasdat
