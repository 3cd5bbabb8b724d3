// SPDX-License-Identifier: MIT
#include "tools/report/machine.h"

#include <sys/utsname.h>

#include <fstream>

#include "tools/text.h"

namespace kalorfix::tool::report {

std::string machine_name() {
    utsname about{};
    if (uname(&about) != 0) return "-";
    return cat(about.sysname, " ", about.release, ", ", about.machine);
}

std::string processor_name() {
    std::ifstream in("/proc/cpuinfo");
    for (std::string line; std::getline(in, line);)
        for (const std::string_view key : {"model name", "Model", "Hardware"})
            if (line.starts_with(key) && line.find(':') != std::string::npos)
                return std::string(trimmed(std::string_view(line).substr(line.find(':') + 1)));
    return {};
}

}  // namespace kalorfix::tool::report
