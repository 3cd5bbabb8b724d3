// SPDX-License-Identifier: MIT
// The archive of a device: rows of readings with the device's own amounts and the spread of its differential pressure beside them.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "tools/metering/audit.h"
#include "tools/station/station.h"

namespace kalorfix::tool {

/// What an archive holds beside the readings of a row.
struct ArchiveRow {
    /// In t, m3, m3, GJ (energy of a gas) and GJ (heat).
    std::array<std::optional<double>, 5> amount{};
    metering::Spread spread{};

    /// The amount of an integrator of a channel, by its name.
    [[nodiscard]] std::optional<double> of(const station::Channel& channel, std::size_t integrator) const;
};

/// The readings without the columns of their own that an archive has, in the same lines, so that station::Readings takes them.
struct Archive {
    std::string readings;
    std::vector<ArchiveRow> rows;
};

/// Reads the file. Its amounts stand in columns such as mass_t, volume_m3, standard_volume_m3, energy_GJ, heat_GJ, the spread in dp_min_kPa,
/// dp_max_kPa and dp_sd_kPa (standard deviation); an empty cell is one that is not told. Throws InputError with file, line and column.
[[nodiscard]] Archive read_archive(const std::string& file);

/// The names of these columns, with all their units.
[[nodiscard]] std::string archive_columns();

}  // namespace kalorfix::tool
