// Two channels from pipeline constants to totals, on input that is compiled in.
#pragma once

#include <string>

#include "tools/host.h"

namespace kalorfix::tool {

/// A directory of the runtime for the demo's own use, made before the library is opened and removed afterwards.
class DemoRuntime {
public:
    DemoRuntime();
    ~DemoRuntime();
    DemoRuntime(const DemoRuntime&) = delete;
    DemoRuntime& operator=(const DemoRuntime&) = delete;

private:
    std::string root_;
};

/// Prints every channel's sheet. False when a step was refused, which the sheet then says.
[[nodiscard]] bool demo(const host::Library& library);

}  // namespace kalorfix::tool
