// SPDX-License-Identifier: MIT
// Whether a metering point is set up right, before it is commissioned: a rule a limit.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "flow/device.h"
#include "tools/metering/limits.h"

namespace kalorfix::metering {

enum class Verdict { ok, warn, stop, unchecked };

struct Rule {
    Verdict verdict = Verdict::ok;
    std::string what{};    ///< "beta at 0 degC"
    std::string value{};   ///< "0.96", with its unit
    std::string limit{};   ///< "above 0.75", "within 0.1..0.75"
    std::string clause{};  ///< where the limit stands
};

/// What the point will meet.
struct Envelope {
    double t_low_C = 0, t_high_C = 0, p_low_Pa = 0, p_high_Pa = 0;  ///< p measured, absolute
    std::optional<double> dp_low_Pa{}, dp_high_Pa{};
};

/// A register of the host, which wraps at 10^6 units of 10^exponent.
struct Account {
    std::string name, unit;
    Flow kind = Flow::mass;
    short exponent = 0;
};

/// The rules that need no state: materials, sizes, diameter ratio and roughness at both temperatures, edge, sum of the composition,
/// metering class. By the table of devices and the pure functions of flow/.
[[nodiscard]] std::vector<Rule> check_device(const Point& point, double t_low_C, double t_high_C);

/// All rules; those of the state at the four corners of the envelope, by the library.
[[nodiscard]] std::vector<Rule> check(const host::Library& library, const Point& point,
                                      const Envelope& envelope, const std::vector<Account>& accounts);

}  // namespace kalorfix::metering
