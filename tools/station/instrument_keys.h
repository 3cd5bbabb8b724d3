// SPDX-License-Identifier: MIT
// What a station file may state of instruments and constants, for the uncertainty of the flow.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "tools/metering/instruments.h"
#include "tools/station/station.h"
#include "tools/text.h"

namespace kalorfix::tool::station {

struct InstrumentKey {
    std::string_view name, what;
    Limits limits;
    double factor;  ///< to the base unit
    std::optional<double>& (*place)(metering::Instruments&);
    std::optional<Medium> medium{};  ///< the only one that has it

    [[nodiscard]] bool is_of(Medium one) const { return !medium || *medium == one; }
    void set(metering::Instruments& instruments, double value) const { place(instruments) = factor * value; }
};

inline constexpr std::size_t instrument_key_count = 21;
extern const std::array<InstrumentKey, instrument_key_count> instrument_keys;

/// Why statements do not go together, such as a class without a range; empty when they do.
[[nodiscard]] std::string instrument_fault(const metering::Instruments& instruments);

/// Adds what "dp_range_kPa=40,dp_class_pct=0.075,..." states, over what is stated already; without a medium every key is one. Throws
/// InputError naming the option.
void state_instruments(std::string_view option, const std::string& text, std::optional<Medium> medium,
                       metering::Instruments& instruments);

}  // namespace kalorfix::tool::station
