// SPDX-License-Identifier: MIT
// What is stated of the instruments of a metering point.
#pragma once

#include <optional>

namespace kalorfix::metering {

/// What is stated of a transmitter, in the base unit (Pa, K): a class as a share of its range, or an error. Either counts as an
/// expanded uncertainty.
struct Transmitter {
    std::optional<double> range{}, class_pct{}, error{};
    [[nodiscard]] std::optional<double> expanded() const {
        return error ? error : range && class_pct ? std::optional(*range * *class_pct / 100.0) : std::nullopt;
    }
};

/// What is stated of the instruments and constants of a point: relative expanded uncertainties in per cent.
struct Instruments {
    Transmitter dp{}, p{}, t{};
    std::optional<double> D_pct{}, d_pct{};
    std::optional<double> C_pct{}, epsilon_pct{};  ///< in place of the published ones
    std::optional<double> K_pct{};                 ///< of the method
    std::optional<double> rho_c_pct{};  ///< measured (methods by density), or of the formula by composition
    std::optional<double> x_mol_pct{},
        x_rel_pct{};  ///< of each component: mol %, and per cent of its share; added
    std::optional<double> vapour_pct{}, heat_pct{};  ///< heat of combustion, or enthalpy
    std::optional<double> rho_pct{};                 ///< water, steam, given media
};

}  // namespace kalorfix::metering
