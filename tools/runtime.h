// The directories that a controller's runtime gives the library, in a temporary place of this program's own.
#pragma once

#include <string>

namespace kalorfix::host {

/// Made before the library is opened, which reads its directories then; removed afterwards. Holds settings with one key,
/// a stamp of this very second, so that the controller was never down, and the gas data file if one is given.
class Runtime {
public:
    /// Throws std::runtime_error when the directories cannot be made or the gas data file is not there.
    explicit Runtime(const std::string& gas_data = {});
    ~Runtime();
    Runtime(const Runtime&) = delete;
    Runtime& operator=(const Runtime&) = delete;

private:
    std::string root_;
};

}  // namespace kalorfix::host
