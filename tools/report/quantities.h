// SPDX-License-Identifier: MIT
// Inputs and outputs of the text cases in words, with units, and numbers with the digits that mean something.
#pragma once

#include <string>
#include <string_view>

#include "tools/cases/procedures.h"
#include "tools/wording/wording.h"

namespace kalorfix::tool::report {

struct Quantity {
    std::string symbol;  ///< as a heading, without its unit
    std::string unit;    ///< empty for pure numbers and selectors

    /// Between symbol and unit, and what stands behind a value.
    [[nodiscard]] std::string unit_behind() const { return unit.empty() ? unit : " " + unit; }
};

/// From the name in the case file, such as rho_kg_m3.
[[nodiscard]] Quantity quantity(const std::string& name);

/// The component behind x0..x14; empty for other names.
[[nodiscard]] std::string_view component(const std::string& name);

/// What an input or output is called: a component or a word by its name, else the symbol.
[[nodiscard]] std::string symbol_text(const Wording& w, const std::string& name);

/// An input as a person reads it: devices by name, numbers with at most ten digits.
[[nodiscard]] std::string input_text(const Wording& w, const std::string& name, double value);

/// A word of a case file, such as refused.
[[nodiscard]] std::string word_text(const Wording& w, const std::string& word);

/// All inputs of a case as name=value.
[[nodiscard]] std::string all_inputs(const cases::Case& one);

/// Whether the file gives a word such as refused instead of a number.
[[nodiscard]] bool is_word(const cases::Expected& expected);

/// The computed value of an output for which the file gives a word, as a word where there is one.
[[nodiscard]] std::string computed_word(const cases::Finding& finding);

/// A value with one or two digits behind the permitted deviation.
[[nodiscard]] std::string with_digits_of(double value, double permitted);

/// A relative number with two significant digits, such as 0.011 %.
[[nodiscard]] std::string percent(double relative);

/// The bound of a declared deviation as the file gives it: 0.03 %, or an absolute number.
[[nodiscard]] std::string bound_text(const cases::Tolerance& bound);

/// Two significant digits.
[[nodiscard]] std::string short_number(double value);

}  // namespace kalorfix::tool::report
