// SPDX-License-Identifier: MIT
// Runs one step of a measuring cycle a number of times, and nothing else, so that its instructions can be counted:
//     kalorfix_cost LIBRARY GAS_DATA STEP ROUNDS        or, for the names of the steps,        kalorfix_cost
// STEP may be "all".
// The library is opened as a host opens it, so that earlier versions can be measured by the same program.
#include <array>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>

#include "bench/if97.h"
#include "bench/registers.h"
#include "bench/yardsticks.h"
#include "kalorfix_gas.h"
#include "tools/host.h"
#include "tools/runtime.h"

namespace {

using kalorfix::host::Library;
namespace bench = kalorfix::bench;

void require(bool holds) {
    if (!holds) throw std::runtime_error("the library refused a call");
}

volatile double keep;  // results go here, so that no computation is left out

// One channel with its readings, called as a controller calls it each cycle.
class Cycle {
public:
    Cycle(const Library& library, short device, float roughness_mm) : library_(library) {
        library_->mg_init_tr(1, 1, device, 1, 9, 31, 300, 180, roughness_mm, 0.05F, 0, 1, 0, &status_);
        require(status_ == 1);
        library_->mt_init_tr(1, 1, device, 1, 9, 31, 300, 180, roughness_mm, 0.05F, 0, 1, 0, &status_);
        require(status_ == 1);
    }

    void gas_state(short method) {
        const bench::Percent g = bench::gas_of(++round_);
        const float* const x = g.x;
        library_->mg_param_gs(1, 10, 6e6F, 0, 0, method, 0, x[0], x[1], x[2], x[3], x[4], x[5], x[6], x[7],
                              x[8], x[9], x[10], x[11], x[12], x[13], x[14], 0.735F, &status_, r_, r_ + 1,
                              &rho_c_);
    }
    void gas_properties() {
        library_->mg_tf_param(1, 0, 0, 0, &status_, &rho_, r_ + 1, r_ + 2, &heat_, r_ + 4);
    }
    void gas_pipeline() { library_->mg_param_tr(1, &status_, r_, r_ + 1, r_ + 2, r_ + 3, r_ + 4); }
    void gas_flow(float dp = 20000) {
        library_->mg_mgn_param(1, 1, dp, rho_, rho_c_, heat_, &status_, r_, r_ + 1, r_ + 2, r_ + 3, r_ + 4,
                               r_ + 5, r_ + 6, r_ + 7);
    }
    void gas_totals() { require(registers_.add_up(library_->mg_int_param, 1, bench::gas_integrators)); }
    void gas_intervals() { require(registers_.carry_on(library_->mg_int_param_1, 1, bench::gas_integrators)); }
    void gas(short method) {
        gas_state(method);
        gas_properties();
        gas_pipeline();
        gas_flow();
        checked();
        gas_totals();
        gas_intervals();
    }

    void heat_state(float t_C, float p_Pa) {
        short phase = 0;
        library_->mt_param_tn(1, t_C, p_Pa, 0, 0, 1000, 1, &status_, &phase, r_, r_ + 1);
    }
    void heat_properties() { library_->mt_tf_param(1, 0, 0, 0, &status_, &rho_, r_ + 1, &heat_, r_ + 3); }
    void heat_pipeline() { library_->mt_param_tr(1, &status_, r_, r_ + 1, r_ + 2, r_ + 3, r_ + 4); }
    void heat_flow() {
        library_->mt_mgn_param(1, 1, 40000, rho_, heat_, &status_, r_, r_ + 1, r_ + 2, r_ + 3, r_ + 4, r_ + 5,
                               r_ + 6);
    }
    void heat_totals() { require(registers_.add_up(library_->mt_int_param, 1, bench::heat_integrators)); }
    void heat_intervals() {
        require(registers_.carry_on(library_->mt_int_param_1, 1, bench::heat_integrators));
    }
    void heat(float t_C, float p_Pa) {
        heat_state(t_C, p_Pa);
        heat_properties();
        heat_pipeline();
        heat_flow();
        checked();
        heat_totals();
        heat_intervals();
    }
    void checked() const { require(status_ == 1); }

private:
    const Library& library_;
    int round_ = 0;
    char status_ = 0;
    float r_[8]{}, rho_ = 0, rho_c_ = 0, heat_ = 0;
    bench::Registers registers_;
};

void set_composition(decltype(&PF1_1) set, int round) {
    const bench::Percent g = bench::gas_of(round);
    const float* const x = g.x;
    set(x[0], x[1], x[2], x[3], x[4], x[5], x[6], x[7], x[8], x[9], x[10], x[11], x[12], x[13], x[14]);
}

// A step is prepared once, then called as often as wanted.
using Step = std::function<void()>;
using Prepare = std::function<Step(const Library&)>;

Prepare flow(short device, float roughness_mm, float dp) {
    return [=](const Library& library) {
        Cycle cycle(library, device, roughness_mm);
        cycle.gas(2);
        return [cycle, dp]() mutable {
            cycle.gas_flow(dp);
            cycle.checked();
        };
    };
}

// A part of the cycle by a method; the whole cycle goes before.
Prepare part(short method, void (*call)(Cycle&, short)) {
    return [=](const Library& library) {
        Cycle cycle(library, 3, 0.02F);
        cycle.gas(method);
        return [=]() mutable {
            call(cycle, method);
            cycle.checked();
        };
    };
}
Prepare heat_part(void (*call)(Cycle&, short)) {
    return [=](const Library& library) {
        Cycle cycle(library, 3, 0.02F);
        cycle.heat(300, 1.2e6F);
        return [=]() mutable {
            call(cycle, 0);
            cycle.checked();
        };
    };
}

std::map<std::string, Prepare> all_steps() {
    std::map<std::string, Prepare> steps;
    for (const bench::WaterState& s : bench::water_states) {
        const std::string state = std::string("/") + s.name;
        steps["t_param_1" + state] = [&s](const Library& library) {
            return [&s, &library] {
                double rho = 0, mu = 0, h = 0, kappa = 0;
                library->t_param_1(s.t_C, s.p_MPa, s.mode, &rho, &mu, &h, &kappa);
                keep = kappa;
            };
        };
        const auto yardstick = [&s](double (*sums)(const bench::WaterRoot&)) {
            return [&s, sums](const Library&) {
                return [root = bench::water_root(s), sums] { keep = sums(root); };
            };
        };
        steps["t_param_1, bare sums" + state] = yardstick(bench::bare_water);
        steps["t_param_1, by power function" + state] = yardstick(bench::water_by_power);
    }

    const auto if97 = [](bench::If97 (*evaluate)(double, double), const bench::WaterState& s) {
        return [=, &s](const Library&) {
            require(bench::if97_verified());
            return [=, &s] { keep = evaluate(s.t_C + 273.15, s.p_MPa).kappa; };
        };
    };
    steps["t_param_1, IAPWS-IF97/liquid"] = if97(bench::if97_liquid, bench::water_states[0]);
    steps["t_param_1, IAPWS-IF97/vapour"] = if97(bench::if97_steam, bench::water_states[1]);

    const auto density_method = [](auto method) {
        return [method](const Library& library) {
            return [call = method(library), rho_c = 0.7F]() mutable {
                short failed = 0;
                rho_c = rho_c < 0.8F ? rho_c + 0.001F : 0.7F;
                keep =
                    static_cast<double>(call(bench::gas_T_K, 0, bench::gas_p_MPa, 1.0F, 0.5F, rho_c, failed));
                require(failed == 0);
            };
        };
    };
    steps["NF1_1"] = density_method([](const Library& library) { return library->NF1_1; });
    steps["NF1_2"] = density_method([](const Library& library) { return library->NF1_2; });
    const auto composition_method = [](auto method) {
        return [method](const Library& library) {
            return [call = method(library), set = library->PF1_1, round = 0]() mutable {
                short failed = 0;
                set_composition(set, ++round);
                keep = static_cast<double>(call(bench::gas_T_K, 0, bench::gas_p_MPa, failed));
                require(failed == 0);
            };
        };
    };
    steps["PF3_3"] = composition_method([](const Library& library) { return library->PF3_3; });
    steps["PF3_4"] = composition_method([](const Library& library) { return library->PF3_4; });
    steps["PF3_3, by power function"] = [](const Library&) {
        return [round = 0]() mutable {
            set_composition(PF1_1, ++round);
            keep = bench::aga8_by_power(static_cast<double>(bench::gas_T_K),
                                        static_cast<double>(bench::gas_p_MPa));
        };
    };

    steps["flow/orifice, smooth pipe"] = flow(3, 0.02F, 20000);
    steps["flow/orifice, rough pipe"] = flow(3, 0.8F, 20000);
    steps["flow/ISA 1932 nozzle"] = flow(4, 0.02F, 20000);
    steps["flow/Venturi tube"] = flow(7, 0.1F, 20000);

    constexpr const char* methods[] = {"NX19", "GERG-91", "AGA8-92DC", "VNIC SMV"};
    for (short m = 0; m < 4; ++m) {
        const std::string name = std::string("gas cycle, ") + methods[m];
        steps[name] = part(m, [](Cycle& c, short method) { c.gas(method); });
        steps[name + "/mg_param_gs"] = part(m, [](Cycle& c, short method) { c.gas_state(method); });
        steps[name + "/mg_tf_param"] = part(m, [](Cycle& c, short) { c.gas_properties(); });
    }
    steps["gas cycle/mg_param_tr"] = part(2, [](Cycle& c, short) { c.gas_pipeline(); });
    steps["gas cycle/mg_mgn_param"] = part(2, [](Cycle& c, short) { c.gas_flow(); });
    steps["gas cycle/4 mg_int_param"] = part(2, [](Cycle& c, short) { c.gas_totals(); });
    steps["gas cycle/8 mg_int_param_1"] = part(2, [](Cycle& c, short) { c.gas_intervals(); });
    steps["heat cycle"] = heat_part([](Cycle& c, short) { c.heat(300, 1.2e6F); });
    steps["heat cycle/mt_param_tn"] = heat_part([](Cycle& c, short) { c.heat_state(300, 1.2e6F); });
    steps["heat cycle/mt_tf_param"] = heat_part([](Cycle& c, short) { c.heat_properties(); });
    steps["heat cycle/mt_param_tr"] = heat_part([](Cycle& c, short) { c.heat_pipeline(); });
    steps["heat cycle/mt_mgn_param"] = heat_part([](Cycle& c, short) { c.heat_flow(); });
    steps["heat cycle/3 mt_int_param"] = heat_part([](Cycle& c, short) { c.heat_totals(); });
    steps["heat cycle/6 mt_int_param_1"] = heat_part([](Cycle& c, short) { c.heat_intervals(); });
    return steps;
}

}  // namespace

int main(int argc, char** argv) try {
    const std::map<std::string, Prepare> steps = all_steps();
    if (argc != 5) {
        for (const auto& [name, prepare] : steps) std::printf("%s\n", name.c_str());
        return argc == 1 ? 0 : 2;
    }
    const kalorfix::host::Runtime runtime(argv[2]);
    const Library library(argv[1]);
    library->Init();
    std::snprintf(PATH_SRAM_FOR_LOADTABL, sizeof PATH_SRAM_FOR_LOADTABL, "%s", argv[2]);
    require(INIT_GAS() == 0);
    for (const auto& [name, prepare] : steps) {
        if (name != argv[3] && std::string("all") != argv[3]) continue;
        const Step step = prepare(library);
        for (int round = std::atoi(argv[4]); round > 0; --round) step();
    }
    library->Done();
    REINIT_GAS();
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "kalorfix_cost: %s\n", error.what());
    return 1;
}
