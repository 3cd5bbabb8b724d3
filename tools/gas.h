// Compressibility and properties of natural gas on the command line.
#pragma once

#include <string>

#include "tools/curves.h"
#include "tools/host.h"

namespace kalorfix::tool {

struct GasRequest {
    std::string method;       ///< nx19, gerg91, aga8 or vnic
    std::string t;            ///< degC, number or range
    std::string p;            ///< MPa, number or range
    std::string composition;  ///< file; for methods by density in place of the next three
    std::string rho_c;        ///< density at standard conditions, kg/m3
    std::string nitrogen = "0", carbon_dioxide = "0";  ///< mole per cent
    std::string vapour = "0";                          ///< water vapour, kg/m3
    std::string heat = "kJ20";
    bool csv = false;
    Drawing drawing;
};

/// Whether the request needs the gas data file. Throws InputError for a method that does not exist.
[[nodiscard]] bool needs_gas_data(const GasRequest& request);

/// Prints one state as a sheet, ranges as a table or as CSV, and draws a quantity if asked to. False when the library refused a state. Throws InputError
/// before anything is printed.
[[nodiscard]] bool gas(const host::Library& library, const GasRequest& request);

}  // namespace kalorfix::tool
