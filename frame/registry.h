// The registries: one calculator for each channel number and medium, made on first use.
#pragma once

#include <array>

#include "kalorfix_calculators.h"
#include "runtime/owned.h"

inline constexpr int max_channel = 20000;

/// Owns the calculators of one medium. Slot k holds channel k + 1; slots are never empty and never shrink.
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
    // Apart from the calls of every cycle, which need none of it. False when memory is short.
    [[gnu::noinline, gnu::cold]] bool grow(std::size_t wanted) {
        for (; size_ < wanted; ++size_) {
            objects_[size_] = kalorfix::make_owned<T>();
            if (!objects_[size_]) return false;
        }
        return true;
    }

    // All slots at once: untouched, they are pages of zeros that take no memory.
    std::array<kalorfix::Owned<T>, max_channel> objects_;
    std::size_t size_ = 0;
};

namespace kalorfix::frame {

extern LocVect<cGas2005> gas_channels;
extern LocVect<cTeplo2005> heat_channels;

}  // namespace kalorfix::frame
