// The flow equation of the standard devices, solved for the mass flow.
#pragma once

#include "flow/discharge.h"
#include "flow/medium.h"

namespace kalorfix::flow {

/// Pipe and device of a metering point at the working temperature.
struct StandardPoint {
    Bore bore;
    double d_m;
    double approach_factor;       ///< E
    double bluntness_correction;  ///< K_p
};

/// What all passes share: q_m = full_flow C K_sh, Re = q_m / (pi/4 D mu). Needs the expansibility.
struct FlowEquation {
    double full_flow_kgs;    ///< pi/4 d^2 E K_p epsilon sqrt(2 dp rho)
    double flow_per_Re_kgs;  ///< pi/4 D mu
};
[[nodiscard]] FlowEquation flow_equation(const StandardPoint& point, const Medium& medium,
                                         const Reading& reading, double epsilon);

/// One pass: Reynolds number of the previous flow (10^6 in the first pass), discharge coefficient, flow. A refusal leaves all but
/// the Reynolds number alone.
void flow_pass(const FlowEquation& equation, const DischargeLaw& law, int pass, double q_prev_kgs,
               FlowSolution& solution);

/// The whole solution, until the relative change of the flow is below the tolerance. GOST 8.586.1-2005, 8.
[[nodiscard]] FlowSolution solve_flow(const StandardPoint& point, const Medium& medium, const Reading& reading,
                                      double tolerance);

}  // namespace kalorfix::flow
