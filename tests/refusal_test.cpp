// What a refused call leaves in its outputs and in the channel, as docs/api.md and the headers state it.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
#include <limits>
#include <tuple>
#include <vector>

#include "frame/registry.h"
#include "kalorfix.h"
#include "kalorfix_calculators.h"
#include "kalorfix_gas.h"

namespace {

constexpr float old = -7.25e7F;                                  // what stood in an output before
constexpr float any = std::numeric_limits<float>::infinity();    // stands for a computed number other than 0
constexpr float none = std::numeric_limits<float>::quiet_NaN();  // NaN
constexpr int own = 7, meter = 8, external = 9, never = 10;      // channels; the first is gas or steam
const std::vector<float> z2(2), z3(3), z4(4), z5(5), z7(7), old2(2, old), old3(3, old), old4(4, old),
    old5(5, old);

struct Out {
    char status = 77;
    short phase = 77;
    std::vector<float> f = std::vector<float>(8, old);
    std::vector<double> d =
        std::vector<double>(8, static_cast<double>(old));  // of members, which take no float
};

struct Row {
    const char* what;
    std::function<void(Out&)> call;
    std::vector<float> left;
    short phase = 77;
};

void check(const std::vector<Row>& rows, bool members = false) {
    for (const Row& row : rows) {
        Out out;
        row.call(out);
        EXPECT_EQ(out.status, 0) << row.what;
        EXPECT_EQ(out.phase, row.phase) << row.what;
        for (std::size_t k = 0; k < 8; ++k) {
            const float stated = k < row.left.size() ? row.left[k] : old;
            const float value = members ? static_cast<float>(out.d[k]) : out.f[k];
            const bool same = std::bit_cast<std::uint32_t>(value) == std::bit_cast<std::uint32_t>(stated);
            const bool number = std::isfinite(value) && value != 0.0F && value != old;
            EXPECT_TRUE(stated == any        ? number
                        : std::isnan(stated) ? std::isnan(value)
                                             : same)
                << row.what << ", output " << k << ": " << value;
        }
    }
}

char set_up(decltype(&mt_init_tr) init, int channel, short device, float D = 200, float d = 120) {
    char status = 77;
    init(channel, 0, device, 1, 7, 32, D, d, 0.01F, 0.05F, 0, 1, 0.7F, &status);
    return status;
}
void tn(Out& o, int channel, float t_C, float p_Pa) {
    mt_param_tn(channel, t_C, p_Pa, 0, 0, 1000, 0.5F, &o.status, &o.phase, &o.f[0], &o.f[1]);
}
void tf(Out& o, char source = 0, unsigned short phase = 2, float x = 0, int channel = own) {
    mt_tf_param(channel, source, phase, x, &o.status, &o.f[0], &o.f[1], &o.f[2], &o.f[3]);
}
void tr(Out& o, int channel = own) {
    mt_param_tr(channel, &o.status, &o.f[0], &o.f[1], &o.f[2], &o.f[3], &o.f[4]);
}
void flow(Out& o, float dp, char calc = 1, int channel = own) {
    std::vector<float>& f = o.f;
    mt_mgn_param(channel, calc, dp, 4.7F, 3000, &o.status, &f[0], &f[1], &f[2], &f[3], &f[4], &f[5], &f[6]);
}
void total(Out& o, int channel, float q_ext, float held) {
    mt_int_param(channel, 1, q_ext, held, 0, 0, &o.status, &o.f[0], &o.f[1], &o.f[2]);
}
void interval(Out& o, unsigned short set) {
    mt_int_param_1(own, 1, set, 10, 20, 30, &o.status, &o.f[0], &o.f[1], &o.f[2]);
}
void gs(Out& o, int channel, float t, float p, short method = 0, float methane = 90, float rho_c = 0.7F) {
    mg_param_gs(channel, t, p, 0, 0, method, 0, methane, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, rho_c,
                &o.status, &o.f[0], &o.f[1], &o.f[2]);
}
void gas_tf(Out& o, float vapour = 0, int channel = own) {
    mg_tf_param(channel, 0, 0, vapour, &o.status, &o.f[0], &o.f[1], &o.f[2], &o.f[3], &o.f[4]);
}
// The steps of a sound cycle: 1 state, 2 properties, 3 geometry, 4 flow.
void ready(int steps, float t_C = 300, float p_Pa = 1.2e6F, int channel = own) {
    Out o;
    tn(o, channel, t_C, p_Pa);
    if (steps > 1) tf(o, 0, 2, 0, channel);
    if (steps > 2) tr(o, channel);
    if (steps > 3) flow(o, 4e4F, 1, channel);
    EXPECT_EQ(o.status, 1) << steps << " steps, channel " << channel;
}

// A refusal that voids the cycle.
void spoil() {
    Out o;
    tf(o, 2);
}

class Refusal : public testing::Test {
protected:
    void SetUp() override {
        std::snprintf(PATH_SRAM_FOR_LOADTABL, sizeof PATH_SRAM_FOR_LOADTABL, "%s", KALORFIX_GAS_DAT);
        ASSERT_EQ(INIT_GAS(), 0);
        ASSERT_EQ(set_up(mt_init_tr, own, 4), 1);
        ASSERT_EQ(set_up(mg_init_tr, own, 1), 1);
        ASSERT_EQ(set_up(mt_init_tr, meter, 22), 1);
        ASSERT_EQ(set_up(mt_init_tr, external, 23), 1);
    }
    void TearDown() override { REINIT_GAS(); }
};

TEST_F(Refusal, OfHeatCarrierCalls) {
    ready(4);
    check({{"tn: no channel", [](Out& o) { tn(o, 0, 300, 1e6F); }, z2},
           {"tn: t negative", [](Out& o) { tn(o, own, -1, 1e6F); }, z2},
           {"tn: p negative", [](Out& o) { tn(o, own, 300, -1); }, z2},
           {"tn: not configured", [](Out& o) { tn(o, never, 300, 1e6F); }, z2, 0},
           {"tn: above 1000 degC", [](Out& o) { tn(o, own, 1001, 1e6F); }, z2, 0},
           {"tn: above 100 MPa", [](Out& o) { tn(o, own, 300, 1.01e8F); }, z2, 0},
           {"tf: no state", [](Out& o) { ready(2), spoil(), tf(o); }, z4},
           {"tf: source", [](Out& o) { ready(1), tf(o, 2); }, z4},
           {"tf: phase", [](Out& o) { ready(1), tf(o, 1, 4); }, z4},
           {"tf: above 800 degC", [](Out& o) { ready(1, 900), tf(o); }, z4},
           {"tf: share", [](Out& o) { ready(1, 150, 3e5F), tf(o, 1, 3, 1.5F); }, z4},
           {"tf: wet, hot", [](Out& o) { ready(1, 372), tf(o, 1, 3, 0.5F); }, z4},
           {"tr: no properties", [](Out& o) { ready(4), spoil(), tr(o); }, z5},
           {"tr: material", [](Out& o) { ready(2, 700), tr(o); }, z5},
           {"flow: no geometry", [](Out& o) { ready(4), spoil(), flow(o, 4e4F); }, z7},
           {"flow: calc 0", [](Out& o) { ready(3), flow(o, 4e4F, 0); }, z7},
           {"flow: dp/p", [](Out& o) { ready(3), flow(o, 4e5F); }, z7},
           {"flow: dp 0", [](Out& o) { ready(3), flow(o, 0); }, {none, 0, 0, 1, any, 1e6F, none}},
           {"flow: dp negative", [](Out& o) { ready(3), flow(o, -1); }, {none, 0, 0, 1, any, 1e6F, any}},
           {"flow: Re", [](Out& o) { ready(3), flow(o, 1e-3F); }, {any, 0, 0, 1, any, any, any}},
           {"flow: device 22", [](Out& o) { ready(3, 300, 1e6F, meter), flow(o, 4e4F, 1, meter); }, z7},
           {"total: no channel", [](Out& o) { total(o, 20001, 0, 5); }, z3},
           {"total: no flow", [](Out& o) { total(o, own, 0, 5); }, {5, 0, 0}},
           {"total: register", [](Out& o) { ready(4), total(o, own, 0, -5); }, {-5, 0, 0}},
           {"total: external", [](Out& o) { total(o, external, -1, 5); }, {5, 0, 0}},
           {"interval: no total", [](Out& o) { interval(o, 0); }, z3},
           {"interval: set", [](Out& o) { ready(4), interval(o, 2); }, z3}});
    Out out;
    ready(3), flow(out, 4e4F, 0), flow(out, 4e4F);
    EXPECT_EQ(out.status, 1) << "calc 0 leaves the channel valid";
    set_up(mt_init_tr, own, 4, 30, 20), ready(2);
    check({{"tr: size", [](Out& o) { tr(o); }, {any, any, 0, 0, 0}}});
    set_up(mt_init_tr, own, 4, 200, 20), ready(2);
    check({{"tr: ratio", [](Out& o) { tr(o); }, {any, any, any, any, 0}}});
    set_up(mt_init_tr, own, 1), ready(3);
    check({{"flow: dp 0, orifice", [](Out& o) { flow(o, 0); }, {0, 0, 0, any, any, 1e6F, 1}}});
}

TEST_F(Refusal, OfGasCalls) {
    check({{"gs: no channel", [](Out& o) { gs(o, -1, 15, 5e6F); }, z3},
           {"gs: not configured", [](Out& o) { gs(o, never, 15, 5e6F); }, {0, 0, 0.7F}},
           {"gs: t", [](Out& o) { gs(o, own, 67, 5e6F); }, {90, 0, 0.7F}},
           {"gs: p", [](Out& o) { gs(o, own, 15, 3e7F); }, {90, 0, 0.7F}},
           {"gs: density", [](Out& o) { gs(o, own, 15, 5e6F, 1, 90, 1.1F); }, {90, 0, 1.1F}},
           {"gs: content", [](Out& o) { gs(o, own, 15, 5e6F, 2, 101); }, z3},
           {"gs: no component", [](Out& o) { gs(o, own, 15, 5e6F, 3, 0); }, z3},
           {"gs: K", [](Out& o) { gs(o, own, 60, 1001); }, {90, any, 0.7F}},
           {"tf: no channel", [](Out& o) { gas_tf(o, 0, 0); }, z5},
           {"tf: no state yet", [](Out& o) { gas_tf(o, 0, never); }, z5}});
    Out out, last;
    gs(out, own, 15, 5e6F), gas_tf(last);
    ASSERT_EQ(last.status, 1);
    last.f.resize(5), gs(out, own, 70, 5e6F);
    check({{"tf: the last values", [](Out& o) { gas_tf(o); }, last.f}});
    gs(out, own, 15, 2.2e7F);
    check({{"tf: vapour", [](Out& o) { gas_tf(o, 0.1F); }, z5},
           {"tf: void", [](Out& o) { gas_tf(o); }, {0, any, any, any, any}}});
    REINIT_GAS();
    check({{"gs: no tables", [](Out& o) { gs(o, own, 15, 5e6F, 2); }, {90, 0, 0}}});
}

TEST_F(Refusal, OfMembers) {
    cTeplo2005 h;
    cGas2005 g;
    const auto tn_of = [&](auto& o, double t) {
        o.status = h.Param_tn(t, 1e6, 0, 0, 0, 0, o.phase, o.d[0], o.d[1]);
    };
    const auto tf_of = [&](auto& o, char from) {
        o.status = h.tf_Param(from, 2, 0, o.d[0], o.d[1], o.d[2], o.d[3]);
    };
    const auto in = [&](auto& o, double q, double x) {
        o.status = h.in_Param(q, x, 1, 0, 0, 1, o.d[0], o.d[1], o.d[2]);
    };
    const auto in2 = [&](auto& o) { o.status = h.in2_Param(1, 0, 2, 1, 1, 1, 1, o.d[0], o.d[1], o.d[2]); };
    const auto sum = [&](auto& o) { o.status = g.int_Param(1, 0, 5, 0, 0, o.d[0], o.d[1], o.d[2]); };
    const auto sum2 = [&](auto& o) { o.status = g.int2_Param(1, 0, 1, 1, 1, o.d[0], o.d[1], o.d[2]); };
    const auto gs_of = [&](auto& o, double p, short method, double x) {
        o.status = g.Param_gs(15, p, 0, 0, method, 0, x, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0.7, o.d[0],
                              o.d[1], o.d[2]);
    };
    const auto gas_tf_of = [&](auto& o) {
        o.status = g.tf_Param(0, 0, 0.1, o.d[0], o.d[1], o.d[2], o.d[3], o.d[4]);
    };
    char first = 0;
    check({{"Param_tn: negative", [&](Out& o) { tn_of(o, -1); }, old2},
           {"Param_tn: not configured", [&](Out& o) { tn_of(o, 300); }, z2, 0},
           {"tf_Param: source", [&](Out& o) { tf_of(o, 2); }, old4},
           {"tf_Param: no state", [&](Out& o) { tf_of(o, 0); }, z4},
           {"in_Param: flow", [&](Out& o) { in(o, -1, 5); }, old3},
           {"in_Param: total", [&](Out& o) { in(o, 1, -5); }, old3},
           {"in2_Param: set", in2, old3},
           {"int_Param: no flow", sum, {5, 0, 0}},
           {"int2_Param: no total", sum2, old3}},
          true);
    ASSERT_EQ(g.Init_TR(0, 1, 0, 0, 0, 200, 120, 0, 0, 0, 1, 0, first), 1);
    check({{"Param_gs: content", [&](Out& o) { gs_of(o, 5e6, 2, 101); }, old3}}, true);
    Out out;
    gs_of(out, 2.2e7, 0, 90);
    check({{"tf_Param: vapour", gas_tf_of, old5}}, true);
    h.C = 0.6, h.K_sh = 1.01, h.q_m = 5, h.mu = 1e-3, h.D = 0.2, h.beta = 0.6, h.device_type = 4;
    EXPECT_EQ(h.Countq_mReCK_sh(1, 4e4, 5, 1e-9), 0);
    EXPECT_TRUE(h.C == 0.6 && h.K_sh == 1.01 && h.q_m == 5.0) << "Countq_mReCK_sh";
}

TEST_F(Refusal, OfASetUpLeavesTheChannelAsItWas) {
    ready(4);
    const auto& channel = *kalorfix::frame::heat_channels.GetVar(own);
    std::vector<char> before(sizeof channel);
    std::memcpy(before.data(), static_cast<const void*>(&channel), sizeof channel);
    for (int wrong = 0; wrong < 13; ++wrong) {
        float a[13] = {0, 5, 1, 7, 32, 300, 150, 0.01F, 0.05F, 0, 1, 0.7F};
        constexpr float outside[] = {2, 24, 2, 40, 0.5F, -1, -1, -1, -1, 2, -1, -1, 0};
        char status = 77;
        a[wrong] = outside[wrong];
        if (wrong == 12) a[1] = 0;
        mt_init_tr(own, static_cast<char>(a[0]), static_cast<short>(a[1]), static_cast<char>(a[2]), a[3], a[4],
                   a[5], a[6], a[7], a[8], static_cast<char>(a[9]), a[10], a[11], &status);
        EXPECT_EQ(status, 0) << wrong;
        EXPECT_EQ(std::memcmp(before.data(), static_cast<const void*>(&channel), sizeof channel), 0) << wrong;
    }
}

TEST_F(Refusal, OfPlainFunctions) {
    const std::tuple<double, double, short> states[] = {
        {-0.1, 1, 1},         {801, 1, 1},           {20, -1, 1}, {20, 101, 1},
        {std::nan(""), 1, 1}, {20, std::nan(""), 1}, {372, 1, 3}};
    for (const auto& [t, p, mode] : states) {
        double d[5] = {9, 9, 9, 9, 9};
        EXPECT_EQ(t_param_1(t, p, mode, d, d + 1, d + 2, d + 3), 1) << t << ' ' << p;
        EXPECT_EQ(mode == 1 ? t_phase_1(p, t, 0, d + 4) : 0, 0) << t << ' ' << p;
        for (int k = 0; k < (mode == 1 ? 5 : 4); ++k) EXPECT_EQ(d[k], 0.0) << t << ' ' << p;
    }
    PF1_1(96, 2, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 0, 0, 0), PF2();
    const std::tuple<float, float, float> limits[] = {{70, 0, 5},    {1500, 0, 5}, {290, 0, 0},
                                                      {290, 0, 100}, {290, -1, 5}, {290, 1250, 5}};
    for (const auto& [T_K, dp, p] : limits) {
        short failed = 9;
        for (const auto method : {PF3_1, PF3_2, PF3_3, PF3_4})
            EXPECT_TRUE(method(T_K, dp, p, failed = 9) == 0.0F && failed == 1) << T_K << ' ' << dp << ' ' << p;
        for (const auto method : {NF1_1, NF1_2})
            EXPECT_TRUE(method(T_K, dp, p, 1, 1, 0.7F, failed = 9) == 0.0F && failed == 1)
                << T_K << ' ' << dp << ' ' << p;
    }
}

}  // namespace
