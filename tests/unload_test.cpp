// SPDX-License-Identifier: MIT
// Loading and unloading.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include "tools/host.h"

namespace {

bool loaded() {
    void* const handle = dlopen(KALORFIX_LIBRARY, RTLD_NOLOAD | RTLD_NOW);
    if (handle) dlclose(handle);
    return handle != nullptr;
}

TEST(Unload, ReallyUnloadsAndForgetsItsChannels) {
    for (int round = 0; round < 100; ++round) {
        {
            const kalorfix::host::Library library(KALORFIX_LIBRARY);
            ASSERT_TRUE(loaded());
            char status = 1;
            float f[5];
            library->mt_param_tr(100, &status, f, f + 1, f + 2, f + 3, f + 4);
            EXPECT_EQ(status, 0) << "a channel of the last round is still there";
            library->mt_init_tr(100, 1, 4, 0, 0, 0, 200, 100, 0, 0, 0, 0, 0, &status);
            EXPECT_EQ(status, 1);
        }
        ASSERT_FALSE(loaded()) << "dlclose left the library in the process";
    }
}

}  // namespace
