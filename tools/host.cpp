// SPDX-License-Identifier: MIT
#include "tools/host.h"

#include <dlfcn.h>

#include <filesystem>
#include <new>
#include <stdexcept>
#include <vector>

namespace kalorfix::host {
namespace {

template <class Pointer>
void bind(void* handle, const char* symbol, Pointer& target) {
    target = reinterpret_cast<Pointer>(dlsym(handle, symbol));
    if (!target) throw std::runtime_error(std::string("it does not export ") + symbol);
}

Exports bind_all(void* handle) {
    Exports e{};
#define KALORFIX_BIND_PLAIN(name) bind(handle, #name, e.name);
#define KALORFIX_BIND_CPP(name, symbol) bind(handle, symbol, e.name);
#define KALORFIX_BIND_MEMBER(name, member, symbol) bind(handle, symbol, e.name);
#define KALORFIX_BIND_GAS(name) bind(handle, #name, e.gas.name);
    KALORFIX_PLAIN_EXPORTS(KALORFIX_BIND_PLAIN)
    KALORFIX_CPP_EXPORTS(KALORFIX_BIND_CPP)
    KALORFIX_GAS_STATE(KALORFIX_BIND_GAS)
    KALORFIX_MEMBER_EXPORTS(KALORFIX_BIND_MEMBER)
    bind(handle, "_ZN7IniFileC1EPKci", e.ini_make);
    bind(handle, "_ZN7IniFileD1Ev", e.ini_end);
    bind(handle, "_ZN8cGas2005C1Ev", e.make_gas);
    bind(handle, "_ZN10cTeplo2005C1Ev", e.make_heat);
    return e;
}

template <class Calculator>
Owned<Calculator> make(void (*constructor)(void*)) {
    void* const place = ::operator new(sizeof(Calculator));
    constructor(place);
    return Owned<Calculator>(static_cast<Calculator*>(place));
}

}  // namespace

std::string near_program(std::initializer_list<const char*> places, const std::string& name) {
    namespace fs = std::filesystem;
    std::error_code failed;
    const fs::path directory = fs::read_symlink("/proc/self/exe", failed).parent_path();
    for (const char* place : places)
        if (const fs::path file = directory / place / name; !failed && fs::exists(file, failed))
            return file.lexically_normal().string();
    return {};
}

std::string library_file(const std::string& path) {
    if (!path.empty()) return path;
    const std::string file =
        near_program({"", "../lib", "../lib/" KALORFIX_TRIPLET, "../lib64"}, "kalorfix.so");
    return file.empty() ? "kalorfix.so" : file;
}

std::string gas_data_of(const std::string& library) {
    namespace fs = std::filesystem;
    std::error_code failed;
    std::vector<fs::path> places;
    if (library.find('/') != std::string::npos) {
        places.push_back(fs::path(library).parent_path());
        // From lib and from lib/<triplet>, where the file itself stands if the name is a link.
        const fs::path directory = fs::weakly_canonical(library, failed).parent_path();
        for (const char* prefix : {"..", "../.."}) places.push_back(directory / prefix / "share/kalorfix");
    }
    for (const fs::path& place : places)
        if (const fs::path file = place / "gas.dat"; fs::is_regular_file(file, failed))
            return file.lexically_normal().string();
    return near_program({"../share/kalorfix"}, "gas.dat");
}

void Library::Closer::operator()(void* handle) const { dlclose(handle); }

Library::Library(const std::string& path) {
    const std::string file = library_file(path);
    std::error_code failed;
    // The loader would wait for a pipe.
    if (std::filesystem::is_fifo(file, failed))
        throw std::runtime_error("cannot open the library: " + file + " is a pipe");
    handle_.reset(dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL));
    if (!handle_) throw std::runtime_error(std::string("cannot open the library: ") + dlerror());
    try {
        exports_ = bind_all(handle_.get());
    } catch (const std::runtime_error& error) {
        throw std::runtime_error("cannot use the library " + path + ": " + error.what());
    }
}

Owned<cGas2005> Library::gas_calculator() const { return make<cGas2005>(exports_.make_gas); }
Owned<cTeplo2005> Library::heat_calculator() const { return make<cTeplo2005>(exports_.make_heat); }

std::string Library::path() const {
    Dl_info about{};
    if (dladdr(reinterpret_cast<const void*>(exports_.t_param_1), &about) == 0 || !about.dli_fname) return {};
    return about.dli_fname;
}

}  // namespace kalorfix::host
