// SPDX-License-Identifier: MIT
// The fuzzer's bytes as arguments: any bits of their type, special values, and many within a physical range.
#pragma once

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <type_traits>

#include "fuzzer/FuzzedDataProvider.h"

namespace fuzz {

struct Range {
    double low, high;
};
using Ranges = std::span<const Range>;

/// Where a function leaves what it hands out.
struct Outputs {
    static constexpr char no_status = 77;
    std::array<float, 8> singles{};
    std::array<double, 8> doubles{};
    std::size_t single_count = 0, double_count = 0;
    short code = -1;
    char status = no_status;
};

class Arguments : public FuzzedDataProvider {
public:
    using FuzzedDataProvider::FuzzedDataProvider;

    /// The next call: half of them are calm, with all inputs within their ranges and a place for every output.
    void begin(const Ranges& ranges) {
        calm_ = ConsumeBool();
        unwanted_ = calm_ ? 0 : ConsumeIntegral<std::uint8_t>() & ConsumeIntegral<std::uint8_t>();
        range_ = ranges.begin();
        out = {};
    }

    /// The next argument, by its type: numbers are inputs, pointers and references outputs.
    template <class T>
    T take() {
        if constexpr (std::is_floating_point_v<T>) {
            return number<T>(*range_++);
        } else if constexpr (std::is_integral_v<T>) {
            const Range range = *range_++;
            if (!calm_ && ConsumeBool()) return ConsumeIntegral<T>();
            return ConsumeIntegralInRange<T>(static_cast<T>(range.low), static_cast<T>(range.high));
        } else if constexpr (std::is_reference_v<T>) {
            return place(static_cast<std::remove_reference_t<T>*>(nullptr));
        } else {  // a null pointer for what is not wanted
            const bool wanted = std::is_same_v<T, double*> || !(unwanted_ & 1U);
            unwanted_ >>= 1;
            return wanted ? &place(T{}) : nullptr;
        }
    }

    Outputs out;

private:
    float& place(float*) { return out.singles[out.single_count++]; }
    double& place(double*) { return out.doubles[out.double_count++]; }
    short& place(short*) { return out.code; }
    char& place(char*) { return out.status; }

    template <class T>
    T number(const Range& range) {
        using Bits = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
        static constexpr double inf = std::numeric_limits<double>::infinity();
        static constexpr double special[] = {
            0, -0.0, 1, -1, 1e6, 373.946, 1e-38, 1e38, inf, -inf, std::numeric_limits<double>::quiet_NaN()};
        const unsigned choice = calm_ ? 0 : ConsumeIntegralInRange(0U, 7U);
        if (choice == 4) return std::bit_cast<T>(ConsumeIntegral<Bits>());
        if (choice == 5) return static_cast<T>(PickValueInArray(special));
        if (choice == 6) return std::nextafter(static_cast<T>(range.low), static_cast<T>(-inf));
        if (choice == 7) return std::nextafter(static_cast<T>(range.high), static_cast<T>(inf));
        const double share = ConsumeIntegral<std::uint16_t>() / 65535.0;
        const double within = range.low + (range.high - range.low) * share;
        return static_cast<T>(choice == 3 ? std::ldexp(within, ConsumeIntegralInRange(-70, 70)) : within);
    }

    bool calm_ = true;
    unsigned unwanted_ = 0;
    Ranges::iterator range_{};
};

}  // namespace fuzz
