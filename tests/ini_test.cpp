// IniFile, table by table. Texts stand as they are in the file; \n and \r are written out.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "kalorfix_runtime.h"

namespace fs = std::filesystem;

namespace {

constexpr int read_text = 1;

class Ini : public testing::Test {
protected:
    std::string name = testing::TempDir() + "ini_test_" + std::to_string(getpid()) + ".ini";
    IniFile file{name.c_str(), read_text};
    int line = -1;

    void TearDown() override {
        file.Close();
        std::remove(name.c_str());
    }
    // Opens a file of the given content; the status of Open.
    int open(const std::string& content) {
        std::ofstream(name, std::ios::binary) << content;
        file.Close();
        return file.Open();
    }
    std::string string(const char* key, const char* section = "S") {
        char value[1000] = "untouched";
        const int status = file.CfgGet(section, nullptr, nullptr, key, value);
        return status == 0 ? value : "(" + std::to_string(status) + ")";
    }
    std::string longest(const char* key) {
        char value[2000] = "untouched";
        const int status = file.CfgGetMax("S", nullptr, nullptr, key, value);
        return status == 0 ? value : "(" + std::to_string(status) + ")";
    }
};

TEST_F(Ini, IndexesHeadersWithTheirLines) {
    ASSERT_EQ(open("x=0 [A] \n: \r[B]\n[C D]\n\n[E\nF G]\n[  H\tI ]"), 0);
    const struct {
        const char *section, *sub1, *sub2;
        int status, line;
    } rows[] = {{"A", nullptr, nullptr, 0, 1},  {"B", nullptr, nullptr, 2, -1},
                {"C", "D", "", 0, 3},           {"C", "", nullptr, 2, -1},
                {nullptr, "D", nullptr, 0, 3},  {"EF", "G", nullptr, 0, 6},
                {"H", "I", "", 0, 7},           {"C", "D", "x", 2, -1},
                {"c", nullptr, nullptr, 2, -1}, {nullptr, nullptr, nullptr, 0, 1}};
    for (const auto& row : rows) {
        line = -1;
        EXPECT_EQ(file.SectionSearch(row.section, row.sub1, row.sub2, &line), row.status) << row.section;
        EXPECT_EQ(line, row.line) << row.section;
    }
    EXPECT_EQ(file.SectionSearch("A", nullptr, nullptr, nullptr), 0) << "the line is optional";
}

TEST_F(Ini, MalformedHeadersKeepWhatStandsBefore) {
    const std::string good = "[S]\nk=1\n";
    const struct {
        const char* what;
        std::string content;
        int status;
    } rows[] = {{"colon", good + "[A:B]\n", 3},
                {"colon, closed on the next line", good + "[A:B]\nC]\n", 3},
                {"not closed", good + "[A", 3},
                {"255 characters", good + "[" + std::string(255, 'x') + "]", 0},
                {"256 characters", good + "[" + std::string(256, 'x') + "]", 3},
                {"endless", good + "[" + std::string(5000, 'x'), 3},
                {"comment at the end", good + ": [", 0},
                {"bracket in a header", good + "[A[B]", 0},
                {"zero bytes", good + std::string("[A\0B]", 5), 0}};
    for (const auto& row : rows) {
        EXPECT_EQ(open(row.content), row.status) << row.what;
        EXPECT_EQ(string("k"), "1") << row.what;
    }
    EXPECT_EQ(open("[A B C D]\n[S]\nk=1\n"), 0);
    EXPECT_EQ(file.SectionSearch("S", nullptr, nullptr, nullptr), 1) << "four words stop the search";
    EXPECT_EQ(string("k"), "(1)");
    EXPECT_EQ(open("[A B C ]\n[S]\nk=1\n"), 0);
    EXPECT_EQ(string("k"), "(1)") << "so does white space behind three";
    EXPECT_EQ(open("[A B C]\n[S]\nk=1\n"), 0);
    EXPECT_EQ(string("k"), "1");
}

TEST_F(Ini, FindsKeys) {
    ASSERT_EQ(open("[S]\na = 1\n b b=2\nc : x=3\nd=4=5\n:\re=6\n\rf=7\n" + std::string(1000, 'g') +
                   "=8\nh=9 : i=10\nj : [ = 11\n\x01k=12\n" + "[T]\nz=0\n" + std::string(1000, 'g')),
              0);
    const struct {
        const char *key, *value;
    } rows[] = {{"a", "1"},   {"bb", "2"},  {"b b", "(2)"}, {"c", "3"},  {"d", "4=5"},
                {"e", "(2)"}, {"", "6"},    {"f", "7"},     {"h", "9"},  {"i", "(2)"},
                {"z", "(2)"}, {"A", "(2)"}, {nullptr, "1"}, {"j", "11"}, {"\x01k", "12"}};
    for (const auto& row : rows) EXPECT_EQ(string(row.key), row.value) << (row.key ? row.key : "null");
    EXPECT_EQ(string("z", "T"), "0");
    EXPECT_EQ(string("y", "T"), "(2)") << "the last line is too long for a key and has no end";
    EXPECT_EQ(string("a", "U"), "(1)");
    for (const std::size_t length : {999U, 1000U})
        EXPECT_EQ(string(std::string(length, 'g').c_str()), "(2)") << "no key is that long";
}

TEST_F(Ini, ReadsStrings) {
    const std::string many(1500, 'm');
    ASSERT_EQ(open("[S]\nplain=  a b\t \nempty=\njoin=abc &\n  def\ngap=a & \t\r\n\n b&&c\nlong=" + many +
                   "\namp= &\n z\ncr=x\ry=2\ncolon=a:b\nff=\xFFz\nlast=end&"),
              0);
    const struct {
        const char *key, *value, *longest;
    } rows[] = {{"plain", "a b", "a b"}, {"empty", "", ""},        {"join", "abcdef", "abcdef"},
                {"gap", "ab&c", "ab&c"}, {"amp", "z", "z"},        {"cr", "x", "x"},
                {"colon", "a", "a:b"},   {"ff", "\xFFz", "\xFFz"}, {"last", "end\xFF", "end\xFF"}};
    for (const auto& row : rows) {
        EXPECT_EQ(string(row.key), row.value) << row.key;
        EXPECT_EQ(longest(row.key), row.longest) << row.key;
    }
    EXPECT_EQ(string("long"), std::string(999, 'm'));
    EXPECT_EQ(longest("long"), many);
    char untouched[8] = "as is";
    EXPECT_EQ(file.CfgGet("S", nullptr, nullptr, "none", untouched), 2);
    EXPECT_EQ(file.CfgGetMax("S", nullptr, nullptr, "none", untouched), 2);
    float number = 7.0F;
    EXPECT_EQ(file.CfgGet("S", nullptr, nullptr, "none", number), 2);
    EXPECT_EQ(number, 7.0F);
    EXPECT_STREQ(untouched, "as is");
}

TEST_F(Ini, ReadsNumbers) {
    struct Row {
        std::string text;
        int integer;
        short narrow;
        float number;
    };
    const float inf = std::numeric_limits<float>::infinity();
    const std::vector<Row> rows{{"7 : pipelines", 7, 7, 7},
                                {"1 000", 1000, 1000, 1000},
                                {"12abc", 12, 12, 12},
                                {"", 0, 0, 0},
                                {"abc", 0, 0, 0},
                                {"- 5", -5, -5, -5},
                                {"--5", 0, 0, 0},
                                {"1-2", 1, 1, 1},
                                {"\t5", 0, 0, 0},
                                {"5\t6", 5, 5, 5},
                                {"+5", 0, 0, 0},
                                {"2.75", 2, 2, 2.75F},
                                {"-.5", 0, 0, -0.5F},
                                {"1.5.5", 1, 1, 1.5F},
                                {"1e5", 1, 1, 1},
                                {"70000", 70000, 4464, 70000},
                                {"2147483648", 2147483647, -1, 2147483648.0F},
                                {"-99999999999", -2147483647 - 1, 0, -99999999999.0F},
                                {std::string(400, '9'), 2147483647, -1, inf},
                                {"-" + std::string(400, '9'), -2147483647 - 1, 0, -inf},
                                {"0." + std::string(400, '0') + "1", 0, 0, 0},
                                {std::string(1200, '0') + "7", 0, 0, 0}};
    for (const Row& row : rows) {
        ASSERT_EQ(open("[S]\nn=" + row.text + "\n"), 0);
        int integer = 1;
        long big = 1;
        short narrow = 1;
        float number = 1;
        EXPECT_EQ(file.CfgGet("S", nullptr, nullptr, "n", integer), 0);
        EXPECT_EQ(file.CfgGet("S", nullptr, nullptr, "n", big), 0);
        EXPECT_EQ(file.CfgGet("S", nullptr, nullptr, "n", narrow), 0);
        EXPECT_EQ(file.CfgGet("S", nullptr, nullptr, "n", number), 0);
        EXPECT_EQ(integer, row.integer) << row.text.substr(0, 40);
        EXPECT_EQ(big, row.integer) << row.text.substr(0, 40);
        EXPECT_EQ(narrow, row.narrow) << row.text.substr(0, 40);
        EXPECT_EQ(number, row.number) << row.text.substr(0, 40);
    }
}

TEST_F(Ini, WalksTheLinesOfASection) {
    ASSERT_EQ(open("[A]\n[S]\n\n a = 1 \r\n\r\n: note\rg=1\nno sign\nb=x=y:z\nlast" + std::string(1000, '.') +
                   "\n[T]\nc=3"),
              0);
    const struct {
        const char *key, *value;
        int line;
    } rows[] = {{"a", "1", 4}, {"", "", 6}, {"", "", 7}, {"b", "x=y", 8}, {"", "", 9}, {"", "", 9}};
    char key[1000], value[1000];
    for (int round = 0; round < 2; ++round) {
        for (const auto& row : rows) {
            ASSERT_EQ(file.GetNextKey("S", nullptr, nullptr, key, value, &line), 0);
            EXPECT_STREQ(key, row.key);
            EXPECT_STREQ(value, row.value);
            EXPECT_EQ(line, row.line);
        }
        EXPECT_EQ(file.GetNextKey("S", nullptr, nullptr, key, value, &line), 1);
    }
    EXPECT_EQ(file.GetNextKey("none", nullptr, nullptr, key, value, &line), 1);
    EXPECT_EQ(file.GetNextKey("T", nullptr, nullptr, key, value, &line), 0);
    EXPECT_STREQ(key, "c");
    EXPECT_EQ(file.GetNextKey("T", nullptr, nullptr, key, value, nullptr), 1);
    EXPECT_EQ(file.GetNextKey("T", nullptr, nullptr, nullptr, nullptr, nullptr), 0) << "none is wanted";
    EXPECT_EQ(file.Close(), 0);
    EXPECT_EQ(file.Open(), 0);
    EXPECT_EQ(file.GetNextKey("T", nullptr, nullptr, key, value, &line), 1) << "the walk outlived the file";
    EXPECT_EQ(file.Close(), 0);
    EXPECT_EQ(file.GetNextKey("T", nullptr, nullptr, key, value, &line), 1) << "no file";
}

TEST_F(Ini, ConvertsLists) {
    const struct {
        const char* text;
        int max;
        std::vector<int> expected;
    } rows[] = {{"all", 3, {1, 2, 3}},
                {"ALLx", 2, {1, 2}},
                {"aLL", 3, {}},
                {"", 5, {}},
                {"5-3", 9, {5}},
                {"1,3-5,9", 8, {1, 3, 4, 5}},
                {"1 2 3", 9, {1}},
                {"3-99", 5, {3, 4, 5}},
                {"0,2", 5, {2}},
                {"5", 5, {5}},
                {"9-12,4", 5, {4}},
                {"2,2", 5, {2, 2}},
                {"x7y,8", 9, {7, 8}},
                {"5-", 9, {5}},
                {"1-3-5", 9, {1, 2, 3, 5}},
                {"1234567890", 2000000000, {123456789}}};
    for (const auto& row : rows) {
        std::vector<int> out(32, -1);
        const int count = file.ConvertStrToListVar(row.text, row.max, out.data());
        out.resize(static_cast<std::size_t>(count));
        EXPECT_EQ(out, row.expected) << row.text;
    }
    short out[4] = {0, 0, 0, 0};
    EXPECT_EQ(file.ConvertStrToListVar("65537,2", static_cast<short>(9), out), 2)
        << "narrowed to the element type";
    EXPECT_EQ(out[0], 1);
    EXPECT_EQ(file.ConvertStrToListVar("all", static_cast<short>(-3), out), -3) << "nothing is written";
    EXPECT_EQ(out[0], 1);
    EXPECT_EQ(file.ConvertStrToListVar(nullptr, 5, static_cast<int*>(nullptr)), 0);
}

TEST_F(Ini, OpensAndCloses) {
    EXPECT_EQ(file.Close(), 254);
    EXPECT_EQ(file.Open(), 1) << "no such file";
    EXPECT_EQ(file.CreatTableSection(), 1);
    EXPECT_EQ(string("k"), "(1)");
    EXPECT_EQ(open(""), 0);
    EXPECT_EQ(open("[S]\nk=1\n"), 0);
    EXPECT_EQ(file.DeleteTableSection(), 0);
    EXPECT_EQ(string("k"), "(1)");
    EXPECT_EQ(file.CreatTableSection(), 0);
    EXPECT_EQ(string("k"), "1");
    EXPECT_EQ(file.Close(), 0);
    EXPECT_EQ(file.Close(), 254);
    EXPECT_EQ(file.KeySearch("k"), 1);
    const int descriptor = dup(STDIN_FILENO);
    close(descriptor);
    EXPECT_EQ(open("[S]\nk=1\n"), 0);
    close(descriptor);
    EXPECT_EQ(file.Close(), 255) << "the system refuses to close it";

    for (const char* odd : {"/", "/dev/zero", "/dev/null"}) {
        IniFile special(odd, read_text);
        EXPECT_EQ(special.Open(), 1) << odd;
    }
    IniFile nameless;
    EXPECT_EQ(nameless.Open(), 1);
    nameless.SetName("");
    nameless.SetName(nullptr);
    EXPECT_EQ(nameless.Open(), 1);
}

TEST_F(Ini, ReopeningReplacesTheIndex) {
    ASSERT_EQ(open("[S]\nk=1\n"), 0);
    std::ofstream(name) << "[S]\nk=2\n";
    FILE* const handle = std::fopen(name.c_str(), "r");
    const int before = fileno(handle);
    std::fclose(handle);
    EXPECT_EQ(file.Open(), 2);
    EXPECT_EQ(string("k"), "2");
    EXPECT_EQ(file.Close(), 0);
    close(before - 1);  // the first stream, which reopening leaves open by rule
    std::remove(name.c_str());
}

TEST_F(Ini, BuildsModeStrings) {
    std::ofstream(name) << "[S]\nk=1\n";
    const struct {
        int bits, status;
    } rows[] = {{1, 0}, {9, 0}, {17, 0}, {0, 1}, {16, 1}, {8, 1}, {4, 0}, {2, 0}};
    for (const auto& row : rows) {
        IniFile other(name.c_str(), row.bits);
        EXPECT_EQ(other.Open(), row.status) << row.bits;
        other.Close();
        EXPECT_EQ(fs::file_size(name) == 0, row.bits == 2) << "writing empties the file, appending does not";
    }
    std::remove(name.c_str());
    EXPECT_EQ(IniFile(name.c_str(), 2).Open(), 0) << "writing makes the file";
    std::ofstream(name) << "[S]\nk=1\n";
    for (const bool reading : {false, true}) {
        IniFile appending(name.c_str(), reading ? 4 + 16 : 4);
        EXPECT_EQ(appending.Open(), 0);
        EXPECT_EQ(appending.SectionSearch("S", nullptr, nullptr, nullptr), reading ? 0 : 2);
    }
    // Too long a mode is an empty one.
    const struct {
        const char* mode;
        int length, status;
    } modes[] = {{"rtttt", 5, 0}, {"r", 1, 0}, {"rrrrrr", 6, 1}, {"r", 1, 0}, {"", 0, 1}, {nullptr, 0, 1}};
    IniFile other(name.c_str());
    for (const auto& row : modes) {
        EXPECT_EQ(other.SetSMode(row.mode), row.length);
        EXPECT_EQ(other.Open(), row.status) << row.length;
        other.Close();
    }
}

}  // namespace
