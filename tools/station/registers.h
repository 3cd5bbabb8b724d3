// SPDX-License-Identifier: MIT
// The registers of a station as a host keeps them between two runs.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/station/cycle.h"

namespace kalorfix::tool::station {

struct ChannelRegisters {
    Registers reg{};
    std::optional<double> last_s;   ///< time of the last reading
    std::optional<int> offset_s{};  ///< of its clock from UTC, where it is known
};

/// Of every channel of a station, in its order.
using StationRegisters = std::vector<ChannelRegisters>;

/// Reads what a run printed: its register file, or its results as a table or CSV, in which the registers come last. Throws
/// InputError with file and line, also for registers of another station.
[[nodiscard]] StationRegisters read_registers(const std::string& file, const Station& station, TimeKind kind);

/// Throws InputError for a register that is no number: it is not to be kept.
void require_numbers(const Station& station, const StationRegisters& registers);

/// The registers as CSV lines, each after `prefix`.
[[nodiscard]] std::string print_registers(const Station& station, const StationRegisters& registers,
                                          TimeKind kind, const std::string& prefix);

/// The same in columns, for a person.
[[nodiscard]] std::string print_registers_table(const Station& station, const StationRegisters& registers,
                                                TimeKind kind);

}  // namespace kalorfix::tool::station
