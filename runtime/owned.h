// Ownership of objects without the allocating operators of C++.
#pragma once

#include <cstdlib>
#include <memory>
#include <new>

namespace kalorfix {

template <class T>
struct Destroy {
    void operator()(T* object) const {
        object->~T();
        std::free(object);
    }
};
template <class T>
using Owned = std::unique_ptr<T, Destroy<T>>;

/// A new object, or null when memory is short. Not by operator new: even the one that does not throw brings the C++
/// runtime's machinery of exceptions into kalorfix.so, and with it needs of a newer C library.
template <class T>
[[nodiscard]] Owned<T> make_owned() noexcept {
    void* const memory = std::malloc(sizeof(T));
    return Owned<T>(memory ? new (memory) T : nullptr);
}

}  // namespace kalorfix
