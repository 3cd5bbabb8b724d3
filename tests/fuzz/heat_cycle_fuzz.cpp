// Any bytes as a program of calls on heat-carrier channels: any order, any arguments. Three runs must agree: the plain one,
// one under unusual floating-point settings, and one without the calls of the other channels.
#include <algorithm>
#include <optional>

#include "channel_host.h"
#include "frame/registry.h"

namespace {

using fuzz::Call;
using fuzz::InputBytes;
using fuzz::Outputs;
using fuzz::require;

struct Heat {
    using Calculator = cTeplo2005;
    static constexpr std::size_t integrators = 3;
    static constexpr auto init_tr = mt_init_tr;
    static constexpr auto param_tr = mt_param_tr;
    static constexpr auto int_param = mt_int_param;
    static constexpr auto int_param_1 = mt_int_param_1;
    static LocVect<cTeplo2005>& registry() { return kalorfix::frame::heat_channels; }
    static double flow(const cTeplo2005& c, std::size_t k) {
        const double flows[] = {c.q_m, c.q_v, c.q_h};
        return flows[k];
    }
};

struct Kind {
    enum Value : std::uint8_t {
        init_tr,
        param_tn,
        tf_param,
        param_tr,
        mgn_param,
        int_param,
        int_param_1,
        turn_clock,
        set_downtime,
        water,
        phase,
        kinds
    };
};

constexpr double zero_celsius_K = 273.15;

class HeatHost : public fuzz::ChannelHost<Heat> {
public:
    using ChannelHost::ChannelHost;

    void make(std::size_t n, const Call& c) {
        switch (c.kind) {
            case Kind::init_tr:
                return ChannelHost::init_tr(n, c);
            case Kind::param_tn:
                return param_tn(n, c);
            case Kind::tf_param:
                return tf_param(n, c);
            case Kind::param_tr:
                return ChannelHost::param_tr(n, c);
            case Kind::mgn_param:
                return mgn_param(n, c);
            case Kind::int_param:
                return ChannelHost::int_param(n, c);
            case Kind::int_param_1:
                return ChannelHost::int_param_1(n, c);
            case Kind::turn_clock:
                return fuzz::take_clock(c);
            case Kind::set_downtime:
                ProstoyTime = c.d[0];
                return;
            case Kind::water:
                return water_properties(n, c);
            default:
                return water_phase(n, c);
        }
    }

private:
    void param_tn(std::size_t n, const Call& c) {
        Outputs<2> out(c.unwanted);
        constexpr short untouched = 77;
        short phase = untouched;
        const int returned = called([&] {
            return mt_param_tn(c.channel, c.f[0], c.f[1], c.f[2], c.f[3], c.f[4], c.f[5], out.status_at(),
                               &phase, out.at(0), out.at(1));
        });
        const bool saturable = static_cast<double>(c.f[0]) + zero_celsius_K <= T_kr;
        finish(n, c, returned, out, saturable);
        if (out.status == 0) require(out.all_zero() && (phase == 0 || phase == untouched));
        if (out.status == 1) require(phase >= 0 && phase <= 3 && std::isfinite(out.value[1]));
        if (out.status == 1 && !saturable) require(phase == 2 || !std::isfinite(c.f[5]) || c.f[5] < 0.0F);
        note({n, {static_cast<std::uint64_t>(phase)}});
    }

    void tf_param(std::size_t n, const Call& c) {
        Outputs<4> out(c.unwanted);
        const int returned = called([&] {
            return mt_tf_param(c.channel, c.selector[0], c.integrator, c.f[0], out.status_at(), out.at(0),
                               out.at(1), out.at(2), out.at(3));
        });
        finish(n, c, returned, out);
        if (out.status == 0) require(out.all_zero());
        if (out.status == 1 && c.unwanted == 0) require(out.value[0] >= 0.0F && out.value[1] > 0.0F);
    }

    void mgn_param(std::size_t n, const Call& c) {
        Outputs<7> out(c.unwanted);
        const float dp = c.f[0], rho = c.f[1], h = c.f[2];
        const int returned = called([&] {
            return mt_mgn_param(c.channel, c.selector[0], dp, rho, h, out.status_at(), out.at(0), out.at(1),
                                out.at(2), out.at(3), out.at(4), out.at(5), out.at(6));
        });
        finish(n, c, returned, out);
        if (out.status == 1) require(c.selector[0] != 0);
    }

    void water_properties(std::size_t n, const Call& c) {
        std::array<double, 4> out{-1.0, -1.0, -1.0, -1.0};
        const short failed =
            called([&] { return t_param_1(c.d[0], c.d[1], c.code, &out[0], &out[1], &out[2], &out[3]); });
        require(failed == 0 || failed == 1);
        for (const double value : out) require(failed ? value == 0.0 : std::isfinite(value));
        const double T_K = c.d[0] + zero_celsius_K;
        const bool in_range = T_K >= 273.15 && T_K <= 1073.15 && c.d[1] >= 0.0 && c.d[1] <= 100.0;
        const bool saturated = c.code == 3;
        if (!in_range || (saturated && T_K > 645.0)) require(failed == 1);
        note_doubles(n, failed, out);
    }

    void water_phase(std::size_t n, const Call& c) {
        std::array<double, 4> out{-1.0, 0.0, 0.0, 0.0};
        const short code = called([&] { return t_phase_1(c.d[1], c.d[0], c.d[2], &out[0]); });
        require(code >= 0 && code <= 3);
        const double T_K = c.d[0] + zero_celsius_K;
        const bool in_range = T_K >= 273.15 && T_K <= 1073.15 && c.d[1] >= 0.001 && c.d[1] <= 100.0;
        require(in_range ? code != 0 : code == 0 && out[0] == 0.0);
        if (in_range) require(T_K > T_kr ? std::isnan(out[0]) : out[0] > 0.0 && out[0] <= p_kr);
        note_doubles(n, code, out);
    }

    void note_doubles(std::size_t n, short code, const std::array<double, 4>& values) {
        fuzz::Record record{n, {static_cast<std::uint64_t>(code)}};
        for (std::size_t k = 0; k < values.size(); ++k)
            record.bits[k + 1] = std::bit_cast<std::uint64_t>(values[k]);
        note(record);
    }
};

Call read_call(InputBytes& in) {
    Call c;
    c.kind = in.byte() % Kind::kinds;
    c.channel = in.channel();
    in.begin_call();
    if (!in.calm()) c.unwanted = in.byte() & in.byte();
    switch (c.kind) {
        case Kind::init_tr:
            read_init_tr(in, c);
            break;
        case Kind::param_tn:
            c.f[0] = in.number({0.0, 500.0});
            c.f[1] = in.number({1e4, 5e6});
            c.f[2] = in.number({0.0, 10.0});
            c.f[3] = in.number({0.0, 1000.0});
            c.f[4] = in.number({0.0, 5000.0});
            c.f[5] = in.number({0.0, 1.0});
            break;
        case Kind::tf_param:
            c.selector[0] = in.selector<char>(2);
            c.integrator = in.selector<unsigned short>(5);
            c.f[0] = in.number({0.0, 1.0});
            break;
        case Kind::mgn_param:
            c.selector[0] = in.calm() ? char{1} : in.raw<char>();
            c.f[0] = in.number({0.0, 1e5});
            c.f[1] = in.number({0.1, 1000.0});
            c.f[2] = in.number({0.0, 3500.0});
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
        case Kind::water:
        case Kind::phase:
            c.code = in.selector<short>(5);
            c.d = {in.wide_number({0.0, 800.0}), in.wide_number({0.0, 100.0}), in.wide_number({0.0, 0.01})};
            break;
        case Kind::set_downtime:
            c.d[0] = in.wide_number({0.0, 600.0});
            break;
        default:  // param_tr takes nothing
            break;
    }
    return c;
}

// The calls that no channel owns.
bool of_all_channels(const Call& c) { return c.kind >= Kind::turn_clock; }

std::vector<fuzz::Record> run(const std::vector<Call>& program, bool unusual,
                              std::optional<int> only_channel = {}) {
    fuzz::clock_ticks = 0;
    ProstoyTime = 0.0;
    fuzz::renew<Heat>(program);
    HeatHost host(unusual);
    for (std::size_t n = 0; n < program.size(); ++n)
        if (!only_channel || of_all_channels(program[n]) || program[n].channel == *only_channel)
            host.make(n, program[n]);
    return host.records();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t longest_input = 640;
    constexpr std::size_t most_calls = 32;
    InputBytes in(data, std::min(size, longest_input));
    std::vector<Call> program;
    while (!in.empty() && program.size() < most_calls) program.push_back(read_call(in));
    if (program.empty()) return 0;

    const std::vector<fuzz::Record> plain = run(program, false);
    require(run(program, true) == plain);
    const int channel = program.back().channel;
    fuzz::require_same(plain, run(program, false, channel), [&](std::size_t n) {
        return of_all_channels(program[n]) || program[n].channel == channel;
    });
    return 0;
}
