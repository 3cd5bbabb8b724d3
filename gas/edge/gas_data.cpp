// SPDX-License-Identifier: MIT
// Loading and releasing the tables of the gas data file, and what is prepared of them.
#include "gas/edge/gas_data.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>

#include "gas/edge/module_state.h"
#include "kalorfix_gas.h"
#include "runtime/files.h"
#include "runtime/float_environment.h"

namespace edge = kalorfix::gas::edge;

namespace kalorfix::gas::edge {
namespace {

// False at the end of the file.
bool read_value(std::FILE* file, float& value) {
    std::array<unsigned char, 4> bytes{};
    if (std::fread(bytes.data(), 1, bytes.size(), file) != bytes.size()) return false;
    value = std::bit_cast<float>(little_endian(bytes.data()));
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
std::array<const float*, block_count> not_whole{};
bool some_not_whole = false;

// New tables of zeros; false when memory is short.
bool allocate_tables() {
    for (std::size_t b = 0; b < block_count; ++b) {
        float*& table = *blocks[b].table;
        std::free(table);
        table = static_cast<float*>(std::calloc(blocks[b].values, sizeof(float)));
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
    for (std::size_t b = 0; b < block_count; ++b) {
        float* const table = *blocks[b].table;
        if (!table) return false;
        bool whole = true;
        for (std::size_t j = 0; j < blocks[b].values; ++j) {
            float& value = b < repeating_blocks ? last : table[j];
            whole = read_value(file, value) && whole;
            table[j] = value;
        }
        not_whole[b] = whole ? nullptr : table;
        some_not_whole = some_not_whole || !whole;
    }
    return true;
}

// Constants with the tables that they were made of.
template <class Constants, class Tables>
struct Prepared {
    using Addresses = std::array<const float*, sizeof(Tables) / sizeof(const float*)>;

    Constants constants;
    Addresses made_of{};
    bool known = false;
    unsigned times = 0;  // made

    // Those of a set of tables; null while one is missing.
    const Constants* by(const Tables& tables) {
        const auto addresses = std::bit_cast<Addresses>(tables);
        if (known && made_of == addresses) return &constants;
        if (!std::ranges::all_of(addresses, table_loaded)) return nullptr;
        make_constants(tables, constants);
        made_of = addresses;
        known = true;
        ++times;
        return &constants;
    }
};

Prepared<aga8::Constants, aga8::Tables> aga8_prepared;
Prepared<vnic::Constants, vnic::Tables> vnic_prepared;

// The last mixture: from cycle to cycle the composition of a gas seldom changes.
struct {
    Composition gas;
    unsigned times;
    aga8::Mixture mixture;
} last;

}  // namespace

bool table_loaded(const float* table) {
    return table && !(some_not_whole && std::ranges::find(not_whole, table) != not_whole.end());
}

const aga8::Constants* aga8_constants() {
    return aga8_prepared.by({{Ei, Ki, Gi, Qi, Fi}, {Eij_, Uij, Kij, Gij_}, {an, bn, cn, kn, un, gn, qn, fn}});
}

const vnic::Constants* vnic_constants() { return vnic_prepared.by({V_Mi, Roki, Tki, FPi, Lij, Xij, Akl, Bkl}); }

const aga8::Mixture& aga8_mixture(const Composition& gas) {
    if (last.times != aga8_prepared.times || last.gas != gas)
        last = {gas, aga8_prepared.times, aga8::mix(gas, aga8_prepared.constants)};
    return last.mixture;
}

void tables_changed() {
    const FloatEnvironment guard;
    aga8_prepared.known = vnic_prepared.known = false;
    static_cast<void>(aga8_constants());
    static_cast<void>(vnic_constants());
}

}  // namespace kalorfix::gas::edge

int Step_Init(int block) {
    const bool known = block >= 0 && static_cast<std::size_t>(block) < edge::block_count;
    return known ? static_cast<int>(edge::blocks[static_cast<std::size_t>(block)].values) : 0;
}

int Watcom_Init() {
    if (!kalorfix::open_regular(PATH_SRAM_FOR_LOADTABL, "rb")) return 1;
    const bool allocated = edge::allocate_tables();
    edge::tables_changed();
    return allocated ? 0 : 1;
}

int Watcom_Load() {
    const kalorfix::File file = kalorfix::open_regular(PATH_SRAM_FOR_LOADTABL, "rb");
    if (!file) return 1;
    const bool filled = edge::fill_tables(file.get());
    edge::tables_changed();
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
    for (const edge::Block& block : edge::blocks) {
        std::free(*block.table);
        *block.table = nullptr;
    }
    edge::tables_changed();
}
