// SPDX-License-Identifier: MIT
// The archive of a device: readings with the device's own amounts and the spread of its differential pressure beside them.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "tools/metering/audit.h"
#include "tools/station/readings.h"

namespace kalorfix::tool {

/// What an archive holds beside the readings of a row.
struct ArchiveRow {
    /// In t, m3, m3, GJ (energy of a gas) and GJ (heat).
    std::array<std::optional<double>, 5> amount{};
    metering::Spread spread{};

    /// The amount of an integrator of a channel, by its name.
    [[nodiscard]] std::optional<double> of(const station::Channel& channel, std::size_t integrator) const;
};

/// Its columns beside those of readings: amounts such as mass_t, volume_m3, standard_volume_m3, energy_GJ, heat_GJ, the spread in
/// dp_min_kPa, dp_max_kPa and dp_sd_kPa (standard deviation).
[[nodiscard]] std::span<const station::OwnColumn> archive_columns();

/// Throws InputError for a heading without any amount.
void require_amounts(const station::Readings& archive);

/// What these columns held in the last row.
[[nodiscard]] ArchiveRow archive_row(const station::Readings& archive);

}  // namespace kalorfix::tool
