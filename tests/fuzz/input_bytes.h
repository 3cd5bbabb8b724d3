// The fuzzer's bytes read as values of every type: any bits, special ones, and many within a physical range.
#pragma once

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>

namespace fuzz {

struct Range {
    double low, high;
};

/// Reads past the end give zeros, so that every input is a whole program.
class InputBytes {
public:
    InputBytes(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

    [[nodiscard]] bool empty() const { return at_ >= size_; }

    template <class Integer>
    Integer raw() {
        std::uint64_t bits = 0;
        for (std::size_t k = 0; k < sizeof(Integer); ++k)
            if (at_ < size_) bits |= static_cast<std::uint64_t>(data_[at_++]) << (8 * k);
        return static_cast<Integer>(bits);
    }
    std::uint8_t byte() { return raw<std::uint8_t>(); }

    /// One byte decides for a whole call whether its values are calm, that is all within their ranges.
    void begin_call() { calm_ = byte() < 160; }
    [[nodiscard]] bool calm() const { return calm_; }

    double wide_number(const Range& range) {
        if (calm_) return within(range);
        const std::uint8_t choice = byte();
        if (choice < 112) return within(range);
        if (choice < 144) return edge(range, choice);
        if (choice < 176) return within(range) * std::exp2(static_cast<double>(choice - 160) * 4.0);
        if (choice < 224) return special(choice);
        return std::bit_cast<double>(raw<std::uint64_t>());
    }
    float number(const Range& range) {
        if (calm_) return static_cast<float>(within(range));
        const std::uint8_t choice = byte();
        if (choice < 112) return static_cast<float>(within(range));
        if (choice < 144) return neighbour(static_cast<float>(edge(range, choice & 3)), choice);
        if (choice < 176) return static_cast<float>(within(range) * std::exp2((choice - 160) * 4));
        if (choice < 224) return static_cast<float>(special(choice));
        return std::bit_cast<float>(raw<std::uint32_t>());
    }

    /// 0..count - 1 in a calm call, else any value of the type.
    template <class Integer>
    Integer selector(unsigned count) {
        return calm_ ? static_cast<Integer>(byte() % count) : raw<Integer>();
    }

    /// Four channels in most calls, the ends of the range and any other number in the rest.
    int channel() {
        static constexpr int seldom[] = {0, -1, 20000, 20001};
        const std::uint8_t choice = byte();
        if (choice < 248) return 1 + choice % 4;
        return choice < 252 ? seldom[choice - 248] : raw<int>();
    }

private:
    [[nodiscard]] double within(const Range& range) {
        return range.low + (range.high - range.low) * (raw<std::uint16_t>() / 65535.0);
    }
    static double edge(const Range& range, unsigned choice) { return choice & 1U ? range.high : range.low; }
    static float neighbour(float value, unsigned choice) {
        if (choice & 4U) return value;
        constexpr float inf = std::numeric_limits<float>::infinity();
        return std::nextafter(value, choice & 8U ? inf : -inf);
    }
    static double special(unsigned choice) {
        constexpr double inf = std::numeric_limits<double>::infinity();
        static constexpr double values[] = {0.0,
                                            -0.0,
                                            1.0,
                                            -1.0,
                                            inf,
                                            -inf,
                                            std::numeric_limits<double>::quiet_NaN(),
                                            static_cast<double>(std::numeric_limits<float>::max()),
                                            -static_cast<double>(std::numeric_limits<float>::max()),
                                            static_cast<double>(std::numeric_limits<float>::min()),
                                            static_cast<double>(std::numeric_limits<float>::denorm_min()),
                                            -static_cast<double>(std::numeric_limits<float>::denorm_min()),
                                            1e-20,
                                            1e20,
                                            1e6,
                                            373.946};
        return values[choice % std::size(values)];
    }

    const std::uint8_t* data_;
    std::size_t size_;
    std::size_t at_ = 0;
    bool calm_ = true;
};

}  // namespace fuzz
