// The registries: one calculator for each channel number and medium, made on first use.
#pragma once

#include <memory>
#include <vector>

#include "kalorfix.h"

inline constexpr int max_channel = 20000;

/// Owns the calculators of one medium. Slot k holds channel k + 1; slots are never empty and never shrink.
template <class T>
class LocVect {
public:
    /// The calculator of a channel, made together with all lower ones that are still missing; null for a
    /// channel outside 1..20000. Throws std::bad_alloc when memory is short.
    T* GetVar(int index) {
        if (index < 1 || index > max_channel) return nullptr;
        const auto wanted = static_cast<std::size_t>(index);
        while (objects_.size() < wanted) objects_.push_back(std::make_unique<T>());
        return objects_[wanted - 1].get();
    }

    [[nodiscard]] std::size_t size() const { return objects_.size(); }

private:
    std::vector<std::unique_ptr<T>> objects_;
};

namespace kalorfix::frame {

extern LocVect<cGas2005> gas_channels;
extern LocVect<cTeplo2005> heat_channels;

}  // namespace kalorfix::frame
