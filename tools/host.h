// SPDX-License-Identifier: MIT
// The library as a host sees it: opened with dlopen, called through its exported symbols.
#pragma once

#include <initializer_list>
#include <memory>
#include <string>
#include <type_traits>

#include "kalorfix.h"
#include "kalorfix_calculators.h"
#include "kalorfix_gas.h"
#include "kalorfix_runtime.h"

namespace kalorfix::host {

// The exports that the tools use, by name. clang-format would break these lists by their depth.
// clang-format off
// Functions of plain C, and variables:
#define KALORFIX_PLAIN_EXPORTS(X)                                                                              \
    X(Init) X(Done) X(Num_gas_trub) X(ProstoyTime) X(SRV_Path) X(T_kr) X(p_kr) X(Gas_Not_Init)                 \
    X(mg_init_tr) X(mg_param_gs) X(mg_tf_param) X(mg_param_tr) X(mg_mgn_param) X(mg_int_param)                 \
    X(mg_int_param_1) X(mt_init_tr) X(mt_param_tn) X(mt_tf_param) X(mt_param_tr) X(mt_mgn_param)               \
    X(mt_int_param) X(mt_int_param_1) X(t_param_1) X(t_phase_1)
// Functions with C++ names:
#define KALORFIX_CPP_EXPORTS(X)                                                                                \
    X(abs_clock, "_Z9abs_clockv")              X(OpenAbsClock, "_Z12OpenAbsClockv")                            \
    X(PF1_1, "_Z5PF1_1fffffffffffffff")        X(PF1_2, "_Z5PF1_2fffffffffffffff")                             \
    X(NF1_1, "_Z5NF1_1ffffffRs")               X(NF1_2, "_Z5NF1_2ffffffRs")                                    \
    X(PF3_1, "_Z5PF3_1fffRs")                  X(PF3_2, "_Z5PF3_2fffRs")                                       \
    X(PF3_3, "_Z5PF3_3fffRs")                  X(PF3_4, "_Z5PF3_4fffRs")                                       \
    X(NF2_1, "_Z5NF2_1v") X(NF2_2, "_Z5NF2_2fff") X(NF3, "_Z3NF3v") X(NF4, "_Z3NF4v") X(NF6, "_Z3NF6v")        \
    X(NF7, "_Z3NF7v") X(PF2, "_Z3PF2v") X(PF4_1, "_Z5PF4_1v") X(PF5, "_Z3PF5m") X(PF6, "_Z3PF6v")              \
    X(timecon, "_Z7timeconP7timevalP8timespec")
// Members, under the names that they have here:
#define KALORFIX_MEMBER_EXPORTS(X)                                                                             \
    X(ini_Open, IniFile::Open, "_ZN7IniFile4OpenEv")                                                           \
    X(ini_Close, IniFile::Close, "_ZN7IniFile5CloseEv")                                                        \
    X(ini_GetNextKey, IniFile::GetNextKey, "_ZN7IniFile10GetNextKeyEPKcS1_S1_PcS2_Pi")                         \
    X(Print, CSRV_PATH::Print, "_ZN9CSRV_PATH5PrintEv")                                                        \
    X(Init_TR, cCommon2005::Init_TR, "_ZN11cCommon20057Init_TREcscddddddcddRc")                                \
    X(Param_tr, cCommon2005::Param_tr, "_ZN11cCommon20058Param_trERdS0_S0_S0_S0_")                             \
    X(Countq_mReCK_sh, cCommon2005::Countq_mReCK_sh, "_ZN11cCommon200515Countq_mReCK_shEiddd")                 \
    X(Countepsilon, cCommon2005::Countepsilon, "_ZN11cCommon200512CountepsilonEd")                             \
    X(gas_mgn_Param, cGas2005::mgn_Param, "_ZN8cGas20059mgn_ParamEcddddRdS0_S0_S0_S0_S0_S0_S0_")               \
    X(heat_mgn_Param, cTeplo2005::mgn_Param, "_ZN10cTeplo20059mgn_ParamEcdddRdS0_S0_S0_S0_S0_S0_")             \
    X(Param_tn, cTeplo2005::Param_tn, "_ZN10cTeplo20058Param_tnEddddddRsRdS1_")                                \
    X(tf_Param, cTeplo2005::tf_Param, "_ZN10cTeplo20058tf_ParamEctdRdS0_S0_S0_")                               \
    X(Param_gs, cGas2005::Param_gs, "_ZN8cGas20058Param_gsEddddscddddddddddddddddRdS0_S0_")                    \
    X(gas_tf_Param, cGas2005::tf_Param, "_ZN8cGas20058tf_ParamEccdRdS0_S0_S0_S0_")
// Where the gas methods leave their results, as far as the tools look at it, and two of the tables (V_Mi and an, null while
// they are not loaded):
#define KALORFIX_GAS_STATE(X)                                                                                  \
    X(Xi) X(Tmp_Xi) X(Index) X(NumXi) X(VNIC_FLAG) X(Plotnomer) X(T) X(P) X(DeltaP) X(Z) X(K) X(Roc) X(Xa)     \
    X(Xy) X(Rom) X(Ron) X(Ro) X(SM) X(Mu) X(kk) X(qmi) X(qoi) X(qci) X(V_Mi) X(an)
// clang-format on

#define KALORFIX_MEMBER(name, ...) decltype(&::name) name;
#define KALORFIX_VARIABLE(name) std::remove_extent_t<decltype(::name)>* name;
#define KALORFIX_METHOD(name, member, ...) Plain<decltype(&member)>::Function name;
struct GasState {
    KALORFIX_GAS_STATE(KALORFIX_VARIABLE)
};

template <class Member>
struct Plain;
template <class Result, class Object, class... Arguments>
struct Plain<Result (Object::*)(Arguments...)> {
    using Function = Result (*)(Object*, Arguments...);
};

/// Members of the calculators are called as plain functions that take the object first, which is what they are in the Itanium
/// C++ ABI that all Linux targets share.
struct Exports {
    KALORFIX_PLAIN_EXPORTS(KALORFIX_MEMBER)
    KALORFIX_CPP_EXPORTS(KALORFIX_MEMBER)
    GasState gas;

    KALORFIX_MEMBER_EXPORTS(KALORFIX_METHOD)
    void (*ini_make)(void* place, const char*, int);
    void (*ini_end)(IniFile*);
    void (*make_gas)(void* place);
    void (*make_heat)(void* place);
};
#undef KALORFIX_MEMBER
#undef KALORFIX_VARIABLE
#undef KALORFIX_METHOD

/// Ends a calculator of one's own: the library's destructor, then the memory that this program gave.
struct CalculatorEnd {
    template <class Calculator>
    void operator()(Calculator* calculator) const {
        calculator->~Calculator();
        ::operator delete(static_cast<void*>(calculator));
    }
};
template <class Calculator>
using Owned = std::unique_ptr<Calculator, CalculatorEnd>;

/// The first file of this name in these places, seen from the directory of this program; empty when there is none.
[[nodiscard]] std::string near_program(std::initializer_list<const char*> places, const std::string& name);

/// The file that Library opens for a path: the path itself, or by default kalorfix.so beside this program or in the library
/// directory of its installation; a bare kalorfix.so where there is none.
[[nodiscard]] std::string library_file(const std::string& path);

/// The gas data file of a library file: beside it, else in share/kalorfix of its installation, else of this program's; empty
/// when there is none.
[[nodiscard]] std::string gas_data_of(const std::string& library);

/// An opened library. Closing it destroys every channel that was made through it.
class Library {
public:
    /// Opens the file, or with an empty path kalorfix.so beside the program, in the library directory of its
    /// installation, or wherever the system's loader finds it. Throws std::runtime_error with one clear line when
    /// the file cannot be opened or lacks an export.
    explicit Library(const std::string& path = {});

    const Exports* operator->() const { return &exports_; }

    /// A calculator of one's own, not one of the channels. The library must outlive it.
    [[nodiscard]] Owned<cGas2005> gas_calculator() const;
    [[nodiscard]] Owned<cTeplo2005> heat_calculator() const;

    /// The file that was opened.
    [[nodiscard]] std::string path() const;

private:
    struct Closer {
        void operator()(void* handle) const;
    };
    std::unique_ptr<void, Closer> handle_;
    Exports exports_{};
};

}  // namespace kalorfix::host
