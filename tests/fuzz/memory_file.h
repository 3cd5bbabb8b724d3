// A file in memory with a name, for code that opens files by name.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <string>

class MemoryFile {
public:
    MemoryFile(const std::uint8_t* data, std::size_t size) : descriptor_(memfd_create("fuzz", MFD_CLOEXEC)) {
        for (std::size_t written = 0; descriptor_ >= 0 && written < size;) {
            const ssize_t n = write(descriptor_, data + written, size - written);
            if (n <= 0) break;
            written += static_cast<std::size_t>(n);
        }
    }
    ~MemoryFile() {
        if (descriptor_ >= 0) close(descriptor_);
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    [[nodiscard]] std::string name() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

private:
    int descriptor_;
};
