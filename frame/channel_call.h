// What all channel functions have in common.
#pragma once

#include <array>
#include <cstddef>

#include "frame/registry.h"
#include "runtime/float_environment.h"

namespace kalorfix::frame {

/// Runs `operation` on the calculator of a channel and hands its status and results to the host. The operation
/// gets the calculator and an array of results that start at zero; it returns the status. The results are
/// narrowed here and nowhere else, and stored whatever the status. A channel that does not exist gives
/// status 0 and zeros; so does a lack of memory. Null pointers are passed over. Returns 1, always.
template <class Calculator, std::size_t N, class Operation>
int channel_call(LocVect<Calculator>& registry, int channel, char* status, const std::array<float*, N>& outputs,
                 Operation&& operation) {
    const FloatEnvironment guard;
    std::array<double, N> results{};
    char outcome = 0;
    if (Calculator* const calculator = registry.GetVar(channel)) outcome = operation(*calculator, results);
    if (status) *status = outcome;
    for (std::size_t k = 0; k < N; ++k)
        if (outputs[k]) *outputs[k] = static_cast<float>(results[k]);
    return 1;
}

}  // namespace kalorfix::frame
