// SPDX-License-Identifier: MIT
// Registry, files and clock beneath the exports.
#include <gtest/gtest.h>

#include "frame/channels.h"
#include "kalorfix_runtime.h"
#include "runtime/files.h"

namespace {

struct Numbered {
    Numbered() : number(++made) {}
    int number;
    static inline int made = 0;
};

TEST(Registry, MakesLowerChannelsFirstAndKeepsThem) {
    // What stands before the slots is not null.
    struct {
        const int* before = &Numbered::made;
        LocVect<Numbered> registry;
    } memory;
    LocVect<Numbered>& registry = memory.registry;
    ASSERT_NE(memory.before, nullptr);
    for (const int refused : {0, -1, 20001, INT32_MIN, INT32_MAX}) EXPECT_EQ(registry.GetVar(refused), nullptr);
    EXPECT_EQ(registry.size(), 0U);
    Numbered* const seventh = registry.GetVar(7);
    EXPECT_EQ(seventh->number, 7);
    EXPECT_EQ(registry.GetVar(3)->number, 3);
    EXPECT_EQ(registry.GetVar(20000)->number, 20000);
    EXPECT_EQ(registry.GetVar(7), seventh);
    EXPECT_EQ(Numbered::made, 20000);
}

TEST(Files, AreNamedByDirectoryAndRest) {
    char path[5] = "----";
    EXPECT_TRUE(kalorfix::join_path(path, sizeof path, nullptr, "/a"));
    EXPECT_STREQ(path, "/a");
    EXPECT_TRUE(kalorfix::join_path(path, sizeof path, "/a", "/b"));
    EXPECT_STREQ(path, "/a/b");
    EXPECT_FALSE(kalorfix::join_path(path, 4, "/a", "/b"));
    EXPECT_STREQ(path, "");
    EXPECT_FALSE(kalorfix::is_regular_or_new("/"));
    EXPECT_TRUE(!kalorfix::open_regular(nullptr, "r") && !kalorfix::open_regular("/proc/self/exe", nullptr));
}

TEST(Clock, ConvertsMicroseconds) {
    timeval from{5, 250000};
    timespec to{};
    timecon(&from, &to);
    EXPECT_TRUE(to.tv_sec == 5 && to.tv_nsec == 250000000);
    EXPECT_EQ(OpenAbsClock(), 0);
}

}  // namespace
