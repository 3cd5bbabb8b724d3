// SPDX-License-Identifier: MIT
// The equations of state of gas against a second derivation.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <random>

#include "gas/aga8.h"
#include "gas/by_density.h"
#include "gas/composition.h"
#include "gas/powers.h"
#include "gas/vnic_smv.h"
#include "props/gas_properties.h"
#include "runtime/cube_root.h"

namespace gas = kalorfix::gas;
namespace aga8 = kalorfix::gas::aga8;
namespace vnic = kalorfix::gas::vnic;

namespace {

TEST(HalfPowers, EqualTheGeneralPower) {
    for (const double base : {0.37, 1.0, 2.5, 173.0})
        for (const double exponent :
             {0.0, 0.5, -0.5, 1.0, -1.0, 3.5, 4.5, -6.0, 11.0, 23.0, 31.5, -12.0, 32.0, 0.3, -7.25, 40.0}) {
            const double expected = std::pow(base, exponent);
            EXPECT_NEAR(gas::PowerBase(base).to(gas::HalfPower(exponent)), expected,
                        1e-13 * std::fabs(expected))
                << base << "^" << exponent;
        }
    // A range of one exponent; the next base finds what the one before has left in memory.
    for (const double exponent : {0.5, -0.5, 1.0, -1.0, 3.5, -6.0})
        for (const double base : {0.37, 1.5, 2.5, 173.0}) {
            gas::HalfPowerRange alone;
            alone.include(gas::HalfPower(exponent));
            const double expected = std::pow(base, exponent);
            EXPECT_NEAR(gas::PowerBase(base, alone).to(gas::HalfPower(exponent)), expected, 1e-13 * expected)
                << base << "^" << exponent;
        }
    EXPECT_EQ(gas::PowerBase(-2.0).to(gas::HalfPower(3.0)), -8.0);
    EXPECT_EQ(gas::PowerBase(-2.0).to(gas::HalfPower(-3.0)), -0.125);
    EXPECT_TRUE(std::isnan(gas::PowerBase(-2.0).to(gas::HalfPower(0.5))));
    EXPECT_TRUE(std::isnan(gas::PowerBase(2.0).to(gas::HalfPower(std::nan("")))));
    EXPECT_EQ(gas::PowerBase(2.0).to(gas::HalfPower(-HUGE_VAL)), 0.0);
}

TEST(CubeRoot, RefusesANegativeNumberAsAPowerAlone) {
    EXPECT_EQ(gas::cube_root(27.0, gas::CubeRoot::power), 3.0);
    EXPECT_EQ(gas::cube_root(-27.0, gas::CubeRoot::real), -3.0);
    EXPECT_TRUE(std::isnan(gas::cube_root(-27.0, gas::CubeRoot::power)));
}

// The rounded roots, to the last bit on every target; the C library of x86-64 misses all but the zero.
TEST(CubeRoot, IsTheNearestNumber) {
    constexpr std::array<std::array<double, 2>, 6> rounded = {{{2.0, 1.2599210498948732},
                                                               {5e-5, 0.036840314986403867},
                                                               {-7e-27, -1.9129311827723891e-09},
                                                               {1.8e200, 5.6462161732861706e+66},
                                                               {0x1.2f25cc6b167fp-5, 0.33323818032591473},
                                                               {0.0, 0.0}}};
    for (const auto& [x, root] : rounded) EXPECT_EQ(kalorfix::cube_root(x), root) << x;
    EXPECT_TRUE(std::isnan(kalorfix::cube_root(std::nan(""))));
    EXPECT_EQ(kalorfix::cube_root(HUGE_VAL), HUGE_VAL);
    for (int k = 1; k <= 1000; ++k)
        EXPECT_EQ(kalorfix::cube_root(std::ldexp(-k * k * k, -300)), std::ldexp(-k, -100)) << k;
}

// S of the density terms as it is printed, in the general power function.
double printed(const aga8::Terms& t, const aga8::Coefficients& C, double r) {
    double S = 0.0;
    for (std::size_t n = aga8::first_density_term; n < aga8::term_count; ++n) {
        const auto b = static_cast<double>(t.b[n]), c = static_cast<double>(t.c[n]);
        const auto k = static_cast<double>(t.k[n]), Cn = static_cast<double>(C[n]);
        S += Cn * (b - c * k * std::pow(r, k)) * std::pow(r, b) * std::exp(-c * std::pow(r, k));
    }
    return S;
}

TEST(Aga8, IsothermIsThatOfThePrintedTermsForAnyExponents) {
    std::mt19937 random(8);
    std::uniform_real_distribution<float> coefficient(-2.0F, 2.0F);
    std::uniform_int_distribution<int> whole(0, 9);
    enum Exponents { all_whole, some_broken, each_its_own };
    for (const Exponents kind : {all_whole, some_broken, each_its_own})
        for (const double r : {1e-6, 0.03, 0.4, 0.9, 1.7}) {
            std::array<float, aga8::term_count> b{}, c{}, k{};
            aga8::Coefficients C{};
            for (std::size_t n = aga8::first_density_term; n < b.size(); ++n) {
                b[n] = static_cast<float>(whole(random));
                k[n] = static_cast<float>(whole(random) / 2);
                c[n] = static_cast<float>(whole(random)) / 3.0F;
                C[n] = coefficient(random);
                if (kind != all_whole && n % 7 == 0) b[n] += 0.5F;
                if (kind == each_its_own) k[n] += static_cast<float>(n) / 64.0F;
            }
            const aga8::Terms terms{nullptr, b.data(), c.data(), k.data(), nullptr, nullptr, nullptr, nullptr};
            const aga8::DensityLayout layout = aga8::density_layout(terms);
            const double Sc =
                std::accumulate(C.begin() + aga8::first_density_term, C.begin() + aga8::virial_terms, 0.0);
            const aga8::Isotherm isotherm(layout, C, Sc - 0.3, 1.5);
            const auto y = [&](double at) { return at * (1.0 - 0.3 * at + printed(terms, C, at)); };
            const double h = 1e-3 * r, y1 = y(r + h) + y(r - h), y2 = y(r + 2 * h) + y(r - 2 * h);
            const double slope = (8.0 * (y(r + h) - y(r - h)) - (y(r + 2 * h) - y(r - 2 * h))) / (12.0 * h);
            const double curvature = (16.0 * y1 - y2 - 30.0 * y(r)) / (12.0 * h * h);
            const gas::IsothermPoint found = isotherm.at(r);
            EXPECT_NEAR(found.y, y(r), 1e-13 * (1.0 + std::fabs(y(r)))) << kind << ' ' << r;
            EXPECT_NEAR(found.slope, slope, 1e-8 * (1.0 + std::fabs(slope))) << kind << ' ' << r;
            if (r < 1e-3) continue;
            EXPECT_NEAR(found.curvature, curvature, 1e-5 * (1.0 + std::fabs(curvature))) << kind << ' ' << r;
        }
}

// 1 - (0.0458 n - 0.0022 + 0.0195 xa + 0.075 xy)^2 with n carbon atoms to a molecule.
TEST(StandardCompressibility, FollowsFromTheComposition) {
    gas::Fractions x{};
    x[9] = 1.0F;  // octanes: 0.3642^2
    EXPECT_NEAR(gas::standard_compressibility(gas::with_present_components(x)), 0.86735836, 1e-12);
    x[9] = 0.0F;
    x[gas::nitrogen] = x[gas::carbon_dioxide] = 0.5F;  // 0.04505^2
    EXPECT_NEAR(gas::standard_compressibility(gas::with_present_components(x)), 0.9979704975, 1e-12);
}

TEST(Gerg91, MeansAreTheCubeRootsOfTheProducts) {
    for (const double a : {0.003, 5e-5, -0.003, 0.0})
        for (const double b : {0.002, -0.002, 0.0})
            for (const double c : {0.005, -0.005, 0.0}) {
                const gas::GeometricMeans real = gas::geometric_means(a, b, c, gas::CubeRoot::real);
                const double found[] = {real.of_112, real.of_113, real.of_122, real.of_123, real.of_133};
                const double products[] = {a * a * b, a * a * c, a * b * b, a * b * c, a * c * c};
                for (std::size_t k = 0; k < std::size(products); ++k)
                    EXPECT_NEAR(found[k], std::cbrt(products[k]), 1e-17)
                        << a << ' ' << b << ' ' << c << ' ' << k;
                const gas::GeometricMeans power = gas::geometric_means(a, b, c, gas::CubeRoot::power);
                EXPECT_EQ(std::isnan(power.of_112 + power.of_113 + power.of_122 + power.of_123 + power.of_133),
                          a != 0.0 && std::min({a, b, c}) < 0.0);
            }
}

// What the cubic equation leaves of the closed form, 0 at its root.
double cubic(double T_K, double p_MPa, const gas::Virial& v) {
    const double z = gas::virial_compressibility(T_K, p_MPa, v, gas::CubeRoot::real);
    const double q = 1000.0 * p_MPa / (3.0 * 2.7715 * T_K);
    return z * z * z - z * z - v.second * q * z - v.third * q * q;
}

TEST(Gerg91, ClosedFormIsTheRootOfTheCubic) {
    for (const double T : {250.0, 273.15, 300.0, 339.0})
        for (const gas::DensityGas& g : {gas::DensityGas{0.68, 0, 0}, gas::DensityGas{0.75, 0.05, 0.02},
                                         gas::DensityGas{0.95, 0.1, 0.12}}) {
            const gas::Virial v = gas::gerg91_virial(T, g, gas::CubeRoot::real);
            for (const double p : {0.01, 1.0, 5.0, 12.0, 30.0})
                EXPECT_NEAR(cubic(T, p, v), 0.0, 1e-14) << T << ' ' << p << ' ' << g.rho_c;
            // Where A0 passes zero the published difference of the cube root has no digits left.
            for (const double off : {0.0, 1e-12, -1e-12, 1e-6, -1e-6})
                EXPECT_NEAR(cubic(T, -2.7715 * T / (1000.0 * v.second) * (1.0 + off), v), 0.0, 1e-14)
                    << T << ' ' << off;
        }
    // The other sum has none where A1 is negative.
    const double b = 1000.0 * 5.0 / (2.7715 * 300.0);
    for (const double C0 : {1e-4, 0.1})
        for (const double off : {0.0, 1e-12, -1e-12, 1e-6, -1e-6})
            EXPECT_NEAR(cubic(300.0, 5.0, {-(1.0 + off) / b, C0 / (b * b)}), 0.0, 1e-14) << C0 << ' ' << off;
    // A dense gas whose difference A1 - sqrt(A1^2 - A0^3) is as small as 5e-5 still has the root: A0^3 is 5e-5 (A1 + sqrt).
    const double b_dense = 1000.0 * 15.0 / (2.7715 * 280.0), A1 = (5e-5 + 2.0) / 2.0;
    const double B0 = std::cbrt(5e-5 * 2.0) - 1.0, C0_dense = (A1 - 1.0) / 1.5 - B0;
    const gas::Virial virial{B0 / b_dense, C0_dense / (b_dense * b_dense)};
    EXPECT_NEAR(gas::virial_compressibility(280.0, 15.0, virial, gas::CubeRoot::power),
                (1.0 + std::cbrt(2.0) + std::cbrt(5e-5)) / 3.0, 1e-12);
    // A cube root taken as a power refuses the dense gas that the real root reaches.
    const gas::DensityGas dense{0.68, 0, 0};
    EXPECT_GT(gas::gerg91(250.0, 20.0, dense, gas::CubeRoot::real), 0.4);
    EXPECT_TRUE(std::isnan(gas::gerg91(250.0, 20.0, dense, gas::CubeRoot::power)));
}

// kappa = (cp/cv) (dp/drho)_T rho/p with cv and cp from derivatives of Z, taken numerically: of Z w and Z t, and of the
// residual energy integrated over the density.
TEST(VnicSmv, IsentropicExponentFollowsFromTheEquation) {
    vnic::Coefficients c{};
    std::mt19937 random(17);
    std::uniform_real_distribution<float> coefficient(-0.3F, 0.3F);
    for (std::size_t k = 0; k < vnic::density_powers; ++k)
        for (short l = 0; l < vnic::temperature_terms[k]; ++l) c[k][l] = coefficient(random);
    const auto Z = [&c](double w, double t) { return vnic::Isotherm(c, t).at(w).y / w; };
    for (const double t : {1.2, 1.6})
        for (const double w : {0.05, 0.4}) {
            const double h = 1e-5;
            const double bulk = ((w + h) * Z(w + h, t) - (w - h) * Z(w - h, t)) / (2 * h);
            const double thermal = ((t + h) * Z(w, t + h) - (t - h) * Z(w, t - h)) / (2 * h);
            // Residual cv/R = -integral over w of (2 t Z_t + t^2 Z_tt)/w.
            const auto integrand = [&](double u) {
                const double first = (Z(u, t + 1e-4) - Z(u, t - 1e-4)) / 2e-4;
                const double second = (Z(u, t + 1e-3) - 2 * Z(u, t) + Z(u, t - 1e-3)) / 1e-6;
                return -(2 * t * first + t * t * second) / u;
            };
            double residual_cv = 0.0;
            const int steps = 200;
            for (int k = 0; k < steps; ++k) residual_cv += integrand(w * (k + 0.5) / steps) * w / steps;
            const double ideal_cp = 4.3;
            const double cv = ideal_cp - 1.0 + residual_cv;
            const double expected = bulk * (cv + thermal * thermal / bulk) / (cv * Z(w, t));
            const auto kappa = static_cast<double>(gas::isentropic_exponent(
                c, static_cast<float>(t), static_cast<float>(w), static_cast<float>(Z(w, t)), 4.3F));
            EXPECT_NEAR(kappa, expected, 2e-4 * expected) << t << ' ' << w;
        }
}

}  // namespace
