// SPDX-License-Identifier: MIT
#include "runtime/files.h"

#include <sys/stat.h>

// glibc has stat as a symbol only since 2.33; its forerunner, told which struct stat is meant, serves every version. It knows the
// classic struct, not the one with 64-bit offsets and times of a 32-bit machine.
#if defined(__GLIBC__) && defined(__x86_64__)
#define KALORFIX_STAT_VERSION 1
#elif defined(__GLIBC__) && defined(__aarch64__)
#define KALORFIX_STAT_VERSION 0
#elif defined(__GLIBC__) && defined(__arm__) && !defined(__USE_FILE_OFFSET64)
#define KALORFIX_STAT_VERSION 3
#endif

#ifdef KALORFIX_STAT_VERSION
extern "C" int __xstat(int version, const char* name, struct stat* about) noexcept;
#define stat(name, about) __xstat(KALORFIX_STAT_VERSION, name, about)
#endif

namespace kalorfix {

bool is_regular_or_new(const char* name) {
    struct stat about {};
    return stat(name, &about) != 0 || S_ISREG(about.st_mode);
}

File open_regular(const char* name, const char* mode) {
    return File(name && mode && is_regular_or_new(name) ? std::fopen(name, mode) : nullptr);
}

bool join_path(char* buffer, std::size_t size, const char* directory, const char* rest) {
    const int length = std::snprintf(buffer, size, "%s%s", directory ? directory : "", rest);
    if (length >= 0 && static_cast<std::size_t>(length) < size) return true;
    buffer[0] = '\0';
    return false;
}

}  // namespace kalorfix
