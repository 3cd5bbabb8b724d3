// A file that appears when it is whole.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace kalorfix::tool {

/// Writes to a temporary name beside the file, which takes the file's place at the end; destroyed before, it leaves the old
/// file and nothing else behind. A link stays a link, a device or a pipe is written as it is. With an empty name it is standard output.
class OutputFile {
public:
    /// Throws InputError when the file cannot be made.
    explicit OutputFile(const std::string& name);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Throws InputError when it cannot be written.
    void write(std::string_view text);
    /// On the disk, and under its name. Throws InputError when it cannot be written.
    void finish();

private:
    [[noreturn]] void fail() const;
    std::string name_, target_, temporary_;
    std::FILE* file_;
};

/// A whole file at once. Throws InputError.
void write_file(const std::string& name, std::string_view content);

}  // namespace kalorfix::tool
