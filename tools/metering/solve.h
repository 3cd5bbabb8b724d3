// SPDX-License-Identifier: MIT
// A reading of a metering point, solved for what is missing of it.
#pragma once

#include <optional>
#include <string>

#include "tools/metering/limits.h"

namespace kalorfix::metering {

enum class Unknown { flow, dp, bore };

/// What is known of a reading beside t and p; the unknown's own member is not read.
struct Question {
    Unknown unknown = Unknown::flow;
    double t_C = 0, p_Pa = 0;  ///< p measured, absolute
    double dp_Pa = 0;
    Flow kind = Flow::mass;
    double flow = 0;         ///< in t/h, m3/h or GJ/h
    double round_mm = 0.01;  ///< a bore is made to a multiple of this
};

enum class Status {
    solved,
    refused,    ///< the state, the point or the reading as given
    too_small,  ///< the flow lies below what the device allows here: `flow` is the least that there is
    too_large,  ///< above; `flow` is the most
    step,       ///< the flow lies in a step of the discharge coefficient: `flow` is one that is near
};

struct Answer {
    Status status = Status::refused;
    std::string why{};  ///< one sentence where it is not solved
    Point point{};      ///< with the bore that was found
    double dp_Pa = 0;
    Properties medium{};
    FlowResult flow{};
    double residual = 0;     ///< relative, of the flow that was asked for
    bool ambiguous = false;  ///< other values give the same flow: the smallest is answered
    std::optional<std::pair<double, FlowResult>> rounded{};  ///< bore in mm at 20 degC, and its flow
    Accepted range{};                                        ///< differential pressures for this state and bore
    [[nodiscard]] bool solved() const { return status == Status::solved; }
};

/// Solves by bracketing over the library, to the last digits that its own iteration gives; a residual above the tolerance of the metering
/// class is a step. `with_range` finds the range of validity too.
[[nodiscard]] Answer solve(const host::Library& library, const Point& point, const Question& question,
                           bool with_range = true);

}  // namespace kalorfix::metering
