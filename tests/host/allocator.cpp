// SPDX-License-Identifier: MIT
// A host with an allocator of its own, exported: operator new and delete that take from an arena, and a malloc that counts its
// blocks and may fail. The library must release what it took, and nothing that another made; a lack of memory is survived.
#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <new>

#include "kalorfix.h"
#include "kalorfix_calculators.h"

extern "C" {
#include "host.h"
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void __libc_free(void* block);
}
#include "session.h"

namespace {

long blocks = 0, of_operators = 0;  // in use
long gives_left = -1;  // what malloc and calloc still give before they have nothing left, once; -1 without end

bool gives() {
    if (gives_left >= 0 && gives_left-- == 0) return false;
    ++blocks;
    return true;
}

// The C library would end the process over a block of it. Nothing is given twice.
alignas(16) char arena[64 << 20];
std::size_t arena_used = 0;

template <class Function>
Function* find(void* library, const char* symbol) {
    return reinterpret_cast<Function*>(dlsym(library, symbol));
}

// A calculator of the host's own: made with its `new`, deleted through the library's virtual destructor.
bool host_deletes_what_it_made(void* library) {
    const long before = of_operators;
    for (const char* constructor : {"_ZN8cGas2005C1Ev", "_ZN10cTeplo2005C1Ev"}) {
        void* const place = operator new(sizeof(cGas2005) + sizeof(cTeplo2005));
        find<void(void*)>(library, constructor)(place);
        delete static_cast<cCommon2005*>(place);
    }
    return of_operators == before;
}

// Whatever allocation of the library finds no memory: Init is done without the settings or the gas data, a channel refuses, and
// the next call works.
bool short_of_memory_is_survived(int flags) {
    constexpr int most_allocations = 200;
    int without_settings = 0, without_gas = 0, without_channel = 0;
    for (int given = 0; given < most_allocations; ++given) {
        void* const library = dlopen(host_library, flags);
        const auto set_up = find<decltype(mt_init_tr)>(library, "mt_init_tr");
        const auto& pipelines = *static_cast<const short*>(dlsym(library, "Num_gas_trub"));
        const auto& gas_loaded = *static_cast<const char*>(dlsym(library, "Gas_Not_Init"));
        const auto& table = *static_cast<float* const*>(dlsym(library, "Eij_"));
        char status[2] = {9, 9};
        gives_left = given;
        const int outcome = find<decltype(Init)>(library, "Init")();
        set_up(2, 0, 20, 0, 0, 0, 100, 50, 0, 0, 0, 0, 0, &status[0]);
        const bool ran_out = gives_left < 0;
        gives_left = -1;
        set_up(2, 0, 20, 0, 0, 0, 100, 50, 0, 0, 0, 0, 0, &status[1]);
        const bool no_settings = pipelines != 2, no_gas = gas_loaded == 0, no_channel = status[0] == 0;
        without_settings += no_settings, without_gas += no_gas, without_channel += no_channel;
        // A stream does without its buffer.
        const bool sound = outcome == 1 && status[1] == 1 && no_gas == (table == nullptr) &&
                           no_settings + no_gas + no_channel <= ran_out;
        find<decltype(Done)>(library, "Done")();
        if (dlclose(library) != 0 || !sound) return false;
        if (!ran_out) return without_settings >= 3 && without_gas >= 33 && without_channel == 2;
    }
    return false;
}

}  // namespace

extern "C" {
void* malloc(std::size_t size) noexcept { return gives() ? __libc_malloc(size) : nullptr; }
void* calloc(std::size_t count, std::size_t size) noexcept {
    return gives() ? __libc_calloc(count, size) : nullptr;
}
void* realloc(void* block, std::size_t size) noexcept {
    blocks += block == nullptr;
    return __libc_realloc(block, size);
}
void free(void* block) noexcept {
    blocks -= block != nullptr;
    __libc_free(block);
}
}

void* operator new(std::size_t size) {
    ++of_operators;
    char* const block = arena + arena_used;
    arena_used += (size + 15) / 16 * 16;
    if (arena_used > sizeof arena) throw std::bad_alloc();
    return block;
}
void operator delete(void* block) noexcept {
    if (!block) return;
    --of_operators;
    const auto* const place = static_cast<const char*>(block);
    if (place >= arena && place < arena + sizeof arena) return;
    std::fputs("the program's delete was given a block that its new did not make\n", stderr);
    std::abort();
}
void operator delete(void* block, std::size_t) noexcept { operator delete(block); }

// Loads the library, uses all of it and unloads it, again and again. Gives the number of open files.
static long load_and_unload(int rounds, int flags) {
    for (int round = 0; round < rounds; ++round) {
        void* const handle = dlopen(host_library, flags);
        session(host_library);
        if (!handle || dlclose(handle) != 0 || dlopen(host_library, RTLD_NOLOAD | RTLD_NOW)) return -1;
    }
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

extern "C" {
const host_mode host_modes[] = {
    {"now, local", RTLD_NOW | RTLD_LOCAL, 0},
    {"lazy, global", RTLD_LAZY | RTLD_GLOBAL, 0},
    // The library then finds the C library's allocator, and all else in the process this one.
    {"deep binding", RTLD_NOW | RTLD_LOCAL | RTLD_DEEPBIND, 0},
};
const int host_mode_count = std::size(host_modes);

int host_before(const host_mode* mode) {
    void* const library = dlopen(host_library, mode->flags);
    const bool exported = dlsym(RTLD_DEFAULT, "malloc") == reinterpret_cast<void*>(&malloc);
    const bool kept_apart = library && exported && host_deletes_what_it_made(library);
    if (!kept_apart || dlclose(library) != 0) {
        std::fputs("the library does not delete as the program does\n", stderr);
        return 1;
    }
    if ((mode->flags & RTLD_DEEPBIND) || short_of_memory_is_survived(mode->flags)) return 0;
    std::fputs("the library does not get over a lack of memory\n", stderr);
    return 1;
}

int host_after(const host_mode* mode) {
    constexpr int rounds = 40;
    const long files = load_and_unload(rounds, mode->flags), before = blocks;
    const long files_later = load_and_unload(rounds, mode->flags), grown = blocks - before;
    std::printf("%d rounds: %ld blocks more, %ld files open, then %ld\n", rounds, grown, files, files_later);
    return files < 0 || files_later != files || grown >= rounds / 2;
}
}
