// What rises with what, for any input within the limits of the devices and methods.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <random>

#include "kalorfix.h"
#include "kalorfix_calculators.h"
#include "kalorfix_gas.h"

namespace {

constexpr double refused = std::numeric_limits<double>::quiet_NaN();

class Random {
public:
    explicit Random(unsigned seed) : bits_(seed) {}
    double within(double a, double b) { return a + (b - a) * static_cast<double>(bits_()) * 0x1p-32; }
    double logarithmic(double a, double b) { return a * std::pow(b / a, within(0.0, 1.0)); }
    bool coin() { return within(0.0, 1.0) < 0.5; }

private:
    std::mt19937 bits_;
};

// A device with water or steam in it, at 20 degC.
struct Flow {
    short device;
    char metering_class;
    unsigned short phase;
    double D_mm, d_mm, R_sh_mm, p, kappa, mu, dp, rho;

    Flow(Random& r, short code, char accuracy)
        : device(code), metering_class(accuracy), phase(r.coin() ? 1 : 2) {
        const bool standard = code <= 9, water = phase == 1;
        D_mm = r.logarithmic(50, 1200);
        d_mm = D_mm * (standard ? r.within(0.1, 0.8) : r.within(0.02, 0.2));
        R_sh_mm = r.coin() ? 0.0 : r.logarithmic(1e-3, 1);
        p = r.logarithmic(1e5, 2e7);
        kappa = r.within(1.05, 1.7);
        mu = water ? r.logarithmic(1e-4, 2e-3) : r.logarithmic(8e-6, 4e-5);
        rho = water ? r.within(600, 1000) : r.logarithmic(0.3, 150);
        dp = r.logarithmic(50, water ? 1e5 : std::min(0.25 * p, 1e5));
    }
    // t/h; NaN where it is refused.
    [[nodiscard]] double solve() const {
        cTeplo2005 c;
        char first = 0;
        double D = 0, d = 0, beta = 0, E = 0, K_p = 0, q_m = 0, q_v = 0, q_h = 0, K_sh = 0, C = 0, Re = 0,
               eps = 0;
        c.Init_TR(metering_class, device, 0, 0, 0, D_mm, d_mm, R_sh_mm, 0.05, 0, 1, 0.7, first);
        c.valid = 1, c.t = 20, c.T = 293.15, c.p = p, c.kappa = kappa, c.mu = mu, c.phase = phase;
        if (c.Param_tr(D, d, beta, E, K_p) != 1) return refused;
        return c.mgn_Param(1, dp, rho, 0, q_m, q_v, q_h, K_sh, C, Re, eps) == 1 ? q_m : refused;
    }
};

// Where C or K_sh has a step in Re the flow may be refused, but never falls: each flow lies on the side of the step that its
// own Reynolds number calls for. Only the tolerance of class 0, 1e-3, leaves room for a pair across a step downwards (device
// 9 at Re 2e5). q_v need not fall with the density: it rises where the coefficient steps up.
TEST(Monotone, FlowRisesWithDifferentialPressureAndDensity) {
    Random r(1);
    for (short device = 1; device <= 19; ++device)
        for (const bool by_density : {false, true}) {
            int compared = 0;
            const int pairs = device == 8 ? 30000 : 3000;  // its coefficient has three steps
            for (int k = 0; k < pairs; ++k) {
                Flow flow(r, device, static_cast<char>(k % 2));
                const double lower = flow.solve(), factor = 1.0 + r.logarithmic(1e-5, 1.0);
                (by_density ? flow.rho : flow.dp) *= factor;
                const double higher = flow.solve();
                if (std::isnan(lower) || std::isnan(higher)) continue;
                ++compared;
                const double slack = flow.metering_class == 0 ? 1e-3 : 0.0;
                ASSERT_GT(higher, lower * (1.0 - slack))
                    << "device " << device << " class " << int{flow.metering_class} << " D " << flow.D_mm
                    << " d " << flow.d_mm << " R_sh " << flow.R_sh_mm << " p " << flow.p << " dp " << flow.dp
                    << " rho " << flow.rho << " mu " << flow.mu << " kappa " << flow.kappa << " factor "
                    << factor;
            }
            EXPECT_GT(compared, 300) << "device " << device;
        }
}

TEST(Monotone, GasDensityRisesWithPressure) {
    std::snprintf(PATH_SRAM_FOR_LOADTABL, sizeof PATH_SRAM_FOR_LOADTABL, "%s", KALORFIX_GAS_DAT);
    ASSERT_EQ(INIT_GAS(), 0);
    constexpr double highest_Pa = 29.9e6;
    // Contents of pipeline gas, mole per cent; methane is the rest.
    constexpr double most[15] = {0, 8, 3, 0.7, 0.7, 0.2, 0.2, 0.1, 0.05, 0.02, 8, 8, 0.05, 0.1, 0.1};
    Random r(2);
    for (short method = 0; method <= 3; ++method) {
        cGas2005 c;
        char first = 0;
        c.Init_TR(1, 1, 0, 0, 0, 200, 100, 0, 0, 0, 1, 0, first);
        int compared = 0;
        for (int k = 0; k < 4000; ++k) {
            double x[15] = {100};
            for (int i = 1; i < 15; ++i) x[0] -= x[i] = r.within(0, most[i]);
            const double t_C = r.within(-23, 66.8), rho_c = r.within(0.66, 1.0);
            const double factor = 1.0 + r.logarithmic(1e-4, 1.0), p = r.logarithmic(1e5, highest_Pa / factor);
            const auto density = [&](double p_Pa) {
                double sum = 0, K = 0, out_c = 0, rho = 0, mu = 0, kappa = 0, low = 0, high = 0;
                c.Param_gs(t_C, p_Pa, 0, 0, method, 0, x[0], x[1], x[2], x[3], x[4], x[5], x[6], x[7], x[8],
                           x[9], x[10], x[11], x[12], x[13], x[14], rho_c, sum, K, out_c);
                return c.tf_Param(0, 0, 0, rho, mu, kappa, low, high) == 1 ? rho : refused;
            };
            const double lower = density(p), higher = density(p * factor);
            if (std::isnan(lower) || std::isnan(higher)) continue;
            ++compared;
            ASSERT_GT(higher, lower) << "method " << method << ", " << t_C << " degC, " << p << " Pa times "
                                     << factor << ", methane " << x[0] << ", rho_c " << rho_c;
        }
        EXPECT_GT(compared, 3500) << "method " << method;
    }
    REINIT_GAS();
}

}  // namespace
