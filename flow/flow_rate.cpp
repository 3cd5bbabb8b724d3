#include "flow/flow_rate.h"

#include <numbers>

#include "flow/expansibility.h"
#include "flow/fixed_point.h"

namespace kalorfix::flow {

void flow_pass(const StandardPoint& point, const DischargeLaw& law, const Medium& medium,
               const Reading& reading, int pass, double q_prev_kgs, FlowSolution& solution) {
    solution.Re = pass == 0 ? million : 4.0 * q_prev_kgs / (std::numbers::pi * point.bore.D_m * medium.mu_Pas);
    Discharge found{};
    solution.limit = law.at(solution.Re, found);
    if (solution.limit != Limit::none) return;
    solution.C = found.C;
    solution.K_sh = found.K_sh;
    solution.q_m_kgs = mass_flow_kgs(
        point.d_m,
        solution.C * point.approach_factor * solution.K_sh * point.bluntness_correction * solution.epsilon,
        reading);
}

FlowSolution solve_flow(const StandardPoint& point, const Medium& medium, const Reading& reading,
                        double tolerance) {
    FlowSolution solution;
    solution.limit = expand(point.bore.device, point.bore.beta, medium, reading.dp_Pa, solution.epsilon);
    if (solution.limit != Limit::none) return solution;
    const DischargeLaw law(point.bore);
    const FixedPoint end = fixed_point(tolerance, [&](int pass, double q_prev, double& q_m) {
        flow_pass(point, law, medium, reading, pass, q_prev, solution);
        q_m = solution.q_m_kgs;
        return solution.limit == Limit::none;
    });
    if (!end.converged && !end.refused) solution.limit = Limit::passes;
    return solution;
}

}  // namespace kalorfix::flow
