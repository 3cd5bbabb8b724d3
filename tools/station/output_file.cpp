#include "tools/station/output_file.h"

#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "tools/range.h"

namespace kalorfix::tool::station {
namespace {

// A device or a pipe can be written but not replaced.
bool is_special(const std::string& name) {
    struct stat about {};
    return stat(name.c_str(), &about) == 0 && !S_ISREG(about.st_mode) && !S_ISDIR(about.st_mode);
}

bool is_directory(const std::string& name) {
    struct stat about {};
    return stat(name.c_str(), &about) == 0 && S_ISDIR(about.st_mode);
}

// The permissions that a file of this process gets.
mode_t usual_permissions() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

}  // namespace

OutputFile::OutputFile(const std::string& name) : name_(name), file_(name.empty() ? stdout : nullptr) {
    if (file_) return;
    if (is_directory(name_)) throw InputError{fmt::format("{}: cannot be written: it is a directory", name_)};
    if (is_special(name_)) {
        file_ = std::fopen(name_.c_str(), "w");
    } else {
        temporary_ = name_ + ".XXXXXX";
        const int descriptor = mkstemp(temporary_.data());
        if (descriptor < 0) {
            temporary_.clear();
        } else {
            fchmod(descriptor, usual_permissions());
            file_ = fdopen(descriptor, "w");
        }
    }
    if (!file_) fail();
}

OutputFile::~OutputFile() {
    if (file_ && file_ != stdout) std::fclose(file_);
    if (!temporary_.empty()) std::remove(temporary_.c_str());
}

void OutputFile::fail() const {
    throw InputError{fmt::format("{}: cannot be written: {}", name_.empty() ? "standard output" : name_,
                                 std::strerror(errno))};
}

void OutputFile::write(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), file_) != text.size()) fail();
}

void OutputFile::flush() {
    if (std::fflush(file_) != 0) fail();
}

void OutputFile::finish() {
    flush();
    if (file_ == stdout) return;
    if (std::fclose(std::exchange(file_, nullptr)) != 0) fail();
    if (!temporary_.empty() && std::rename(temporary_.c_str(), name_.c_str()) != 0) fail();
    temporary_.clear();
}

}  // namespace kalorfix::tool::station
