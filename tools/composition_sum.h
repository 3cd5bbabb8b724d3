// SPDX-License-Identifier: MIT
// The sum of a composition: the library computes with the shares as they are given, whatever they sum to.
#pragma once

#include <array>
#include <string>

namespace kalorfix::tool {

/// What a person insists on.
struct SumRule {
    bool any = false;        ///< whatever the sum is
    bool normalise = false;  ///< scaled to 100 %
};

/// Judges mole per cent (or volume fractions, 0..1) of the 15 components and scales them if asked to. Outside 99.99..100.01 %
/// it writes a warning to standard error. Throws InputError, `where` before it, for a sum outside 99..101 % on which nobody
/// insists, and for nitrogen and carbon dioxide above 100 % together; `how` tells how to insist. Returns
/// the sum as it was given, per cent.
double judge_sum(std::array<double, 15>& x, bool volume_fractions, const SumRule& rule,
                 const std::string& where, const std::string& how);

/// What nitrogen and carbon dioxide, mol %, bring to the density of a gas at 20 degC and 101.325 kPa, kg/m3: those of the pure gases
/// are from GOST 30319.1-96, table 1.
constexpr double weight_of_contents(double nitrogen_pct, double carbon_dioxide_pct) {
    constexpr double nitrogen_kgm3 = 1.16455, carbon_dioxide_kgm3 = 1.82954;
    return (nitrogen_pct * nitrogen_kgm3 + carbon_dioxide_pct * carbon_dioxide_kgm3) / 100.0;
}

/// For a gas by density, kg/m3 at standard conditions: the last of these, and contents that alone weigh more than the gas. Throws
/// InputError.
void judge_contents(double rho_c, double nitrogen_pct, double carbon_dioxide_pct, const std::string& where);

/// Tells on standard error that a composition in volume fractions gives wrong heats of combustion by AGA8-92DC.
void warn_of_heats(const std::string& where);

}  // namespace kalorfix::tool
