// The station of the examples and its day of readings.
#pragma once

#include <string>

namespace kalorfix::tool::station {

/// The examples of the source tree that this program was built in, or of its installation; empty when there are none.
[[nodiscard]] std::string examples_directory();

/// Runs the example station over its day and prints what the day brought, with the registers. Returns the exit status of the
/// run; where there are no examples or no gas data it says so and returns 0.
[[nodiscard]] int run_example_day(const std::string& library_file, const std::string& gas_data_file);

}  // namespace kalorfix::tool::station
