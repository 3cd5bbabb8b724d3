// SPDX-License-Identifier: MIT
// The directories that a controller's runtime gives the library, in a temporary place of this program's own.
#pragma once

#include <string>

namespace kalorfix::host {

/// An empty directory of this program's own, removed at the end with what it then holds.
class TemporaryDirectory {
public:
    /// Throws std::runtime_error when it cannot be made.
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    [[nodiscard]] const std::string& path() const { return path_; }

private:
    std::string path_;
};

/// Made before the library is opened, which reads its directories then; removed afterwards. Holds settings with one key,
/// a stamp of this very second, so that the controller was never down, and the gas data file if one is given.
class Runtime {
public:
    /// Throws std::runtime_error when the directories cannot be made or the gas data file is not there.
    explicit Runtime(const std::string& gas_data = {});

private:
    TemporaryDirectory root_;
};

}  // namespace kalorfix::host
