// SPDX-License-Identifier: MIT
// Channel functions, members and plain functions: what they refuse and what is then left, what they hand on, and the ends of ranges.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <deque>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "frame/channels.h"
#include "kalorfix.h"
#include "kalorfix_calculators.h"
#include "kalorfix_gas.h"
#include "props/water/saturation.h"
#include "props/water/water.h"

namespace water = kalorfix::water;

namespace {

constexpr int untouched = 77;  // stands in an output before

// One call with arguments by their types: numbers are inputs and come from the text, pointers and references are outputs.
class Call {
public:
    explicit Call(const std::string& inputs) : in_(inputs) {}
    std::vector<double> left;  // the result, then the outputs

    template <class Result, class... Types>
    void plain(Result (*function)(Types...)) {
        run<Types...>(function);
    }
    template <class Object, class Owner, class Result, class... Types>
    void member(Object& object, Result (Owner::*function)(Types...)) {
        run<Types...>([&](auto&&... arguments) { return (object.*function)(arguments...); });
    }

private:
    template <class... Types, class Function>
    void run(Function function) {
        std::tuple<Types...> arguments{take<Types>()...};
        using Result = decltype(std::apply(function, arguments));
        if constexpr (std::is_void_v<Result>) {
            std::apply(function, arguments);
        } else {
            const Result result = std::apply(function, arguments);
            if (std::is_same_v<Result, int>)
                EXPECT_EQ(result, 1);
            else
                left.push_back(static_cast<double>(result));
        }
        for (const auto& output : outputs_) left.push_back(output());
    }
    template <class Type>
    Type take() {
        if constexpr (std::is_arithmetic_v<Type>) {
            std::string word;
            EXPECT_TRUE(in_ >> word) << "too few inputs";
            return static_cast<Type>(std::strtod(word.c_str(), nullptr));
        } else {
            using Value = std::remove_reference_t<std::remove_pointer_t<Type>>;
            Value& place = std::get<std::deque<Value>>(places_).emplace_back(static_cast<Value>(untouched));
            outputs_.push_back([&place] { return static_cast<double>(place); });
            if constexpr (std::is_pointer_v<Type>)
                return &place;
            else
                return place;
        }
    }
    std::istringstream in_;
    std::tuple<std::deque<char>, std::deque<short>, std::deque<float>, std::deque<double>> places_;
    std::vector<std::function<double()>> outputs_;
};

bool as_stated(double value, const std::string& stated) {
    if (stated == "*") return true;
    if (stated == "-") return value == untouched;
    if (stated == "any") return std::isfinite(value) && value != 0.0 && value != untouched;
    const double number = std::strtod(stated.c_str(), nullptr);
    if (std::isnan(number)) return std::isnan(value);
    return value == number || std::fabs(value - number) <= 5e-6 * std::fabs(number);
}

class Calls : public testing::Test {
protected:
    void SetUp() override {
        std::snprintf(PATH_SRAM_FOR_LOADTABL, sizeof PATH_SRAM_FOR_LOADTABL, "%s", KALORFIX_GAS_DAT);
        ASSERT_EQ(INIT_GAS(), 0);
    }
    void TearDown() override { REINIT_GAS(); }
};

TEST_F(Calls, LeaveWhatTheTableSays) {
    cGas2005 gas, other;
    cTeplo2005 heat;
#define PLAIN(function)                                      \
    {                                                        \
#function, [](Call & call) { call.plain(function); } \
    }
#define MEMBER(object, name, Class, function)                                          \
    {                                                                                  \
        name "." #function, [&](Call& call) { call.member(object, &Class::function); } \
    }
    const std::map<std::string, std::function<void(Call&)>> functions{
        PLAIN(mt_init_tr),
        PLAIN(mt_param_tn),
        PLAIN(mt_tf_param),
        PLAIN(mt_param_tr),
        PLAIN(mt_mgn_param),
        PLAIN(mt_int_param),
        PLAIN(mt_int_param_1),
        PLAIN(mg_init_tr),
        PLAIN(mg_param_gs),
        PLAIN(mg_tf_param),
        PLAIN(mg_param_tr),
        PLAIN(mg_mgn_param),
        PLAIN(t_param_1),
        PLAIN(t_phase_1),
        PLAIN(PF1_1),
        PLAIN(PF2),
        PLAIN(PF3_1),
        PLAIN(PF3_2),
        PLAIN(PF3_3),
        PLAIN(PF3_4),
        PLAIN(NF1_1),
        PLAIN(NF1_2),
        PLAIN(REINIT_GAS),
        MEMBER(gas, "gas", cGas2005, Init_TR),
        MEMBER(gas, "gas", cGas2005, Param_gs),
        MEMBER(gas, "gas", cGas2005, tf_Param),
        MEMBER(gas, "gas", cGas2005, Param_tr),
        MEMBER(gas, "gas", cGas2005, mgn_Param),
        MEMBER(other, "gas2", cGas2005, Init_TR),
        MEMBER(other, "gas2", cGas2005, Param_gs),
        MEMBER(other, "gas2", cGas2005, tf_Param),
        MEMBER(other, "gas2", cGas2005, int_Param),
        MEMBER(other, "gas2", cGas2005, int2_Param),
        MEMBER(heat, "heat", cTeplo2005, Init_TR),
        MEMBER(heat, "heat", cTeplo2005, Param_tn),
        MEMBER(heat, "heat", cTeplo2005, tf_Param),
        MEMBER(heat, "heat", cTeplo2005, Param_tr),
        MEMBER(heat, "heat", cTeplo2005, in_Param),
        MEMBER(heat, "heat", cTeplo2005, in2_Param)};
    std::ifstream table(KALORFIX_TABLES "/calls.txt");
    int rows = 0;
    for (std::string line; std::getline(table, line);) {
        const std::size_t space = line.find(' '), arrow = line.find(" ->");
        if (line.empty() || line[0] == '#') continue;
        ++rows;
        Call call(line.substr(std::min(space, arrow), arrow - std::min(space, arrow)));
        functions.at(line.substr(0, std::min(space, arrow)))(call);
        std::istringstream expected(line.substr(arrow + 3));
        const std::vector<std::string> stated{std::istream_iterator<std::string>(expected), {}};
        const auto same = stated.size() == call.left.size() &&
                          std::equal(call.left.begin(), call.left.end(), stated.begin(), as_stated);
        EXPECT_TRUE(same) << line << "\ncomputed " << testing::PrintToString(call.left);
    }
    EXPECT_GT(rows, 150);
}

// A number beyond single precision spoils a step though nobody takes it.
TEST(Flow, IsRefusedForANumberThatIsNotTaken) {
    char status = 77;
    short phase = 0;
    mt_init_tr(15, 0, 20, 0, 0, 0, 100, 50, 0, 0, 0, 0, 0, &status);
    mt_param_tn(15, 300, 1e6F, 0, 0, 0, 0, &status, &phase, nullptr, nullptr);
    mt_tf_param(15, 0, 0, 0, &status, nullptr, nullptr, nullptr, nullptr);
    mt_param_tr(15, &status, nullptr, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(status, 1);
    mt_mgn_param(15, 1, 1e37F, 4.7e-3F, 3000, &status, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                 nullptr);
    EXPECT_EQ(status, 0);
}

TEST(SetUp, LeavesTheChannelAsItWasWhenRefused) {
    constexpr int own = 14;
    for (int wrong = -1; wrong < 13; ++wrong) {
        float a[13] = {0, 5, 1, 7, 32, 300, 150, 0.01F, 0.05F, 0, 1, 0.7F};
        constexpr float outside[] = {2, 24, 2, 40, 0.5F, -1, -1, -1, -1, 2, -1, -1, 0};
        char status = 77;
        if (wrong >= 0) a[wrong] = outside[wrong];
        if (wrong == 12) a[1] = 0;
        static char before[sizeof(cTeplo2005)];
        const void* const channel = kalorfix::frame::heat_channels.GetVar(own);
        std::memcpy(before, channel, sizeof before);
        mt_init_tr(own, static_cast<char>(a[0]), static_cast<short>(a[1]), static_cast<char>(a[2]), a[3], a[4],
                   a[5], a[6], a[7], a[8], static_cast<char>(a[9]), a[10], a[11], &status);
        EXPECT_EQ(status, wrong < 0) << wrong;
        EXPECT_EQ(std::memcmp(before, channel, sizeof before) == 0, wrong >= 0) << wrong;
    }
}

// A flow whose Reynolds number lies at a step of the coefficient of a machined Venturi tube alternates between two values; the
// passes are capped, the status is 0 and q_m is what the last pass left, in kg/s.
TEST(Flow, EndsWhereItAlternates) {
    int alternating = 0;
    for (double dp = 1600; dp < 1800; dp += 0.5) {
        cTeplo2005 c;
        char first = 0;
        double q_m = 0, q_v = 0, r[6] = {};
        c.Init_TR(0, 8, 0, 0, 0, 200, 120, 0, 0, 0, 1, 0, first);
        c.valid = 1, c.t = 60, c.T = 333.15, c.p = 1e6, c.kappa = 1.3, c.mu = 466e-6, c.phase = 1;
        ASSERT_EQ(c.Param_tr(r[0], r[1], r[2], r[3], r[4]), 1);
        if (c.mgn_Param(1, dp, 983.6, 1000, q_m, q_v, r[0], r[1], r[2], r[3], r[4]) == 1) continue;
        ++alternating;
        EXPECT_EQ(q_v, 0.0);
        const double ideal =
            0.25 * 3.14159265 * 0.0144 / std::sqrt(1 - std::pow(0.6, 4)) * std::sqrt(2 * dp * 983.6);
        EXPECT_NEAR(q_m / ideal, 1.0, 0.02);
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
