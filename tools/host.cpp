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

void bind_gas(void* handle, Exports& e) {
    bind(handle, "_Z5PF1_1fffffffffffffff", e.PF1_1);
    bind(handle, "_Z5PF1_2fffffffffffffff", e.PF1_2);
    bind(handle, "_Z3PF2v", e.PF2);
    bind(handle, "_Z5NF1_1ffffffRs", e.NF1_1);
    bind(handle, "_Z5NF1_2ffffffRs", e.NF1_2);
    bind(handle, "_Z5PF3_1fffRs", e.PF3_1);
    bind(handle, "_Z5PF3_2fffRs", e.PF3_2);
    bind(handle, "_Z5PF3_3fffRs", e.PF3_3);
    bind(handle, "_Z5PF3_4fffRs", e.PF3_4);
    bind(handle, "_Z5PF4_1v", e.PF4_1);
    bind(handle, "_Z5NF2_1v", e.NF2_1);
    bind(handle, "_Z5NF2_2fff", e.NF2_2);
    bind(handle, "_Z3NF3v", e.NF3);
    bind(handle, "_Z3NF4v", e.NF4);
    bind(handle, "_Z3NF6v", e.NF6);
    bind(handle, "_Z3NF7v", e.NF7);
    bind(handle, "_Z3PF5m", e.PF5);
    bind(handle, "_Z3PF6v", e.PF6);
    bind(handle, "Gas_Not_Init", e.Gas_Not_Init);
    bind(handle, "Xi", e.gas.Xi);
    bind(handle, "Tmp_Xi", e.gas.Tmp_Xi);
    bind(handle, "Index", e.gas.Index);
    bind(handle, "NumXi", e.gas.NumXi);
    bind(handle, "VNIC_FLAG", e.gas.VNIC_FLAG);
    bind(handle, "Plotnomer", e.gas.Plotnomer);
    bind(handle, "T", e.gas.T);
    bind(handle, "P", e.gas.P);
    bind(handle, "DeltaP", e.gas.DeltaP);
    bind(handle, "Z", e.gas.Z);
    bind(handle, "K", e.gas.K);
    bind(handle, "Roc", e.gas.Roc);
    bind(handle, "Xa", e.gas.Xa);
    bind(handle, "Xy", e.gas.Xy);
    bind(handle, "Rom", e.gas.Rom);
    bind(handle, "Ron", e.gas.Ron);
    bind(handle, "Ro", e.gas.Ro);
    bind(handle, "SM", e.gas.SM);
    bind(handle, "Mu", e.gas.Mu);
    bind(handle, "kk", e.gas.kk);
    bind(handle, "qmi", e.gas.qmi);
    bind(handle, "qoi", e.gas.qoi);
    bind(handle, "qci", e.gas.qci);
    bind(handle, "V_Mi", e.gas.V_Mi);
    bind(handle, "an", e.gas.an);
}

Exports bind_all(void* handle) {
    Exports e{};
    bind(handle, "Init", e.Init);
    bind(handle, "Done", e.Done);
    bind(handle, "Num_gas_trub", e.Num_gas_trub);
    bind(handle, "ProstoyTime", e.ProstoyTime);
    bind(handle, "SRV_Path", e.SRV_Path);
    bind(handle, "mg_init_tr", e.mg_init_tr);
    bind(handle, "mt_init_tr", e.mt_init_tr);
    bind(handle, "mg_param_tr", e.mg_param_tr);
    bind(handle, "mt_param_tr", e.mt_param_tr);
    bind(handle, "mg_mgn_param", e.mg_mgn_param);
    bind(handle, "mt_mgn_param", e.mt_mgn_param);
    bind(handle, "mg_int_param", e.mg_int_param);
    bind(handle, "mt_int_param", e.mt_int_param);
    bind(handle, "mg_int_param_1", e.mg_int_param_1);
    bind(handle, "mt_int_param_1", e.mt_int_param_1);
    bind(handle, "mt_param_tn", e.mt_param_tn);
    bind(handle, "mt_tf_param", e.mt_tf_param);
    bind(handle, "t_param_1", e.t_param_1);
    bind(handle, "t_phase_1", e.t_phase_1);
    bind(handle, "mg_param_gs", e.mg_param_gs);
    bind(handle, "mg_tf_param", e.mg_tf_param);
    bind(handle, "T_kr", e.T_kr);
    bind(handle, "p_kr", e.p_kr);
    bind(handle, "_Z9abs_clockv", e.abs_clock);
    bind(handle, "_Z12OpenAbsClockv", e.OpenAbsClock);
    bind(handle, "_Z7timeconP7timevalP8timespec", e.timecon);
    bind(handle, "_ZN7IniFileC1EPKci", e.ini_make);
    bind(handle, "_ZN7IniFileD1Ev", e.ini_end);
    bind(handle, "_ZN7IniFile4OpenEv", e.ini_Open);
    bind(handle, "_ZN7IniFile5CloseEv", e.ini_Close);
    bind(handle, "_ZN7IniFile10GetNextKeyEPKcS1_S1_PcS2_Pi", e.ini_GetNextKey);
    bind(handle, "_ZN9CSRV_PATH5PrintEv", e.Print);
    bind(handle, "_ZN8cGas2005C1Ev", e.make_gas);
    bind(handle, "_ZN10cTeplo2005C1Ev", e.make_heat);
    bind(handle, "_ZN11cCommon20057Init_TREcscddddddcddRc", e.Init_TR);
    bind(handle, "_ZN11cCommon20058Param_trERdS0_S0_S0_S0_", e.Param_tr);
    bind(handle, "_ZN11cCommon200515Countq_mReCK_shEiddd", e.Countq_mReCK_sh);
    bind(handle, "_ZN11cCommon200512CountepsilonEd", e.Countepsilon);
    bind(handle, "_ZN8cGas20059mgn_ParamEcddddRdS0_S0_S0_S0_S0_S0_S0_", e.gas_mgn_Param);
    bind(handle, "_ZN10cTeplo20059mgn_ParamEcdddRdS0_S0_S0_S0_S0_S0_", e.heat_mgn_Param);
    bind(handle, "_ZN10cTeplo20058Param_tnEddddddRsRdS1_", e.Param_tn);
    bind(handle, "_ZN10cTeplo20058tf_ParamEctdRdS0_S0_S0_", e.tf_Param);
    bind(handle, "_ZN8cGas20058Param_gsEddddscddddddddddddddddRdS0_S0_", e.Param_gs);
    bind(handle, "_ZN8cGas20058tf_ParamEccdRdS0_S0_S0_S0_", e.gas_tf_Param);
    bind_gas(handle, e);
    return e;
}

template <class Calculator>
Owned<Calculator> make(void (*constructor)(void*)) {
    void* const place = ::operator new(sizeof(Calculator));
    constructor(place);
    return Owned<Calculator>(static_cast<Calculator*>(place));
}

}  // namespace

std::string library_file(const std::string& path) {
    if (!path.empty()) return path;
    namespace fs = std::filesystem;
    std::error_code failed;
    const fs::path directory = fs::read_symlink("/proc/self/exe", failed).parent_path();
    for (const char* place : {"", "../lib", "../lib/" KALORFIX_TRIPLET, "../lib64"})
        if (const fs::path file = directory / place / "kalorfix.so"; !failed && fs::exists(file, failed))
            return file.lexically_normal().string();
    return "kalorfix.so";
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
    if (const fs::path program = fs::read_symlink("/proc/self/exe", failed); !failed)
        places.push_back(program.parent_path() / "../share/kalorfix");
    for (const fs::path& place : places)
        if (const fs::path file = place / "gas.dat"; fs::is_regular_file(file, failed))
            return file.lexically_normal().string();
    return {};
}

void Library::Closer::operator()(void* handle) const { dlclose(handle); }

Library::Library(const std::string& path) : handle_(dlopen(library_file(path).c_str(), RTLD_NOW | RTLD_LOCAL)) {
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
