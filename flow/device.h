// SPDX-License-Identifier: MIT
// The devices that a metering point may have, with their limits of use: one row a device.
#pragma once

#include <array>
#include <cstddef>
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

// clang-format off
/// The codes of the host, a family a line.
enum class Device : std::uint8_t {
    none = 0,
    orifice_corner = 1, orifice_d_d2 = 2, orifice_flange = 3,
    nozzle_isa1932 = 4, nozzle_long_radius = 5, venturi_nozzle = 6,
    venturi_cast = 7, venturi_machined = 8, venturi_welded = 9,
    averaging_first = 10, averaging_linear_last = 11, averaging_last = 18,  // 10, 11: a linear flow coefficient; others: a tabulated one
    configured_coefficient = 19,
    meter_mass = 20, meter_volume = 21, meter_standard_volume = 22,
    external = 23,
};
// clang-format on

enum class Family : std::uint8_t {
    none,
    orifice,
    nozzle,  ///< ISA 1932, long-radius and Venturi nozzles
    venturi_tube,
    averaging,   ///< flow coefficient from the blockage
    configured,  ///< flow coefficient as configured
    meter,
    external,  ///< the flow is given to the totals
};

/// Bounds are inclusive; lengths in m, at the working temperature.
struct DeviceRow {
    Device device;
    Family family;
    double D_min, D_max;
    double d_min;
    double beta_min, beta_max;
    double R_a_max;  ///< R_a/D of the pipe
    Range (*reynolds)(double beta, double D_m);
    const char* clause;  ///< where the limits stand

    /// Devices 1..9: their discharge coefficient depends on the Reynolds number.
    [[nodiscard]] constexpr bool is_standard() const {
        return family == Family::orifice || family == Family::nozzle || family == Family::venturi_tube;
    }
    /// Devices 10..19: a direct formula.
    [[nodiscard]] constexpr bool is_direct() const {
        return family == Family::averaging || family == Family::configured;
    }
};

inline constexpr int last_device = 23;

/// Row k is that of device code k; the first is that of no device.
extern const std::array<DeviceRow, last_device + 1> devices;

/// The row of a device code; for a code that is none the first.
[[nodiscard]] inline const DeviceRow& device_row(int code) {
    return devices[code > 0 && code <= last_device ? static_cast<std::size_t>(code) : 0];
}

/// Whether pipe, device and the roughness R_a (all m) are within the limits.
[[nodiscard]] Limit check_size(const DeviceRow& row, double D_m, double d_m, double R_a_m);

/// Whether the diameter ratio is. An orifice plate refuses a ratio outside, the others accept one inside: only an orifice passes a
/// NaN on.
[[nodiscard]] Limit check_ratio(const DeviceRow& row, double beta);

}  // namespace kalorfix::flow
