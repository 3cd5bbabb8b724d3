// SPDX-License-Identifier: MIT
// Discharge coefficient and roughness correction of the standard devices at a given Reynolds number.
//
// Notation: D pipe and d device diameter, beta = d/D, Re Reynolds number of the pipe, C discharge coefficient, K_sh correction for
// the roughness of the pipe, R_sh equivalent uniform and R_a = R_sh/pi arithmetic mean roughness.
#pragma once

#include "flow/device.h"

namespace kalorfix::flow {

/// A pipe with its device, at the working temperature.
struct Bore {
    const DeviceRow& device;
    double D_m, beta, R_sh_m, R_a_m;
};

struct Discharge {
    double C, K_sh;
};

/// 10^6, the usual reference in the equations of the discharge coefficient.
inline constexpr double million = 1e6;

/// What the geometry of an orifice plate alone determines: C = C_inf + c7 t^7 + (c3 + c11 t^8) t^3 - c8 t^8, t = Re^-0.1.
struct OrificeConstants {
    double C_inf, c7, c3, c11, c8;
    double ln_beta;     ///< of the diameter ratio, at most 0.65, in the limit of a smooth pipe
    double correction;  ///< 5.22 beta^3.5
};
[[nodiscard]] OrificeConstants orifice_constants(const Bore& bore);

/// The same of an ISA 1932 or Venturi nozzle: C = C_inf - slope (10^6/Re)^1.15.
struct NozzleConstants {
    double C_inf, slope;
    bool smooth;
    double correction;  ///< of a rough pipe at high Reynolds numbers
};
[[nodiscard]] NozzleConstants nozzle_constants(const Bore& bore);

/// Orifice plates: Reader-Harris/Gallagher equation. Refused with corner tappings in pipes over 1 m when K_sh exceeds 1.03.
/// GOST 8.586.2-2005, 5.3.1, 5.3.2.1 and 5.3.2.3.
[[nodiscard]] Limit orifice_discharge(const Bore& bore, const OrificeConstants& c, double Re, Discharge& out);

/// ISA 1932 nozzle, long-radius nozzle and Venturi nozzle. Refused when the pipe is too rough.
/// GOST 8.586.3-2005, 5.1.6, 5.2.6 and 5.3.4.
[[nodiscard]] Limit nozzle_discharge(const Bore& bore, const NozzleConstants& c, double Re, Discharge& out);

/// The law of one pipe with its device; what the geometry alone determines is computed here, once for all Reynolds numbers.
class DischargeLaw {
public:
    explicit DischargeLaw(const Bore& bore);

    /// C and K_sh, which are left alone when the Reynolds number or the roughness is refused.
    [[nodiscard]] Limit at(double Re, Discharge& out) const;

private:
    Bore bore_;
    Range reynolds_;
    OrificeConstants orifice_;  // only of the device's own kind
    NozzleConstants nozzle_;
};

}  // namespace kalorfix::flow
