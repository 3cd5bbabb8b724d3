#include "tools/output_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <utility>

#include "tools/text.h"

namespace kalorfix::tool {
namespace {

// The permissions that a file of this process gets.
mode_t usual_permissions() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

}  // namespace

OutputFile::OutputFile(const std::string& name)
    : name_(name), target_(name), file_(name.empty() ? stdout : nullptr) {
    if (file_) return;
    namespace fs = std::filesystem;
    std::error_code failed;
    const fs::file_status there = fs::status(name, failed);
    if (fs::is_directory(there)) throw InputError(name + ": cannot be written: it is a directory");
    if (fs::exists(there) && !fs::is_regular_file(there)) {
        file_ = std::fopen(name.c_str(), "w");
    } else {
        if (fs::exists(there)) target_ = fs::canonical(name, failed).string();
        temporary_ = target_ + ".XXXXXX";
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
    throw InputError((name_.empty() ? "standard output" : name_) +
                     ": cannot be written: " + std::strerror(errno));
}

void OutputFile::write(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), file_) != text.size()) fail();
}

void OutputFile::finish() {
    if (std::fflush(file_) != 0) fail();
    if (file_ == stdout) return;
    // A device has no disk to reach.
    if (!temporary_.empty() && fsync(fileno(file_)) != 0) fail();
    if (std::fclose(std::exchange(file_, nullptr)) != 0) fail();
    if (!temporary_.empty() && std::rename(temporary_.c_str(), target_.c_str()) != 0) fail();
    temporary_.clear();
}

void write_file(const std::string& name, std::string_view content) {
    OutputFile file(name);
    file.write(content);
    file.finish();
}

}  // namespace kalorfix::tool
