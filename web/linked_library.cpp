// SPDX-License-Identifier: MIT
// The library as tools/host.h has it, where nothing can be opened at run time: it is linked in.
#include <new>

#include "tools/host.h"

namespace kalorfix::host {
namespace {

// A member as a plain function that takes the object first.
template <auto member>
struct Call;
template <class Result, class Object, class... Arguments, Result (Object::*member)(Arguments...)>
struct Call<member> {
    static Result plain(Object* object, Arguments... arguments) { return (object->*member)(arguments...); }
};

template <class Variable>
Variable* first_of(Variable& variable) {
    return &variable;
}
template <class Variable, std::size_t size>
Variable* first_of(Variable (&variables)[size]) {
    return variables;
}

Exports bind_all() {
    Exports e{};
#define KALORFIX_BIND_PLAIN(name) e.name = &::name;
#define KALORFIX_BIND_CPP(name, symbol) e.name = &::name;
#define KALORFIX_BIND_MEMBER(name, member, symbol) e.name = &Call<&member>::plain;
#define KALORFIX_BIND_GAS(name) e.gas.name = first_of(::name);
    KALORFIX_PLAIN_EXPORTS(KALORFIX_BIND_PLAIN)
    KALORFIX_CPP_EXPORTS(KALORFIX_BIND_CPP)
    KALORFIX_GAS_STATE(KALORFIX_BIND_GAS)
    KALORFIX_MEMBER_EXPORTS(KALORFIX_BIND_MEMBER)
    e.ini_make = [](void* place, const char* name, int size) { new (place) IniFile(name, size); };
    e.ini_end = [](IniFile* file) { file->~IniFile(); };
    e.make_gas = [](void* place) { new (place) cGas2005; };
    e.make_heat = [](void* place) { new (place) cTeplo2005; };
    return e;
}

template <class Calculator>
Owned<Calculator> make(void (*constructor)(void*)) {
    void* const place = ::operator new(sizeof(Calculator));
    constructor(place);
    return Owned<Calculator>(static_cast<Calculator*>(place));
}

}  // namespace

void Library::Closer::operator()(void*) const {}

Library::Library(const std::string&) : exports_(bind_all()) {}

Owned<cGas2005> Library::gas_calculator() const { return make<cGas2005>(exports_.make_gas); }
Owned<cTeplo2005> Library::heat_calculator() const { return make<cTeplo2005>(exports_.make_heat); }

}  // namespace kalorfix::host
