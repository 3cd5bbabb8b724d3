// SPDX-License-Identifier: MIT
// What a host keeps of the totals of a channel from one cycle to the next.
#pragma once

namespace kalorfix::bench {

/// Integrators of a gas and of a heat channel; each has an hourly and a daily interval.
inline constexpr unsigned short gas_integrators = 4, heat_integrators = 3;

struct Registers {
    float total[gas_integrators]{};
    float time[2][gas_integrators]{}, start[2][gas_integrators]{}, result[2][gas_integrators]{};

    /// Counts all integrators on, by mg_int_param or mt_int_param. Whether all were good.
    template <class Function>
    bool add_up(Function* int_param, int channel, unsigned short integrators) {
        int good = 0;
        for (unsigned short k = 0; k < integrators; ++k) {
            char status = 0;
            float downtime_part = 0, downtime_min = 0;
            int_param(channel, static_cast<unsigned short>(k + 1), 0, total[k], 0, 0, &status, &total[k],
                      &downtime_part, &downtime_min);
            good += status;
        }
        return good == integrators;
    }

    /// Carries their intervals on, by mg_int_param_1 or mt_int_param_1.
    template <class Function>
    bool carry_on(Function* int_param_1, int channel, unsigned short integrators) {
        int good = 0;
        for (unsigned short set = 0; set < 2; ++set)
            for (unsigned short k = 0; k < integrators; ++k) {
                char status = 0;
                int_param_1(channel, static_cast<unsigned short>(k + 1), set, time[set][k], start[set][k],
                            result[set][k], &status, &time[set][k], &start[set][k], &result[set][k]);
                good += status;
            }
        return good == 2 * integrators;
    }
};

}  // namespace kalorfix::bench
