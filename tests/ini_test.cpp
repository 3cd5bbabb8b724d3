// SPDX-License-Identifier: MIT
// IniFile: what it reads as a table of text, tests/tables/ini.txt; how it is opened and closed.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "kalorfix_runtime.h"

namespace fs = std::filesystem;

namespace {

constexpr int read_text = 1;

// The characters that a cell of the table stands for.
std::string unescaped(const std::string& cell) {
    std::string text;
    for (std::size_t k = 0; k < cell.size(); ++k) {
        const std::size_t close = cell.find('}', k), star = cell.find('*', k);
        if (cell[k] == '{' && close != std::string::npos) {
            text.append(std::stoul(cell.substr(k + 1)), cell[star + 1]);
            k = close;
        } else if (cell[k] != '\\') {
            text += cell[k];
        } else if (const char letter = cell[++k]; letter == 'x') {
            text += static_cast<char>(std::stoi(cell.substr(k + 1, 2), nullptr, 16));
            k += 2;
        } else {
            text += letter == 'n' ? '\n' : letter == 'r' ? '\r' : letter == 't' ? '\t' : '\0';
        }
    }
    return text;
}

class Ini : public testing::Test {
protected:
    std::string name = testing::TempDir() + "ini_test_" + std::to_string(getpid()) + ".ini";
    IniFile file{name.c_str(), read_text};

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
    std::string value(const char* section, const char* key, bool longest) {
        char found[2000] = "untouched";
        const int status = longest ? file.CfgGetMax(section, nullptr, nullptr, key, found)
                                   : file.CfgGet(section, nullptr, nullptr, key, found);
        EXPECT_EQ(status != 0, std::string(found) == "untouched");
        return status == 0 ? found : "(" + std::to_string(status) + ")";
    }
    template <class Number>
    std::string number() {
        Number found = 1;
        EXPECT_EQ(file.CfgGet("S", nullptr, nullptr, "n", found), 0);
        EXPECT_EQ(file.CfgGet("S", nullptr, nullptr, "none", found), 2);
        std::ostringstream text;
        text.precision(9);
        text << found;
        return text.str();
    }
    std::string walked(const char* section) {
        char key[1000], found[1000];
        int line = -1;
        if (file.GetNextKey(section, nullptr, nullptr, key, found, &line) != 0) return "end";
        return std::string(key) + '|' + found + '|' + std::to_string(line);
    }
    // What a row of the table computes, its cells put together as the expected ones are.
    std::string outcome(const std::vector<std::string>& cells) {
        const auto word = [&](std::size_t k) { return cells[k] == "null" ? nullptr : cells[k].c_str(); };
        if (cells[0] == "open") return std::to_string(open(cells[2]));
        if (cells[0] == "get" || cells[0] == "long") return value(word(1), word(2), cells[0] == "long");
        if (cells[0] == "walk") return walked(word(1));
        if (cells[0] == "number") {
            EXPECT_EQ(open("[S]\nn=" + cells[1] + "\n"), 0);
            EXPECT_EQ(number<long>(), number<int>());
            const float expected = std::strtof(cells[4].c_str(), nullptr);
            std::ostringstream text;
            text.precision(9);
            text << expected;
            EXPECT_EQ(number<float>(), text.str()) << cells[1].substr(0, 40);
            return number<int>() + '|' + number<short>();
        }
        if (cells[0] == "head") {
            int line = -1;
            const int status = file.SectionSearch(word(1), word(2), word(3), &line);
            EXPECT_EQ(file.SectionSearch(word(1), word(2), word(3), nullptr), status);
            return std::to_string(status) + '|' + std::to_string(line);
        }
        std::vector<int> list(32, -1);
        const int count = file.ConvertStrToListVar(word(2), std::stoi(cells[1]), list.data());
        std::string text;
        for (int k = 0; k < count; ++k)
            text += (k > 0 ? " " : "") + std::to_string(list[static_cast<std::size_t>(k)]);
        return text;
    }
};

TEST_F(Ini, ReadsWhatTheTableSays) {
    std::ifstream table(KALORFIX_TABLES "/ini.txt");
    int rows = 0;
    for (std::string line; std::getline(table, line);) {
        if (line.empty() || line[0] == '#') continue;
        ++rows;
        std::vector<std::string> cells;
        std::istringstream in(line + "|");
        for (std::string cell; std::getline(in, cell, '|');) cells.push_back(unescaped(cell));
        const std::size_t inputs = cells[0] == "walk" || cells[0] == "number" ? 2 : cells[0] == "head" ? 4 : 3;
        std::string expected = cells[0] == "open" ? cells[1] : cells[inputs];
        const std::size_t last = cells[0] == "number" ? 4 : cells.size();
        for (std::size_t k = inputs + 1; cells[0] != "open" && k < last; ++k) expected += '|' + cells[k];
        EXPECT_EQ(outcome(cells), expected) << line.substr(0, 80);
    }
    EXPECT_GT(rows, 100);
}

TEST_F(Ini, NarrowsListsAndGoesOnWalking) {
    short out[4] = {0, 0, 0, 0};
    EXPECT_EQ(file.ConvertStrToListVar("65537,2", static_cast<short>(9), out), 2);
    EXPECT_EQ(out[0], 1) << "narrowed to the element type";
    EXPECT_EQ(file.ConvertStrToListVar("all", static_cast<short>(-3), out), -3) << "nothing is written";
    EXPECT_EQ(out[0], 1);
    EXPECT_EQ(open("[T]\nc=3"), 0);
    EXPECT_EQ(file.GetNextKey("T", nullptr, nullptr, nullptr, nullptr, nullptr), 0) << "none is wanted";
    EXPECT_EQ(file.Close(), 0);
    EXPECT_EQ(file.Open(), 0);
    EXPECT_EQ(walked("T"), "end") << "the walk outlives the file";
    EXPECT_EQ(walked("T"), "c|3|2");
    EXPECT_EQ(file.Close(), 0);
    EXPECT_EQ(walked("T"), "end") << "no file";
}

TEST_F(Ini, OpensAndCloses) {
    EXPECT_EQ(file.Close(), 254);
    EXPECT_EQ(file.Open(), 1) << "no such file";
    EXPECT_EQ(file.CreatTableSection(), 1);
    EXPECT_EQ(value("S", "k", false), "(1)");
    EXPECT_EQ(open(""), 0);
    EXPECT_EQ(open("[S]\nk=1\n"), 0);
    EXPECT_EQ(file.DeleteTableSection(), 0);
    EXPECT_EQ(value("S", "k", false), "(1)");
    EXPECT_EQ(file.CreatTableSection(), 0);
    EXPECT_EQ(value("S", "k", false), "1");
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
    EXPECT_EQ(value("S", "k", false), "2");
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
    IniFile fresh(name.c_str(), 2);
    EXPECT_EQ(fresh.Open(), 0) << "writing makes the file";
    fresh.Close();
    std::ofstream(name) << "[S]\nk=1\n";
    for (const bool reading : {false, true}) {
        IniFile appending(name.c_str(), reading ? 4 + 16 : 4);
        EXPECT_EQ(appending.Open(), 0);
        EXPECT_EQ(appending.SectionSearch("S", nullptr, nullptr, nullptr), reading ? 0 : 2);
        appending.Close();
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
