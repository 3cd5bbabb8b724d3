// A host of channels for the fuzz harnesses: makes the calls that gas and heat carriers share, keeps the registers, and
// checks after each call what holds for any input.
#pragma once

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "frame/registry.h"
#include "host_settings.h"
#include "input_bytes.h"
#include "kalorfix.h"

namespace fuzz {

inline void require(bool holds) {
    if (!holds) __builtin_trap();
}

/// The tick clock of the library, turned by the program; negative: it fails.
extern long clock_ticks;

/// One call of a program, with whatever it needs.
struct Call {
    std::uint8_t kind = 0;
    int channel = 0;
    std::array<float, 20> f{};
    std::array<double, 3> d{};
    std::array<char, 3> selector{};
    short code = 0;
    unsigned short integrator = 0, set = 0;
    bool handed_back = true;    ///< registers as the library handed them out, else any
    std::uint8_t unwanted = 0;  ///< outputs for which a null pointer is given
    std::uint32_t word = 0;
};

/// What a call left, bit by bit.
struct Record {
    std::size_t call;
    std::array<std::uint64_t, 12> bits{};
    bool operator==(const Record&) const = default;
};

/// Numbers whose products, a few of them, stay within single precision. Not for NaN.
inline bool moderate(double x) { return x == 0.0 || (std::fabs(x) >= 1e-6 && std::fabs(x) <= 1e8); }

/// Output places of a channel function.
template <std::size_t N>
struct Outputs {
    static constexpr float untouched = -7.25e7F;
    static constexpr char no_status = 77;

    std::array<float, N> value;
    char status = no_status;
    std::uint8_t unwanted;

    explicit Outputs(std::uint8_t mask) : unwanted(mask) { value.fill(untouched); }
    float* at(std::size_t k) { return unwanted >> (k % 7) & 1U ? nullptr : &value[k]; }
    char* status_at() { return unwanted & 0x80U ? nullptr : &status; }

    [[nodiscard]] bool all_zero() const {
        for (const float v : value)
            if (v != untouched && std::bit_cast<std::uint32_t>(v) != 0) return false;
        return true;
    }
    [[nodiscard]] bool all_finite() const {
        for (const float v : value)
            if (!std::isfinite(v)) return false;
        return true;
    }
};

/// Registers of an integrator channel, as a host keeps them between two calls.
struct Registers {
    float total = 0.0F;
    std::array<float, 2> time{}, start{}, result{};
};

/// `Medium` names the functions, the registry and the calculator of gas or heat carriers.
template <class Medium>
class ChannelHost {
public:
    using Calculator = typename Medium::Calculator;

    /// With `unusual` the host rounds upwards and traps floating-point exceptions.
    explicit ChannelHost(bool unusual) : unusual_(unusual) {}

    void init_tr(std::size_t n, const Call& c) {
        Outputs<0> out(c.unwanted);
        const std::array<float, 20>& f = c.f;
        const std::array<char, 3>& s = c.selector;
        const int returned = called([&] {
            return Medium::init_tr(c.channel, s[0], c.code, s[1], f[0], f[1], f[2], f[3], f[4], f[5], s[2],
                                   f[6], f[7], out.status_at());
        });
        finish(n, c, returned, out);
    }

    void param_tr(std::size_t n, const Call& c) {
        Outputs<5> out(c.unwanted);
        const int returned = called([&] {
            return Medium::param_tr(c.channel, out.status_at(), out.at(0), out.at(1), out.at(2), out.at(3),
                                    out.at(4));
        });
        finish(n, c, returned, out);
    }

    void int_param(std::size_t n, const Call& c) {
        Outputs<3> out(c.unwanted);
        Registers& own = registers(c);
        const float total_host = c.handed_back ? own.total : c.f[2];
        const double q = exists(c) ? flow_to_total(c) : 0.0;
        const bool sound = exists(c) && sound_totalling(c, q, total_host);
        const int returned = called([&] {
            return Medium::int_param(c.channel, c.integrator, c.f[0], total_host, c.f[1], c.code,
                                     out.status_at(), out.at(0), out.at(1), out.at(2));
        });
        finish(n, c, returned, out);
        if (out.status == 1) require(!(q < 0.0) && !(total_host < 0.0F));
        const float total = out.value[0];
        if (total == out.untouched || !exists(c)) return;
        if (out.status == 0)
            require(std::bit_cast<std::uint32_t>(total) == std::bit_cast<std::uint32_t>(total_host) ||
                    std::isnan(total_host));
        // Single precision has 1/16 at the place where a register wraps.
        if (out.status == 1 && sound) require(total >= total_host || total + 1e6F >= total_host - 0.0625F);
        if (out.status == 1 && sound && total < total_host) require(total <= 1e6F);
        own.total = total;
    }

    void int_param_1(std::size_t n, const Call& c) {
        Outputs<3> out(c.unwanted);
        Registers& own = registers(c);
        const std::size_t set = c.set % 2U;
        const float time = c.handed_back ? own.time[set] : c.f[0];
        const float start = c.handed_back ? own.start[set] : c.f[1];
        const float result = c.handed_back ? own.result[set] : c.f[2];
        const bool sound = exists(c) && sound_interval(c, start, result);
        const int returned = called([&] {
            return Medium::int_param_1(c.channel, c.integrator, c.set, time, start, result, out.status_at(),
                                       out.at(0), out.at(1), out.at(2));
        });
        finish(n, c, returned, out);
        if (out.status == 0) require(out.all_zero());
        if (out.status != 1) return;
        constexpr float length_s[] = {3600.0F, 86400.0F};
        require(c.set <= 1);
        if (sound && out.value[0] != out.untouched)
            require(out.value[0] >= 0.0F && out.value[0] <= length_s[set]);
        if (c.unwanted == 0) {
            own.time[set] = out.value[0];
            own.start[set] = out.value[1];
            own.result[set] = out.value[2];
        }
    }

    [[nodiscard]] const std::vector<Record>& records() const { return records_; }

protected:
    static bool exists(const Call& c) { return c.channel >= 1 && c.channel <= max_channel; }
    static Calculator& calculator(const Call& c) { return *Medium::registry().GetVar(c.channel); }

    /// Makes a call under the host's floating-point settings, and sees that they are left alone.
    template <class Function>
    auto called(Function&& function) {
        const HostSettings settings(unusual_);
        const auto result = function();
        require(settings.unchanged());
        return result;
    }

    /// What holds for every channel function. Success comes with finite outputs, but for the saturation pressure and temperature
    /// where there is none.
    template <std::size_t N>
    void finish(std::size_t n, const Call& c, int returned, const Outputs<N>& out, bool all_exist = true) {
        require(returned == 1);
        require(out.status == 0 || out.status == 1 || (out.status == out.no_status && c.unwanted & 0x80U));
        if (!exists(c)) require(out.status != 1 && out.all_zero());
        if (out.status == 1 && all_exist) require(out.all_finite());
        Record record{n, {static_cast<std::uint64_t>(out.status)}};
        for (std::size_t k = 0; k < N; ++k) record.bits[k + 1] = std::bit_cast<std::uint32_t>(out.value[k]);
        records_.push_back(record);
    }
    void note(const Record& record) { records_.push_back(record); }

private:
    Registers& registers(const Call& c) {
        const std::size_t channel = exists(c) && c.channel <= 4 ? static_cast<std::size_t>(c.channel) : 0;
        return registers_[channel][index(c)];
    }
    static std::size_t index(const Call& c) {
        constexpr std::size_t count = Medium::integrators;
        return c.integrator >= 1 && c.integrator <= count ? c.integrator - 1U : count - 1U;
    }

    static double flow_to_total(const Call& c) {
        const Calculator& own = calculator(c);
        return own.device_type == 23 ? static_cast<double>(c.f[0]) : Medium::flow(own, index(c));
    }
    static bool sound_totalling(const Call& c, double q, float total_host) {
        const auto q_subst = static_cast<double>(c.f[1]);
        return std::fabs(total_host) <= 1e6F && moderate(q) && moderate(q_subst) && q_subst >= 0.0 &&
               moderate(ProstoyTime) && ProstoyTime >= 0.0 && c.code >= -3;
    }
    static bool sound_interval(const Call& c, float start, float result) {
        const Calculator& own = calculator(c);
        return std::fabs(start) <= 1e38F && std::fabs(own.total[index(c)]) <= 1e38 && std::isfinite(result) &&
               std::isfinite(own.downtime_min[index(c)]) && own.downtime_min[index(c)] >= 0.0F;
    }

    bool unusual_;
    std::vector<Record> records_;
    std::array<std::array<Registers, Medium::integrators>, 5> registers_{};
};

/// The shared calls, from the fuzzer's bytes. Channel and kind are read already.
inline void read_init_tr(InputBytes& in, Call& c) {
    c.selector = {in.selector<char>(2), in.selector<char>(2), in.selector<char>(2)};
    c.code = static_cast<short>(in.calm() ? 1 + in.byte() % 23 : in.raw<short>());
    const Range material = c.selector[1] == 1 ? Range{1.0, 39.99} : Range{0.0, 2e-5};
    c.f[0] = in.number(material);
    c.f[1] = in.number(material);
    c.f[2] = in.number({50.0, 1000.0});
    c.f[3] = c.f[2] * in.number({0.1, 0.8});
    c.f[4] = in.number({0.0, 0.5});
    c.f[5] = in.number({0.0, 0.3});
    c.f[6] = in.number({0.0, 5.0});
    c.f[7] = in.number({0.0, 1.0});
}

inline void read_int_param(InputBytes& in, Call& c) {
    c.integrator = in.selector<unsigned short>(5);
    c.handed_back = in.byte() < 192;
    c.code = in.calm() ? static_cast<short>(in.byte() % 8 - 3) : in.raw<short>();
    c.f[0] = in.number({0.0, 1000.0});
    c.f[1] = in.number({0.0, 1000.0});
    c.f[2] = in.number({0.0, 1e6});
}

inline void read_int_param_1(InputBytes& in, Call& c) {
    c.integrator = in.selector<unsigned short>(5);
    c.set = in.selector<unsigned short>(2);
    c.handed_back = in.byte() < 192;
    c.f[0] = in.number({0.0, 3600.0});
    c.f[1] = in.number({0.0, 1e6});
    c.f[2] = in.number({0.0, 1e6});
}

inline void read_clock(InputBytes& in, Call& c) {
    c.selector[0] = in.calm() ? char{0} : static_cast<char>(in.byte() & 1);
    c.word = in.calm() ? in.raw<std::uint16_t>() * 16U : in.raw<std::uint32_t>();
}
inline void take_clock(const Call& c) { clock_ticks = c.selector[0] == 1 ? -1 : static_cast<long>(c.word); }

/// Makes the calculators of all channels once; a run then begins with those it names made anew.
template <class Medium>
void renew(const std::vector<Call>& program) {
    using Calculator = typename Medium::Calculator;
    Medium::registry().GetVar(max_channel);
    for (const Call& call : program)
        if (call.channel >= 1 && call.channel <= max_channel) {
            Calculator* const calculator = Medium::registry().GetVar(call.channel);
            std::destroy_at(calculator);
            std::construct_at(calculator);
        }
}

/// Compares the records of one channel in two runs; `of` says which calls count.
template <class Of>
void require_same(const std::vector<Record>& all, const std::vector<Record>& part, Of&& of) {
    std::size_t k = 0;
    for (const Record& record : all)
        if (of(record.call)) require(k < part.size() && part[k++] == record);
    require(k == part.size());
}

}  // namespace fuzz
