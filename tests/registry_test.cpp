// Registry, files and clock.
#include <gtest/gtest.h>
#include <sys/times.h>

#include <cstdint>

#include "frame/registry.h"
#include "kalorfix_runtime.h"
#include "runtime/files.h"

namespace {

struct Numbered {
    Numbered() : number(++made) {}
    ~Numbered() { ++destroyed; }
    Numbered(const Numbered&) = delete;
    Numbered& operator=(const Numbered&) = delete;
    int number;
    static inline int made = 0;
    static inline int destroyed = 0;
};

TEST(Registry, MakesLowerChannelsFirstAndKeepsThem) {
    Numbered::made = Numbered::destroyed = 0;
    {
        // What stands before the slots is not null.
        struct {
            const int* before = &Numbered::made;
            LocVect<Numbered> registry;
        } memory;
        LocVect<Numbered>& registry = memory.registry;
        ASSERT_NE(memory.before, nullptr);
        for (const int refused : {0, -1, 20001, INT32_MIN, INT32_MAX})
            EXPECT_EQ(registry.GetVar(refused), nullptr);
        EXPECT_EQ(registry.size(), 0U);

        Numbered* const seventh = registry.GetVar(7);
        ASSERT_NE(seventh, nullptr);
        EXPECT_EQ(registry.size(), 7U);
        EXPECT_EQ(seventh->number, 7);
        EXPECT_EQ(registry.GetVar(3)->number, 3);
        ASSERT_NE(registry.GetVar(20000), nullptr);
        EXPECT_EQ(registry.size(), 20000U);
        EXPECT_EQ(registry.GetVar(7), seventh);
        EXPECT_EQ(Numbered::destroyed, 0);
    }
    EXPECT_EQ(Numbered::made, 20000);
    EXPECT_EQ(Numbered::destroyed, 20000);
}

TEST(Files, AreRefusedWhereThereIsNone) {
    EXPECT_FALSE(kalorfix::is_regular(-1));
    EXPECT_EQ(kalorfix::open_regular(nullptr, "r"), nullptr);
    EXPECT_EQ(kalorfix::open_regular("/proc/self/exe", nullptr), nullptr);
    EXPECT_NE(kalorfix::open_regular("/proc/self/exe", "r"), nullptr);
}

TEST(Files, AreNamedByDirectoryAndRest) {
    const struct {
        const char *directory, *rest, *joined;
    } rows[] = {{"", "", ""}, {nullptr, "", ""}, {nullptr, "/a", "/a"}, {"/a", "/b", "/a/b"}};
    for (const auto& row : rows) {
        char path[5] = "----";
        EXPECT_TRUE(kalorfix::join_path(path, sizeof path, row.directory, row.rest)) << row.joined;
        EXPECT_STREQ(path, row.joined);
    }
    char path[4] = "---";
    EXPECT_FALSE(kalorfix::join_path(path, sizeof path, "/a", "/b"));
    EXPECT_STREQ(path, "");
}

TEST(Clock, CountsTicksOfTheProcessClock) {
    EXPECT_EQ(OpenAbsClock(), 0);
    tms unused{};
    const auto before = static_cast<std::uint32_t>(times(&unused));
    const auto now = static_cast<std::uint32_t>(abs_clock());
    const auto after = static_cast<std::uint32_t>(times(&unused));
    EXPECT_LE(now - before, after - before);
}

TEST(Clock, ConvertsMicroseconds) {
    timeval from{5, 250000};
    timespec to{};
    timecon(&from, &to);
    EXPECT_EQ(to.tv_sec, 5);
    EXPECT_EQ(to.tv_nsec, 250000000);
}

}  // namespace
