// A file that appears when it is whole.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace kalorfix::tool::station {

/// Writes to a temporary name beside the file and renames it at the end; destroyed before, it leaves nothing behind. With an
/// empty name it is standard output.
class OutputFile {
public:
    /// Throws InputError when the file cannot be made.
    explicit OutputFile(const std::string& name);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Throws InputError when it cannot be written.
    void write(std::string_view text);
    /// What was written so far reaches a reader of standard output.
    void flush();
    /// Gives the file its name. Throws InputError when it cannot be written.
    void finish();

private:
    [[noreturn]] void fail() const;
    std::string name_, temporary_;
    std::FILE* file_ = nullptr;
};

}  // namespace kalorfix::tool::station
