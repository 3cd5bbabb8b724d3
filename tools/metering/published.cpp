// SPDX-License-Identifier: MIT
#include "tools/metering/published.h"

#include <array>
#include <cmath>

#include "flow/device.h"
#include "runtime/units.h"
#include "tools/metering/limits.h"
#include "tools/metering/refusal.h"

namespace kalorfix::metering {
namespace {

using flow::Range;

// Sizes and Reynolds numbers within which a document of ISO grants its figure.
struct Granted {
    Range D_mm, beta, Re;
    double C;  // for which the figure holds; 0: computed by the equation of the device
    const char *clause_C, *clause_epsilon;
};

// clang-format off
// By device code, the first is none. The Reynolds numbers of orifice plates are those of the table of devices.
constexpr std::array<Granted, 10> granted{{
    {},
    {{50, 1000}, {0.1, 0.75},    {},           0,     "ISO 5167-2, 5.3.3.1", "ISO 5167-2, 5.3.3.2"},
    {{50, 1000}, {0.1, 0.75},    {},           0,     "ISO 5167-2, 5.3.3.1", "ISO 5167-2, 5.3.3.2"},
    {{50, 1000}, {0.1, 0.75},    {},           0,     "ISO 5167-2, 5.3.3.1", "ISO 5167-2, 5.3.3.2"},
    {{50, 500},  {0.3, 0.8},     {2e4, 1e7},   0,     "ISO 5167-3, 5.1.7", "ISO 5167-3, 5.1.7"},
    {{50, 630},  {0.2, 0.8},     {1e4, 1e7},   0,     "ISO 5167-3, 5.2.7", "ISO 5167-3, 5.2.7"},
    {{65, 500},  {0.316, 0.775}, {1.5e5, 2e6}, 0,     "ISO 5167-3, 5.3.5", "ISO 5167-3, 5.3.5"},
    {{100, 800}, {0.3, 0.75},    {2e5, 2e6},   0.984, "ISO 5167-4, 5.7",     "ISO 5167-4, 5.8"},
    {{50, 250},  {0.4, 0.75},    {2e5, 1e6},   0.995, "ISO 5167-4, 5.7",     "ISO 5167-4, 5.8"},
    {{200, 1200}, {0.4, 0.7},    {2e5, 2e6},   0.985, "ISO 5167-4, 5.7",     "ISO 5167-4, 5.8"},
}};
// clang-format on

// ISO 5167-2:2003, 5.3.3.1.
double of_orifice(double beta, double D_mm, double Re) {
    constexpr double small_D_mm = 71.12;
    double pct = beta < 0.2 ? 0.7 - beta : beta <= 0.6 ? 0.5 : 1.667 * beta - 0.5;
    if (D_mm < small_D_mm) pct += 0.9 * (0.75 - beta) * (2.8 - D_mm / (units::inch_m * units::mm_per_m));
    if (beta > 0.5 && Re < 10000.0) pct += 0.5;
    return pct;
}

double figure_of_C(flow::Device device, const FlowResult& flow) {
    using enum flow::Device;
    switch (device) {
        case nozzle_isa1932: return flow.beta <= 0.6 ? 0.8 : 2.0 * flow.beta - 0.4;
        case nozzle_long_radius: return 2.0;
        case venturi_nozzle: return 1.2 + 1.5 * std::pow(flow.beta, 4);
        case venturi_cast: return 0.7;
        case venturi_machined: return 1.0;
        case venturi_welded: return 1.5;
        default: return of_orifice(flow.beta, flow.D_mm, flow.Re);
    }
}

std::string outside(std::string_view what, double value, const Range& range, std::string_view unit) {
    if (value > range.max) return broken(what, value, "above", range.max, unit);
    if (value < range.min) return broken(what, value, "below", range.min, unit);
    return {};
}

}  // namespace

Published published_C(const Pipeline& pipe, const FlowResult& flow) {
    const flow::DeviceRow& device = flow::device_row(pipe.device);
    if (!device.is_standard()) return {};
    const Granted& row = granted[static_cast<std::size_t>(device.device)];
    Published found{{}, row.clause_C, outside("pipe diameter", flow.D_mm, row.D_mm, "mm")};
    if (found.outside.empty()) found.outside = outside("diameter ratio", flow.beta, row.beta, "");
    Range Re = row.Re;
    if (device.family == flow::Family::orifice) Re = reynolds_range(pipe, flow);
    // ISO 5167-3:2003, 5.1.6.1.
    if (device.device == flow::Device::nozzle_isa1932 && flow.beta < 0.44) Re.min = 7e4;
    if (found.outside.empty()) found.outside = outside("Re", flow.Re, Re, "");
    constexpr double same = 5e-4;
    if (found.outside.empty() && row.C > 0.0 && !(std::fabs(flow.C - row.C) <= same))
        found.outside = broken("C", flow.C, "is not", row.C, "");
    if (found.outside.empty()) found.pct = figure_of_C(device.device, flow);
    return found;
}

Published published_epsilon(const Pipeline& pipe, const FlowResult& flow, double kappa, double dp_Pa,
                            double p_Pa) {
    const flow::DeviceRow& device = flow::device_row(pipe.device);
    if (!device.is_standard()) return {};
    Published found{{}, granted[static_cast<std::size_t>(device.device)].clause_epsilon, {}};
    const double ratio = dp_Pa / p_Pa;
    found.outside = outside("dp/p", ratio, {.max = 0.25}, "");
    if (!found.outside.empty()) return found;
    const bool plain_nozzle =
        device.device == flow::Device::nozzle_isa1932 || device.device == flow::Device::nozzle_long_radius;
    if (device.family == flow::Family::orifice)
        found.pct = 3.5 * ratio / kappa;
    else
        found.pct = (plain_nozzle ? 2.0 : 4.0 + 100.0 * std::pow(flow.beta, 8)) * ratio;
    return found;
}

}  // namespace kalorfix::metering
