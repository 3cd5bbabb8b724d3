// Channel functions, members and plain functions: what they refuse and what is then left, what they hand on, and the ends of ranges.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
#include <limits>
#include <vector>

#include "frame/registry.h"
#include "kalorfix.h"
#include "kalorfix_calculators.h"
#include "kalorfix_gas.h"
#include "props/water/saturation.h"
#include "props/water/water.h"

namespace water = kalorfix::water;

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

class Calls : public testing::Test {
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

TEST_F(Calls, RefuseForHeatCarriers) {
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

TEST_F(Calls, RefuseForGas) {
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

TEST_F(Calls, RefuseAsMembers) {
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

TEST_F(Calls, LeaveAChannelWhoseSetUpIsRefused) {
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

TEST_F(Calls, RefuseAsPlainFunctions) {
    const double nan = std::nan("");
    const struct {
        double t, p;
        short mode;
    } states[] = {{-0.1, 1, 1}, {801, 1, 1}, {20, -1, 1}, {20, 101, 1}, {nan, 1, 1}, {20, nan, 1}, {372, 1, 3}};
    for (const auto& s : states) {
        double d[5] = {9, 9, 9, 9, 9};
        EXPECT_EQ(t_param_1(s.t, s.p, s.mode, d, d + 1, d + 2, d + 3), 1) << s.t << ' ' << s.p;
        EXPECT_EQ(t_phase_1(s.p, s.mode == 1 ? s.t : nan, 0, d + 4), 0) << s.t << ' ' << s.p;
        for (const double value : d) EXPECT_EQ(value, 0.0) << s.t << ' ' << s.p;
    }
    PF1_1(96, 2, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 0, 0, 0), PF2();
    const struct {
        float T_K, dp, p;
    } limits[] = {{70, 0, 5}, {1500, 0, 5}, {290, 0, 0}, {290, 0, 100}, {290, -1, 5}, {290, 1250, 5}};
    for (const auto& s : limits) {
        short failed = 9;
        for (const auto method : {PF3_1, PF3_2, PF3_3, PF3_4})
            EXPECT_TRUE(method(s.T_K, s.dp, s.p, failed = 9) == 0.0F && failed == 1) << s.T_K << ' ' << s.p;
        for (const auto method : {NF1_1, NF1_2})
            EXPECT_TRUE(method(s.T_K, s.dp, s.p, 1, 1, 0.7F, failed = 9) == 0.0F && failed == 1)
                << s.T_K << ' ' << s.p;
    }
}

// A cycle of gas by its channel is that of a calculator whose members are called with the same values: each argument is handed on
// to the one that it is meant for.
TEST_F(Calls, HandACycleOnAsItIs) {
    for (const double vapour : {0.0, 0.0625}) {
        cGas2005 c;
        char first = 0;
        Out o;
        std::vector<double> r(9);
        const auto same = [&](std::size_t count, char member, const char* step) {
            EXPECT_TRUE(o.status == 1 && member == 1) << step;
            for (std::size_t k = 0; k < count; ++k)
                EXPECT_EQ(o.f[k], static_cast<float>(r[k])) << step << ' ' << k;
        };
        std::vector<float>& f = o.f;
        mg_init_tr(12, 0, 1, 1, 11, 31, 200, 120, 0.25F, 0.0625F, 0, 2, 0.5F, &o.status);
        same(0, c.Init_TR(0, 1, 1, 11, 31, 200, 120, 0.25, 0.0625, 0, 2, 0.5, first), "set-up");
        EXPECT_EQ(first, 1) << "the first configuration";
        mg_param_gs(12, 17, 4e6F, 850, 12, 2, 0, 84, 8, 3, 0.75F, 0.5F, 0.25F, 0.125F, 0.0625F, 0.375F, 0.625F,
                    1.25F, 1, 0.03125F, 0.015625F, 0.1875F, 0.75F, &o.status, &f[0], &f[1], &f[2]);
        same(3,
             c.Param_gs(17, 4e6, 850, 12, 2, 0, 84, 8, 3, 0.75, 0.5, 0.25, 0.125, 0.0625, 0.375, 0.625, 1.25, 1,
                        0.03125, 0.015625, 0.1875, 0.75, r[0], r[1], r[2]),
             "state");
        mg_tf_param(12, 1, 0, static_cast<float>(vapour), &o.status, &f[0], &f[1], &f[2], &f[3], &f[4]);
        same(5, c.tf_Param(1, 0, vapour, r[0], r[1], r[2], r[3], r[4]), "properties");
        mg_param_tr(12, &o.status, &f[0], &f[1], &f[2], &f[3], &f[4]);
        same(5, c.Param_tr(r[0], r[1], r[2], r[3], r[4]), "geometry");
        mg_mgn_param(12, 1, 25000, 40, 0.75F, 33.5F, &o.status, &f[0], &f[1], &f[2], &f[3], &f[4], &f[5], &f[6],
                     &f[7]);
        same(8, c.mgn_Param(1, 25000, 40, 0.75, 33.5, r[0], r[1], r[2], r[3], r[4], r[5], r[6], r[7]), "flow");
    }
}

TEST(Channels, OfClassOneKeepTheirFirstConfiguration) {
    cTeplo2005 c;
    char first = 9;
    const auto set_up = [&](unsigned char metering_class, unsigned char device, double D20_mm) {
        return c.Init_TR(static_cast<char>(metering_class), device, 0, 0, 0, D20_mm, 100, 0, 0, 0, 1, 0, first);
    };
    EXPECT_TRUE(set_up(0, 4, 200) == 1 && set_up(0, 4, 150) == 1 && set_up(1, 4, 300) == 1);
    EXPECT_EQ(set_up(0, 1, 400), 1) << "reported as done";
    EXPECT_EQ(set_up(0, 99, 400), 0) << "refusals come first";
    EXPECT_EQ(c.D20, 0.3);
}

// A flow whose Reynolds number lies at a step of the coefficient of a machined Venturi tube alternates between two values; the
// passes are capped, the status is 0 and q_m is what the last pass left, in kg/s.
TEST_F(Calls, EndAnAlternatingFlow) {
    ASSERT_EQ(set_up(mt_init_tr, own, 8), 1);
    int alternating = 0;
    for (float dp = 1600; dp < 1800; dp += 0.5F) {
        Out o;
        ready(3, 60, 1e6F);
        mt_mgn_param(own, 1, dp, 983.6F, 1000, &o.status, &o.f[0], &o.f[1], &o.f[2], &o.f[3], &o.f[4], &o.f[5],
                     &o.f[6]);
        if (o.status == 1 || o.f[0] == 0.0F) continue;
        ++alternating;
        EXPECT_EQ(o.f[1], 0.0F);
        const float ideal =
            0.25F * 3.1415927F * 0.0144F / std::sqrt(1 - std::pow(0.6F, 4.0F)) * std::sqrt(2.0F * dp * 983.6F);
        EXPECT_NEAR(o.f[0] / ideal, 1.0, 0.02);
    }
    EXPECT_GT(alternating, 0);
}

constexpr unsigned char never_configured = 0, orifice = 1, averaging = 12, no_such_device = 24;

// A calculator with its fields set directly.
struct Bare : cTeplo2005 {
    explicit Bare(unsigned char device) {
        device_type = device;
        valid = 1;
        D = D20 = 0.2;
        d = d20 = 0.1;
        beta = 0.5;
        t = 20.0;
        p = 1e6;
        mu = 1e-5;
        kappa = 1.3;
        E = K_p = epsilon = 1.0;
    }
};

TEST(Members, KnowNoFlowOfADeviceThatIsNone) {
    for (const unsigned char device : {never_configured, no_such_device}) {
        double q_m = -1.0, q_v = -1.0;
        EXPECT_EQ(Bare(device).mg_Param(1, 1e4, 5.0, q_m, q_v), 0);
        EXPECT_EQ(q_m, 0.0);
        EXPECT_EQ(q_v, 0.0);
        EXPECT_EQ(Bare(device).CountDd(), 0);
    }
    for (const unsigned char device : {never_configured, averaging}) {
        Bare c(device);
        EXPECT_EQ(c.Countq_mReCK_sh(0, 1e4, 5.0, 0.0), 0) << "no discharge coefficient";
        EXPECT_EQ(c.valid, 0);
    }
}

TEST(Members, LeaveWhatADeviceDoesNotHave) {
    for (const unsigned char device : {never_configured, averaging}) {
        Bare c(device);
        c.K_p = c.epsilon = 0.25;
        EXPECT_EQ(c.CountbetaEKp(), 1);
        EXPECT_EQ(c.K_p, 0.25);
        EXPECT_EQ(c.Countepsilon(1e4), 1);
        EXPECT_EQ(c.epsilon, 0.25);
    }
    for (const unsigned char device : {never_configured, orifice}) {
        Bare c(device);
        c.alpha_eps = 0.7;
        EXPECT_EQ(c.CountqmalphaepsilonRe(1e4, 5.0), 0) << "no averaging device";
        EXPECT_EQ(c.alpha_eps, 0.7);
        EXPECT_GT(c.q_m, 0.0);
    }
}

TEST(Members, RefuseMaterialsAndSetsThatAreNone) {
    for (const bool pipe : {false, true}) {
        Bare c(orifice);
        c.by_material = 1;
        c.mat_D = c.mat_d = 7.0;
        EXPECT_EQ(c.CountDd(), 1);
        (pipe ? c.mat_D : c.mat_d) = 40.0;
        EXPECT_EQ(c.CountDd(), 0);
    }
    double time = -1.0, start = -1.0, result = -1.0;
    EXPECT_EQ(Bare(orifice).in2_Param(1.0F, 0.0F, 1, 5.0, 10.0, 0.0, 0.0, time, start, result), 1);
    EXPECT_EQ(time, 11.0);
    EXPECT_EQ(Bare(orifice).in2_Param(1.0F, 0.0F, 2, 5.0, 20.0, 0.0, 0.0, time, start, result), 0);
    EXPECT_EQ(time, 11.0) << "nothing is handed out";
}

TEST(Members, RefuseVapourBeyondTheRangeOfWater) {
    cGas2005 c;
    double rho = -1.0, mu = 0.0, kappa = 0.0, low = 0.0, high = 0.0;
    c.valid = 1;
    c.T = 290.0;
    c.p = 101e6;
    EXPECT_EQ(c.tf_Param(0, 0, 0.01, rho, mu, kappa, low, high), 0);
    EXPECT_EQ(rho, -1.0);
    EXPECT_EQ(c.valid, 0);
}

// Where the gas is hotter than the saturation temperature at its pressure, the vapour is counted with the density of the single
// phase there, which may be that of water.
TEST(Members, TakeTheSinglePhaseWhereTheGasIsHot) {
    short failed = 0;
    NF1_1(339.0F, 0.0F, 0.1F, 1.0F, 0.5F, 0.7F, failed);  // the module state of the viscosity
    int counted_as_water = 0;
    for (double p_Pa = 2e3; p_Pa < 2.4e4; p_Pa += 500.0) {
        cGas2005 c;
        c.valid = 1;
        c.T = 339.0;
        c.p = p_Pa;
        c.Ro_c = 0.7;
        c.K_c = 0.998;
        const double content = 0.001, p_MPa = p_Pa * 1e-6;
        const double ts_K = water::saturation_temperature_K(p_MPa, water::SaturationTemperatureSet::humid_gas);
        water::Properties single{};
        ASSERT_TRUE(water::single_phase(ts_K - 273.15 + 273.15, p_MPa, single));
        counted_as_water += single.rho_kgm3 > 900.0;
        double rho = 0.0, mu = 0.0, kappa = 0.0, low = 0.0, high = 0.0;
        ASSERT_EQ(c.tf_Param(0, 0, content, rho, mu, kappa, low, high), 1);
        const double dry = 0.7 * p_MPa * 293.15 / (0.101325 * 339.0 * 0.998);
        EXPECT_NEAR(rho, dry * (1.0 - content / single.rho_kgm3) + content, 1e-12 * dry) << p_Pa;
    }
    EXPECT_GT(counted_as_water, 0);
}

// The ends of the bands of pressure and temperature belong to them, to the last bit.
TEST(Members, CountTheEndsOfABandAsSaturated) {
    const auto phase_at = [](double t_C, double p_Pa, double dP_Pa, double dT_K) {
        cTeplo2005 c;
        c.metering_class = 0;
        short phase = -1;
        double ps = 0.0, ts = 0.0;
        EXPECT_EQ(c.Param_tn(t_C, p_Pa, 0, 0, dP_Pa, dT_K, phase, ps, ts), 1);
        return phase;
    };
    int on_the_line = 0;
    for (double t_C = 100.5; t_C < 110.0; t_C += 0.5) {
        double ps_MPa = 0.0, same = 0.0;
        t_phase_1(0.1, t_C, 0.0, &ps_MPa);
        EXPECT_EQ(t_phase_1(ps_MPa, t_C, 0.0, &same), 3) << t_C;
        if (ps_MPa * 1e6 * 1e-6 != ps_MPa) continue;
        ++on_the_line;
        EXPECT_EQ(phase_at(t_C, ps_MPa * 1e6, 0.0, 1.0), 3) << t_C;
    }
    EXPECT_GT(on_the_line, 0);
    const double ts_K =
        water::saturation_temperature_K(0.2, water::SaturationTemperatureSet::heat_carrier);  // 393.36
    for (const double t_C : {118.0, 122.0}) {
        const double off = std::fabs(t_C + 273.15 - ts_K);
        EXPECT_EQ(phase_at(t_C, 0.2e6, 1e5, off), 3) << t_C;
        EXPECT_EQ(phase_at(t_C, 0.2e6, 1e5, 0.999 * off), t_C > 120.0 ? 2 : 1) << t_C;
    }
}

}  // namespace
