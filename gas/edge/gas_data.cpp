// SPDX-License-Identifier: MIT
// Loading and releasing the gas data tables.
#include "gas/edge/module_state.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>

#include "gas/edge/loaded_constants.h"
#include "kalorfix_gas.h"
#include "runtime/files.h"

namespace gas = kalorfix::gas::edge;

namespace {

// False at the end of the file.
bool read_value(std::FILE* file, float& value) {
    std::array<unsigned char, 4> bytes{};
    if (std::fread(bytes.data(), 1, bytes.size(), file) != bytes.size()) return false;
    value = std::bit_cast<float>(kalorfix::little_endian(bytes.data()));
    return true;
}

// A host may unload the library without Done.
struct ReleaseAtUnload {
    ~ReleaseAtUnload() { REINIT_GAS(); }
};
const ReleaseAtUnload release_at_unload;

// The first two blocks pass through one variable: past the end of a short file they repeat its last value.
constexpr std::size_t repeating_blocks = 2;

// By block, the table that no file has filled, or not to its end; null for one that was read whole.
std::array<const float*, gas::block_count> not_whole{};
bool some_not_whole = false;

// New tables of zeros; false when memory is short.
bool allocate_tables() {
    for (std::size_t b = 0; b < gas::block_count; ++b) {
        float*& table = *gas::blocks[b].table;
        std::free(table);
        table = static_cast<float*>(std::calloc(gas::blocks[b].values, sizeof(float)));
        not_whole[b] = table;
        if (!table) return false;
    }
    some_not_whole = true;
    return true;
}

// False at the first table that is not there.
bool fill_tables(std::FILE* file) {
    float last = 0.0F;
    some_not_whole = false;
    for (std::size_t b = 0; b < gas::block_count; ++b) {
        float* const table = *gas::blocks[b].table;
        if (!table) return false;
        bool whole = true;
        for (std::size_t j = 0; j < gas::blocks[b].values; ++j) {
            float& value = b < repeating_blocks ? last : table[j];
            whole = read_value(file, value) && whole;
            table[j] = value;
        }
        not_whole[b] = whole ? nullptr : table;
        some_not_whole = some_not_whole || !whole;
    }
    return true;
}

}  // namespace

bool gas::table_loaded(const float* table) {
    return table && !(some_not_whole && std::ranges::find(not_whole, table) != not_whole.end());
}

int Step_Init(int block) {
    const bool known = block >= 0 && static_cast<std::size_t>(block) < gas::block_count;
    return known ? static_cast<int>(gas::blocks[static_cast<std::size_t>(block)].values) : 0;
}

int Watcom_Init() {
    if (!kalorfix::open_regular(PATH_SRAM_FOR_LOADTABL, "rb")) return 1;
    const bool allocated = allocate_tables();
    gas::tables_changed();
    return allocated ? 0 : 1;
}

int Watcom_Load() {
    const kalorfix::File file = kalorfix::open_regular(PATH_SRAM_FOR_LOADTABL, "rb");
    if (!file) return 1;
    const bool filled = fill_tables(file.get());
    gas::tables_changed();
    return filled ? 0 : 1;
}

int INIT_GAS() {
    Gas_Not_Init = 1;
    if (Watcom_Init() != 0 || Watcom_Load() != 0) {
        REINIT_GAS();  // tables of an earlier load would pass for those of this one
        Gas_Not_Init = 0;
        return 1;
    }
    return 0;
}

void REINIT_GAS() {
    for (const gas::Block& block : gas::blocks) {
        std::free(*block.table);
        *block.table = nullptr;
    }
    gas::tables_changed();
}
