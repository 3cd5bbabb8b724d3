// A program of calls on gas channels, from the fuzzer's bytes.
#pragma once

#include <algorithm>
#include <vector>

#include "channel_host.h"
#include "input_bytes.h"

namespace fuzz {

struct Kind {
    enum Value : std::uint8_t {
        // of one channel
        init_tr,
        param_gs,
        tf_param,
        param_tr,
        mgn_param,
        int_param,
        int_param_1,
        // of none: clock, downtime, lifecycle, tables
        turn_clock,
        set_downtime,
        load,
        load_damaged,
        load_cut,
        release,
        init,
        done,
        write_tables,
        // of none, and of no effect beyond the module state
        routine,
        write_state,
    };
};
inline bool of_one_channel(const Call& c) { return c.kind < Kind::turn_clock; }
inline bool on_module_state(const Call& c) { return c.kind >= Kind::routine; }

/// Mole per cent of pipeline gases, lean to rich, and of pure methane.
inline constexpr std::array<std::array<float, 15>, 4> gases{
    {{96.5F, 1.8F, 0.45F, 0.1F, 0.1F, 0.03F, 0.05F, 0.07F, 0, 0, 0.3F, 0.6F, 0, 0, 0},
     {84.0F, 8.5F, 2.3F, 0.4F, 0.35F, 0.05F, 0.05F, 0, 0, 0, 3.4F, 0.95F, 0, 0, 0},
     {81.2F, 4.3F, 0.9F, 0.15F, 0.15F, 0, 0, 0.1F, 0.05F, 0.02F, 5.7F, 7.4F, 0.03F, 0, 0},
     {100.0F, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}}};

inline void read_param_gs(InputBytes& in, Call& c) {
    c.code = in.selector<short>(4);
    c.selector[0] = in.calm() ? static_cast<char>(in.byte() < 64) : in.raw<char>();
    const float whole = c.selector[0] == 0 ? 100.0F : 1.0F;
    const Range share{0.0, static_cast<double>(whole)};
    if (in.calm() || in.byte() < 128) {
        const std::uint8_t choice = in.byte();
        for (std::size_t k = 0; k < 15; ++k) c.f[k] = gases[choice % gases.size()][k] * (whole / 100.0F);
        for (int changed = choice >> 6; changed > 0; --changed) {
            const std::size_t k = in.byte() % 15U;
            c.f[k] = in.number(share);
        }
    } else {
        for (std::size_t k = 0; k < 15; ++k) c.f[k] = in.number(share);
    }
    c.f[15] = in.number({-23.1, 66.8});
    c.f[16] = in.number({1e5, 12e6});
    c.f[17] = in.number({0.0, 1000.0});
    c.f[18] = in.number({-1.0, 1.0});
    c.f[19] = in.number({0.66, 1.0});
}

inline Call read_gas_call(InputBytes& in) {
    using enum Kind::Value;
    // Loading the tables takes longer than any calculation, so it is the exception.
    static constexpr Kind::Value kinds[] = {
        init_tr,      init_tr,      init_tr,    init_tr,      param_gs,    param_gs,    param_gs,
        param_gs,     param_gs,     param_gs,   param_gs,     param_gs,    tf_param,    tf_param,
        tf_param,     tf_param,     param_tr,   param_tr,     param_tr,    mgn_param,   mgn_param,
        mgn_param,    routine,      routine,    routine,      routine,     routine,     routine,
        int_param,    int_param,    int_param,  int_param,    int_param_1, int_param_1, int_param_1,
        int_param_1,  turn_clock,   turn_clock, set_downtime, write_state, write_state, write_state,
        write_tables, write_tables, load,       release,      init,        done,        load_damaged,
        load_cut};
    Call c;
    c.kind = kinds[in.byte() % std::size(kinds)];
    if (of_one_channel(c)) c.channel = in.channel();
    in.begin_call();
    if (!in.calm()) c.unwanted = in.byte() & in.byte();
    switch (c.kind) {
        case Kind::init_tr:
            read_init_tr(in, c);
            break;
        case Kind::param_gs:
            read_param_gs(in, c);
            break;
        case Kind::tf_param:
            c.selector = {in.selector<char>(2), in.selector<char>(2), 0};
            c.f[0] = in.byte() < 128 ? 0.0F : in.number({0.0, 0.02});
            break;
        case Kind::mgn_param:
            c.selector[0] = in.calm() ? char{1} : in.raw<char>();
            c.f[0] = in.number({0.0, 1e5});
            c.f[1] = in.number({0.6, 100.0});
            c.f[2] = in.number({0.66, 1.0});
            c.f[3] = in.number({0.0, 50.0});
            break;
        case Kind::int_param:
            read_int_param(in, c);
            break;
        case Kind::int_param_1:
            read_int_param_1(in, c);
            break;
        case Kind::turn_clock:
            read_clock(in, c);
            break;
        case Kind::set_downtime:
            c.d[0] = in.wide_number({0.0, 600.0});
            break;
        case Kind::load_damaged:
        case Kind::load_cut:
        case Kind::write_tables:
        case Kind::write_state:
            c.word = in.raw<std::uint32_t>();
            c.code = in.selector<short>(16);
            c.f[0] = in.number({0.0, 300.0});
            break;
        case Kind::routine:
            c.word = in.byte();
            for (std::size_t k = 0; k < 3; ++k)
                c.f[k] = in.number(k == 0 ? Range{250.0, 340.0} : Range{0.0, 12.0});
            for (std::size_t k = 3; k < 6; ++k) c.f[k] = in.number({0.0, k == 5 ? 1.0 : 10.0});
            for (std::size_t k = 6; k < 15 && !in.calm(); ++k) c.f[k] = in.number({0.0, 100.0});
            break;
        default:
            break;
    }
    return c;
}

/// The number of calls is bounded, and with it the time that one input takes.
inline std::vector<Call> read_gas_program(InputBytes& in) {
    constexpr std::size_t most_calls = 32;
    std::vector<Call> program;
    while (!in.empty() && program.size() < most_calls) program.push_back(read_gas_call(in));
    return program;
}

}  // namespace fuzz
