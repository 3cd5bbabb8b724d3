// Gas through the exports: the methods against each other, the operating window, missing and damaged data.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <random>

#include "tools/host.h"
#include "tools/runtime.h"

namespace fs = std::filesystem;
using kalorfix::host::Library;
using kalorfix::host::Runtime;

namespace {

using Percent = std::array<float, 15>;

// Pipeline gases, mole per cent.
constexpr Percent lean{98.5F, 0.5F, 0.1F, 0.02F, 0.02F, 0.01F, 0.01F, 0.01F, 0, 0, 0.8F, 0.03F, 0, 0, 0};
constexpr Percent gases[] = {
    lean,
    {96.5F, 1.8F, 0.45F, 0.1F, 0.1F, 0.03F, 0.05F, 0.07F, 0, 0, 0.3F, 0.6F, 0, 0, 0},
    {90.6724F, 4.5279F, 0.828F, 0.1563F, 0.1037F, 0.0443F, 0.0321F, 0.0393F, 0, 0, 3.1284F, 0.4676F, 0, 0, 0},
    {85.9063F, 8.4919F, 2.3015F, 0.351F, 0.3486F, 0.0509F, 0.048F, 0, 0, 0, 1.0068F, 1.4954F, 0, 0, 0},
    {81.212F, 4.303F, 0.895F, 0.152F, 0.151F, 0, 0, 0, 0, 0, 5.702F, 7.585F, 0, 0, 0},
    {80, 4, 1, 0.3F, 0.2F, 0.1F, 0.1F, 0.1F, 0.05F, 0.05F, 13.4F, 0.5F, 0, 0.2F, 0.2F},
    {84, 8, 3, 0.8F, 0.6F, 0.25F, 0.25F, 0.2F, 0.1F, 0.05F, 1.5F, 1, 0.1F, 0.05F, 0.1F},
    {89.27F, 2.26F, 1.07F, 0, 0.01F, 0, 0, 0, 0, 0, 0.04F, 4.3F, 3.05F, 0, 0},
};

void set(const Library& library, const Percent& x) {
    library->PF1_1(x[0], x[1], x[2], x[3], x[4], x[5], x[6], x[7], x[8], x[9], x[10], x[11], x[12], x[13],
                   x[14]);
}

class Gas : public testing::Test {
protected:
    Runtime runtime{KALORFIX_GAS_DAT};
    Library library{KALORFIX_LIBRARY};
    void SetUp() override { ASSERT_EQ(library->Init(), 1); }
};

// Over the window of the channel the molar density must rise with the pressure, without a jump: that is the gas root. The
// curvature of K over 0.1 MPa stays small; another root would show as a kink of its whole size.
TEST_F(Gas, CompositionMethodsStayOnTheGasRootOverTheWindow) {
    for (const Percent& x : gases) {
        set(library, x);
        for (const auto method : {library->PF3_3, library->PF3_4})
            for (float T = 250.5F; T < 340.0F; T += 8.9F) {
                double last_density = 0.0;
                float before[2] = {1.0F, 1.0F};
                for (float p = 0.0011F; p < 30.0F; p += 0.1F) {
                    short failed = 9;
                    const float K = method(T, 0.0F, p, failed);
                    ASSERT_EQ(failed, 0) << T << ' ' << p;
                    const double density = static_cast<double>(p) / static_cast<double>(K);
                    ASSERT_GT(density, last_density) << T << ' ' << p;
                    ASSERT_LT(std::fabs(K - 2.0F * before[1] + before[0]), 0.01F) << T << ' ' << p;
                    last_density = density;
                    before[0] = before[1];
                    before[1] = K;
                }
            }
    }
}

// Where the prescribed iteration of AGA8-92DC comes to rest on a Z beyond all bounds, the true derivative finds the gas.
TEST_F(Gas, ARunawayIterationStartsAgain) {
    set(library, gases[6]);
    short failed = 9;
    const float other = library->PF3_4(275.0F, 0.0F, 29.0F, failed);
    EXPECT_NEAR(library->PF3_3(275.0F, 0.0F, 29.0F, failed) / other, 1.0F, 0.03F);
    EXPECT_EQ(failed, 0);
}

// The uncertainties that GOST 30319.2-96 gives for such a gas up to 12 MPa allow these differences.
TEST_F(Gas, MethodsAgreeOnALeanGas) {
    set(library, lean);
    const float rho_c = library->PF2();
    for (float T = 251.0F; T < 340.0F; T += 8.0F)
        for (float p = 0.5F; p <= 12.0F; p += 0.5F) {
            short failed = 9;
            const float aga8 = library->PF3_3(T, 0.0F, p, failed);
            const struct {
                const char* name;
                float K, permitted;
            } others[] = {{"VNIC SMV", library->PF3_4(T, 0.0F, p, failed), 0.002F},
                          {"GERG-91", library->NF1_2(T, 0.0F, p, lean[10], lean[11], rho_c, failed), 0.007F},
                          {"NX19", library->NF1_1(T, 0.0F, p, lean[10], lean[11], rho_c, failed), 0.009F}};
            for (const auto& other : others)
                EXPECT_NEAR(other.K / aga8, 1.0F, other.permitted) << other.name << ' ' << T << ' ' << p;
        }
}

// The companions take the contents from the composition.
TEST_F(Gas, CompanionsAgreeWithTheMethodsByDensity) {
    set(library, lean);
    const float rho_c = library->PF2();
    short failed = 9;
    *library->gas.VNIC_FLAG = 1;
    const float nx19 = library->PF3_1(290.0F, 0.0F, 5.0F, failed);
    EXPECT_EQ(*library->gas.VNIC_FLAG, 0);
    const float gerg91 = library->PF3_2(290.0F, 0.0F, 5.0F, failed);
    EXPECT_FLOAT_EQ(nx19, library->NF1_1(290.0F, 0.0F, 5.0F, lean[10], lean[11], rho_c, failed));
    EXPECT_FLOAT_EQ(gerg91, library->NF1_2(290.0F, 0.0F, 5.0F, lean[10], lean[11], rho_c, failed));
    // A cube root of a negative number is not a number there.
    EXPECT_TRUE(std::isnan(library->PF3_2(255.0F, 0.0F, 25.0F, failed)));
    EXPECT_EQ(failed, 1);
    EXPECT_TRUE(std::isfinite(library->NF1_2(255.0F, 0.0F, 25.0F, lean[10], lean[11], rho_c, failed)));
}

TEST_F(Gas, EveryMethodRefusesStatesOutsideItsOwnLimits) {
    set(library, lean);
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const struct {
        float T, dp, p;
    } states[] = {{70, 0, 1},   {1500, 0, 1},  {290, 0, 0}, {290, 0, 100},
                  {290, -1, 1}, {290, 250, 1}, {nan, 0, 1}, {290, 0, nan}};
    for (const auto& s : states) {
        short failed[4] = {9, 9, 9, 9};
        EXPECT_EQ(library->NF1_1(s.T, s.dp, s.p, 1, 1, 0.7F, failed[0]), 0.0F);
        EXPECT_EQ(library->NF1_2(s.T, s.dp, s.p, 1, 1, 0.7F, failed[1]), 0.0F);
        EXPECT_FALSE(library->PF3_3(s.T, s.dp, s.p, failed[2]) > 0.0F);
        EXPECT_EQ(library->PF3_4(s.T, s.dp, s.p, failed[3]), 0.0F);
        for (const short one : failed) EXPECT_EQ(one, 1) << s.T << ' ' << s.dp << ' ' << s.p;
        for (const auto companion : {library->PF3_1, library->PF3_2}) {
            EXPECT_FALSE(companion(s.T, s.dp, s.p, failed[0] = 9) > 0.0F);
            EXPECT_EQ(failed[0], 1) << s.T << ' ' << s.dp << ' ' << s.p;
        }
    }
    short failed = 9;
    EXPECT_GT(library->PF3_3(290, 249, 1, failed), 0.9F);
    EXPECT_EQ(failed, 0);
}

// What the property routines find in the module state, and what they leave there.
TEST_F(Gas, RoutinesHandOnTheModuleState) {
    set(library, lean);
    const float rho_c = library->PF2();
    short failed = 9;
    const float K = library->PF3_3(290.0F, 0.0F, 5.0F, failed);
    EXPECT_EQ(*library->gas.VNIC_FLAG, 0);
    EXPECT_EQ(*library->gas.K, K);
    const float dry = library->NF2_1();
    EXPECT_FLOAT_EQ(dry, 5.0F * 293.15F * rho_c / (290.0F * 0.101325F * K));
    EXPECT_EQ(*library->gas.Ro, dry);
    EXPECT_EQ(*library->gas.Plotnomer, 0);

    // The viscosity runs the other equation when it has not run yet, and the density follows from it.
    const float mu = library->PF5(0);
    EXPECT_EQ(*library->gas.VNIC_FLAG, 1);
    EXPECT_EQ(*library->gas.Mu, mu);
    *library->gas.T = 250.0F;
    EXPECT_EQ(library->PF5(0), mu) << "the state of the equation that has run";
    EXPECT_NEAR(library->PF4_1() / dry, 1.0F, 2e-3F) << "the same";
    *library->gas.T = 290.0F;
    EXPECT_NEAR(*library->gas.SM, 16.28F, 0.02F);
    EXPECT_NEAR(library->PF4_1() / dry, 1.0F, 2e-3F);
    EXPECT_EQ(*library->gas.kk, library->PF6());

    EXPECT_FLOAT_EQ(library->NF2_2(30.0F, 288.0F, 4.9F),
                    30.0F / (1.0F - (5.0F - 4.9F) / 5.0F) * (1.0F - (290.0F - 288.0F) / 290.0F));
    EXPECT_EQ(*library->gas.Plotnomer, 1);
    *library->gas.qmi = 12.0F;
    EXPECT_FLOAT_EQ(library->NF6(), 12000.0F / *library->gas.Ro);
    EXPECT_FLOAT_EQ(library->NF7(), 12000.0F / rho_c);
    EXPECT_EQ(*library->gas.qci, 12000.0F / rho_c);
}

// Tables are absent before Init, after Done and when the file is missing: a status, and no result.
void expect_no_tables(const Library& library) {
    ASSERT_EQ(*library->gas.V_Mi, nullptr);
    set(library, lean);
    short failed = 9;
    EXPECT_EQ(library->PF2(), 0.0F);
    EXPECT_EQ(library->PF3_3(290, 0, 5, failed), 0.0F);
    EXPECT_EQ(failed, 1);
    EXPECT_EQ(library->PF3_4(290, 0, 5, failed), 0.0F);
    EXPECT_EQ(failed, 1);
    EXPECT_EQ(library->PF5(0), 0.0F);
    EXPECT_EQ(library->PF6(), 0.0F);
    library->PF1_2(1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    EXPECT_EQ(*library->gas.NumXi, 0);
    EXPECT_GT(library->NF1_2(290, 0, 5, 1, 1, 0.7F, failed), 0.8F) << "needs no tables";
}

TEST(GasTables, AreMissedWithAStatus) {
    {
        const Runtime runtime(KALORFIX_GAS_DAT);
        const Library library(KALORFIX_LIBRARY);
        expect_no_tables(library);
        library->Init();
        short failed = 9;
        set(library, lean);
        EXPECT_GT(library->PF3_3(290, 0, 5, failed), 0.8F);
        library->Done();
        expect_no_tables(library);
    }
    const Runtime runtime;
    const Library library(KALORFIX_LIBRARY);
    EXPECT_EQ(library->Init(), 1);
    expect_no_tables(library);
}

// Damaged files: random bits, one NaN, one huge value. Whatever they say, the routines return.
TEST(GasTables, MayHoldAnything) {
    std::ifstream in(KALORFIX_GAS_DAT, std::ios::binary);
    const std::string good{std::istreambuf_iterator<char>(in), {}};
    ASSERT_EQ(good.size(), 7660U);
    const fs::path file = fs::path(testing::TempDir()) / ("damaged_" + std::to_string(getpid()));
    std::mt19937 random(9);
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float inf = std::numeric_limits<float>::infinity();
    const float values[] = {nan, inf, 1e38F, -1e38F, -1.0F, 0.0F, 2.5F, 1e-45F};
    for (int round = 0; round < 150; ++round) {
        std::string bytes = good;
        if (round % 10 == 0)
            for (char& byte : bytes) byte = static_cast<char>(random());
        else
            std::memcpy(bytes.data() + 4 * (random() % 1915), &values[random() % std::size(values)], 4);
        std::ofstream(file, std::ios::binary) << bytes;
        const Runtime runtime(file.string());
        const Library library(KALORFIX_LIBRARY);
        ASSERT_EQ(library->Init(), 1);
        for (const Percent& x : gases) {
            set(library, x);
            library->PF2();
            for (const auto method : {library->PF3_3, library->PF3_4}) {
                short failed = 9;
                const float K = method(280.0F, 0.0F, 8.0F, failed);
                EXPECT_TRUE(failed == 0 || failed == 1);
                EXPECT_FALSE(failed == 0 && std::isnan(K));
            }
            library->PF5(0);
            library->PF6();
        }
    }
    // A NaN in a table that every mixture reads is a failure of the method.
    std::string bytes = good;
    std::memcpy(bytes.data() + 6816, &values[0], 4);  // energy parameter of methane
    std::memcpy(bytes.data() + 128, &values[0], 4);   // volume correction of methane
    std::ofstream(file, std::ios::binary) << bytes;
    const Runtime runtime(file.string());
    const Library library(KALORFIX_LIBRARY);
    library->Init();
    set(library, lean);
    for (const auto method : {library->PF3_3, library->PF3_4}) {
        short failed = 9;
        method(280.0F, 0.0F, 8.0F, failed);
        EXPECT_EQ(failed, 1);
    }
    fs::remove(file);
}

}  // namespace
