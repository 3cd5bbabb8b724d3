#include "tools/cases/gas_procedures.h"

#include <array>

namespace kalorfix::cases {
namespace {

using host::Library;

constexpr std::array<const char*, 15> x_names{"x0", "x1", "x2",  "x3",  "x4",  "x5",  "x6", "x7",
                                              "x8", "x9", "x10", "x11", "x12", "x13", "x14"};
constexpr double not_written = -1.0;

short code(double value) { return static_cast<short>(value); }
char selector(double value) { return static_cast<char>(static_cast<int>(value)); }

Values with_composition(Values inputs) {
    for (const char* name : x_names) inputs[name] = 0.0;
    return inputs;
}

std::array<double, 15> composition(const Inputs& in) {
    std::array<double, 15> x{};
    for (std::size_t i = 0; i < x.size(); ++i) x[i] = in[x_names[i]];
    return x;
}

void set_composition(const Library& library, const Inputs& in) {
    const std::array<double, 15> x = composition(in);
    const auto f = [&x](std::size_t i) { return static_cast<float>(x[i]); };
    (in["fractions"] == 0.0 ? library->PF1_1 : library->PF1_2)(f(0), f(1), f(2), f(3), f(4), f(5), f(6), f(7),
                                                               f(8), f(9), f(10), f(11), f(12), f(13), f(14));
}

// Density at standard conditions of a composition.
Values standard_density(const Library& library, const Inputs& in) {
    library->Init();
    set_composition(library, in);
    return {{"rho_c", static_cast<double>(library->PF2())}};
}

// A method by density as it is called with what is measured.
Values by_density(const Library& library, const Inputs& in) {
    const auto method = in["method"] == 0.0 ? library->NF1_1 : library->NF1_2;
    short failed = 9;
    const float K = method(static_cast<float>(in["T_K"]), static_cast<float>(in["dp_kPa"]),
                           static_cast<float>(in["p_MPa"]), static_cast<float>(in["n2_pct"]),
                           static_cast<float>(in["co2_pct"]), static_cast<float>(in["rho_c"]), failed);
    return {{"status", failed == 0 ? 1.0 : 0.0},
            {"K", static_cast<double>(K)},
            {"mu_uPa_s", static_cast<double>(library->NF3())},
            {"kappa", static_cast<double>(library->NF4())}};
}

// A method for a full composition, with the properties that go with it.
Values by_composition(const Library& library, const Inputs& in) {
    library->Init();
    set_composition(library, in);
    Values out{{"rho_c", static_cast<double>(library->PF2())}};
    const auto method = [&] {
        switch (static_cast<int>(in["method"])) {
            case 0:
                return library->PF3_1;
            case 1:
                return library->PF3_2;
            case 2:
                return library->PF3_3;
            default:
                return library->PF3_4;
        }
    }();
    short failed = 9;
    out["K"] = static_cast<double>(method(static_cast<float>(in["T_K"]), static_cast<float>(in["dp_kPa"]),
                                          static_cast<float>(in["p_MPa"]), failed));
    out["status"] = failed == 0 ? 1.0 : 0.0;
    out["Z"] = static_cast<double>(*library->gas.Z);
    out["mu_uPa_s"] = static_cast<double>(library->PF5(0));
    out["kappa"] = static_cast<double>(library->PF6());
    out["rho"] = static_cast<double>(library->PF4_1());
    return out;
}

// State and properties of a gas in a calculator of its own.
Values gas(const Library& library, const Inputs& in) {
    library->Init();
    const auto c = library.gas_calculator();
    c->metering_class = static_cast<unsigned char>(selector(in["metering_class"]));
    const std::array<double, 15> x = composition(in);
    Values out;
    for (const char* name : {"sum", "K", "rho_c", "rho", "mu_uPa_s", "kappa", "lower_heat", "higher_heat"})
        out[name] = not_written;
    out["state"] = library->Param_gs(c.get(), in["t_C"], in["p_Pa"], in["rho_col"], in["h_col"],
                                     code(in["method"]), selector(in["fractions"]), x[0], x[1], x[2], x[3],
                                     x[4], x[5], x[6], x[7], x[8], x[9], x[10], x[11], x[12], x[13], x[14],
                                     in["rho_c_in"], out["sum"], out["K"], out["rho_c"]);
    out["status"] =
        library->gas_tf_Param(c.get(), selector(in["unit"]), selector(in["basis"]), in["vapour"], out["rho"],
                              out["mu_uPa_s"], out["kappa"], out["lower_heat"], out["higher_heat"]);
    return out;
}

}  // namespace

std::map<std::string, Procedure, std::less<>> gas_procedures() {
    return {
        {"standard_density",
         {"density of a composition at standard conditions",
          with_composition({{"fractions", 0.0}}),
          {"rho_c"},
          standard_density}},
        {"gas_by_density",
         {"compressibility, viscosity and exponent from density, nitrogen and carbon dioxide",
          {{"method", 0.0},
           {"T_K", 293.15},
           {"p_MPa", 1.0},
           {"dp_kPa", 0.0},
           {"n2_pct", 0.0},
           {"co2_pct", 0.0},
           {"rho_c", 0.68}},
          {"status", "K", "mu_uPa_s", "kappa"},
          by_density}},
        {"gas_by_composition",
         {"compressibility of a full composition; viscosity, exponent and density by VNIC SMV",
          with_composition(
              {{"method", 2.0}, {"T_K", 293.15}, {"p_MPa", 1.0}, {"dp_kPa", 0.0}, {"fractions", 0.0}}),
          {"rho_c", "status", "K", "Z", "mu_uPa_s", "kappa", "rho"},
          by_composition}},
        {"gas",
         {"state and properties of a gas channel",
          with_composition({{"metering_class", 1.0},
                            {"t_C", 20.0},
                            {"p_Pa", 1e6},
                            {"rho_col", 0.0},
                            {"h_col", 0.0},
                            {"method", 0.0},
                            {"fractions", 0.0},
                            {"rho_c_in", 0.68},
                            {"unit", 0.0},
                            {"basis", 0.0},
                            {"vapour", 0.0}}),
          {"state", "sum", "K", "rho_c", "status", "rho", "mu_uPa_s", "kappa", "lower_heat", "higher_heat"},
          gas}},
    };
}

}  // namespace kalorfix::cases
