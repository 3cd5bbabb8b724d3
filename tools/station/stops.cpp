// SPDX-License-Identifier: MIT
#include "tools/station/stops.h"

#include <cmath>
#include <cstdio>

#include "tools/metering/check.h"
#include "tools/station/point.h"
#include "tools/text.h"

namespace kalorfix::tool::station {

void name_stops(const Station& station, const std::vector<TemperatureSpan>& temperatures) {
    for (std::size_t i = 0; i < station.channels.size(); ++i) {
        const TemperatureSpan& span = temperatures[i];
        if (!(span.low_C <= span.high_C)) continue;
        const Channel& channel = station.channels[i];
        for (const metering::Rule& rule : metering::check_device(point_of(channel), span.low_C, span.high_C))
            if (rule.verdict == metering::Verdict::stop)
                std::fprintf(stderr, "kalorfix: [%s] STOP %s: %s %s%s\n", channel.name.c_str(),
                             rule.what.c_str(), rule.value.c_str(), rule.limit.c_str(),
                             rule.clause.empty() ? "" : cat(" (", rule.clause, ")").c_str());
    }
}

}  // namespace kalorfix::tool::station
