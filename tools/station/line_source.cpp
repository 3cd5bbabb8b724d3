#include "tools/station/line_source.h"

#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "tools/range.h"

namespace kalorfix::tool::station {
namespace {

constexpr std::size_t buffer_size = std::size_t{1} << 16;

mode_t type_of(std::FILE* file) {
    struct stat about {};
    return fstat(fileno(file), &about) == 0 ? about.st_mode & S_IFMT : 0;
}

}  // namespace

LineSource::LineSource(const std::string& name, const volatile std::sig_atomic_t& interrupted)
    : name_(name == "-" ? "standard input" : name), buffer_(buffer_size) {
    // A descriptor of its own: that of the process stays open.
    std::FILE* const opened = name == "-" ? fdopen(dup(STDIN_FILENO), "rb") : std::fopen(name.c_str(), "rb");
    file_.reset(opened);
    if (!file_)
        throw InputError{fmt::format("{}: cannot read these readings: {}", name_, std::strerror(errno))};
    const mode_t type = type_of(file_.get());
    if (type == S_IFDIR)
        throw InputError{fmt::format("{}: cannot read these readings: it is a directory", name_)};
    if (type != S_IFREG) {
        const File pipe(std::exchange(file_, File(std::tmpfile())).release());
        if (!file_) throw InputError{fmt::format("{}: no temporary file to keep the readings in", name_)};
        copy(pipe.get(), interrupted);
    } else {
        start_ = static_cast<long>(lseek(fileno(file_.get()), 0, SEEK_CUR));
    }
    rewind();
}

void LineSource::copy(std::FILE* from, const volatile std::sig_atomic_t& interrupted) {
    std::size_t unfinished = 0;
    std::uint64_t copied = 0;
    while (!interrupted) {
        const ssize_t got = read(fileno(from), buffer_.data(), buffer_.size());
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) throw InputError{fmt::format("{}: cannot be read: {}", name_, std::strerror(errno))};
        if (got == 0) return;
        const auto size = static_cast<std::size_t>(got);
        if (std::fwrite(buffer_.data(), 1, size, file_.get()) != size)
            throw InputError{fmt::format("{}: no room for a temporary copy of the readings", name_)};
        const std::string_view block(buffer_.data(), size);
        const std::size_t line_end = block.rfind('\n');
        unfinished = line_end == std::string_view::npos ? unfinished + size : size - line_end - 1;
        copied += size;
    }
    // An interruption may have cut the last line.
    std::fflush(file_.get());
    if (ftruncate(fileno(file_.get()), static_cast<off_t>(copied - unfinished)) != 0)
        throw InputError{fmt::format("{}: cannot keep the readings", name_)};
}

void LineSource::rewind() {
    if (std::fseek(file_.get(), start_, SEEK_SET) != 0)
        throw InputError{fmt::format("{}: cannot be read from its beginning", name_)};
    begin_ = end_ = 0;
    number_ = consumed_ = 0;
}

bool LineSource::fill() {
    if (begin_ > 0) {
        std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
        end_ -= begin_;
        begin_ = 0;
    }
    const std::size_t got = std::fread(buffer_.data() + end_, 1, buffer_.size() - end_, file_.get());
    if (got == 0 && std::ferror(file_.get()))
        throw InputError{fmt::format("{}: cannot be read to its end", name_)};
    end_ += got;
    return got > 0;
}

bool LineSource::next(std::string_view& line) {
    for (;;) {
        const std::string_view rest(buffer_.data() + begin_, end_ - begin_);
        std::size_t length = rest.find('\n');
        const bool whole = length != std::string_view::npos;
        if (!whole && rest.size() <= longest_line && fill()) continue;
        if (!whole) length = rest.size();
        if (length == 0 && !whole) return false;
        ++number_;
        if (length > longest_line)
            throw InputError{fmt::format("{}:{}: longer than {} characters", name_, number_, longest_line)};
        line = rest.substr(0, length);
        const std::size_t taken = length + (whole ? 1 : 0);
        begin_ += taken;
        consumed_ += taken;
        if (line.ends_with('\r')) line.remove_suffix(1);
        return true;
    }
}

}  // namespace kalorfix::tool::station
