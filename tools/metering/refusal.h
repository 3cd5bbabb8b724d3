// SPDX-License-Identifier: MIT
// Why the library refused a state, a point or a reading, in words: the first limit that was broken, with its value and bound.
#pragma once

#include <string>
#include <string_view>

#include "flow/device.h"
#include "tools/metering/flow.h"

namespace kalorfix::metering {

/// Said where no documented limit explains a refusal.
[[nodiscard]] std::string unexplained(std::string_view step);

/// A sentence such as "T 251 K not above 252 K", with as many digits as tell the two numbers apart.
[[nodiscard]] std::string broken(std::string_view what, double value, std::string_view relation, double bound,
                                 std::string_view unit);

inline constexpr double highest_K = 0.9999;  ///< of a gas, excluded

/// The state that the library accepts, t in degC and p in MPa at the device; `ends_excluded` for gas.
struct Window {
    flow::Range t_C{}, p_MPa{};
    bool ends_excluded = false;
};
[[nodiscard]] Window window_of(const Medium& medium);

/// Of the state; `found` holds t, p at the device and K.
[[nodiscard]] std::string state_refusal(const Point& point, const Properties& found);
/// Of the properties; `found` holds t, p at the device and the phase.
[[nodiscard]] std::string properties_refusal(const host::Library& library, const Point& point,
                                             const Properties& found);

/// Sets `limit` and `refused` of a geometry that was refused.
void explain_geometry(const Pipeline& pipe, double t_C, FlowResult& out);
/// The same of a flow; `out` holds E, K_p and the last Reynolds number.
void explain_flow(const Pipeline& pipe, const Properties& medium, double dp_Pa, FlowResult& out);

}  // namespace kalorfix::metering
