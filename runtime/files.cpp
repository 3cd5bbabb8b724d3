// SPDX-License-Identifier: MIT
#include "runtime/files.h"

#include <sys/stat.h>

// glibc has stat and fstat as symbols only since 2.33; their forerunners, told which struct stat is meant, serve every
// version. They know the classic struct, not the one with 64-bit offsets and times of a 32-bit machine.
#if defined(__GLIBC__) && defined(__x86_64__)
#define KALORFIX_STAT_VERSION 1
#elif defined(__GLIBC__) && defined(__aarch64__)
#define KALORFIX_STAT_VERSION 0
#elif defined(__GLIBC__) && defined(__arm__) && !defined(__USE_FILE_OFFSET64)
#define KALORFIX_STAT_VERSION 3
#endif

#ifdef KALORFIX_STAT_VERSION
extern "C" {
int __xstat(int version, const char* name, struct stat* about) noexcept;
int __fxstat(int version, int descriptor, struct stat* about) noexcept;
}
#endif

namespace kalorfix {

namespace {

#ifdef KALORFIX_STAT_VERSION
int status_of(const char* name, struct stat* about) { return __xstat(KALORFIX_STAT_VERSION, name, about); }
int status_of(int descriptor, struct stat* about) { return __fxstat(KALORFIX_STAT_VERSION, descriptor, about); }
#else
int status_of(const char* name, struct stat* about) { return stat(name, about); }
int status_of(int descriptor, struct stat* about) { return fstat(descriptor, about); }
#endif

}  // namespace

bool is_regular(int descriptor) {
    struct stat about {};
    return status_of(descriptor, &about) == 0 && S_ISREG(about.st_mode);
}

File open_regular(const char* name, const char* mode) {
    if (!name || !mode) return nullptr;
    struct stat about {};
    if (status_of(name, &about) == 0 && !S_ISREG(about.st_mode)) return nullptr;
    return File(std::fopen(name, mode));
}

bool join_path(char* buffer, std::size_t size, const char* directory, const char* rest) {
    const int length = std::snprintf(buffer, size, "%s%s", directory ? directory : "", rest);
    if (length >= 0 && static_cast<std::size_t>(length) < size) return true;
    buffer[0] = '\0';
    return false;
}

}  // namespace kalorfix
