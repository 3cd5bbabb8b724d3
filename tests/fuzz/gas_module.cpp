#include "gas_module.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <span>
#include <string>

#include "gas/edge/gas_data.h"
#include "gas/edge/loaded_constants.h"
#include "kalorfix_gas.h"
#include "kalorfix_runtime.h"

namespace fuzz {
namespace {

template <class Value>
std::span<std::uint8_t> piece(Value& value) {
    return {reinterpret_cast<std::uint8_t*>(&value), sizeof value};
}

const std::array pieces{
    piece(Xi),   piece(Index), piece(NumXi),     piece(Tmp_Xi),    piece(C),           piece(B),   piece(EIJM),
    piece(GIJM), piece(Ckl),   piece(T),         piece(P),         piece(DeltaP),      piece(Z),   piece(K),
    piece(Roc),  piece(Xa),    piece(Xy),        piece(FP),        piece(Tnk),         piece(Pnk), piece(Tn),
    piece(Rom),  piece(Ron),   piece(Mu),        piece(kk),        piece(Ro),          piece(SM),  piece(qmi),
    piece(qoi),  piece(qci),   piece(VNIC_FLAG), piece(Plotnomer), piece(Gas_Not_Init)};

struct Floats {
    float* first;
    std::uint32_t count;
};
// The scalars stand first and several times over the arrays in what `place` reaches.
const std::array floats{Floats{&T, 1},
                        Floats{&P, 1},
                        Floats{&DeltaP, 1},
                        Floats{&Z, 1},
                        Floats{&K, 1},
                        Floats{&Roc, 1},
                        Floats{&Xa, 1},
                        Floats{&Xy, 1},
                        Floats{&FP, 1},
                        Floats{&Tnk, 1},
                        Floats{&Pnk, 1},
                        Floats{&Tn, 1},
                        Floats{&Rom, 1},
                        Floats{&Ron, 1},
                        Floats{&Mu, 1},
                        Floats{&kk, 1},
                        Floats{&Ro, 1},
                        Floats{&SM, 1},
                        Floats{&qmi, 1},
                        Floats{&qoi, 1},
                        Floats{&qci, 1},
                        Floats{Xi, 15},
                        Floats{Tmp_Xi, 8},
                        Floats{C, 53},
                        Floats{B, 15},
                        Floats{&EIJM[0][0], 225},
                        Floats{&GIJM[0][0], 225},
                        Floats{&Ckl[0][0], 80}};

bool whole_tables = false;

[[noreturn]] void give_up(const char* what) {
    std::perror(what);
    std::exit(1);
}

// Directories for Init: the gas data of the build, empty settings, no stamp.
void point_library_to_build() {
    // Through descriptors, so that a long path of the build still fits the library's buffers.
    const auto directory = [](const char* path) {
        const int descriptor = open(path, O_PATH | O_DIRECTORY | O_CLOEXEC);
        if (descriptor < 0) give_up(path);
        return "/proc/self/fd/" + std::to_string(descriptor);
    };
    static const std::string system = directory(KALORFIX_BUILD);
    static const std::string settings = directory(KALORFIX_FUZZ_SETTINGS);
    SRV_Path.SYSTEM = system.c_str();
    SRV_Path.SETTINGS = settings.c_str();
    SRV_Path.PATHDB = "/dev/null";
}

}  // namespace

ModuleState saved_module_state() {
    ModuleState state;
    for (const auto& part : pieces) state.insert(state.end(), part.begin(), part.end());
    return state;
}

void restore_module_state(const ModuleState& state) {
    const std::uint8_t* from = state.data();
    for (const auto& part : pieces) {
        std::memcpy(part.data(), from, part.size());
        from += part.size();
    }
}

void write_module_state(std::uint32_t place, float value, short code) {
    constexpr std::uint32_t whole_numbers = 4;
    const std::uint32_t which = place % (floats.size() + whole_numbers);
    const std::uint32_t index = place >> 8;
    if (which < floats.size()) {
        floats[which].first[index % floats[which].count] = value;
    } else if (which == floats.size()) {
        NumXi = code;
    } else if (which == floats.size() + 1) {
        Index[index % std::size(Index)] = code;
    } else if (which == floats.size() + 2) {
        VNIC_FLAG = static_cast<char>(code);
    } else {
        Plotnomer = Gas_Not_Init = static_cast<char>(code);
    }
}

void write_table(std::uint32_t place, float value) {
    const kalorfix::gas::edge::Block& block = kalorfix::gas::edge::blocks[place % kalorfix::gas::edge::block_count];
    whole_tables = false;
    if (float* const table = *block.table)
        table[(place >> 8) % static_cast<std::uint32_t>(block.values)] = value;
    kalorfix::gas::edge::tables_changed();
}

GasFile& GasFile::instance() {
    static GasFile file;
    return file;
}

GasFile::GasFile() : descriptor_(memfd_create("gas.dat", MFD_CLOEXEC)) {
    std::ifstream in(KALORFIX_BUILD "/gas.dat", std::ios::binary);
    content_.assign(std::istreambuf_iterator<char>(in), {});
    if (content_.size() != kalorfix::gas::edge::file_bytes || descriptor_ < 0) give_up(KALORFIX_BUILD "/gas.dat");
    whole_ = false;
    mend();
}

void GasFile::damage(std::uint32_t place, float value) {
    const std::size_t at = place % (content_.size() - sizeof value);
    if (pwrite(descriptor_, &value, sizeof value, static_cast<off_t>(at)) < 0) give_up("gas.dat in memory");
    whole_ = false;
}

void GasFile::cut(std::uint32_t length) {
    if (ftruncate(descriptor_, static_cast<off_t>(length % content_.size())) != 0) give_up("gas.dat in memory");
    whole_ = false;
}

void GasFile::mend() {
    if (whole_) return;
    const auto bytes = static_cast<ssize_t>(content_.size());
    if (pwrite(descriptor_, content_.data(), content_.size(), 0) != bytes) give_up("gas.dat in memory");
    whole_ = true;
}

void GasFile::name_to_library() const {
    std::snprintf(PATH_SRAM_FOR_LOADTABL, sizeof PATH_SRAM_FOR_LOADTABL, "/proc/self/fd/%d", descriptor_);
}

unsigned load_tables() {
    const GasFile& file = GasFile::instance();
    file.name_to_library();
    const int failed = INIT_GAS();
    whole_tables = failed == 0 && file.is_whole();
    return static_cast<unsigned>(failed);
}

void release_tables() {
    REINIT_GAS();
    whole_tables = false;
}

unsigned init_library() {
    point_library_to_build();
    if (Is_already_init == 0) whole_tables = true;
    return static_cast<unsigned>(Init());
}

unsigned done_library() {
    if (Is_already_init != 0) whole_tables = false;
    return static_cast<unsigned>(Done());
}

bool tables_whole() { return whole_tables; }

void make_tables_whole() {
    GasFile& file = GasFile::instance();
    file.mend();
    if (!whole_tables) load_tables();
}

}  // namespace fuzz
