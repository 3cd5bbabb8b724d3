// A metering point on the command line: the section of a station, or the same keys as options with units.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/commands.h"
#include "tools/host.h"
#include "tools/metering/point.h"
#include "tools/metering/units.h"
#include "tools/station/station.h"

namespace kalorfix::tool {

struct PointRequest {
    std::string station, channel;
    std::string device, D20, d20, materials, expansion, roughness, edge, interval, alpha;
    std::string metering_class;
    bool edge_at_end = false;
    std::string gas, vapour, heat, energy;
    bool water = false;
    std::string phase, x;
    std::string rho, mu, kappa, rho_c;
};

struct DescribedPoint {
    metering::Point point;
    std::string name;                           ///< GAS 2, or nothing
    bool bore_given = true;                     ///< else it is asked for
    std::optional<station::Channel> channel{};  ///< of the station, if it has one
};

/// STATION, CHANNEL, and the options in place of these.
[[nodiscard]] std::vector<Option> point_options(PointRequest& request);

/// The point; a bore left out or given as ? is one that is asked for. Throws InputError.
[[nodiscard]] DescribedPoint read_point(const host::Library& library, const PointRequest& request);

/// The same for every channel of a station, meters included, where none is named.
[[nodiscard]] std::vector<DescribedPoint> read_points(const host::Library& library,
                                                      const PointRequest& request);

/// Throws InputError when the point needs gas data and there is none.
void require_gas_data(const Installation& files, const metering::Point& point);

/// A number with a unit, or a range of such: 25kPa, 1:40:1kPa, 1kPa:40kPa:1kPa. In the base unit. Throws InputError naming the option.
[[nodiscard]] std::vector<double> read_values(std::string_view option, const std::string& text,
                                              metering::Measure measure, std::string_view otherwise,
                                              const metering::Unit** unit = nullptr);
/// low:high with a unit, or one number for both. In the base unit, low not above high.
[[nodiscard]] std::pair<double, double> read_span(std::string_view option, const std::string& text,
                                                  metering::Measure measure, std::string_view otherwise);
/// One number within limits of the base unit.
[[nodiscard]] double read_value(std::string_view option, const std::string& text, metering::Measure measure,
                                std::string_view otherwise, double low, double high);

}  // namespace kalorfix::tool
