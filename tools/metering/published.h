// SPDX-License-Identifier: MIT
// Uncertainties that documents publish for a discharge coefficient and an expansibility factor.
#pragma once

#include <optional>
#include <string>

#include "tools/metering/flow.h"

namespace kalorfix::metering {

/// Relative expanded uncertainty (95 %) in per cent, with its clause; without one, why the document grants none here, or nothing
/// where no document has a figure.
struct Published {
    std::optional<double> pct{};
    std::string clause{}, outside{};
};

/// Of the discharge coefficient: ISO 5167-2:2003, 5.3.3.1; -3:2003, 5.1.7, 5.2.7, 5.3.5; -4:2003, 5.7. Outside the sizes and the
/// Reynolds numbers of these documents, which are in part narrower than those that the library accepts, there is no figure.
[[nodiscard]] Published published_C(const Pipeline& pipe, const FlowResult& flow);

/// Of the expansibility factor, at the absolute pressure p at the device: ISO 5167-2:2003, 5.3.3.2; -3:2003, 5.1.7, 5.2.7, 5.3.5;
/// -4:2003, 5.8.
[[nodiscard]] Published published_epsilon(const Pipeline& pipe, const FlowResult& flow, double kappa,
                                          double dp_Pa, double p_Pa);

}  // namespace kalorfix::metering
