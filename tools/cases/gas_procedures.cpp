#include <algorithm>
#include <array>
#include <tuple>

#include "gas/composition.h"
#include "tools/cases/procedures.h"

namespace kalorfix::cases {
namespace {

using host::Library;

constexpr std::array<const char*, 15> x_names{"x0", "x1", "x2",  "x3",  "x4",  "x5",  "x6", "x7",
                                              "x8", "x9", "x10", "x11", "x12", "x13", "x14"};
constexpr double not_written = -1.0;

short code(double value) { return static_cast<short>(value); }
char selector(double value) { return static_cast<char>(static_cast<int>(value)); }

Values with_composition(std::string_view text) {
    Values inputs = defaults(text);
    for (const char* name : x_names) inputs[name] = 0.0;
    return inputs;
}

std::array<double, 15> composition(const Inputs& in) {
    std::array<double, 15> x{};
    for (std::size_t i = 0; i < x.size(); ++i) x[i] = in[x_names[i]];
    return x;
}

void set_composition(const Library& library, const Inputs& in) {
    const auto set = in["fractions"] == 0.0 ? library->PF1_1 : library->PF1_2;
    std::apply([set](auto... x) { set(static_cast<float>(x)...); }, composition(in));
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

// What a method finds for the composition in the module state.
struct Compressibility {
    double K, Z;
    bool computed;
};

Compressibility compressibility(const Library& library, const Inputs& in, float p_MPa) {
    constexpr int aga8 = 2;
    const int code = static_cast<int>(in["method"]);
    const auto method = code == 0      ? library->PF3_1
                        : code == 1    ? library->PF3_2
                        : code == aga8 ? library->PF3_3
                                       : library->PF3_4;
    short failed = 9;
    const auto K = static_cast<double>(
        method(static_cast<float>(in["T_K"]), static_cast<float>(in["dp_kPa"]), p_MPa, failed));
    auto Z = static_cast<double>(*library->gas.Z);
    if (code == aga8) {  // K = Z/Zc: the closed formula of Zc cancels, so that this is what the equation gave
        gas::Fractions x{};
        std::copy_n(library->gas.Xi, x.size(), x.begin());
        Z = K * gas::standard_compressibility(gas::with_present_components(x));
    }
    return {K, Z, failed == 0};
}

// The pressure that belongs to a given molar density, by one secant step from p_MPa, which must be within a thousandth of it.
double pressure_at_density(const Library& library, const Inputs& in) {
    constexpr double kPa_per_MPa = 1000.0, step = 1.001;
    const auto RT =
        static_cast<double>(gas::molar_gas_constant) * static_cast<double>(static_cast<float>(in["T_K"]));
    const auto density = [&](float p_MPa) {
        return kPa_per_MPa * static_cast<double>(p_MPa) / (RT * compressibility(library, in, p_MPa).Z);
    };
    const auto p = static_cast<float>(in["p_MPa"]), beyond = static_cast<float>(in["p_MPa"] * step);
    const double rho = density(p);
    return static_cast<double>(p) +
           (in["rho_kmol_m3"] - rho) * static_cast<double>(beyond - p) / (density(beyond) - rho);
}

// A method for a full composition, with the properties that go with it.
Values by_composition(const Library& library, const Inputs& in) {
    library->Init();
    set_composition(library, in);
    Values out{{"rho_c", static_cast<double>(library->PF2())}};
    const Compressibility found = compressibility(library, in, static_cast<float>(in["p_MPa"]));
    out["K"] = found.K;
    out["Z"] = found.Z;
    out["status"] = found.computed ? 1.0 : 0.0;
    out["mu_uPa_s"] = static_cast<double>(library->PF5(0));
    out["kappa"] = static_cast<double>(library->PF6());
    out["rho"] = static_cast<double>(library->PF4_1());
    if (in.given("rho_kmol_m3")) out["p_at_rho_MPa"] = pressure_at_density(library, in);
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
         {"density of a composition at standard conditions", with_composition("fractions=0"), "rho_c",
          standard_density}},
        {"gas_by_density",
         {"compressibility, viscosity and exponent from density, nitrogen and carbon dioxide",
          defaults("method=0 T_K=293.15 p_MPa=1 dp_kPa=0 n2_pct=0 co2_pct=0 rho_c=0.68"),
          "status K mu_uPa_s kappa", by_density}},
        {"gas_by_composition",
         {"compressibility of a full composition; viscosity, exponent and density by VNIC SMV",
          with_composition("method=2 T_K=293.15 p_MPa=1 dp_kPa=0 fractions=0 rho_kmol_m3=0"),
          "rho_c status K Z mu_uPa_s kappa rho p_at_rho_MPa", by_composition}},
        {"gas",
         {"state and properties of a gas channel",
          with_composition("metering_class=1 t_C=20 p_Pa=1e6 rho_col=0 h_col=0 method=0 fractions=0 "
                           "rho_c_in=0.68 unit=0 basis=0 vapour=0"),
          "state sum K rho_c status rho mu_uPa_s kappa lower_heat higher_heat", gas}},
    };
}

}  // namespace kalorfix::cases
