// SPDX-License-Identifier: MIT
#include "tools/metering/budget.h"

#include <algorithm>
#include <cmath>

namespace kalorfix::metering {
namespace {

bool acts(const Entry& entry, std::size_t k) { return entry.sensitivity[k] != 0.0; }

}  // namespace

std::vector<const Entry*> lacking(const Budget& budget, std::size_t k, Standing why) {
    std::vector<const Entry*> found;
    for (const Entry& entry : budget.entries)
        if (entry.standing == why && (acts(entry, k) || why == Standing::outside)) found.push_back(&entry);
    return found;
}

std::optional<double> expanded_pct(const Budget& budget, std::size_t k) {
    if (!lacking(budget, k, Standing::outside).empty()) return std::nullopt;
    double sum = 0.0;
    for (const Entry& entry : budget.entries) sum += entry.contribution[k] * entry.contribution[k];
    return std::sqrt(sum);
}

void Period::add(const Budget& budget, double hours) {
    if (!budget.accepted()) {
        ++refused_;
        return;
    }
    ++computed_;
    Flows amount{};
    for (std::size_t k = 0; k < amount.size(); ++k) sum_.flow[k] += amount[k] = budget.flow[k] * hours;
    for (const std::string& one : budget.notes)
        if (std::ranges::find(sum_.notes, one) == sum_.notes.end()) sum_.notes.push_back(one);
    if (!lacking(budget, 0, Standing::outside).empty()) {
        if (outside_.empty()) outside_ = budget.entries;
        return;
    }
    if (sum_.entries.empty()) {
        sum_.entries = budget.entries;
        for (Entry& entry : sum_.entries)
            entry.value = entry.expanded = 0.0, entry.sensitivity = entry.contribution = {};
    }
    for (std::size_t k = 0; k < amount.size(); ++k) covered_[k] += amount[k];
    for (std::size_t i = 0; i < sum_.entries.size(); ++i) {
        Entry& entry = sum_.entries[i];
        const Entry& one = budget.entries[i];
        entry.value += amount[0] * one.value;
        entry.expanded += amount[0] * one.expanded;
        for (std::size_t k = 0; k < amount.size(); ++k) {
            entry.sensitivity[k] += amount[k] * one.sensitivity[k];
            entry.contribution[k] += amount[k] * one.contribution[k];
        }
    }
}

Budget Period::budget() const {
    Budget mean = sum_;
    if (computed_ == 0)
        mean.refused = "no reading has a flow";
    else if (!(sum_.flow[0] > 0.0))
        mean.refused = "the readings span no time";
    if (mean.entries.empty()) mean.entries = outside_;
    if (!(covered_[0] > 0.0)) return mean;
    for (Entry& entry : mean.entries) {
        entry.value /= covered_[0];
        entry.expanded /= covered_[0];
        for (std::size_t k = 0; k < covered_.size(); ++k) {
            if (!(covered_[k] > 0.0)) continue;
            entry.sensitivity[k] /= covered_[k];
            entry.contribution[k] /= covered_[k];
        }
    }
    return mean;
}

std::string Period::why_uncovered() const {
    for (const Entry& entry : outside_)
        if (entry.standing == Standing::outside) return entry.name + ": " + entry.source;
    return {};
}

double Period::uncovered(std::size_t k) const {
    return sum_.flow[k] > 0.0 ? 1.0 - covered_[k] / sum_.flow[k] : 0.0;
}

}  // namespace kalorfix::metering
