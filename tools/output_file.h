// SPDX-License-Identifier: MIT
// A file that appears when it is whole.
#pragma once

#include <cstdio>
#include <stdexcept>
#include <string>
#include <string_view>

namespace kalorfix::tool {

/// Thrown when nobody reads on at the other end of a pipe: the program ends without a word.
struct ClosedPipe : std::runtime_error {
    ClosedPipe() : std::runtime_error("closed pipe") {}
};

/// Writes to a temporary name beside the file, which takes the file's place at the end; destroyed before, it leaves the old
/// file and nothing else behind. A link stays a link, a device or a pipe is written as it is. With an empty name it is standard output.
class OutputFile {
public:
    /// Throws InputError when the file cannot be made.
    explicit OutputFile(const std::string& name);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Throws InputError when it cannot be written, ClosedPipe when nobody reads it.
    void write(std::string_view text) {
        buffer_ += text;
        if (buffer_.size() >= buffered) flush();
    }
    /// Whole and on the disk, but not yet under its name. Throws as write does.
    void complete();
    /// Complete and under its name, for good. Throws as write does.
    void finish();

private:
    static constexpr std::size_t buffered = std::size_t{1} << 16;
    void flush();
    [[noreturn]] void fail() const;
    std::string name_, target_, temporary_, buffer_;
    std::FILE* file_;
};

/// A whole file at once. Throws InputError.
void write_file(const std::string& name, std::string_view content);

}  // namespace kalorfix::tool
