// What all channel functions have in common.
#pragma once

#include <array>
#include <cstddef>

#include "frame/registry.h"
#include "runtime/float_environment.h"
#include "runtime/judged.h"

namespace kalorfix::frame {

/// Whether a good step may hand out a number that does not exist, as the saturation pressure above the critical temperature.
enum class Undefined { never, where_there_is_none };

/// Runs `operation` on the calculator of a channel and hands its status and results to the host. The operation
/// gets the calculator and an array of results that start at zero; it returns the status. The results are
/// narrowed here and nowhere else, and stored whatever the status; one that is beyond single precision spoils the step. A
/// channel that does not exist gives status 0 and zeros; so does a lack of memory. Null pointers are passed over. Returns 1,
/// always.
template <Undefined undefined = Undefined::never, class Calculator, std::size_t N, class Operation>
int channel_call(LocVect<Calculator>& registry, int channel, char* status, const std::array<float*, N>& outputs,
                 Operation&& operation) {
    const FloatEnvironment guard;
    std::array<double, N> results{};
    char outcome = 0;
    Calculator* const calculator = registry.GetVar(channel);
    if (calculator) outcome = operation(*calculator, results);
    float off = 0.0F;  // 0 while all results are finite
    for (std::size_t k = 0; k < N; ++k) {
        const auto result = static_cast<float>(results[k]);
        off += result - result;
        if (outputs[k]) *outputs[k] = result;
    }
    if (undefined == Undefined::never && outcome == 1 && off != 0.0F) outcome = judged(*calculator, false);
    if (status) *status = outcome;
    return 1;
}

}  // namespace kalorfix::frame
