// SPDX-License-Identifier: MIT
// The commands of the tool, described without the parser, which the main file alone includes.
#pragma once

#include <functional>
#include <string>
#include <variant>
#include <vector>

namespace kalorfix::tool {

struct Option {
    std::string name;   ///< "--t", "-o,--output", or STATION for an argument without a name of its own
    std::string value;  ///< what stands for the value in the help; nothing for a switch
    std::string what;   ///< a line of the help, or several; nothing: not in the help
    std::variant<std::string*, bool*> target;
    bool required = false;
};

/// The files that a command works with.
struct Installation {
    std::string library;
    std::string gas_data;  ///< empty when there is none
};

struct Command {
    std::string name, what;
    std::string notes;  ///< what the help says behind the options
    std::vector<Option> options{};
    std::vector<Command> commands{};
    std::function<int(const Installation&)> run{};  ///< returns the exit status; may throw InputError
    bool takes_general_options = true;
};

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

/// `calc`: one reading of a metering point, solved for the flow, the differential pressure or the bore. Exit status 1 when there is no
/// solution.
[[nodiscard]] Command calc_command();

/// `check`: the rules for a metering point before it is commissioned. Exit status 1 when a rule says STOP.
[[nodiscard]] Command check_command();

/// `audit`: the archive of a device recomputed. Exit status 1 when a sum differs by more than the limit given.
[[nodiscard]] Command audit_command();

/// `protocol`: a device checked at points, as a form. Exit status 1 when a value is not met or missing.
[[nodiscard]] Command protocol_command();

/// `uncertainty`: the budgets of a station over a file of readings. Exit status 1 when one of them is incomplete.
[[nodiscard]] Command uncertainty_command();

/// `demo`: a sheet for each channel of a built-in station (steam, water, gas by density, gas by composition) with the totals of an
/// hour; then the day of the example station, or a line that says why not. Exit status 1 when a cycle of the built-in station is
/// refused.
[[nodiscard]] Command demo_command();

/// `materials`: the codes of pipes and devices with range and expansion.
[[nodiscard]] Command materials_command();

/// `id`: version, build and digests, and the directories in force.
[[nodiscard]] Command id_command();

}  // namespace kalorfix::tool
