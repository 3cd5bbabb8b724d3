// SPDX-License-Identifier: MIT
// An uncertainty budget, and what budgets of many readings add up to.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/metering/units.h"

namespace kalorfix::metering {

inline constexpr double coverage = 2.0;  ///< expanded over combined standard uncertainty, 95 %

/// Mass, volume at standard conditions, energy: a flow (t/h, m3/h, GJ/h) or an amount (t, m3, GJ) of each; 0 where the medium has none.
inline constexpr std::array<Flow, 3> judged_flows{Flow::mass, Flow::standard_volume, Flow::energy};
using Flows = std::array<double, judged_flows.size()>;

enum class Standing {
    stated,      ///< by the user
    document,    ///< published
    not_stated,  ///< by nobody: it counts as 0, so that the whole is a lower bound
    outside,     ///< the range of its document or instrument, or without a sensitivity: nothing is computed
};

/// A line of a budget.
struct Entry {
    std::string_view key{};  ///< C, dp, t, x_ethane, ...
    std::string name{}, unit{};
    double value = 0;
    Standing standing = Standing::not_stated;
    std::string source{};  ///< the clause; the key that would state it; why it is outside
    double expanded = 0;   ///< in per cent of the value, or in the unit where `absolute`
    bool absolute = false;
    bool per_unit = false;  ///< sensitivity: per cent of the flow for a unit, not for a per cent
    Flows sensitivity{};
    Flows contribution{};  ///< expanded, per cent of the flow
};

/// The budget of a reading, or of an amount, with values and sensitivities weighted by the amounts.
struct Budget {
    std::string refused{};  ///< why there is none
    Flows flow{};           ///< at the reading; amounts of a period
    std::vector<Entry> entries{};
    std::vector<std::string> notes{};  ///< what counts as exact though it acts, what is rough

    [[nodiscard]] bool accepted() const { return refused.empty(); }
};

/// The expanded uncertainty in per cent of flow k; nothing where an entry that acts on it is outside its range.
[[nodiscard]] std::optional<double> expanded_pct(const Budget& budget, std::size_t k);
/// Entries that act on flow k and are not stated, or outside.
[[nodiscard]] std::vector<const Entry*> lacking(const Budget& budget, std::size_t k, Standing why);

/// Adds readings of one point over a time. An error keeps its sign from reading to reading, so that contributions add with the amounts as
/// weights, in their absolute values, and their number does not matter.
class Period {
public:
    void add(const Budget& budget, double hours);
    /// The budget of all that was added.
    [[nodiscard]] Budget budget() const;
    /// Share of the amount whose readings have an entry outside its range, 0..1.
    [[nodiscard]] double uncovered(std::size_t k) const;
    /// Why the first of them has one; empty where all the amount is covered.
    [[nodiscard]] std::string why_uncovered() const;
    [[nodiscard]] std::uint64_t computed() const { return computed_; }
    [[nodiscard]] std::uint64_t refused() const { return refused_; }

private:
    Budget sum_{};                  // amounts, and entries times the covered amounts
    std::vector<Entry> outside_{};  // of the first reading that is not covered
    Flows covered_{};
    std::uint64_t computed_ = 0, refused_ = 0;
};

}  // namespace kalorfix::metering
