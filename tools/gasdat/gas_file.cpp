#include "tools/gasdat/gas_file.h"

#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "tools/range.h"

namespace kalorfix::tool::gasdat {
namespace fs = std::filesystem;

GasFile read_gas_file(const std::string& path) {
    std::error_code failed;
    std::ifstream in(path, std::ios::binary);
    if (!fs::is_regular_file(path, failed) || !in) throw InputError{path + ": cannot read this gas data file"};
    GasFile file;
    file.size = static_cast<std::size_t>(fs::file_size(path, failed));
    std::string bytes(std::min(file.size, file_size), '\0');
    in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (failed || static_cast<std::size_t>(in.gcount()) != bytes.size())
        throw InputError{path + ": cannot read this gas data file to its end"};
    file.count = bytes.size() / 4;
    for (std::size_t k = 0; k < file.count; ++k) {
        std::uint32_t bits = 0;
        for (std::size_t b = 0; b < 4; ++b)
            bits |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[4 * k + b])) << (8 * b);
        file.values[k] = std::bit_cast<float>(bits);
    }
    return file;
}

std::string packed(const Values& values) {
    std::string bytes;
    bytes.reserve(file_size);
    for (const float value : values) {
        const auto bits = std::bit_cast<std::uint32_t>(value);
        for (int b = 0; b < 32; b += 8) bytes.push_back(static_cast<char>(bits >> b & 0xFFU));
    }
    return bytes;
}

void write_whole(const std::string& path, const std::string& content) {
    const auto fail = [&] { return InputError{path + ": cannot write this file: " + std::strerror(errno)}; };
    std::error_code failed;
    const fs::file_status target = fs::status(path, failed);
    if (fs::is_directory(target)) throw InputError{path + ": is a directory; give the name of a file"};
    // The renaming would put a plain file in the place of a device.
    if (fs::exists(target) && !fs::is_regular_file(target))
        throw InputError{path + ": is no plain file; give the name of a file"};
    // A link stays a link: the file that it stands for is replaced.
    const std::string end = fs::is_regular_file(target) ? fs::canonical(path, failed).string() : path;
    if (end.empty()) throw InputError{path + ": cannot write this file: give the name of a file"};
    const std::string temporary = end + ".part" + std::to_string(getpid());
    errno = 0;
    {
        std::ofstream out(temporary, std::ios::binary);
        if (!out) throw fail();
        out << content;
        out.close();
        if (!out) {
            const InputError error = fail();
            fs::remove(temporary, failed);
            throw error;
        }
    }
    fs::rename(temporary, end, failed);
    if (failed) {
        const std::string why = failed.message();
        fs::remove(temporary, failed);
        throw InputError{path + ": cannot write this file: " + why};
    }
}

}  // namespace kalorfix::tool::gasdat
