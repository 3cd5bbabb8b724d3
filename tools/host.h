// The library as a host sees it: opened with dlopen, called through its exported symbols.
#pragma once

#include <memory>
#include <string>

#include "kalorfix.h"
#include "kalorfix_calculators.h"
#include "kalorfix_gas.h"
#include "kalorfix_runtime.h"

namespace kalorfix::host {

/// Where the gas methods leave their results, as far as the tools look at it.
struct GasState {
    float *Xi, *Tmp_Xi;
    short *Index, *NumXi;
    char *VNIC_FLAG, *Plotnomer;
    float *T, *P, *DeltaP, *Z, *K, *Roc, *Xa, *Xy, *Rom, *Ron, *Ro, *SM, *Mu, *kk, *qmi, *qoi, *qci;
    float **V_Mi, **an;  ///< two of the tables: null while they are not loaded
};

/// The exports that the tools use. Members of the calculators are called as plain functions that take the object
/// first, which is what they are in the Itanium C++ ABI that all Linux targets share.
struct Exports {
    decltype(&::Init) Init;
    decltype(&::Done) Done;
    short* Num_gas_trub;
    double* ProstoyTime;
    const CSRV_PATH* SRV_Path;
    decltype(&::mg_init_tr) mg_init_tr;
    decltype(&::mt_init_tr) mt_init_tr;
    decltype(&::mg_param_tr) mg_param_tr;
    decltype(&::mt_param_tr) mt_param_tr;
    decltype(&::mg_mgn_param) mg_mgn_param;
    decltype(&::mt_mgn_param) mt_mgn_param;
    decltype(&::mg_int_param) mg_int_param;
    decltype(&::mt_int_param) mt_int_param;
    decltype(&::mg_int_param_1) mg_int_param_1;
    decltype(&::mt_int_param_1) mt_int_param_1;
    decltype(&::mt_param_tn) mt_param_tn;
    decltype(&::mt_tf_param) mt_tf_param;
    decltype(&::t_param_1) t_param_1;
    decltype(&::t_phase_1) t_phase_1;
    decltype(&::mg_param_gs) mg_param_gs;
    decltype(&::mg_tf_param) mg_tf_param;
    const double* T_kr;
    const double* p_kr;
    decltype(&::abs_clock) abs_clock;
    decltype(&::OpenAbsClock) OpenAbsClock;
    decltype(&::timecon) timecon;

    void (*ini_make)(void* place, const char*, int);
    void (*ini_end)(IniFile*);
    unsigned char (*ini_Open)(IniFile*);
    unsigned char (*ini_Close)(IniFile*);
    int (*ini_GetNextKey)(IniFile*, const char*, const char*, const char*, char*, char*, int*);

    void (*Print)(CSRV_PATH*);
    void (*make_gas)(void* place);
    void (*make_heat)(void* place);
    char (*Init_TR)(cCommon2005*, char, short, char, double, double, double, double, double, double, char,
                    double, double, char&);
    char (*Param_tr)(cCommon2005*, double&, double&, double&, double&, double&);
    char (*Countq_mReCK_sh)(cCommon2005*, int, double, double, double);
    char (*Countepsilon)(cCommon2005*, double);
    char (*gas_mgn_Param)(cGas2005*, char, double, double, double, double, double&, double&, double&, double&,
                          double&, double&, double&, double&);
    char (*heat_mgn_Param)(cTeplo2005*, char, double, double, double, double&, double&, double&, double&,
                           double&, double&, double&);
    char (*Param_tn)(cTeplo2005*, double, double, double, double, double, double, short&, double&, double&);
    char (*tf_Param)(cTeplo2005*, char, unsigned short, double, double&, double&, double&, double&);
    char (*Param_gs)(cGas2005*, double, double, double, double, short, char, double, double, double, double,
                     double, double, double, double, double, double, double, double, double, double, double,
                     double, double&, double&, double&);
    char (*gas_tf_Param)(cGas2005*, char, char, double, double&, double&, double&, double&, double&);

    decltype(&::PF1_1) PF1_1;
    decltype(&::PF1_2) PF1_2;
    decltype(&::PF2) PF2;
    decltype(&::NF1_1) NF1_1;
    decltype(&::NF1_2) NF1_2;
    decltype(&::PF3_1) PF3_1;
    decltype(&::PF3_2) PF3_2;
    decltype(&::PF3_3) PF3_3;
    decltype(&::PF3_4) PF3_4;
    decltype(&::PF4_1) PF4_1;
    decltype(&::NF2_1) NF2_1;
    decltype(&::NF2_2) NF2_2;
    decltype(&::NF3) NF3;
    decltype(&::NF4) NF4;
    decltype(&::NF6) NF6;
    decltype(&::NF7) NF7;
    decltype(&::PF5) PF5;
    decltype(&::PF6) PF6;
    const char* Gas_Not_Init;
    GasState gas;
};

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
