// SPDX-License-Identifier: MIT
#include "flow/flow_rate.h"

#include "flow/fixed_point.h"

namespace kalorfix::flow {

FlowEquation flow_equation(const StandardPoint& point, const Medium& medium, const Reading& reading,
                           double epsilon) {
    const double factors = point.approach_factor * point.bluntness_correction * epsilon;
    return {mass_flow_kgs(point.d_m, factors, reading),
            std::numbers::pi / 4.0 * point.bore.D_m * medium.mu_Pas};
}

void flow_pass(const FlowEquation& equation, const DischargeLaw& law, int pass, double q_prev_kgs,
               FlowSolution& solution) {
    solution.Re = pass == 0 ? million : q_prev_kgs / equation.flow_per_Re_kgs;
    Discharge found{};
    solution.limit = law.at(solution.Re, found);
    if (solution.limit != Limit::none) return;
    solution.C = found.C;
    solution.K_sh = found.K_sh;
    solution.q_m_kgs = equation.full_flow_kgs * found.C * found.K_sh;
}

FlowSolution solve_flow(const StandardPoint& point, const Medium& medium, const Reading& reading,
                        double tolerance) {
    FlowSolution solution;
    solution.limit = expand(point.bore.device, point.bore.beta, medium, reading.dp_Pa, solution.epsilon);
    if (solution.limit != Limit::none) return solution;
    const DischargeLaw law(point.bore);
    const FlowEquation equation = flow_equation(point, medium, reading, solution.epsilon);
    const FixedPoint end = fixed_point(tolerance, [&](int pass, double q_prev, double& q_m) {
        flow_pass(equation, law, pass, q_prev, solution);
        q_m = solution.q_m_kgs;
        return solution.limit == Limit::none;
    });
    if (!end.converged && !end.refused) solution.limit = Limit::passes;
    return solution;
}

}  // namespace kalorfix::flow
