// Discharge coefficient and roughness correction of the standard devices at a given Reynolds number.
#pragma once

#include "flow/device_tables.h"

namespace kalorfix::flow {

/// A pipe with its device, at the working temperature.
struct Bore {
    Device device;
    double D_m;
    double beta;
    double R_sh_m;  ///< equivalent uniform roughness
    double R_a_m;   ///< arithmetic mean roughness
};

struct Discharge {
    double C;     ///< discharge coefficient
    double K_sh;  ///< correction for the roughness of the pipe
};

/// 10^6, the usual reference in the equations of the discharge coefficient.
inline constexpr double million = 1e6;

/// What the geometry of an orifice plate alone determines: C = C_inf + c7 t^7 + (c3 + c11 t^8) t^3 - up t^8, t = Re^-0.1.
struct OrificeConstants {
    double C_inf, c7, c3, c11, up;
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

/// Orifice plates (1..3): Reader-Harris/Gallagher equation. False when Re is below the limits of the device,
/// or, with corner tappings in pipes over 1 m, the roughness correction exceeds 1.03.
/// GOST 8.586.2-2005, 5.3.1, 5.3.2.1 and 5.3.2.3.
[[nodiscard]] bool orifice_discharge(const Bore& bore, const OrificeConstants& c, double Re, Discharge& out);

/// ISA 1932 nozzle, long-radius nozzle and Venturi nozzle (4..6). False when Re is outside the limits of the
/// device or the pipe is too rough. GOST 8.586.3-2005, 5.1.6, 5.2.6 and 5.3.4.
[[nodiscard]] bool nozzle_discharge(const Bore& bore, const NozzleConstants& c, double Re, Discharge& out);

/// Classical Venturi tubes (7..9). False when Re is outside the limits of the device.
/// GOST 8.586.4-2005, 5.5.2 to 5.5.4.
[[nodiscard]] bool venturi_discharge(const Bore& bore, double Re, Discharge& out);

/// The law of one pipe with its device; what the geometry alone determines is computed here, once for all Reynolds numbers.
class DischargeLaw {
public:
    explicit DischargeLaw(const Bore& bore);

    /// The one of the three above that the device asks for; false for other devices. `out` is left alone when the result
    /// is false.
    [[nodiscard]] bool at(double Re, Discharge& out) const;

private:
    Bore bore_;
    OrificeConstants orifice_;  // only of the device's own kind
    NozzleConstants nozzle_;
};

/// Largest 10^4 R_a/D of a smooth pipe for nozzles 4 and 6, interpolated in the diameter ratio; undefined (NaN)
/// on the rows of the table themselves. GOST 8.586.3-2005, 5.1.6.1.
[[nodiscard]] double nozzle_roughness_limit(double beta);

}  // namespace kalorfix::flow
