// SPDX-License-Identifier: MIT
#include "tools/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <utility>

#include "tools/separate_files.h"
#include "tools/text.h"

namespace kalorfix::tool {
namespace {

// The permissions that a file of this process gets.
mode_t usual_permissions() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

// On the disk, as far as what is behind the descriptor has one.
bool synchronise(int descriptor) { return fsync(descriptor) == 0 || errno == EINVAL || errno == ENOTSUP; }

// The new name of a file is on the disk when its directory is. A directory that may not be read is left to the system.
bool synchronise_directory_of(const std::string& file) {
    const std::string directory = std::filesystem::path(file).parent_path().string();
    const int descriptor =
        open(directory.empty() ? "." : directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return true;
    const bool done = synchronise(descriptor);
    const int error = errno;
    close(descriptor);
    errno = error;
    return done;
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
        target_ = behind_links(name);
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
    if (errno == EPIPE) throw ClosedPipe();
    throw InputError((name_.empty() ? "standard output" : name_) +
                     ": cannot be written: " + std::strerror(errno));
}

void OutputFile::flush() {
    const std::size_t written = std::fwrite(buffer_.data(), 1, buffer_.size(), file_);
    const bool whole = written == buffer_.size();
    buffer_.clear();
    if (!whole) fail();
}

void OutputFile::complete() {
    if (!file_) return;
    flush();
    if (std::fflush(file_) != 0) fail();
    // A pipe or a device has no disk to reach.
    struct stat about {};
    if (fstat(fileno(file_), &about) == 0 && S_ISREG(about.st_mode) && !synchronise(fileno(file_))) fail();
    if (file_ != stdout && std::fclose(std::exchange(file_, nullptr)) != 0) fail();
}

void OutputFile::finish() {
    complete();
    if (temporary_.empty()) return;
    if (std::rename(temporary_.c_str(), target_.c_str()) != 0) fail();
    temporary_.clear();
    if (!synchronise_directory_of(target_)) fail();
}

void write_file(const std::string& name, std::string_view content) {
    OutputFile file(name);
    file.write(content);
    file.finish();
}

}  // namespace kalorfix::tool
