#include "tools/identity.h"

#include <fmt/format.h>
#include <openssl/evp.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string>

#include "tools/commands.h"
#include "tools/host.h"
#include "tools/text.h"

namespace kalorfix::tool {
namespace {

std::string sha256(const std::string& content) {
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned int length = 0;
    if (EVP_Digest(content.data(), content.size(), digest.data(), &length, EVP_sha256(), nullptr) != 1)
        return "-";
    std::string text;
    for (unsigned int k = 0; k < length; ++k) text += fmt::format("{:02x}", digest[k]);
    return text;
}

void print_file(const char* label, const std::string& path) {
    fmt::print("{:<13}{}\n", label, printable(path));
    fmt::print("{:<13}{}\n", "  SHA-256", file_digest(path));
}

}  // namespace

// The library carries a line "@(#)kalorfix; name: value; ..." in its file.
std::vector<std::pair<std::string, std::string>> build_items(const std::string& library_file) {
    const std::string content = content_of(library_file).value_or("");
    const std::string mark = "@(#)kalorfix; ";
    const std::size_t found = content.find(mark);
    const std::string line =
        found == std::string::npos ? "build: unknown" : content.c_str() + found + mark.size();
    std::vector<std::pair<std::string, std::string>> items;
    for (const std::string_view item : split(line, ';')) {
        const std::size_t colon = std::min(item.find(": "), item.size());
        items.emplace_back(item.substr(0, colon), item.substr(std::min(colon + 2, item.size())));
    }
    return items;
}

std::string file_digest(const std::string& path) {
    const std::optional<std::string> content = content_of(path);
    return content ? sha256(*content) : why_unreadable(path);
}

Command id_command() {
    const auto run = [](const Installation& files) {
        const host::Library library(files.library);
        const std::string path = library.path();
        for (const auto& [name, value] : build_items(path))
            fmt::print("{:<13}{}\n", printable(name), printable(value));
        print_file("library", path);
        const CSRV_PATH& p = *library->SRV_Path;
        print_file("gas data", files.gas_data.empty() ? "none beside the library" : files.gas_data);
        print_file("  of a host", std::string(p.SYSTEM) + "/gas.dat");
        fmt::print("directories\n");
        constexpr std::array names{"TORNPATH", "PATHDB",   "PRG",       "SYSTEM",      "LIB",
                                   "DIC",      "SETTINGS", "PRG_DEBUG", "XML_SETTINGS"};
        const std::array paths{p.TORNPATH, p.PATHDB,   p.PRG,       p.SYSTEM,      p.LIB,
                               p.DIC,      p.SETTINGS, p.PRG_DEBUG, p.XML_SETTINGS};
        for (std::size_t k = 0; k < names.size(); ++k)
            fmt::print("  {:<14}{}\n", names[k], printable(paths[k]));
        return 0;
    };
    return {"id", "Version, build, digests of library and gas data, paths.", "", {}, {}, run};
}

}  // namespace kalorfix::tool
