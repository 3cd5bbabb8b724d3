// Any bytes as an INI file: every call ends in a status, every text stays within its buffer.
#include <cstring>
#include <string>
#include <vector>

#include "kalorfix_runtime.h"
#include "memory_file.h"

namespace {

void require(bool holds) {
    if (!holds) __builtin_trap();
}

void read_values(IniFile& file, char const* section, char const* sub, char const* key) {
    int integer = 0;
    long big = 0;
    short narrow = 0;
    float number = 0.0F;
    char text[1000], longest[2000];
    std::memset(text, 'x', sizeof text);
    std::memset(longest, 'x', sizeof longest);
    const int found = file.CfgGet(section, sub, nullptr, key, integer);
    require(found >= 0 && found <= 2);
    require(file.CfgGet(section, sub, nullptr, key, big) == found);
    require(file.CfgGet(section, sub, nullptr, key, narrow) == found);
    require(file.CfgGet(section, sub, nullptr, key, number) == found);
    require(file.CfgGet(section, sub, nullptr, key, text) == found);
    require(file.CfgGetMax(section, sub, nullptr, key, longest) == found);
    if (found != 0) return;
    require(std::memchr(text, 0, sizeof text) && std::memchr(longest, 0, sizeof longest));
    require(big == integer && narrow == static_cast<short>(integer));
    constexpr int max = 8;
    std::vector<int> list(std::strlen(longest) * max + max);
    const int count = file.ConvertStrToListVar(longest, max, list.data());
    require(count >= 0 && static_cast<std::size_t>(count) <= list.size());
    for (int k = 0; k < count; ++k) require(list[static_cast<std::size_t>(k)] >= 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const MemoryFile memory(data, size);
    constexpr int read_text = 1;
    IniFile file(memory.name().c_str(), read_text);
    const unsigned char opened = file.Open();
    require(opened == 0 || opened == 3);

    int line = 0;
    for (char const* section : {static_cast<char const*>(nullptr), "S", "TORNOL"}) {
        require(file.SectionSearch(section, nullptr, nullptr, &line) <= 2);
        for (char const* key : {static_cast<char const*>(nullptr), "k", "Num_gas_trub"})
            read_values(file, section, nullptr, key);
        read_values(file, section, "A", nullptr);

        char key[1000], value[1000];
        std::size_t lines = 0;
        while (file.GetNextKey(section, nullptr, nullptr, key, value, &line) == 0) {
            require(std::memchr(key, 0, sizeof key) && std::memchr(value, 0, sizeof value) && line >= 1);
            require(++lines <= size);
        }
    }
    require(file.Close() == 0);
    return 0;
}
