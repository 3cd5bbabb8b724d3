// SPDX-License-Identifier: MIT
#include "tools/station/cycle_columns.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "tools/station/results.h"

namespace kalorfix::tool::station {
namespace {

// The integrators of both media.
struct Kind {
    const char *flow, *amount;
    int of_gas, of_heat_carrier;  // number less one; -1 where the medium has no such
};
constexpr std::array<Kind, 5> kinds{{{"q_m_t_h", "mass_t", 0, 0},
                                     {"q_v_m3_h", "volume_m3", 1, 1},
                                     {"q_c_m3_h", "standard_volume_m3", 2, -1},
                                     {"q_e_GJ_h", "energy_GJ", 3, -1},
                                     {"q_h_GJ_h", "heat_GJ", -1, 2}}};

}  // namespace

const std::vector<std::string>& column_names() {
    static const std::vector<std::string> all = [] {
        std::vector<std::string> names{"t_C", "p_Pa", "dp_Pa"};
        for (const Result& one : cycle_results)
            if (!one.name.empty()) names.emplace_back(one.name);
        for (const Kind& kind : kinds) names.emplace_back(kind.flow);
        for (const char* const prefix : {"total_", "hour_", "day_"})
            for (const Kind& kind : kinds) names.push_back(std::string(prefix) + kind.amount);
        names.insert(names.end(), {"hour_length_s", "day_length_s"});
        return names;
    }();
    return all;
}

float in_unit(const Channel& c, std::size_t k, float amount) {
    const short exponent = c.accounting[k].exponent;
    return exponent == 0 ? amount : static_cast<float>(static_cast<double>(amount) * std::pow(10.0, exponent));
}

void fill(const Cycle& cycle, Values& values) {
    const auto& [c, row, out, registers] = cycle;
    values.clear();
    const auto add = [&values](bool given, float value) {
        values.push_back(given && std::isfinite(value) ? std::optional(value) : std::nullopt);
    };
    add(true, out.input.t_C);
    add(true, out.input.p_Pa);
    add(!is_meter(c.device), out.input.dp);
    for (const Result& one : cycle_results) {
        if (one.name.empty()) continue;
        // The Reynolds number is told of a refused flow too.
        const bool told = one.value == &Outcome::Re
                              ? out.passed(Step::geometry) && out.Re != 0.0F && !std::isnan(out.input.dp)
                              : out.passed(one.step);
        const bool at_rest = out.at_rest && one.step == Step::flow;
        add(told && !at_rest && has(c, one.whose), out.*one.value);
    }
    std::array<int, kinds.size()> index{};
    for (std::size_t k = 0; k < kinds.size(); ++k)
        index[k] = c.is_gas() ? kinds[k].of_gas : kinds[k].of_heat_carrier;
    const auto at = [](int k) { return static_cast<std::size_t>(std::max(k, 0)); };
    for (const int k : index) add(k >= 0 && out.passed(Step::flow), out.q[at(k)]);
    for (const int k : index) add(k >= 0, in_unit(c, at(k), registers[at(k)].total));
    for (std::size_t set = 0; set < 2; ++set)
        for (const int k : index) {
            const Interval& interval = registers[at(k)].interval[set];
            add(k >= 0 && interval.closed, in_unit(c, at(k), interval.result));
        }
    // Flows from elsewhere are refused one by one, so that their intervals may have closed after different times.
    for (std::size_t set = 0; set < 2; ++set) {
        std::optional<double> length_s;
        bool one_length = true;
        for (const Register& one : registers) {
            if (!one.interval[set].closed) continue;
            const double own_s = one.interval[set].length_s;
            one_length = one_length && std::fabs(own_s - length_s.value_or(own_s)) < tick_s;
            length_s = own_s;
        }
        add(length_s && one_length, static_cast<float>(length_s.value_or(0.0)));
    }
}

}  // namespace kalorfix::tool::station
