// SPDX-License-Identifier: MIT
// The runtime's directories.
#include <array>
#include <cstdio>
#include <cstdlib>

#include "kalorfix_runtime.h"

namespace {

struct Directory {
    const char* CSRV_PATH::*member;
    const char* variable;
    const char* fallback;
    const char* format;
};

constexpr std::array<Directory, 9> directories{{
    {&CSRV_PATH::TORNPATH, "TORNPATH", "/ubm", "TORNPATH = <%s>\n"},
    {&CSRV_PATH::PATHDB, "PATHDB", "/ubm/sram", "PATHDB   = <%s>\n"},
    {&CSRV_PATH::PRG, "PRG", "/ubm/prg", "PRG      = <%s>\n"},
    {&CSRV_PATH::SYSTEM, "SYSTEM", "/ubm/system", "SYSTEM   = <%s>\n"},
    {&CSRV_PATH::LIB, "LIB", "/ubm/lib", "LIB      = <%s>\n"},
    {&CSRV_PATH::DIC, "DIC", "/ubm/dic", "DIC      = <%s>\n"},
    {&CSRV_PATH::SETTINGS, "SETTINGS", "/ubm/settings", "SETTINGS = <%s>\n"},
    {&CSRV_PATH::PRG_DEBUG, "PRG_DEBUG", "/ubm/prg/debug", "PRG_DEBUG= <%s>\n"},
    {&CSRV_PATH::XML_SETTINGS, "XML_SETTINGS", "/ubm/torndb", "XML_SETTINGS = <%s>\n"},
}};

}  // namespace

CSRV_PATH SRV_Path = [] {
    CSRV_PATH paths{};
    paths.InitPathes();
    return paths;
}();

void CSRV_PATH::InitPathes() {
    for (const Directory& directory : directories) {
        const char* const value = std::getenv(directory.variable);
        this->*directory.member = value ? value : directory.fallback;
    }
}

void CSRV_PATH::Print() {
    std::puts("TORN_PATHES:");
    for (const Directory& directory : directories) std::printf(directory.format, this->*directory.member);
}
