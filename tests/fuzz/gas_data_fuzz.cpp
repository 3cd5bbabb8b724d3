// Any bytes as a gas data file: loaded as far as they reach, zero or repeated beyond.
#include <cstdio>
#include <cstring>

#include "gas/edge/gas_data.h"
#include "kalorfix_gas.h"
#include "memory_file.h"

namespace gas = kalorfix::gas;

namespace {

void require(bool holds) {
    if (!holds) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const MemoryFile memory(data, size);
    std::snprintf(PATH_SRAM_FOR_LOADTABL, sizeof PATH_SRAM_FOR_LOADTABL, "%s", memory.name().c_str());
    require(INIT_GAS() == 0 && Gas_Not_Init == 1);
    std::size_t at = 0;
    for (const gas::edge::Block& block : gas::edge::blocks)
        for (int k = 0; k < block.values; ++k, at += 4) {
            unsigned char bytes[4];
            std::memcpy(bytes, *block.table + k, 4);
            if (at + 4 <= size)
                require(std::memcmp(bytes, data + at, 4) == 0);
            else if (block.table != &V_Mi && block.table != &Roki)
                require(std::memcmp(bytes, "\0\0\0\0", 4) == 0);
        }
    require(at == gas::edge::file_bytes);
    REINIT_GAS();
    require(!V_Mi && !B1ij);
    return 0;
}
