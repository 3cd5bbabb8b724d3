// SPDX-License-Identifier: MIT
#include "tools/metering/units.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <span>
#include <vector>

#include "tools/text.h"

namespace kalorfix::metering {
namespace {

// A flow is looked for in this order: m3/h is at working conditions.
constexpr std::array flows{tool::Dimension::mass_flow, tool::Dimension::volume_flow,
                           tool::Dimension::standard_volume_flow, tool::Dimension::heat_flow};
constexpr std::array others{tool::Dimension::length, tool::Dimension::pressure, tool::Dimension::temperature,
                            tool::Dimension::viscosity, tool::Dimension::density};

std::span<const tool::Dimension> all_of(Measure measure) {
    if (measure == Measure::flow) return flows;
    return std::span(others).subspan(static_cast<std::size_t>(measure), 1);
}

}  // namespace

tool::Dimension dimension_of(Flow kind) { return flows[static_cast<std::size_t>(kind)]; }

Flow flow_kind(const Unit& unit) {
    return static_cast<Flow>(std::ranges::find(flows, unit.dimension) - flows.begin());
}

const Unit* find_unit(std::string_view word, Measure measure) {
    for (const tool::Dimension one : all_of(measure))
        if (const Unit* const unit = tool::find_unit(one, word)) return unit;
    return nullptr;
}

std::optional<Quantity> read_quantity(std::string_view text, Measure measure, std::string_view otherwise) {
    double value = 0.0;
    text = tool::trimmed(text);
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc()) return std::nullopt;
    const std::string_view word = tool::trimmed(text.substr(static_cast<std::size_t>(stop - text.data())));
    const Unit* const unit = find_unit(word.empty() ? otherwise : word, measure);
    if (!unit) return std::nullopt;
    value = unit->to_interface(value);
    return std::isfinite(value) ? std::optional(Quantity{value, unit}) : std::nullopt;
}

std::string unit_words(Measure measure) {
    std::vector<std::string_view> names;
    for (const tool::Dimension one : all_of(measure))
        for (const Unit& unit : tool::all_units())
            if (unit.dimension == one && find_unit(unit.name, measure) == &unit) names.push_back(unit.name);
    return tool::joined(names);
}

}  // namespace kalorfix::metering
