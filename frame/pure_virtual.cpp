// SPDX-License-Identifier: MIT
// What stands in the virtual table of the abstract calculator in place of a function. It cannot be called, but the C++
// runtime's own would bring its machinery of exceptions along, or be looked for in the host.
#include <cstdlib>

extern "C" [[noreturn]] void __cxa_pure_virtual() { std::abort(); }
