#include "runtime/files.h"

#include <sys/stat.h>

namespace kalorfix {

File open_regular(const char* name, const char* mode) {
    if (!name || !mode) return nullptr;
    struct stat about {};
    if (stat(name, &about) == 0 && !S_ISREG(about.st_mode)) return nullptr;
    return File(std::fopen(name, mode));
}

bool join_path(char* buffer, std::size_t size, const char* directory, const char* rest) {
    const int length = std::snprintf(buffer, size, "%s%s", directory ? directory : "", rest);
    if (length >= 0 && static_cast<std::size_t>(length) < size) return true;
    buffer[0] = '\0';
    return false;
}

}  // namespace kalorfix
