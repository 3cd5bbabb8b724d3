// SPDX-License-Identifier: MIT
#include "tools/separate_files.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <map>
#include <optional>
#include <tuple>

#include "tools/text.h"

namespace kalorfix::tool {
namespace {

namespace fs = std::filesystem;

// Device and inode; of a file that is not there yet those of its directory, and its name.
using Identity = std::tuple<dev_t, ino_t, std::string>;

std::optional<Identity> identity(const struct stat& about) {
    if (!S_ISREG(about.st_mode) && !S_ISFIFO(about.st_mode)) return std::nullopt;
    return Identity{about.st_dev, about.st_ino, ""};
}

// Of a stream only a file counts: both ends of a terminal or a socket are one.
std::optional<Identity> identity_of_stream(int descriptor) {
    struct stat about {};
    return fstat(descriptor, &about) == 0 && S_ISREG(about.st_mode) ? identity(about) : std::nullopt;
}

std::optional<Identity> identity_of(const std::string& file) {
    if (file.empty()) return std::nullopt;
    if (file == "-") return identity_of_stream(STDIN_FILENO);
    struct stat about {};
    if (stat(file.c_str(), &about) == 0) return identity(about);
    const fs::path path(behind_links(file));
    const fs::path directory = path.parent_path();
    if (stat(directory.empty() ? "." : directory.c_str(), &about) != 0) return std::nullopt;
    return Identity{about.st_dev, about.st_ino, path.filename().string()};
}

}  // namespace

std::string behind_links(const std::string& file) {
    constexpr int most_links = 40;
    fs::path path(file);
    std::error_code failed;
    for (int k = 0; k < most_links; ++k) {
        const fs::path next = fs::read_symlink(path, failed);
        if (failed) break;
        path = path.parent_path() / next;
    }
    return path.string();
}

void keep_apart(const std::vector<NamedFile>& inputs, const std::vector<NamedFile>& outputs) {
    std::map<Identity, const NamedFile*> taken;
    for (const NamedFile& input : inputs)
        if (const auto id = identity_of(input.file)) taken.emplace(*id, &input);
    const auto take = [&taken](const NamedFile& output, const std::optional<Identity>& id) {
        if (!id) return;
        const auto [other, fresh] = taken.emplace(*id, &output);
        if (fresh) return;
        const auto& [what, file] = *other->second;
        throw InputError(output.what, output.file.empty() ? "" : " ", output.file, ": is the file of ", what,
                         file == output.file ? "" : " " + file, " already");
    };
    const NamedFile standard{"standard output", ""};
    take(standard, identity_of_stream(STDOUT_FILENO));
    for (const NamedFile& output : outputs) take(output, identity_of(output.file));
}

}  // namespace kalorfix::tool
