// The members of the calculators one by one, as a C++ host may call them: each refuses what its usual callers never ask.
#include <gtest/gtest.h>

#include <cmath>

#include "kalorfix.h"
#include "kalorfix_calculators.h"
#include "kalorfix_gas.h"
#include "props/water/saturation.h"
#include "props/water/water.h"

namespace water = kalorfix::water;

namespace {

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
