// SPDX-License-Identifier: MIT
#include "tools/archive.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "tools/cells.h"
#include "tools/text.h"
#include "tools/units.h"

namespace kalorfix::tool {
namespace {

enum class Own { mass, volume, standard_volume, energy, heat, least, most, deviation };

struct OwnColumn {
    std::string_view name;
    Own what;
    double factor;
};
constexpr OwnColumn own_columns[] = {
    {"mass_t", Own::mass, 1.0},
    {"mass_kg", Own::mass, 1e-3},
    {"volume_m3", Own::volume, 1.0},
    {"standard_volume_m3", Own::standard_volume, 1.0},
    {"standard_volume_1000m3", Own::standard_volume, 1e3},
    {"energy_GJ", Own::energy, 1.0},
    {"energy_MJ", Own::energy, 1e-3},
    {"heat_GJ", Own::heat, 1.0},
    {"heat_Gcal", Own::heat, GJ_per_Gcal},
    {"dp_min_Pa", Own::least, 1.0},
    {"dp_min_kPa", Own::least, 1e3},
    {"dp_max_Pa", Own::most, 1.0},
    {"dp_max_kPa", Own::most, 1e3},
    {"dp_sd_Pa", Own::deviation, 1.0},
    {"dp_sd_kPa", Own::deviation, 1e3},
};

void take(const Lines& lines, std::string_view cell, const OwnColumn& column, char separator, ArchiveRow& row) {
    constexpr double largest = 1e12;
    const std::string_view text = cell_content(cell);
    if (text.empty()) return;
    const std::optional<double> value = cell_number(text, separator);
    if (!value || std::fabs(*value) > largest)
        lines.fail_at(text, column.name, ": expected a number within -1e12..1e12, or an empty cell, not ",
                      quoted(text));
    const double converted = *value * column.factor;
    switch (column.what) {
        case Own::least:
            row.spread.least_Pa = converted;
            break;
        case Own::most:
            row.spread.most_Pa = converted;
            break;
        case Own::deviation:
            row.spread.deviation_Pa = converted;
            break;
        default:
            row.amount[static_cast<std::size_t>(column.what)] = converted;
    }
}

using Heading = std::vector<const OwnColumn*>;

Heading read_heading(const Lines& lines, std::string_view line, char separator) {
    Heading heading;
    bool amount = false;
    for (const std::string_view cell : raw_cells(line, separator)) {
        const auto* const own = std::ranges::find(own_columns, cell_content(cell), &OwnColumn::name);
        const bool known = own != std::end(own_columns);
        if (known && std::ranges::any_of(heading, [&](const auto* c) { return c && c->what == own->what; }))
            lines.fail_at(cell, cell_content(cell), " gives what another column gives already");
        amount = amount || (known && own->what <= Own::heat);
        heading.push_back(known ? own : nullptr);
    }
    if (!amount)
        lines.fail("holds no amounts of the device to compare with; there are the columns ", archive_columns());
    return heading;
}

}  // namespace

std::optional<double> ArchiveRow::of(const station::Channel& channel, std::size_t k) const {
    constexpr std::array<Own, station::most_integrators> gas{Own::mass, Own::volume, Own::standard_volume,
                                                             Own::energy},
        heat{Own::mass, Own::volume, Own::heat, Own::heat};
    return amount[static_cast<std::size_t>((channel.is_gas() ? gas : heat)[k])];
}

std::string archive_columns() { return joined(own_columns, &OwnColumn::name); }

Archive read_archive(const std::string& file) {
    Lines lines(file, "this archive");
    Archive archive;
    std::string_view line;
    std::optional<Heading> heading;
    char separator = ',';
    while (lines.next(line)) {
        const std::string_view text = trimmed(line);
        if (text.empty() || text.front() == '#') {
            archive.readings += '\n';
            continue;
        }
        const bool first = !heading;
        if (first) heading = read_heading(lines, line, separator = separator_of(line));
        const std::vector<std::string_view> cells = raw_cells(line, separator);
        if (cells.size() != heading->size())
            lines.fail("expected ", heading->size(), " cells as in the heading, not ", cells.size());
        ArchiveRow row;
        std::string kept;
        bool any = false;
        for (std::size_t k = 0; k < cells.size(); ++k)
            if ((*heading)[k]) {
                if (!first) take(lines, cells[k], *(*heading)[k], separator, row);
            } else {
                if (any) kept += separator;
                kept += cells[k];
                any = true;
            }
        archive.readings += kept + '\n';
        if (!first) archive.rows.push_back(row);
    }
    if (!heading) lines.fail("holds no heading such as time,channel,t_C,p_MPa,dp_kPa,mass_t");
    return archive;
}

}  // namespace kalorfix::tool
