// SPDX-License-Identifier: MIT
// A calculator that a C++ host has made with its `new` and deletes: the destructor that also deletes stands in the library, the
// memory is the host's. The linker leads every operator delete of the library here (--wrap).
#include <cstddef>
#include <cstdlib>

/// The operator delete of the process, its own or that of its C++ runtime; null where it has none.
extern "C" [[gnu::weak]] void __real__ZdlPv(void* memory) noexcept;

extern "C" {

void __wrap__ZdlPv(void* memory) noexcept {
    if (__real__ZdlPv)
        __real__ZdlPv(memory);
    else
        std::free(memory);
}

// With the size, which is an unsigned long or an unsigned int in the name.
void __wrap__ZdlPvm(void* memory, std::size_t) noexcept { __wrap__ZdlPv(memory); }
void __wrap__ZdlPvj(void* memory, std::size_t) noexcept { __wrap__ZdlPv(memory); }

}  // extern "C"
