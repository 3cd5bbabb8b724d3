// SPDX-License-Identifier: MIT
// Every text case against the built library.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>

#include "tools/cases/procedures.h"
#include "tools/runtime.h"

namespace cases = kalorfix::cases;
namespace fs = std::filesystem;

namespace {

std::vector<fs::path> case_files() {
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(KALORFIX_CASES))
        if (entry.path().extension() == ".txt") files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

class CaseFile : public testing::TestWithParam<fs::path> {};

TEST_P(CaseFile, IsMet) {
    std::ifstream in(GetParam());
    ASSERT_TRUE(in) << GetParam();
    const kalorfix::host::Runtime runtime(KALORFIX_GAS_DAT);
    const kalorfix::host::Library library(KALORFIX_LIBRARY);
    std::size_t compared = 0;
    for (const cases::Table& table : cases::read_tables(in, GetParam().filename().string()))
        for (const cases::Finding& finding : cases::run(library, table)) {
            ++compared;
            EXPECT_TRUE(finding.passed())
                << GetParam().filename().string() << ':' << finding.where->line << ": " << finding.where->id
                << ' ' << finding.expected->column << " expected " << finding.expected->text << ", computed "
                << testing::PrintToString(finding.computed) << ", permitted deviation " << finding.permitted;
        }
    EXPECT_GT(compared, 0U);
}

INSTANTIATE_TEST_SUITE_P(Text, CaseFile, testing::ValuesIn(case_files()),
                         [](const auto& file) { return file.param.stem().string(); });

TEST(CaseReader, ComparesAffirmatively) {
    const double nan = std::nan("");
    const double inf = std::numeric_limits<double>::infinity();
    EXPECT_TRUE(cases::met(1.0, 1.0, {}));
    EXPECT_TRUE(cases::met(1.001, 1.0, {0.0, 2e-3}));
    EXPECT_FALSE(cases::met(1.003, 1.0, {1e-3, 2e-3}));
    EXPECT_FALSE(cases::met(nan, 1.0, {1e9, 1e9}));
    EXPECT_FALSE(cases::met(1.0, nan, {1e9, 1e9}));
    EXPECT_TRUE(cases::met(nan, nan, {}));
    EXPECT_FALSE(cases::met(inf, 1.0, {1e9, 0.0}));
    EXPECT_TRUE(cases::met(inf, inf, {}));
    EXPECT_FALSE(cases::met(-inf, inf, {1.0, 1.0}));

    const cases::Expected printed{"Z", 2.0, "2", {1e-3, 0.0}, cases::Deviation{{0.0, 5e-3}, "reason"}};
    EXPECT_EQ(cases::judge(2.0009, printed), cases::Verdict::met);
    EXPECT_EQ(cases::judge(1.9901, printed), cases::Verdict::differs_as_declared);
    EXPECT_EQ(cases::judge(1.9899, printed), cases::Verdict::failed);
    EXPECT_EQ(cases::judge(nan, printed), cases::Verdict::failed);
}

TEST(CaseReader, NamesFileLineAndFault) {
    const std::string head = "[t_phase_1]\nsource: none\n";
    const struct {
        std::string text, fault;
    } faults[] = {
        {"row 1 2\n", "f:1: a table must begin with [function]"},
        {"[t_phase_1\n", "f:1: expected [function], found [t_phase_1"},
        {"[t_phase_1]\ncolumns: case t_C -> phase\na 1 water\n", "f:3: the table of t_phase_1 names no source"},
        {head, "f:2: the table of t_phase_1 has no rows"},
        {head + "colour: red\n", "f:3: unknown setting colour:"},
        {head + "a 1\n", "f:3: a row before its columns"},
        {head + "columns: case t_C phase\n", "f:3: no column behind ->"},
        {head + "columns: case t_C -> phase\na 1\n", "f:4: expected 3 columns, found 2"},
        {head + "columns: case t_C -> phase\na 1x water\n", "f:4: not a number or a known word: 1x"},
        {head + "fixed: t_C\n", "f:3: expected name=value, found t_C"},
        {head + "deviation: phase=1\n", "f:3: expected name=bound and a reason, found phase=1"},
    };
    for (const auto& fault : faults) {
        std::istringstream in(fault.text);
        try {
            (void)cases::read_tables(in, "f");
            ADD_FAILURE() << "accepted: " << fault.text;
        } catch (const std::runtime_error& error) {
            EXPECT_EQ(error.what(), fault.fault);
        }
    }
}

}  // namespace
