// The library's own allocation: memory that is short gives null, never an exception.

// Replacing these keeps the C++ runtime's throwing ones, and with them its unwinder, its pool for exceptions and the
// newest symbols of the C library, out of kalorfix.so. Left out under the sanitizers, which watch their own.
#ifdef KALORFIX_OWN_CXX_RUNTIME
#include <cstdlib>
#include <new>

void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return std::malloc(size ? size : 1); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
#endif
