// SPDX-License-Identifier: MIT
// Numbers with a unit behind them, as a person types them: 400mm, 15.7in, 5.5MPa, 60F, 150000m3/h-std.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "tools/units.h"

namespace kalorfix::metering {

enum class Flow { mass, volume, standard_volume, energy };

using tool::Unit;

/// Base units: mm, Pa (absolute), K and degC of temperature as degC, uPa s, kg/m3; flows t/h, m3/h, GJ/h.
enum class Measure { length, pressure, temperature, viscosity, density, flow };

/// Which of them a unit of flow counts.
[[nodiscard]] Flow flow_kind(const Unit& unit);
[[nodiscard]] tool::Dimension dimension_of(Flow kind);

struct Quantity {
    double value;  ///< in the base unit
    const Unit* unit;
};

/// A finite number and a unit, with or without a blank between them; a bare number takes `otherwise` unless that is empty. Nothing
/// for anything else.
[[nodiscard]] std::optional<Quantity> read_quantity(std::string_view text, Measure measure,
                                                    std::string_view otherwise);

/// The unit of a word; null when there is none.
[[nodiscard]] const Unit* find_unit(std::string_view word, Measure measure);

/// "mm, cm, m, in": for help and messages.
[[nodiscard]] std::string unit_words(Measure measure);

}  // namespace kalorfix::metering
