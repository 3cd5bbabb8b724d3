// The limits of use that a metering point can break.
#pragma once

#include <cstdint>
#include <limits>

namespace kalorfix::flow {

enum class Limit : std::uint8_t {
    none,                  ///< accepted
    unknown_device,        ///< a code that is none
    device_temperature,    ///< of the material of the device, degC
    pipe_temperature,      ///< of the material of the pipe, degC
    pipe_diameter,         ///< m
    device_diameter,       ///< m
    roughness,             ///< R_a/D of the pipe
    diameter_ratio,        ///< d/D
    pressure_ratio,        ///< dp/p
    reynolds,              ///< of the pipe, or of an averaging device
    nozzle_roughness,      ///< R/D of the pipe of an ISA 1932 or Venturi nozzle
    roughness_correction,  ///< K_sh in large pipes
    passes,                ///< of the flow equation, which does not settle
};

/// Bounds of a quantity. One that is no number is outside.
struct Range {
    double min = -std::numeric_limits<double>::infinity();
    double max = std::numeric_limits<double>::infinity();
    bool above_min = false;  ///< the least value itself is outside

    [[nodiscard]] constexpr bool contains(double value) const {
        return (above_min ? value > min : value >= min) && value <= max;
    }
};

inline constexpr double max_pressure_ratio = 0.25;        ///< GOST 8.586.2..4-2005, expansibility
inline constexpr double max_nozzle_roughness = 30e-4;     ///< R/D; GOST 8.586.3-2005, 5.1.6.2
inline constexpr double max_roughness_correction = 1.03;  ///< K_sh; GOST 8.586.2-2005, 5.3.2.3
inline constexpr int max_passes = 100;

}  // namespace kalorfix::flow
