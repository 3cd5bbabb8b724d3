// SPDX-License-Identifier: MIT
// Heats of combustion of the components, GOST 30319.1-96. Rows: kJ/m3 at 0 degC, kcal/m3 at
// 0 degC, kJ/m3 at 20 degC, kcal/m3 at 20 degC. Both pentanes carry one value; carbon monoxide, the last, burns to no water.
#pragma once

#include <array>

#include "props/gas_properties.h"

namespace kalorfix::gas {

using HeatTable = std::array<std::array<double, component_count>, heat_rows>;

inline constexpr HeatTable lower_heat{
    {{35880, 64360, 93180, 123570, 122780, 156630, 156630, 173170, 200550, 227760, 0, 0, 23370, 0, 12640},
     {8570, 15370, 22260, 29510, 29320, 37410, 37410, 41360, 47900, 54400, 0, 0, 5580, 0, 3020},
     {33410, 59850, 86530, 114270, 113810, 144020, 144020, 161360, 186870, 212220, 0, 0, 21750, 0, 11780},
     {7980, 14300, 20670, 27290, 27180, 34400, 34400, 38540, 44630, 50690, 0, 0, 5200, 0, 2810}}};

inline constexpr HeatTable higher_heat{
    {{39820, 70310, 101210, 133800, 132960, 169270, 169270, 187400, 216880, 246180, 0, 0, 25350, 0, 12640},
     {9510, 16790, 24170, 31960, 31760, 40430, 40430, 44760, 51800, 58800, 0, 0, 6050, 0, 3020},
     {37100, 65380, 93980, 123720, 123250, 155650, 155650, 174620, 202100, 229380, 0, 0, 23600, 0, 11780},
     {8860, 15620, 22450, 29550, 29440, 37180, 37180, 41710, 48270, 54790, 0, 0, 5640, 0, 2810}}};

}  // namespace kalorfix::gas
