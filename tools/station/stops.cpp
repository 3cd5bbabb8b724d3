// SPDX-License-Identifier: MIT
#include "tools/station/stops.h"

#include <cmath>
#include <cstdio>

#include "tools/metering/check.h"
#include "tools/metering/medium.h"
#include "tools/station/point.h"
#include "tools/text.h"

namespace kalorfix::tool::station {

void name_stops(const Station& station, const std::vector<TemperatureSpan>& temperatures) {
    for (std::size_t i = 0; i < station.channels.size(); ++i) {
        const TemperatureSpan& span = temperatures[i];
        if (!(span.low_C <= span.high_C)) continue;
        const Channel& channel = station.channels[i];
        const metering::Point point = point_of(channel);
        for (const metering::Rule& rule : metering::check_device(point, span.low_C, span.high_C))
            if (rule.verdict == metering::Verdict::stop)
                std::fprintf(stderr, "kalorfix: [%s] STOP %s: %s %s%s\n", channel.name.c_str(),
                             rule.what.c_str(), rule.value.c_str(), rule.limit.c_str(),
                             rule.clause.empty() ? "" : cat(" (", rule.clause, ")").c_str());
        const auto* const heat = std::get_if<metering::HeatCarrier>(&point.medium);
        if (heat && heat->phase && metering::is_mixed(*heat, static_cast<short>(*heat->phase)))
            std::fprintf(
                stderr,
                "kalorfix: warning: [%s] the density of wet steam is mixed linearly: with water in it too "
                "high, and so is the flow\n",
                channel.name.c_str());
    }
}

}  // namespace kalorfix::tool::station
