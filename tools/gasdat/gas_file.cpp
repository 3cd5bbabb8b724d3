#include "tools/gasdat/gas_file.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>

#include "tools/text.h"

namespace kalorfix::tool::gasdat {
namespace {

constexpr std::string_view nan_mark = "nan:";
constexpr int hexadecimal = 16;

}  // namespace

GasFile read_gas_file(const std::string& path) {
    namespace fs = std::filesystem;
    std::error_code failed;
    std::ifstream in = open_regular(path);
    if (!in) throw InputError(path + ": cannot read this gas data file: " + why_unreadable(path));
    GasFile file;
    file.size = static_cast<std::size_t>(fs::file_size(path, failed));
    std::string bytes(std::min(file.size, file_size), '\0');
    in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (failed || static_cast<std::size_t>(in.gcount()) != bytes.size())
        throw InputError(path + ": cannot read this gas data file to its end");
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
    for (const float value : values) {
        const auto bits = std::bit_cast<std::uint32_t>(value);
        for (int b = 0; b < 32; b += 8) bytes.push_back(static_cast<char>(bits >> b & 0xFFU));
    }
    return bytes;
}

std::string number_text(float value) {
    std::array<char, 32> digits;
    char* const begin = digits.data();
    char* const end = begin + digits.size();
    if (!std::isnan(value)) return {begin, std::to_chars(begin, end, value).ptr};
    const auto bits = std::to_chars(begin, end, std::bit_cast<std::uint32_t>(value), hexadecimal);
    return std::string(nan_mark).append(std::string_view(begin, static_cast<std::size_t>(bits.ptr - begin)));
}

std::optional<float> parse_number(std::string_view text) {
    std::optional<float> value;
    if (!text.starts_with(nan_mark)) {
        value = parse<float>(text);
    } else if (const auto bits = parse<std::uint32_t>(text.substr(nan_mark.size()), hexadecimal)) {
        value = std::bit_cast<float>(*bits);
    }
    // A NaN has its mark, and the mark a NaN.
    return value && std::isnan(*value) == text.starts_with(nan_mark) ? value : std::nullopt;
}

}  // namespace kalorfix::tool::gasdat
