// SPDX-License-Identifier: MIT
// A program that is linked against the library and uses its variables as its own: what the library writes is seen here, what is
// written here is seen by the library, whether the compiler copied the variables into the program or not. The library is loaded
// with SETTINGS=/of/the/environment.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <utility>

#include "kalorfix_calculators.h"
#include "kalorfix_gas.h"
#include "kalorfix_runtime.h"
#include "tools/runtime.h"

namespace {

int failures = 0;

void check(bool met, const char* what, int line) {
    if (met) return;
    std::printf("linked.cpp:%d: %s\n", line, what);
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
    CHECK(settings_before_main == "/of/the/environment");
    SRV_Path.InitPathes();
    const std::string system = SRV_Path.SYSTEM;
    CHECK(std::string(SRV_Path.SETTINGS) == std::getenv("SETTINGS"));
    CHECK(Is_already_init == 0 && Num_gas_trub == 5 && V_Mi == nullptr);
    CHECK(Init() == 1 && Is_already_init == 1 && Num_gas_trub == 2 && Gas_Not_Init == 1 && V_Mi && an);
    CHECK(Done() == 1 && Is_already_init == 0 && V_Mi == nullptr && an == nullptr);
    // A directory and a number that this program writes.
    std::ofstream(system + "/tornkntr.ini") << "[TORNOL]\n";
    SRV_Path.SETTINGS = system.c_str();
    Num_gas_trub = 12;
    CHECK(Init() == 1 && Num_gas_trub == 12);
}

void gas() {
    short failed = 9;
    PF1_1(96.5F, 1.8F, 0.45F, 0.1F, 0.1F, 0.03F, 0.05F, 0.07F, 0, 0, 0.3F, 0.6F, 0, 0, 0);
    const float by_aga8 = PF3_3(288.15F, 0, 5.5F, failed);
    CHECK(failed == 0 && std::fabs(by_aga8 - 0.888367F) < 1e-6F && K == by_aga8 && P == 5.5F && VNIC_FLAG == 0);
    CHECK(NumXi == 10 && Index[9] == 11 && Xi[0] == 0.965F && B[0] != 0.0F && EIJM[0][1] != 0.0F);
    CHECK(PF3_4(288.15F, 0, 5.5F, failed) == K && failed == 0 && VNIC_FLAG == 1 && Ckl[0][0] != 0.0F);
    // Values and a table of this program.
    qmi = 12.0F, Roc = 0.75F;
    CHECK(NF7() == 16000.0F && qci == 16000.0F);
    Xi[0] = 0.0F;
    CHECK(PF2() == Roc && Roc < 0.1F);
    float* const table = std::exchange(Bi, nullptr);
    CHECK(PF2() == 0.0F);
    Bi = table;
}

void calculators() {
    char first = 9;
    double d[5] = {};
    short phase = 9;
    ProstoyTime = 90.0;  // a downtime of this program
    SteamOfTheHost steam;
    CHECK(steam.Init_TR(0, 23, 1, 7, 32, 300, 180, 0.1, 0.05, 0, 1, 0, first) == 1);
    CHECK(steam.int_Param(1, 0, 10, 2, 0, d[0], d[1], d[2]) == 1 && d[2] == 90.0);
    CHECK(steam.Init_TR(1, 1, 1, 7, 32, 300, 180, 0.1, 0.05, 0, 1, 0, first) == 1);
    CHECK(steam.Param_tn(300, 1.2e6, 0, 0, 1000, 0.5, phase, d[0], d[1]) == 1 && phase == 2);
    CHECK(steam.Param_tr(d[0], d[1], d[2], d[3], d[4]) == 1 && steam.asked_);
    const std::unique_ptr<cCommon2005> other = std::make_unique<cGas2005>();
    CHECK(other->IsGas() && dynamic_cast<cGas2005*>(other.get()) && !dynamic_cast<cTeplo2005*>(other.get()));
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
