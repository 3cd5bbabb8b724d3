// What GOST 8.586 prints as tables: materials, limits of size, roughness and Reynolds number, coefficients.
#pragma once

#include <array>
#include <cstdint>

namespace kalorfix::flow {

/// Device type codes.
enum class Device : std::uint8_t {
    orifice_corner = 1,
    orifice_d_d2 = 2,
    orifice_flange = 3,
    nozzle_isa1932 = 4,
    nozzle_long_radius = 5,
    venturi_nozzle = 6,
    venturi_cast = 7,
    venturi_machined = 8,
    venturi_welded = 9,
    averaging_first = 10,  // averaging devices, linear rule
    averaging_linear_last = 11,
    averaging_last = 18,
    configured_coefficient = 19,
    meter_mass = 20,
    meter_volume = 21,
    meter_standard_volume = 22,
    external = 23,
};

constexpr int code(Device device) { return static_cast<int>(device); }

/// Devices 1..9: their discharge coefficient depends on the Reynolds number.
constexpr bool is_standard(Device device) { return code(device) >= 1 && code(device) <= 9; }
constexpr bool is_orifice(Device device) { return code(device) >= 1 && code(device) <= 3; }
constexpr bool is_nozzle(Device device) { return code(device) >= 4 && code(device) <= 6; }
/// Devices 10..19: a direct formula.
constexpr bool is_direct(Device device) { return code(device) >= 10 && code(device) <= 19; }
/// Devices 10..18: averaging devices, whose coefficient follows from the blockage.
constexpr bool is_averaging(Device device) { return code(device) >= 10 && code(device) <= 18; }
/// Devices 20..23: the flow comes from a meter.
constexpr bool is_meter(Device device) { return code(device) >= 20 && code(device) <= 23; }

/// Linear thermal expansion: alpha = (a0 + a1 (t/1000) + a2 (t/1000)^2) 1e-6 1/degC for t_min..t_max.
struct Material {
    double a0, a1, a2;
    double t_min_C, t_max_C;
};
inline constexpr int material_count = 39;
/// Row k is material code k + 1.
extern const std::array<Material, material_count> materials;

/// Size limits, inclusive, m.
struct SizeLimits {
    double d_min_m;
    double D_min_m, D_max_m;
};
/// Row k is device code k + 1.
extern const std::array<SizeLimits, 9> size_limits;

/// Long-radius nozzle: largest R_a/D.
inline constexpr double long_radius_max_roughness = 0.00032;

/// Limits of the diameter ratio.
struct BetaLimits {
    double min, max;
};
/// Row k is device code k + 1.
extern const std::array<BetaLimits, 9> beta_limits;

/// Nozzles 4 and 6: largest 10^4 R_a/D for a smooth pipe, by the diameter ratio, ascending.
struct NozzleRoughness {
    double beta, limit;
};
extern const std::array<NozzleRoughness, 13> nozzle_roughness;

/// Orifice plates: the three cubics in lg Re from which the largest roughness of a smooth pipe follows.
struct RoughnessSet {
    double Re_above, Re_to;  ///< applies for Re_above < Re <= Re_to
    std::array<double, 4> A, B, C;
};
extern const std::array<RoughnessSet, 3> orifice_roughness;

/// Averaging devices: alpha = (1 - A m) / sqrt(1 - B (1 - A m)^2) for 12..18.
struct AveragingCoefficients {
    double A, B;
};
/// Row k is device code k + 12.
extern const std::array<AveragingCoefficients, 7> averaging_coefficients;
/// Row k is device code k + 10: the Reynolds number must exceed it.
extern const std::array<double, 9> averaging_min_reynolds;

}  // namespace kalorfix::flow
