// What a gas is made of term by term: the sums of AGA8-92DC and the heat capacities, of the shipped tables.
//
// The expected numbers are evaluations in double precision by a program of its own, written from the published formulas
// (AGA Report No. 8 with the orientation cross term doubled; GOST 30319.3-96, table 2), from tables in single precision as
// the library holds them. With the cross term once it gives 44 published compressibility factors (ISO 12213-2, annex C, and
// others) to the last printed digit.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <utility>

#include "gas/aga8_constants.h"
#include "kalorfix_gas.h"
#include "props/gas_by_composition.h"

namespace gas = kalorfix::gas;
namespace aga8 = kalorfix::gas::aga8;

namespace {

class GasTerms : public testing::Test {
protected:
    void SetUp() override {
        std::snprintf(PATH_SRAM_FOR_LOADTABL, sizeof PATH_SRAM_FOR_LOADTABL, "%s", KALORFIX_GAS_DAT);
        ASSERT_EQ(INIT_GAS(), 0);
    }
    void TearDown() override { REINIT_GAS(); }

    // Leaves the sums of a gas at a temperature in the exported B and C; whether a density is found does not matter.
    template <std::size_t count>
    static void evaluate(const std::pair<std::size_t, float> (&shares)[count], float T_K) {
        std::array<float, gas::component_count> x{};
        for (const auto& [component, percent] : shares) x[component] = percent;
        PF1_1(x[0], x[1], x[2], x[3], x[4], x[5], x[6], x[7], x[8], x[9], x[10], x[11], x[12], x[13], x[14]);
        short ignored = 0;
        PF3_3(T_K, 0.0F, 1.0F, ignored);
    }
    // Single precision of the result and of what it is made of.
    static void expect_single(float computed, double expected, const char* what, std::size_t number) {
        EXPECT_NEAR(static_cast<double>(computed), expected, 2e-7 * std::fabs(expected))
            << what << ' ' << number;
    }
};

// Terms 8, 22, 25 and 30 are those of hydrogen.
TEST_F(GasTerms, OfAMixtureAreTheFormulas) {
    constexpr double density_terms[] = {
        0.0,
        0.135433695,
        -0.347398362,
        -0.0027669996,
        -0.00294955956,
        0.0138928503,
        0.0258371733,
        0.0705881383,
        -0.00160057296,
        0.474018539,
        -0.263801877,
        -0.0135556135,
        0.00507517577,
        -0.00955980038,
        0.0,
        -0.000614767144,
        0.193279249,
        0.0,
        -0.447265893,
        0.0412268001,
        -0.00767787424,
        -0.0747461672,
        0.0,
        0.0214460104,
        0.00136514224,
        -0.00729491852,
        0.0249558706,
        0.036907786,
        0.438485055,
        -0.0107640514,
        1.36988412,
        -1.72946419,
        -0.00500453604,
        -0.122725405,
        0.00290120294,
        0.00203252006,
        0.0238472126,
        0.00193448969,
        -0.047046432,
        1.56004776e-05,
        0.00721293314,
        -0.00125683803,
        0.0123975246,
        0.000716766369,
        -0.00113695238,
        0.000208335853,
    };
    constexpr double virial_factors[] = {
        0.111258842, 1.57033793, 22.7042036, 18832986.3, 0.000897405372, 814072427.0,    0.110380351,
        0.0,         5046.71589, 1198219.08, 437.743458, 5046.71589,     4.25351173e+25,
    };
    evaluate({{1U, 10.0F}, {3U, 10.0F}, {10U, 20.0F}, {11U, 30.0F}, {12U, 10.0F}, {14U, 20.0F}}, 250.0F);
    for (std::size_t n = 0; n < std::size(density_terms); ++n)
        expect_single(C[n + aga8::first_density_term], density_terms[n], "density term", n + 8);
    for (std::size_t n = 0; n < std::size(virial_factors); ++n)
        expect_single(B[n], virial_factors[n], "virial factor", n + 1);
}

// Where a pair parameter weighs most: U in high powers of U/T, with traces of the other gas in helium, whose energy is
// small; G in a term proportional to it.
TEST_F(GasTerms, OfTwoComponentsShowTheirPairParameters) {
    const struct {
        std::size_t first, second;
        float first_percent, second_percent, T_K;
        std::size_t term;
        double expected;
    } rows[] = {
        {0, 13, 0.05F, 99.95F, 75.0F, 13, 3.00798933e-13},
        {1, 13, 0.05F, 99.95F, 75.0F, 13, 4.62277348e-11},
        {2, 13, 0.05F, 99.95F, 75.0F, 13, 3.9923032e-10},
        {3, 13, 0.05F, 99.95F, 75.0F, 13, 1.54414509e-09},
        {4, 13, 0.05F, 99.95F, 75.0F, 13, 9.88247933e-10},
        {5, 13, 0.05F, 99.95F, 75.0F, 13, 4.27161555e-09},
        {6, 13, 0.05F, 99.95F, 75.0F, 13, 3.67444727e-09},
        {7, 13, 0.05F, 99.95F, 75.0F, 13, 1.05358114e-08},
        {8, 13, 0.05F, 99.95F, 75.0F, 13, 2.03990125e-08},
        {9, 13, 0.05F, 99.95F, 75.0F, 13, 3.58324471e-08},
        {10, 13, 0.05F, 99.95F, 75.0F, 13, 5.31474769e-15},
        {11, 13, 0.05F, 99.95F, 75.0F, 13, 4.19328736e-11},
        {12, 13, 0.05F, 99.95F, 75.0F, 13, 3.74358159e-10},
        {14, 13, 0.05F, 99.95F, 75.0F, 13, 8.89585901e-15},
        {0, 12, 50.0F, 50.0F, 300.0F, 19, -0.000242585675},
        {1, 14, 50.0F, 50.0F, 300.0F, 19, -6.9382358e-06},
        {2, 10, 50.0F, 50.0F, 300.0F, 19, -0.000246790858},
        {5, 14, 50.0F, 50.0F, 300.0F, 19, -0.0240284682},
        {6, 10, 50.0F, 50.0F, 300.0F, 19, -0.017356935},
        {9, 14, 50.0F, 50.0F, 300.0F, 19, -1.25025289},
        {0, 2, 50.0F, 50.0F, 300.0F, 28, -0.0045017779},
        {0, 4, 50.0F, 50.0F, 300.0F, 28, -0.00880981192},
        {0, 10, 50.0F, 50.0F, 300.0F, 28, -0.000457872589},
        {0, 11, 50.0F, 50.0F, 300.0F, 28, -0.00407142544},
        {0, 12, 50.0F, 50.0F, 300.0F, 28, -0.00268566016},
        {0, 14, 50.0F, 50.0F, 300.0F, 28, -0.000676776325},
        {1, 10, 50.0F, 50.0F, 300.0F, 28, -0.00266509812},
        {1, 11, 50.0F, 50.0F, 300.0F, 28, -0.00314641941},
        {1, 14, 50.0F, 50.0F, 300.0F, 28, -0.00302980322},
        {2, 14, 50.0F, 50.0F, 300.0F, 28, -0.0055387059},
        {4, 14, 50.0F, 50.0F, 300.0F, 28, -0.00982668314},
        {7, 14, 50.0F, 50.0F, 300.0F, 28, -0.0134427524},
        {10, 11, 50.0F, 50.0F, 300.0F, 28, -0.00526640871},
        {10, 12, 50.0F, 50.0F, 300.0F, 28, -0.00353973444},
        {10, 13, 50.0F, 50.0F, 300.0F, 28, -0.000277939051},
        {10, 14, 50.0F, 50.0F, 300.0F, 28, -0.000906426197},
        {11, 13, 50.0F, 50.0F, 300.0F, 28, -0.0045829959},
        {12, 14, 50.0F, 50.0F, 300.0F, 28, -0.00389606795},
        {13, 14, 50.0F, 50.0F, 300.0F, 28, -0.000411855506},
    };
    for (std::size_t k = 0; k < std::size(rows); ++k) {
        const auto& row = rows[k];
        evaluate({{row.first, row.first_percent}, {row.second, row.second_percent}}, row.T_K);
        expect_single(C[row.term - 1], row.expected, "row", k + 1);
    }
    evaluate({{10U, 50.0F}, {13U, 50.0F}}, 300.0F);
    expect_single(B[2], 2.79107629, "virial factor", 3);
    evaluate({{13U, 50.0F}, {14U, 50.0F}}, 300.0F);
    expect_single(B[2], 3.03405024, "virial factor", 3);
}

// Far beyond the temperatures of use, where the highest powers weigh. Permitted is the rounding of the partial sums.
TEST_F(GasTerms, OfTheHeatCapacitiesAreTheFormula) {
    const struct {
        std::size_t component;
        float T_K;
        double expected, permitted;
    } rows[] = {
        {0, 50.0F, 4.01880951, 2.2e-04},  {0, 100.0F, 4.00240916, 1.1e-04},
        {0, 300.0F, 4.30325895, 7.0e-05}, {0, 1500.0F, 10.7062104, 6.7e-03},
        {1, 50.0F, 3.9798467, 6.6e-05},   {1, 100.0F, 4.29724291, 3.7e-05},
        {1, 300.0F, 6.33779103, 2.5e-05}, {1, 1500.0F, 74.3609597, 9.1e-04},
        {2, 50.0F, 4.09597366, 1.1e-04},  {2, 100.0F, 4.96699321, 5.4e-05},
        {2, 300.0F, 8.89539886, 3.0e-05}, {2, 1500.0F, 24.763201, 2.0e-04},
        {3, 50.0F, 4.5787071, 3.1e-04},   {3, 100.0F, 6.65704933, 1.4e-04},
        {3, 300.0F, 11.9023312, 7.6e-05}, {3, 1500.0F, 30.1742005, 5.9e-04},
        {4, 50.0F, -62.7694301, 2.4e-05}, {4, 100.0F, -0.101224204, 1.7e-05},
        {4, 300.0F, 11.699848, 7.3e-06},  {4, 1500.0F, 34.2153751, 5.7e-05},
        {5, 50.0F, 3.50047352, 2.6e-05},  {5, 100.0F, 3.50039654, 8.1e-06},
        {5, 300.0F, 3.50282387, 5.1e-06}, {5, 1500.0F, 4.19107916, 1.2e-05},
        {6, 50.0F, 3.35696168, 1.2e-06},  {6, 100.0F, 3.51398525, 1.2e-06},
        {6, 300.0F, 4.47116226, 1.8e-06}, {6, 1500.0F, 7.01927682, 1.6e-05},
        {7, 50.0F, 9.37858367, 3.9e-06},  {7, 100.0F, 4.00446921, 1.7e-06},
        {7, 300.0F, 4.12263439, 1.6e-06}, {7, 1500.0F, 6.22833847, 2.5e-06},
    };
    for (const auto& row : rows)
        EXPECT_NEAR(static_cast<double>(gas::ideal_heat_capacity(row.component, row.T_K, L1ij, B1ij)),
                    row.expected, row.permitted)
            << row.component << ' ' << row.T_K;
}

}  // namespace
