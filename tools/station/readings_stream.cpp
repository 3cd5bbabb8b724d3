// SPDX-License-Identifier: MIT
#include "tools/station/readings_stream.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>
#include <ext/stdio_filebuf.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <vector>

#include "tools/text.h"

namespace kalorfix::tool::station {
namespace {

// An open file as a stream, with the offset that it has.
struct FileStream : std::istream {
    explicit FileStream(int descriptor)
        : std::istream(nullptr), buffer(descriptor, std::ios::in | std::ios::binary) {
        rdbuf(&buffer);
    }
    __gnu_cxx::stdio_filebuf<char> buffer;
};

// Copies a pipe; an interruption may have cut the last line, which is then left out.
void copy(const std::string& name, int from, int to, const volatile std::sig_atomic_t& interrupted) {
    std::vector<char> buffer(std::size_t{1} << 16);
    off_t whole_lines = 0;
    for (ssize_t got = 0; !interrupted && (got = read(from, buffer.data(), buffer.size())) != 0;) {
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) throw InputError(name, ": cannot be read: ", std::strerror(errno));
        if (write(to, buffer.data(), static_cast<std::size_t>(got)) != got)
            throw InputError(name, ": no room for a temporary copy of the readings");
        const std::size_t line_end = std::string_view(buffer.data(), static_cast<std::size_t>(got)).rfind('\n');
        if (line_end != std::string_view::npos)
            whole_lines = lseek(to, 0, SEEK_CUR) - got + static_cast<off_t>(line_end) + 1;
    }
    if ((interrupted && ftruncate(to, whole_lines) != 0) || lseek(to, 0, SEEK_SET) != 0)
        throw InputError(name, ": cannot keep the readings");
}

}  // namespace

std::unique_ptr<std::istream> open_readings(const std::string& name,
                                            const volatile std::sig_atomic_t& interrupted) {
    const auto refused = [&](const char* why) {
        return InputError(fmt::format("{}: cannot read these readings: {}", name, why));
    };
    // A descriptor of its own: that of the process stays open.
    const int descriptor = name == "-" ? dup(STDIN_FILENO) : open(name.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0 && interrupted) return nullptr;
    if (descriptor < 0) throw refused(std::strerror(errno));
    auto stream = std::make_unique<FileStream>(descriptor);
    struct stat about {};
    if (fstat(descriptor, &about) != 0 || S_ISDIR(about.st_mode)) throw refused("it is a directory");
    if (S_ISREG(about.st_mode)) return stream;
    // Some have no end.
    if (!S_ISFIFO(about.st_mode) && !S_ISSOCK(about.st_mode) && isatty(descriptor) != 1)
        throw refused("it is a device");
    std::FILE* const kept = std::tmpfile();
    if (!kept) throw InputError(name, ": no temporary file to keep the readings in");
    const int copied = dup(fileno(kept));
    std::fclose(kept);
    auto copy_stream = std::make_unique<FileStream>(copied);
    copy(name, descriptor, copied, interrupted);
    return copy_stream;
}

}  // namespace kalorfix::tool::station
