// A station, its readings and a composition to start from.
#pragma once

#include <string>

namespace kalorfix::tool::station {

/// Writes station.ini, readings_day.csv and natural_gas.csv, as among the examples of the installation, into a directory, which is
/// made if need be, and says what to do with them. Throws InputError when one of them stands there already or nothing can be
/// written.
void write_example(const std::string& directory);

}  // namespace kalorfix::tool::station
