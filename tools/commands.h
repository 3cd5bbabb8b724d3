// The commands of the tool.
#pragma once

#include "tools/command_line.h"

namespace kalorfix::tool {

/// `water` and `gas`: print one state as a sheet, ranges as a table or as CSV, and draw a quantity if asked to; a wrong request is
/// refused before anything is printed. The exit status of gas is 1 when the library refused a state.
[[nodiscard]] Command water_command();
[[nodiscard]] Command gas_command();

/// `gasdat build`, `show` and `check`; the exit status of check is 1 when it has found faults.
[[nodiscard]] Command gasdat_command();

/// `verify`: exit status 1 when a value is not met; nothing is written on wrong input.
[[nodiscard]] Command verify_command();

/// `run`: a station over a file of readings.
[[nodiscard]] Command run_command();

/// `demo`: a sheet for each channel of a built-in station (steam, water, gas by density, gas by composition) with the totals of an
/// hour; then the day of the example station, or a line that says why not. Exit status 1 when a cycle of the built-in station is
/// refused.
[[nodiscard]] Command demo_command();

/// `id`: version, build and digests, and the directories in force.
[[nodiscard]] Command id_command();

}  // namespace kalorfix::tool
