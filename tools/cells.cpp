// SPDX-License-Identifier: MIT
#include "tools/cells.h"

#include <algorithm>
#include <string>

#include "tools/text.h"

namespace kalorfix::tool {

char separator_of(std::string_view heading) {
    for (const char one : {';', '\t'})
        if (heading.find(one) != std::string_view::npos) return one;
    return ',';
}

std::vector<std::string_view> raw_cells(std::string_view line, char separator) {
    std::vector<std::string_view> cells;
    bool quoted = false;
    std::size_t begin = 0;
    for (std::size_t k = 0; k <= line.size(); ++k) {
        if (k < line.size() && line[k] == '"') quoted = !quoted;
        if (k < line.size() && (quoted || line[k] != separator)) continue;
        cells.push_back(line.substr(begin, k - begin));
        begin = k + 1;
    }
    return cells;
}

std::string_view cell_content(std::string_view cell) { return trimmed(cell, " \t\""); }

std::optional<double> cell_number(std::string_view cell, char separator) {
    std::string text(cell);
    if (separator != ',') std::ranges::replace(text, ',', '.');
    return number(text);
}

}  // namespace kalorfix::tool
