// A program that is linked against the library and uses its variables as its own: what the library writes is seen here, what is
// written here is seen by the library, whether the compiler copied the variables into the program or not. The library is loaded
// with SETTINGS=/of/the/environment.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <typeinfo>

#include "kalorfix_calculators.h"
#include "kalorfix_gas.h"
#include "kalorfix_runtime.h"
#include "tools/runtime.h"

namespace {

int failures = 0;

void check(bool met, const char* what, int line) {
    if (met) return;
    std::printf("%s:%d: %s\n", "linked.cpp", line, what);
    ++failures;
}
#define CHECK(condition) check(condition, #condition, __LINE__)

// Seen by whatever runs before main.
const std::string settings_before_main = SRV_Path.SETTINGS;

// A channel of the host's own make, over the library's class.
class SteamOfTheHost : public cTeplo2005 {
public:
    bool IsGas() override { return asked_ = true, cTeplo2005::IsGas(); }
    bool asked_ = false;
};

void settings() {
    CHECK(Tc == 293.15F && Pc == 0.101325F && R == 8.31451F && T_kr == 647.096 && p_kr == 22.064);
    CHECK(settings_before_main == "/of/the/environment" && std::string(SRV_Path.PRG) == "/ubm/prg");
    SRV_Path.InitPathes();
    const std::string place = SRV_Path.SETTINGS, system = SRV_Path.SYSTEM;
    CHECK(place == std::getenv("SETTINGS"));
    CHECK(Is_already_init == 0 && Num_gas_trub == 5 && V_Mi == nullptr);
    CHECK(Init() == 1 && Is_already_init == 1 && Num_gas_trub == 2 && Gas_Not_Init == 1);
    CHECK(PATH_SRAM_FOR_LOADTABL == system + "/gas.dat");
    CHECK(V_Mi && Mi && std::fabs(Mi[0] - 16.043F) < 0.01F && an && Ckl[0][0] == 0.0F);
    CHECK(Done() == 1 && Is_already_init == 0 && V_Mi == nullptr && an == nullptr);

    // A directory and numbers that this program writes.
    std::ofstream(system + "/tornkntr.ini") << "[TORNOL]\n[NUMBERS]\nhalf = 0.5\n";
    SRV_Path.SETTINGS = system.c_str();
    Num_gas_trub = 12;
    CHECK(Init() == 1 && Num_gas_trub == 12);
    Done();
    Num_gas_trub = -4;
    CHECK(Init() == 1 && Num_gas_trub == 5);
    IniFile file((system + "/tornkntr.ini").c_str(), 1);
    float half = 0.0F;
    CHECK(file.Open() == 0 && file.CfgGet("NUMBERS", nullptr, nullptr, "half", half) == 0 && half == 0.5F);
    CHECK(file.Close() == 0);
}

void gas() {
    char status = 9;
    float sum = 0, compressibility = 0, rho_c = 0, f[8] = {};
    mg_init_tr(1, 1, 3, 1, 7, 32, 400, 220, 0.05F, 0.05F, 0, 1, 0, &status);
    mg_param_gs(1, 15, 5.5e6F, 0, 0, 2, 0, 96.5F, 1.8F, 0.45F, 0.1F, 0.1F, 0.03F, 0.05F, 0.07F, 0, 0, 0.3F,
                0.6F, 0, 0, 0, 0, &status, &sum, &compressibility, &rho_c);
    CHECK(status == 1 && std::fabs(compressibility - 0.888367F) < 1e-6F);
    CHECK(K == compressibility && Roc == rho_c && T == 288.15F && P == 5.5F && DeltaP == 0.0F && Z == 0.0F);
    CHECK(NumXi == 10 && Index[9] == 11 && Xi[0] == 0.965F && Xi[8] == 0.0F && VNIC_FLAG == 0);
    CHECK(B[0] != 0.0F && C[20] != 0.0F && EIJM[0][1] != 0.0F && GIJM[0][1] != 0.0F);
    short failed = 9;
    CHECK(PF3_4(288.15F, 0, 5.5F, failed) == K && failed == 0 && VNIC_FLAG == 1);
    CHECK(Z > 0.88F && Z < K && std::fabs(Z / K - 0.998F) < 0.001F);
    CHECK(K != compressibility && Rom > 2.0F && Ron > 0.0F && Tmp_Xi[0] > 0.9F && Ckl[0][0] != 0.0F);
    CHECK(PF5(0) == Mu && PF6() == kk && PF4_1() == Ro && SM > 16.0F);

    // Values and a table of this program.
    qmi = 12.0F, Roc = 0.75F;
    CHECK(NF7() == 16000.0F && qci == 16000.0F);
    Xi[0] = 0.0F;
    const float without_methane = PF2();
    CHECK(without_methane == Roc && without_methane < 0.1F);
    float* const table = Bi;
    Bi = nullptr;
    CHECK(PF2() == 0.0F);
    Bi = table;

    // A downtime of this program.
    ProstoyTime = 90.0;
    mg_tf_param(1, 0, 0, 0, &status, f, f + 1, f + 2, f + 3, f + 4);
    mg_param_tr(1, &status, f, f + 1, f + 2, f + 3, f + 4);
    mg_mgn_param(1, 1, 25000, 43.5F, 0.7F, 34, &status, f, f + 1, f + 2, f + 3, f + 4, f + 5, f + 6, f + 7);
    mg_int_param(1, 1, 0, 10, 2, 0, &status, f, f + 1, f + 2);
    CHECK(status == 1 && f[2] == 90.0F && std::fabs(f[1] - 3.0F) < 0.1F);
}

void calculators() {
    char first = 9;
    double d[5] = {};
    short phase = 9;
    SteamOfTheHost steam;
    CHECK(steam.Init_TR(1, 1, 1, 7, 32, 300, 180, 0.1, 0.05, 0, 1, 0, first) == 1);
    CHECK(steam.Param_tn(300, 1.2e6, 0, 0, 1000, 0.5, phase, d[0], d[1]) == 1 && phase == 2);
    CHECK(steam.Param_tr(d[0], d[1], d[2], d[3], d[4]) == 1 && steam.asked_);
    const std::unique_ptr<cCommon2005> gas = std::make_unique<cGas2005>(),
                                       heat = std::make_unique<cTeplo2005>();
    CHECK(gas->IsGas() && !heat->IsGas());
    CHECK(dynamic_cast<cGas2005*>(gas.get()) && !dynamic_cast<cGas2005*>(heat.get()));
    const cCommon2005 &plain = *heat, &own = steam;
    CHECK(dynamic_cast<const cTeplo2005*>(&own));
    CHECK(typeid(plain) == typeid(cTeplo2005) && typeid(own) != typeid(cTeplo2005));
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) return 1;
    const kalorfix::host::Runtime runtime(argv[1]);
    settings();
    gas();
    calculators();
    CHECK(Done() == 1 && V_Mi == nullptr);
    if (failures == 0) std::puts("program and library see the same variables");
    return failures != 0;
}
