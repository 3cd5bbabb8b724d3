// Lines of a file or of standard input, in constant memory, twice.
#pragma once

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kalorfix::tool::station {

inline constexpr std::size_t longest_line = 4096;

/// Readings are walked through twice, once to check and once to compute, so that bad input is found before anything is
/// written. A pipe is copied to an unnamed temporary file for that; an interruption ends the copying.
class LineSource {
public:
    /// "-" is standard input. Throws InputError when it cannot be read.
    LineSource(const std::string& name, const volatile std::sig_atomic_t& interrupted);

    /// The next line without its end; a view that lives until the next call. Throws InputError for a line that is too
    /// long.
    bool next(std::string_view& line);
    void rewind();

    [[nodiscard]] const std::string& name() const { return name_; }  ///< for messages
    [[nodiscard]] std::uint64_t line_number() const { return number_; }
    [[nodiscard]] std::uint64_t bytes_read() const { return consumed_; }

private:
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    using File = std::unique_ptr<std::FILE, Closer>;

    void copy(std::FILE* from, const volatile std::sig_atomic_t& interrupted);
    bool fill();

    std::string name_;
    File file_;
    std::vector<char> buffer_;
    long start_ = 0;  ///< standard input may begin inside its file
    std::size_t begin_ = 0, end_ = 0;
    std::uint64_t number_ = 0, consumed_ = 0;
};

}  // namespace kalorfix::tool::station
