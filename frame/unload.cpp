// What has to be given back when the library is unloaded.

// With the C++ runtime linked in statically the library owns a copy of its pool for exceptions, made at load; without
// this every dlclose would lose it.
#ifdef KALORFIX_OWN_CXX_RUNTIME
namespace __gnu_cxx {
void __freeres();
}

namespace {

[[gnu::destructor]] void release_exception_pool() { __gnu_cxx::__freeres(); }

}  // namespace
#endif
