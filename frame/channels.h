// SPDX-License-Identifier: MIT
// The registries, one calculator for each channel number and medium, and what all channel functions have in common.
#pragma once

#include <array>
#include <cstdlib>
#include <memory>
#include <new>
#include <utility>

#include "kalorfix_calculators.h"
#include "runtime/float_environment.h"
#include "runtime/judged.h"

inline constexpr int max_channel = 20000;

/// Owns the calculators of one medium, made on first use. Slot k holds channel k + 1; slots are never empty and never shrink.
template <class T>
class LocVect {
public:
    /// The calculator of a channel, made together with all lower ones that are still missing; null for a
    /// channel outside 1..20000, and when memory is short.
    T* GetVar(int index) {
        if (index < 1 || index > max_channel) return nullptr;
        const auto wanted = static_cast<std::size_t>(index);
        if (size_ < wanted && !grow(wanted)) return nullptr;
        return objects_[wanted - 1].get();
    }

    [[nodiscard]] std::size_t size() const { return size_; }

private:
    // Not by the operators new and delete: even the new that does not throw brings the C++ runtime's machinery of exceptions into
    // kalorfix.so, and with it needs of a newer C library.
    struct Destroy {
        void operator()(T* object) const {
            object->~T();
            std::free(object);
        }
    };

    // Apart from the calls of every cycle, which need none of it. False when memory is short.
    [[gnu::noinline, gnu::cold]] bool grow(std::size_t wanted) {
        for (; size_ < wanted; ++size_) {
            void* const memory = std::malloc(sizeof(T));
            if (!memory) return false;
            objects_[size_].reset(new (memory) T);
        }
        return true;
    }

    // All slots at once: untouched, they are pages of zeros that take no memory.
    std::array<std::unique_ptr<T, Destroy>, max_channel> objects_;
    std::size_t size_ = 0;
};

namespace kalorfix::frame {

extern LocVect<cGas2005> gas_channels;
extern LocVect<cTeplo2005> heat_channels;

/// Whether a good step may hand out a number that does not exist, as the saturation pressure above the critical temperature.
enum class Undefined { never, where_there_is_none };

/// Runs a member of the calculator of a channel and hands its status and results to the host. The member takes the arguments
/// and then the results, which start at zero; it returns the status. The results are narrowed here, and stored
/// whatever the status; one that is beyond single precision spoils the step. A channel that does not exist gives status 0 and
/// zeros; so does a lack of memory. Null pointers are passed over. Returns 1, always. Inlined, so that the
/// arguments are handed on once.
template <auto member, Undefined undefined = Undefined::never, class Calculator, std::size_t N,
          class... Arguments>
[[gnu::always_inline]] inline int run_step(LocVect<Calculator>& registry, int channel, char* status,
                                           const std::array<float*, N>& outputs, Arguments... arguments) {
    const FloatEnvironment guard;
    std::array<double, N> results{};
    char outcome = 0;
    Calculator* const calculator = registry.GetVar(channel);
    const auto run = [&]<std::size_t... k>(std::index_sequence<k...>) {
        return (calculator->*member)(arguments..., results[k]...);
    };
    if (calculator) outcome = run(std::make_index_sequence<N>{});
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
