// SPDX-License-Identifier: MIT
#include "flow/device.h"

namespace kalorfix::flow {
namespace {

constexpr double no = std::numeric_limits<double>::infinity();  // no upper limit

// GOST 8.586.2-2005, 5.3.1.
Range plate(double beta, double) { return {.min = beta <= 0.56 ? 5000.0 : 16000.0 * (beta * beta)}; }
Range flange(double beta, double D_m) {
    const double by_size = 170000.0 * (beta * beta) * D_m;
    return {.min = by_size <= 5000.0 ? 5000.0 : by_size, .above_min = true};
}
// GOST 8.586.3-2005, 5.1.6.1: outside the diameter ratios of the device nothing is said.
Range isa1932(double beta, double) {
    if (0.3 <= beta && beta < 0.44) return {70000.0, 5e7};
    if (0.44 <= beta && beta <= 0.8) return {20000.0, 5e7};
    return {};
}
// GOST 8.586.4-2005, 5.5.3.
Range machined(double beta, double) { return {40000.0 * beta, 1e8 * beta}; }
template <int least, int most = 0>
Range from_to(double, double) {
    return {.min = least, .max = most > 0 ? most : no};
}
template <int least>
Range above(double, double) {
    return {.min = least, .above_min = true};
}
Range any(double, double) { return {}; }

constexpr Device code(int k) { return static_cast<Device>(k); }

}  // namespace

// clang-format off
constexpr std::array<DeviceRow, last_device + 1> devices{{
    //                              D            d       beta          R_a/D    Re
    {code(0),  Family::none,         0,     no,   0,      0,     no,    no,      any,                      ""},
    {code(1),  Family::orifice,      0.05,  3.0,  0.0125, 0.1,   0.75,  no,      plate,                    "GOST 8.586.2-2005, 5.3.1"},
    {code(2),  Family::orifice,      0.05,  1.0,  0.0125, 0.1,   0.75,  no,      plate,                    "GOST 8.586.2-2005, 5.3.1"},
    {code(3),  Family::orifice,      0.05,  1.0,  0.0125, 0.1,   0.75,  no,      flange,                   "GOST 8.586.2-2005, 5.3.1"},
    {code(4),  Family::nozzle,       0.05,  1.0,  0,      0.3,   0.8,   no,      isa1932,                  "GOST 8.586.3-2005, 5.1.6.1"},
    {code(5),  Family::nozzle,       0.05,  0.63, 0,      0.2,   0.8,   0.00032, from_to<10000, 10000000>, "GOST 8.586.3-2005, 5.2.6.1"},
    {code(6),  Family::nozzle,       0.065, 0.5,  0.05,   0.316, 0.775, no,      from_to<150000, 2000000>, "GOST 8.586.3-2005, 5.3.4.1"},
    {code(7),  Family::venturi_tube, 0.1,   0.8,  0,      0.3,   0.75,  no,      from_to<40000>,           "GOST 8.586.4-2005, 5.5.2"},
    {code(8),  Family::venturi_tube, 0.05,  0.25, 0,      0.4,   0.75,  no,      machined,                 "GOST 8.586.4-2005, 5.5.3"},
    {code(9),  Family::venturi_tube, 0.2,   1.2,  0,      0.4,   0.7,   no,      from_to<40000>,           "GOST 8.586.4-2005, 5.5.4"},
    {code(10), Family::averaging,    0,     no,   0,      0,     no,    no,      above<4000>,              "maker"},
    {code(11), Family::averaging,    0,     no,   0,      0,     no,    no,      above<2300>,              "maker"},
    {code(12), Family::averaging,    0,     no,   0,      0,     no,    no,      above<6500>,              "maker"},
    {code(13), Family::averaging,    0,     no,   0,      0,     no,    no,      above<10000>,             "maker"},
    {code(14), Family::averaging,    0,     no,   0,      0,     no,    no,      above<15000>,             "maker"},
    {code(15), Family::averaging,    0,     no,   0,      0,     no,    no,      above<25000>,             "maker"},
    {code(16), Family::averaging,    0,     no,   0,      0,     no,    no,      above<6500>,              "maker"},
    {code(17), Family::averaging,    0,     no,   0,      0,     no,    no,      above<12500>,             "maker"},
    {code(18), Family::averaging,    0,     no,   0,      0,     no,    no,      above<25000>,             "maker"},
    {code(19), Family::configured,   0,     no,   0,      0,     no,    no,      any,                      "maker"},
    {code(20), Family::meter,        0,     no,   0,      0,     no,    no,      any,                      "maker"},
    {code(21), Family::meter,        0,     no,   0,      0,     no,    no,      any,                      "maker"},
    {code(22), Family::meter,        0,     no,   0,      0,     no,    no,      any,                      "maker"},
    {code(23), Family::external,     0,     no,   0,      0,     no,    no,      any,                      "maker"},
}};
// clang-format on

Limit check_size(const DeviceRow& row, double D_m, double d_m, double R_a_m) {
    if (row.family == Family::none) return Limit::unknown_device;
    if (!row.is_standard()) return Limit::none;
    if (!(row.D_min <= D_m && D_m <= row.D_max)) return Limit::pipe_diameter;
    if (row.d_min > 0.0 && !(d_m >= row.d_min)) return Limit::device_diameter;
    return row.R_a_max == no || R_a_m / D_m <= row.R_a_max ? Limit::none : Limit::roughness;
}

Limit check_ratio(const DeviceRow& row, double beta) {
    if (!row.is_standard()) return Limit::none;
    const bool inside = row.beta_min <= beta && beta <= row.beta_max;
    const bool outside = beta < row.beta_min || beta > row.beta_max;
    return (row.family == Family::orifice ? !outside : inside) ? Limit::none : Limit::diameter_ratio;
}

}  // namespace kalorfix::flow
