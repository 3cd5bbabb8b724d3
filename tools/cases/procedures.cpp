// SPDX-License-Identifier: MIT
#include "tools/cases/procedures.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <tuple>

#include "gas/composition.h"
#include "tools/names.h"
#include "tools/text.h"

namespace kalorfix::cases {
namespace {

using host::Library;

using std::numbers::pi;

// A selector or code: through int, so that a negative one keeps its bits whether char is signed or not.
template <class Integer>
Integer whole(double value) {
    return static_cast<Integer>(static_cast<int>(value));
}

// Inputs with their defaults from "t_C=0 p_MPa=0.1".
Values defaults(std::string_view text) {
    Values values;
    for (const std::string_view one : tool::words(text)) {
        const std::size_t equals = one.find('=');
        values[std::string(one.substr(0, equals))] = *tool::parse<double>(one.substr(equals + 1));
    }
    return values;
}

constexpr const char* bore_inputs =
    "device=1 metering_class=1 D_m=0.1 d_m=0 beta=0.5 R_sh_m=0 R_a_m=-1 t_C=20 phase=0 p_Pa=1e6 dp_Pa=1e4 "
    "rho_kg_m3=1 mu_Pa_s=1e-5 kappa=1.3 Re=1e6";

// A calculator with its working geometry set directly: what the equations of the discharge coefficient and of
// the expansibility need.
void set_bore(cCommon2005& c, const Inputs& in) {
    c.device_type = whole<unsigned char>(in["device"]);
    c.metering_class = whole<unsigned char>(in["metering_class"]);
    c.D = in["D_m"];
    c.beta = in.given("d_m") ? in["d_m"] / c.D : in["beta"];
    c.d = c.beta * c.D;
    c.E = 1.0 / std::sqrt(1.0 - std::pow(c.beta, 4.0));
    c.K_p = 1.0;
    c.R_sh = in["R_sh_m"];
    c.R_a = in["R_a_m"] < 0.0 ? c.R_sh / pi : in["R_a_m"];
    c.p = in["p_Pa"];
    c.kappa = in["kappa"];
    c.mu = in["mu_Pa_s"];
    c.phase = whole<unsigned short>(in["phase"]);
}

Values discharge(const Library& library, const Inputs& in) {
    const auto c = library.heat_calculator();
    set_bore(*c, in);
    c->epsilon = 1.0;
    const double q_prev = in["Re"] * pi * c->D * c->mu / 4.0;
    const char status = library->Countq_mReCK_sh(c.get(), 1, in["dp_Pa"], in["rho_kg_m3"], q_prev);
    return {{"status", status}, {"C", c->C}, {"K_sh", c->K_sh}, {"Re", c->Re}, {"q_m_kg_s", c->q_m}};
}

Values expansibility(const Library& library, const Inputs& in) {
    const auto c = library.heat_calculator();
    set_bore(*c, in);
    const char status = library->Countepsilon(c.get(), in["dp_Pa"]);
    return {{"status", status}, {"epsilon", c->epsilon}};
}

constexpr const char* channel_inputs =
    "metering_class=1 device=1 by_material=0 mat_D=0 mat_d=0 D20_mm=100 d20_mm=50 R_sh_mm=0 r_n0_mm=0 "
    "r_n_at_end=1 tau_years=0 alpha_eps=0 t_C=20 p_Pa=1e6 mu_Pa_s=1e-5 kappa=1.3 phase=0 calc=1 dp_Pa=1e4 "
    "rho_kg_m3=1 rho_c_kg_m3=1 k=1 h_kJ_kg=1";
constexpr const char* channel_outputs =
    "set_up geometry status D_mm d_mm beta E K_p q_m_t_h q_v q_c q_e q_h K_sh C Re epsilon q_m_kg_s alpha_eps";

// Set-up, geometry and flow of a calculator whose medium is given, not computed.
Values set_up_and_measure(const Library& library, cCommon2005& c, const Inputs& in) {
    char first_init = 0;
    const char set_up = library->Init_TR(
        &c, whole<char>(in["metering_class"]), whole<short>(in["device"]), whole<char>(in["by_material"]),
        in["mat_D"], in["mat_d"], in["D20_mm"], in["d20_mm"], in["R_sh_mm"], in["r_n0_mm"],
        whole<char>(in["r_n_at_end"]), in["tau_years"], in["alpha_eps"], first_init);
    c.t = in["t_C"];
    c.p = in["p_Pa"];
    c.mu = in["mu_Pa_s"];
    c.kappa = in["kappa"];
    c.phase = whole<unsigned short>(in["phase"]);
    Values out;
    out["set_up"] = set_up;
    out["geometry"] = library->Param_tr(&c, out["D_mm"], out["d_mm"], out["beta"], out["E"], out["K_p"]);
    return out;
}

void finish_channel(const cCommon2005& c, char status, Values& out) {
    out["status"] = status;
    out["q_m_kg_s"] = out["q_m_t_h"] / 3.6;
    out["alpha_eps"] = c.alpha_eps;
}

Values gas_channel(const Library& library, const Inputs& in) {
    const auto c = library.gas_calculator();
    Values out = set_up_and_measure(library, *c, in);
    const char status = library->gas_mgn_Param(
        c.get(), whole<char>(in["calc"]), in["dp_Pa"], in["rho_kg_m3"], in["rho_c_kg_m3"], in["k"],
        out["q_m_t_h"], out["q_v"], out["q_c"], out["q_e"], out["K_sh"], out["C"], out["Re"], out["epsilon"]);
    out["q_h"] = 0.0;
    finish_channel(*c, status, out);
    return out;
}

Values heat_channel(const Library& library, const Inputs& in) {
    const auto c = library.heat_calculator();
    Values out = set_up_and_measure(library, *c, in);
    const char status = library->heat_mgn_Param(c.get(), whole<char>(in["calc"]), in["dp_Pa"], in["rho_kg_m3"],
                                                in["h_kJ_kg"], out["q_m_t_h"], out["q_v"], out["q_h"],
                                                out["K_sh"], out["C"], out["Re"], out["epsilon"]);
    out["q_c"] = out["q_e"] = 0.0;
    finish_channel(*c, status, out);
    return out;
}

Values water_properties(const Library& library, const Inputs& in) {
    Values out;
    const short result = library->t_param_1(in["t_C"], in["p_MPa"], whole<short>(in["mode"]), &out["rho_kg_m3"],
                                            &out["mu_uPa_s"], &out["h_kJ_kg"], &out["kappa"]);
    out["status"] = result == 0 ? 1.0 : 0.0;
    return out;
}

Values water_phase(const Library& library, const Inputs& in) {
    Values out;
    out["phase"] = library->t_phase_1(in["p_MPa"], in["t_C"], in["dp_MPa"], &out["ps_MPa"]);
    return out;
}

// State and properties of a heat carrier in a calculator of its own.
Values heat_carrier(const Library& library, const Inputs& in) {
    const auto c = library.heat_calculator();
    c->metering_class = whole<unsigned char>(in["metering_class"]);
    short phase = -1;
    Values out{{"ps_MPa", -1.0},   {"ts_C", -1.0},    {"rho_kg_m3", -1.0},
               {"mu_uPa_s", -1.0}, {"h_kJ_kg", -1.0}, {"kappa", -1.0}};
    out["state"] = library->Param_tn(c.get(), in["t_C"], in["p_Pa"], in["hA"], in["hB"], in["dP_Pa"],
                                     in["dT_K"], phase, out["ps_MPa"], out["ts_C"]);
    out["phase"] = phase;
    out["status"] =
        library->tf_Param(c.get(), whole<char>(in["source"]), whole<unsigned short>(in["phase_req"]), in["x"],
                          out["rho_kg_m3"], out["mu_uPa_s"], out["h_kJ_kg"], out["kappa"]);
    out["p_Pa"] = c->p;
    out["phase_used"] = c->phase;
    return out;
}

// ---- Gas. Each needs a library that found its directories, with or without gas data, and calls Init. ------------

constexpr std::array<const char*, 15> x_names{"x0", "x1", "x2",  "x3",  "x4",  "x5",  "x6", "x7",
                                              "x8", "x9", "x10", "x11", "x12", "x13", "x14"};
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
    const float K = method(in.single("T_K"), in.single("dp_kPa"), in.single("p_MPa"), in.single("n2_pct"),
                           in.single("co2_pct"), in.single("rho_c"), failed);
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
    const int code = static_cast<int>(in["method"]);
    const std::array methods{library->PF3_1, library->PF3_2, library->PF3_3, library->PF3_4};
    short failed = 9;
    const auto K = static_cast<double>(methods[code >= 0 && code < 3 ? static_cast<std::size_t>(code) : 3](
        in.single("T_K"), in.single("dp_kPa"), p_MPa, failed));
    auto Z = static_cast<double>(*library->gas.Z);
    if (code ==
        tool::aga8) {  // K = Z/Zc: the closed formula of Zc cancels, so that this is what the equation gave
        gas::Fractions x{};
        std::copy_n(library->gas.Xi, x.size(), x.begin());
        Z = K * gas::standard_compressibility(gas::with_present_components(x));
    }
    return {K, Z, failed == 0};
}

// The pressure that belongs to a given molar density, by one secant step from p_MPa, which must be within a thousandth of it.
double pressure_at_density(const Library& library, const Inputs& in) {
    constexpr double kPa_per_MPa = 1000.0, step = 1.001;
    const auto RT = static_cast<double>(gas::molar_gas_constant) * static_cast<double>(in.single("T_K"));
    const auto density = [&](float p_MPa) {
        return kPa_per_MPa * static_cast<double>(p_MPa) / (RT * compressibility(library, in, p_MPa).Z);
    };
    const auto p = in.single("p_MPa"), beyond = static_cast<float>(in["p_MPa"] * step);
    const double rho = density(p);
    return static_cast<double>(p) +
           (in["rho_kmol_m3"] - rho) * static_cast<double>(beyond - p) / (density(beyond) - rho);
}

// A method for a full composition, with the properties that go with it.
Values by_composition(const Library& library, const Inputs& in) {
    library->Init();
    set_composition(library, in);
    Values out{{"rho_c", static_cast<double>(library->PF2())}};
    const Compressibility found = compressibility(library, in, in.single("p_MPa"));
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
    c->metering_class = whole<unsigned char>(in["metering_class"]);
    Values out;
    for (const char* name : {"sum", "K", "rho_c", "rho", "mu_uPa_s", "kappa", "lower_heat", "higher_heat"})
        out[name] = -1.0;
    const auto param_gs = [&](auto... x) {
        return library->Param_gs(c.get(), in["t_C"], in["p_Pa"], in["rho_col"], in["h_col"],
                                 whole<short>(in["method"]), whole<char>(in["fractions"]), x..., in["rho_c_in"],
                                 out["sum"], out["K"], out["rho_c"]);
    };
    out["state"] = std::apply(param_gs, composition(in));
    out["status"] =
        library->gas_tf_Param(c.get(), whole<char>(in["unit"]), whole<char>(in["basis"]), in["vapour"],
                              out["rho"], out["mu_uPa_s"], out["kappa"], out["lower_heat"], out["higher_heat"]);
    return out;
}

double allowed(const Tolerance& tolerance, double expected) {
    return std::fmax(tolerance.absolute, tolerance.relative * std::fabs(expected));
}

std::map<std::string, Procedure, std::less<>> make_procedures() {
    return {
        {"discharge", {defaults(bore_inputs), "status C K_sh Re q_m_kg_s", discharge}},
        {"expansibility", {defaults(bore_inputs), "status epsilon", expansibility}},
        {"gas_channel", {defaults(channel_inputs), channel_outputs, gas_channel}},
        {"heat_channel", {defaults(channel_inputs), channel_outputs, heat_channel}},
        {"t_param_1",
         {defaults("t_C=0 p_MPa=0.1 mode=1"), "status rho_kg_m3 mu_uPa_s h_kJ_kg kappa", water_properties}},
        {"t_phase_1", {defaults("t_C=0 p_MPa=0.1 dp_MPa=0"), "phase ps_MPa", water_phase}},
        {"heat_carrier",
         {defaults("metering_class=0 t_C=0 p_Pa=1e5 hA=0 hB=0 dP_Pa=0 dT_K=0 source=0 phase_req=0 x=0"),
          "state phase ps_MPa ts_C status rho_kg_m3 mu_uPa_s h_kJ_kg kappa p_Pa phase_used", heat_carrier}},
        {"standard_density", {with_composition("fractions=0"), "rho_c", standard_density}},
        {"gas_by_density",
         {defaults("method=0 T_K=293.15 p_MPa=1 dp_kPa=0 n2_pct=0 co2_pct=0 rho_c=0.68"),
          "status K mu_uPa_s kappa", by_density}},
        {"gas_by_composition",
         {with_composition("method=2 T_K=293.15 p_MPa=1 dp_kPa=0 fractions=0 rho_kmol_m3=0"),
          "rho_c status K Z mu_uPa_s kappa rho p_at_rho_MPa", by_composition}},
        {"gas",
         {with_composition("metering_class=1 t_C=20 p_Pa=1e6 rho_col=0 h_col=0 method=0 fractions=0 "
                           "rho_c_in=0.68 unit=0 basis=0 vapour=0"),
          "state sum K rho_c status rho mu_uPa_s kappa lower_heat higher_heat", gas}},
    };
}

}  // namespace

double Inputs::operator[](const std::string& name) const {
    const auto found = given_.find(name);
    return found != given_.end() ? found->second : defaults_.at(name);
}

const std::map<std::string, Procedure, std::less<>>& procedures() {
    static const std::map<std::string, Procedure, std::less<>> all = make_procedures();
    return all;
}

bool met(double computed, double expected, const Tolerance& tolerance) {
    if (std::isnan(expected)) return std::isnan(computed);
    if (std::isinf(expected)) return computed == expected;
    return std::fabs(computed - expected) <= allowed(tolerance, expected);
}

Verdict judge(double computed, const Expected& expected) {
    if (met(computed, expected.value, expected.tolerance)) return Verdict::met;
    const bool declared = expected.declared && met(computed, expected.value, expected.declared->bound);
    return declared ? Verdict::differs_as_declared : Verdict::failed;
}

std::vector<Finding> run(const host::Library& library, const Table& table) {
    const auto found = procedures().find(table.function);
    if (found == procedures().end()) throw tool::InputError("no such function: " + table.function);
    const Procedure& procedure = found->second;

    std::vector<Finding> findings;
    for (const Case& one : table.cases) {
        for (const auto& [name, value] : one.inputs)
            if (!procedure.inputs.contains(name))
                throw tool::InputError(table.function + " has no input " + name);
        const Values results = procedure.call(library, Inputs(procedure.inputs, one.inputs));
        for (const Expected& expected : one.expected) {
            const auto result = results.find(expected.column);
            if (result == results.end())
                throw tool::InputError(table.function + " has no result " + expected.column);
            // The sign of a NaN differs from processor to processor and means nothing.
            const double computed =
                std::isnan(result->second) ? std::numeric_limits<double>::quiet_NaN() : result->second;
            findings.push_back({&one, &expected, computed, computed - expected.value,
                                allowed(expected.tolerance, expected.value),
                                expected.declared ? allowed(expected.declared->bound, expected.value) : 0.0,
                                judge(computed, expected)});
        }
    }
    return findings;
}

}  // namespace kalorfix::cases
