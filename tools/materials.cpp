#include <fmt/format.h>

#include "flow/geometry.h"
#include "tools/commands.h"

namespace kalorfix::tool {
namespace {

int run(const Installation&) {
    constexpr double example_t_C[] = {20.0, 100.0, 300.0};
    fmt::print("code    range, degC   a0      a1       a2        expansion, 1e-6/degC, at 20, 100, 300 degC\n");
    for (int code = 1; code <= flow::material_count; ++code) {
        const flow::Material& m = *flow::find_material(code);
        fmt::print("{:>4}  {:>5} .. {:<5} {:<7} {:<8} {:<8}", code, m.t_min_C, m.t_max_C, m.a0, m.a1, m.a2);
        for (const double t_C : example_t_C)
            fmt::print(" {:>8}", t_C <= m.t_max_C ? fmt::format("{:.3f}", m.expansion(t_C) * 1e6) : "-");
        fmt::print("\n");
    }
    return 0;
}

}  // namespace

Command materials_command() {
    return {"materials",
            "The materials 1..39 of pipes and devices.",
            "The codes of pipe_material and device_material: the rows of GOST 8.586.1-2005,\n"
            "annex G, in the order in which the standard names the grades; compare the\n"
            "coefficients with those of your edition. The expansion of a material is\n"
            "(a0 + a1 (t/1000) + a2 (t/1000)^2) 1e-6 1/degC within its range; outside of it\n"
            "the cycle is refused.",
            {},
            {},
            &run};
}

}  // namespace kalorfix::tool
