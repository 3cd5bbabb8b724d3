// SPDX-License-Identifier: MIT
#include "tools/archive.h"

#include <algorithm>

#include "tools/units.h"

namespace kalorfix::tool {
namespace {

enum Own : std::size_t { mass, volume, standard_volume, energy, heat, least, most, deviation };

constexpr bool gas = true, heat_carrier = true;
constexpr station::OwnColumn own_columns[] = {
    {"mass_t", mass, 1.0},
    {"mass_kg", mass, 1e-3},
    {"volume_m3", volume, 1.0},
    {"standard_volume_m3", standard_volume, 1.0, gas, !heat_carrier},
    {"standard_volume_1000m3", standard_volume, 1e3, gas, !heat_carrier},
    {"energy_GJ", energy, 1.0, gas, !heat_carrier},
    {"energy_MJ", energy, 1e-3, gas, !heat_carrier},
    {"heat_GJ", heat, 1.0, !gas, heat_carrier},
    {"heat_Gcal", heat, GJ_per_Gcal, !gas, heat_carrier},
    {"dp_min_Pa", least, 1.0},
    {"dp_min_kPa", least, 1e3},
    {"dp_max_Pa", most, 1.0},
    {"dp_max_kPa", most, 1e3},
    {"dp_sd_Pa", deviation, 1.0},
    {"dp_sd_kPa", deviation, 1e3},
};

}  // namespace

std::optional<double> ArchiveRow::of(const station::Channel& channel, std::size_t k) const {
    constexpr std::array<std::size_t, station::most_integrators> of_gas{mass, volume, standard_volume, energy},
        of_heat_carrier{mass, volume, heat, heat};
    return amount[(channel.is_gas() ? of_gas : of_heat_carrier)[k]];
}

std::span<const station::OwnColumn> archive_columns() { return own_columns; }

void require_amounts(const station::Readings& archive) {
    for (std::size_t place = mass; place <= heat; ++place)
        if (archive.has_own(place)) return;
    archive.lines().fail("holds no amounts of the device to compare with; there are the columns ",
                         joined(own_columns, &station::OwnColumn::name));
}

ArchiveRow archive_row(const station::Readings& archive) {
    const std::vector<std::optional<double>>& own = archive.own();
    ArchiveRow row{{}, {own[least], own[most], own[deviation]}};
    std::copy_n(own.begin(), row.amount.size(), row.amount.begin());
    return row;
}

}  // namespace kalorfix::tool
