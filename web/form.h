// SPDX-License-Identifier: MIT
// What the form sends: lines "key value", numbers in base units.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "tools/metering/check.h"
#include "tools/metering/solve.h"

namespace kalorfix::page {

/// The first field that is wrong, and what would be right.
struct Fault {
    std::string field, what;
};

/// Reads fields and keeps the first fault; a number that is wrong reads as the low end of its limits.
class Form {
public:
    explicit Form(std::string_view lines);

    [[nodiscard]] std::string word(std::string_view key) const;
    [[nodiscard]] bool given(std::string_view key) const { return !word(key).empty(); }
    double number(std::string_view key, double low, double high, std::string_view unit = "");
    double number_or(std::string_view key, double otherwise, double low, double high,
                     std::string_view unit = "");
    /// Row of a table of words.
    template <class Table>
    std::size_t row(std::string_view key, const Table& table) {
        const std::string text = word(key);
        for (std::size_t k = 0; k < std::size(table); ++k)
            if (table[k].word == text) return k;
        fail(key, "choose one");
        return 0;
    }
    void fail(std::string_view key, std::string what);
    [[nodiscard]] const std::optional<Fault>& fault() const { return fault_; }

private:
    std::map<std::string, std::string, std::less<>> fields_;
    std::optional<Fault> fault_;
};

/// The metering point; the limits of its fields are those of the station file.
[[nodiscard]] metering::Point read_point(Form& form);
[[nodiscard]] metering::Medium read_medium(Form& form);
/// The reading and what is to be found of it.
[[nodiscard]] metering::Question read_question(Form& form);
[[nodiscard]] metering::Envelope read_envelope(Form& form);

}  // namespace kalorfix::page
