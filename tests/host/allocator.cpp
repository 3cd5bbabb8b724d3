// A host with an allocator of its own, exported: malloc and its kin, operator new and delete. Every block carries a mark of who
// made it. The library, with a C++ runtime of its own, must neither use the host's operators nor release a block of another maker.
#include <dlfcn.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

#include "kalorfix.h"
#include "kalorfix_calculators.h"
#include "kalorfix_gas.h"

extern "C" {
#include "host.h"
void* __libc_malloc(std::size_t size);
void __libc_free(void* block);
}

namespace {

enum class Maker : std::uint32_t { malloc = 0xA110CA7E, operator_new = 0xC0FFEE11, released = 0xDEADDEAD };

// Before each block; `start` is what the C library gave.
struct alignas(16) Mark {
    void* start;
    std::size_t size;
    Maker maker;
};

long operators_called = 0;
long in_use = 0;
long gives_left = -1;  // what malloc and calloc still give before they have nothing left, once; -1 without end

[[noreturn]] void foreign_block() {
    constexpr char text[] = "a block was released by another allocator than the one that gave it\n";
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, text, sizeof text - 1);
    std::abort();
}

// A calculator of the host's own: made with its `new`, deleted through the library's virtual destructor.
bool host_deletes_what_it_made(int flags) {
    void* const library = dlopen(host_library, flags);
    if (!library) return false;
    const long called = operators_called;
    bool kept_apart = true;
    for (const char* constructor : {"_ZN8cGas2005C1Ev", "_ZN10cTeplo2005C1Ev"}) {
        const long before = in_use;
        void* const place = operator new(sizeof(cGas2005) + sizeof(cTeplo2005));
        reinterpret_cast<void (*)(void*)>(dlsym(library, constructor))(place);
        delete static_cast<cCommon2005*>(place);
        kept_apart = kept_apart && in_use == before;
    }
    return dlclose(library) == 0 && kept_apart && operators_called == called + 4;
}

// Whatever allocation of the library finds no memory: Init is done without the settings or the gas data, a channel refuses,
// and the next call works.
bool short_of_memory_is_survived(int flags) {
    constexpr int most_allocations = 200;
    int without_settings = 0, without_gas = 0, without_channel = 0;
    for (int given = 0; given < most_allocations; ++given) {
        void* const library = dlopen(host_library, flags);
        if (!library) return false;
        const auto init = reinterpret_cast<decltype(&Init)>(dlsym(library, "Init"));
        const auto done = reinterpret_cast<decltype(&Done)>(dlsym(library, "Done"));
        const auto set_up = reinterpret_cast<decltype(&mt_init_tr)>(dlsym(library, "mt_init_tr"));
        const auto& pipelines = *static_cast<const short*>(dlsym(library, "Num_gas_trub"));
        const auto& gas_loaded = *static_cast<const char*>(dlsym(library, "Gas_Not_Init"));
        const auto& table = *static_cast<float* const*>(dlsym(library, "Eij_"));
        char status[2] = {9, 9};
        gives_left = given;
        const int outcome = init();
        set_up(2, 0, 20, 0, 0, 0, 100, 50, 0, 0, 0, 0, 0, &status[0]);
        const bool ran_out = gives_left < 0;
        gives_left = -1;
        set_up(2, 0, 20, 0, 0, 0, 100, 50, 0, 0, 0, 0, 0, &status[1]);
        without_settings += pipelines != 7;
        without_gas += gas_loaded == 0;
        without_channel += status[0] == 0;
        const int lost = (pipelines != 7) + (gas_loaded == 0) + (status[0] == 0);
        // A stream does without its buffer.
        const bool sound =
            outcome == 1 && status[1] == 1 && (gas_loaded == 0) == (table == nullptr) && lost <= ran_out;
        done();
        if (dlclose(library) != 0 || !sound) return false;
        if (!ran_out) return without_settings >= 3 && without_gas >= 33 && without_channel == 2;
    }
    return false;
}

// Out of line: the compiler must not conclude from the size of a block that nothing stands before it.
[[gnu::noinline]] Mark* mark_of(void* block) { return static_cast<Mark*>(block) - 1; }

void* give(std::size_t size, std::size_t alignment, Maker maker) {
    if (alignment < alignof(Mark)) alignment = alignof(Mark);
    if (size > SIZE_MAX / 2) return nullptr;
    void* const start = __libc_malloc(size + sizeof(Mark) + alignment);
    if (!start) return nullptr;
    const std::uintptr_t first = reinterpret_cast<std::uintptr_t>(start) + sizeof(Mark);
    void* const block = reinterpret_cast<void*>((first + alignment - 1) / alignment * alignment);
    *mark_of(block) = {start, size, maker};
    ++in_use;
    return block;
}

void take_back(void* block, Maker maker) {
    if (!block) return;
    if (mark_of(block)->maker != maker) foreign_block();
    mark_of(block)->maker = Maker::released;
    --in_use;
    __libc_free(mark_of(block)->start);
}

}  // namespace

extern "C" {
void* malloc(std::size_t size) noexcept {
    if (gives_left >= 0 && gives_left-- == 0) return nullptr;
    return give(size, 1, Maker::malloc);
}
void free(void* block) noexcept { take_back(block, Maker::malloc); }
void* calloc(std::size_t count, std::size_t size) noexcept {
    if (size != 0 && count > SIZE_MAX / size) return nullptr;
    void* const block = malloc(count * size);
    return block ? std::memset(block, 0, count * size) : nullptr;
}
void* realloc(void* block, std::size_t size) noexcept {
    void* const moved = give(size, 1, Maker::malloc);
    if (!block || !moved) return moved;
    const std::size_t before = mark_of(block)->size;
    std::memcpy(moved, block, before < size ? before : size);
    take_back(block, Maker::malloc);
    return moved;
}
void* memalign(std::size_t alignment, std::size_t size) noexcept {
    return give(size, alignment, Maker::malloc);
}
void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
    return give(size, alignment, Maker::malloc);
}
int posix_memalign(void** block, std::size_t alignment, std::size_t size) noexcept {
    *block = give(size, alignment, Maker::malloc);
    return *block ? 0 : ENOMEM;
}
}

void* operator new(std::size_t size) {
    ++operators_called;
    if (void* const block = give(size, 1, Maker::operator_new)) return block;
    throw std::bad_alloc();
}
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    ++operators_called;
    return give(size, 1, Maker::operator_new);
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept { return operator new(size, tag); }
void operator delete(void* block) noexcept {
    ++operators_called;
    take_back(block, Maker::operator_new);
}
void operator delete[](void* block) noexcept { operator delete(block); }
void operator delete(void* block, std::size_t) noexcept { operator delete(block); }
void operator delete[](void* block, std::size_t) noexcept { operator delete(block); }

extern "C" {
const host_mode host_modes[] = {
    {"now, local", RTLD_NOW | RTLD_LOCAL, 1, 1, 0},
    {"lazy, global", RTLD_LAZY | RTLD_GLOBAL, 1, 1, 0},
    // The library then finds the C library's allocator, and all else in the process this one.
    {"deep binding", RTLD_NOW | RTLD_LOCAL | RTLD_DEEPBIND, 1, 0, 1},
};
const int host_mode_count = static_cast<int>(std::size(host_modes));

int host_ready(void) {
    const long before = operators_called;
    { const std::vector<int> ten(10, static_cast<int>(before)); }
    const bool exported = dlsym(RTLD_DEFAULT, "malloc") == reinterpret_cast<void*>(&malloc) &&
                          dlsym(RTLD_DEFAULT, "_ZdlPv") != nullptr;
    if (exported && operators_called >= before + 2) return 0;
    std::fputs("the program's allocator is not in force\n", stderr);
    return 1;
}

static long operators_before = 0;
static long in_use_before = 0;

int host_before(const host_mode* mode) {
    if (!host_deletes_what_it_made(mode->flags)) {
        std::fputs("the library does not delete as the program does\n", stderr);
        return 1;
    }
    if (!(mode->flags & RTLD_DEEPBIND) && !short_of_memory_is_survived(mode->flags)) {
        std::fputs("the library does not get over a lack of memory\n", stderr);
        return 1;
    }
    host_restart_clock();
    operators_before = operators_called;
    in_use_before = in_use;
    return 0;
}

int host_after(const host_mode* mode) {
    const long left = in_use - in_use_before;
    const long called = operators_called - operators_before;
    std::printf("%s: %ld blocks left, %ld calls of the program's operators\n", mode->name, left, called);
    std::fflush(stdout);
    return called != 0;
}
}
