// SPDX-License-Identifier: MIT
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <tuple>

#include "gas/composition.h"
#include "tools/commands.h"
#include "tools/composition.h"
#include "tools/composition_sum.h"
#include "tools/gasdat/gas_file.h"
#include "tools/host.h"
#include "tools/names.h"
#include "tools/runtime.h"
#include "tools/separate_files.h"
#include "tools/states.h"

namespace kalorfix::tool {
namespace {

// The library's window is open: its ends do not belong to it.
constexpr Limits t_limits{-23.15, 66.85, "degC"}, p_limits{0.001, 30.0, "MPa"};
constexpr Limits percent{0.0, 100.0, "mol %"};

struct Request : StateRequest {
    std::string method, composition, rho_c;
    std::string nitrogen, carbon_dioxide;  // mole per cent
    std::string vapour = "0", heat, composition_sum;
    bool normalise = false;
};

// Everything about the gas that does not change from state to state.
struct Gas {
    short method = 0;
    char heat_unit = 0, heat_basis = 0;
    GivenComposition composition{};
    double rho_c = 0.0, vapour = 0.0;

    [[nodiscard]] bool by_density() const { return is_by_density(method); }
    [[nodiscard]] std::string_view unit_of_heat() const {
        return tool::heat_unit(method, heat_unit, heat_basis);
    }
};

struct State {
    double t_C, p_MPa;
    bool computed = false;
    std::string_view refused{};
    double sum = 0, K = 0, Z = 0, rho_c = 0;
    double rho = 0, mu = 0, kappa = 0, lower_heat = 0, higher_heat = 0;
};

// Z = K Zc: the closed formula of Zc cancels, so that this is what the equation of state gave.
double compressibility_factor(const host::Library& library, const Gas& gas, double K) {
    const host::GasState& state = library->gas;
    if (gas.method == vnic) return static_cast<double>(*state.Z);
    if (gas.by_density())
        return K * gas::standard_compressibility(static_cast<double>(*state.Roc),
                                                 static_cast<double>(*state.Xa),
                                                 static_cast<double>(*state.Xy));
    gas::Fractions x{};
    std::copy_n(state.Xi, x.size(), x.begin());
    return K * gas::standard_compressibility(gas::with_present_components(x));
}

std::string_view why_refused(double K) {
    if (K >= 0.9999) return "refused: K is 0.9999 or more, so close to an ideal gas that it is not accepted";
    return "refused: the method finds no compressibility here";
}

constexpr double no_column = 0.0, Pa_per_MPa = 1e6;

// AGA8-92DC takes viscosity and exponent with the contents that a method by density left: here its own.
void leave_contents(const host::Library& library, cGas2005& spare, const Gas& gas, double t, double p) {
    constexpr double any_density = 0.7, whole_pct = 100.0;
    std::array<double, 15> x{};
    for (const std::size_t i : {nitrogen, carbon_dioxide}) x[i] = gas.composition.x[i];
    if (gas.composition.volume_fractions) {
        std::apply([&](auto... one) { library->PF1_2(static_cast<float>(one)...); }, gas.composition.x);
        for (const std::size_t i : {nitrogen, carbon_dioxide})
            x[i] = whole_pct * static_cast<double>(library->gas.Xi[i]);
    }
    double sum = 0, K = 0, rho_c = 0;
    std::apply(
        [&](auto... one) {
            library->Param_gs(&spare, t, p * Pa_per_MPa, no_column, no_column, KALORFIX_GERG91, 0, one...,
                              any_density, sum, K, rho_c);
        },
        x);
}

State compute(const host::Library& library, cGas2005& c, const Gas& gas, double t, double p) {
    if (gas.method == aga8) leave_contents(library, c, gas, t, p);
    State s{.t_C = t, .p_MPa = p};
    const auto param_gs = [&](auto... x) {
        return library->Param_gs(&c, t, p * Pa_per_MPa, no_column, no_column, gas.method,
                                 gas.composition.volume_fractions ? 1 : 0, x..., gas.rho_c, s.sum, s.K,
                                 s.rho_c);
    };
    if (std::apply(param_gs, gas.composition.x) != 1) {
        s.refused = why_refused(s.K);
        return s;
    }
    s.Z = compressibility_factor(library, gas, s.K);
    s.computed = library->gas_tf_Param(&c, gas.heat_unit, gas.heat_basis, gas.vapour, s.rho, s.mu, s.kappa,
                                       s.lower_heat, s.higher_heat) == 1;
    if (!s.computed)
        s.refused = "refused: no water vapour at this pressure, its saturation temperature is too high";
    // The sums assume mole per cent and are a hundredth for fractions.
    if (gas.composition.volume_fractions && gas.method == vnic) {
        s.lower_heat *= 100.0;
        s.higher_heat *= 100.0;
    }
    return s;
}

void print_sheet(const Gas& gas, const State& s) {
    const auto row = [](const char* label, std::string_view value, std::string_view unit = "") {
        fmt::print("  {:<32}{:>14}{}{}\n", label, value, unit.empty() ? "" : "  ", unit);
    };
    const auto digits = [](double value, int count) { return fmt::format("{:#.{}g}", value, count); };
    row("method", method_name(gas.method));
    row("temperature", fmt::format("{:.8g}", s.t_C), "degC");
    row("absolute pressure", fmt::format("{:.8g}", s.p_MPa), "MPa");
    if (!gas.by_density())
        row("sum of the composition", digits(s.sum, 7), gas.composition.volume_fractions ? "" : "mol %");
    row("density at standard conditions", digits(s.rho_c, 7), "kg/m3");
    row("compressibility coefficient K", s.K == 0.0 ? "-" : digits(s.K, 7));
    if (!s.computed) {
        fmt::print("  {}\n", s.refused);
        return;
    }
    row("compressibility factor Z", digits(s.Z, 7));
    row("density", digits(s.rho, 7), "kg/m3");
    row("dynamic viscosity", digits(s.mu, 6), "uPa s");
    row("isentropic exponent", digits(s.kappa, 6));
    row("lower heat of combustion", digits(s.lower_heat, 6), gas.unit_of_heat());
    row("higher heat of combustion", digits(s.higher_heat, 6), gas.unit_of_heat());
}

void print_head(bool csv, const Gas& gas, double rho_c) {
    if (!csv) {
        fmt::print(
            "{}, density at standard conditions {:#.7g} kg/m3\n"
            "      t        p         K         Z    density viscosity    kappa\n"
            "   degC      MPa                          kg/m3     uPa s\n",
            method_name(gas.method), rho_c);
        return;
    }
    // The unit of the heats stands in the names of their columns.
    std::string unit(gas.unit_of_heat());
    std::ranges::replace_if(
        unit, [](char c) { return c == ' ' || c == '/'; }, '_');
    fmt::print("t_C,p_MPa,status,rho_c_kg_m3,K,Z,rho_kg_m3,mu_uPa_s,kappa,lower_heat_{0},higher_heat_{0}\n",
               unit);
}

void print_row(bool csv, const State& s) {
    if (csv && s.computed)
        fmt::print("{},{},1,{},{},{},{},{},{},{},{}\n", s.t_C, s.p_MPa, s.rho_c, s.K, s.Z, s.rho, s.mu, s.kappa,
                   s.lower_heat, s.higher_heat);
    else if (csv)
        fmt::print("{},{},0,{},{},,,,,,\n", s.t_C, s.p_MPa, s.rho_c,
                   std::isnan(s.K) || s.K == 0.0 ? std::string() : fmt::format("{}", s.K));
    else if (s.computed)
        fmt::print("{:>7.6g} {:>8.6g} {:>9.6f} {:>9.6f} {:>#10.6g} {:>#9.6g} {:>#8.6g}\n", s.t_C, s.p_MPa, s.K,
                   s.Z, s.rho, s.mu, s.kappa);
    else
        fmt::print("{:>7.6g} {:>8.6g} {:>9}  {}\n", s.t_C, s.p_MPa,
                   s.K == 0.0 ? std::string("-") : fmt::format("{:.6f}", s.K), s.refused);
}

short find_method(const std::string& name) {
    const auto* const found = std::ranges::find(methods, name, &Method::word);
    if (found != methods.end()) return static_cast<short>(found - methods.begin());
    throw InputError(name.empty() ? "--method: give one of nx19, gerg91, aga8, vnic"
                                  : fmt::format("--method {}: there are nx19, gerg91, aga8 and vnic", name));
}

double number_of(const char* option, const std::string& text, const Limits& limits) {
    const std::optional<double> value = number_within(text, limits);
    if (!value) throw InputError(option, ": ", expected_within(text, limits));
    return *value;
}

void refuse_without_meaning(const char* option, const std::string& value, std::string_view because) {
    if (!value.empty()) throw InputError(option, ": has no meaning ", because, "; leave it out");
}

Gas read_gas(const Request& request) {
    Gas gas{.method = find_method(request.method)};
    if (gas.method != vnic)
        refuse_without_meaning("--heat", request.heat,
                               cat("with ", method_name(gas.method), ", whose heats are in MJ/m3 at 20 degC"));
    if (!gas.by_density() || !request.composition.empty()) {
        constexpr std::string_view because = "beside a composition, which holds it";
        if (!gas.by_density()) refuse_without_meaning("--rho-c", request.rho_c, because);
        refuse_without_meaning("--n2", request.nitrogen, because);
        refuse_without_meaning("--co2", request.carbon_dioxide, because);
    }
    const std::string heat_word = request.heat.empty() ? "kJ20" : request.heat;
    const auto* const heat = std::ranges::find(heat_units, heat_word, &HeatUnit::word);
    if (heat == heat_units.end())
        throw InputError("--heat ", request.heat, ": there are kJ0, kcal0, kJ20 and kcal20");
    gas.heat_unit = static_cast<char>((heat - heat_units.begin()) % 2);
    gas.heat_basis = static_cast<char>((heat - heat_units.begin()) / 2);
    gas.vapour = number_of("--vapour", request.vapour, {0.0, 1000.0, "kg/m3"});
    if (!request.composition_sum.empty() && request.composition_sum != "any" &&
        request.composition_sum != "100")
        throw InputError("--composition-sum ", request.composition_sum, ": there are 100 and any");
    if (request.composition.empty()) {
        constexpr std::string_view because = "without --composition";
        refuse_without_meaning("--composition-sum", request.composition_sum, because);
        refuse_without_meaning("--normalise", request.normalise ? "yes" : "", because);
    } else {
        if (!request.rho_c.empty())
            throw InputError("--rho-c: the density follows from --composition; leave one out");
        gas.composition = read_composition(request.composition);
        judge_sum(gas.composition.x, gas.composition.volume_fractions,
                  {request.composition_sum == "any", request.normalise}, request.composition,
                  "--composition-sum any or --normalise insists");
        if (gas.composition.volume_fractions && gas.method == aga8) warn_of_heats(request.composition);
        return gas;
    }
    if (!gas.by_density())
        throw InputError("--composition: ", method_name(gas.method), " needs a composition file");
    if (request.rho_c.empty())
        throw InputError(
            "--rho-c: give the density at standard conditions in kg/m3, such as --rho-c 0.68, or "
            "--composition FILE");
    gas.rho_c = number_of("--rho-c", request.rho_c, {0.0, 1.0, "kg/m3"});
    const auto share = [](const char* option, const std::string& text) {
        return text.empty() ? 0.0 : number_of(option, text, percent);
    };
    gas.composition.x[nitrogen] = share("--n2", request.nitrogen);
    gas.composition.x[carbon_dioxide] = share("--co2", request.carbon_dioxide);
    judge_contents(gas.rho_c, gas.composition.x[nitrogen], gas.composition.x[carbon_dioxide], "--n2, --co2");
    return gas;
}

// Density, nitrogen and carbon dioxide of a composition, for the methods that know a gas by these.
void reduce_to_density(const host::Library& library, Gas& gas) {
    std::array<double, 15>& x = gas.composition.x;
    const auto set = gas.composition.volume_fractions ? library->PF1_2 : library->PF1_1;
    std::apply([set](auto... one) { set(static_cast<float>(one)...); }, x);
    gas.rho_c = static_cast<double>(library->PF2());
    if (gas.composition.volume_fractions)
        for (std::size_t i = 0; i < x.size(); ++i) x[i] = 100.0 * static_cast<double>(library->gas.Xi[i]);
    gas.composition.volume_fractions = false;
    if (!(gas.rho_c <= 1.0))
        throw InputError(fmt::format("--composition: its density is {:#.5g} kg/m3; {} takes up to 1", gas.rho_c,
                                     method_name(gas.method)));
}

Range range_of(const char* option, const std::string& text, const Limits& limits, const char* example) {
    if (text.empty()) throw InputError(option, ": give ", example);
    return parse_range(option, text, limits, true);
}

int run(const Installation& files, const Request& request) {
    if (files.gas_data.empty() && (!is_by_density(find_method(request.method)) || !request.composition.empty()))
        throw InputError(
            "--gas-data: there is no gas.dat beside the library or in share/kalorfix; give the file");
    Gas gas = read_gas(request);
    const Grid grid{range_of("--t", request.t, t_limits, "the temperature in degC, such as --t 15"),
                    range_of("--p", request.p, p_limits, "the absolute pressure in MPa, such as --p 5.5")};
    require_size(grid);
    const host::Runtime runtime(files.gas_data);
    if (!request.composition.empty()) gasdat::require_sound(files.gas_data);
    keep_apart(
        {{"--composition", request.composition}, {"--lib", files.library}, {"--gas-data", files.gas_data}},
        {{"--svg", request.svg_file}});
    const host::Library library(files.library);
    library->Init();
    if (gas.by_density() && !request.composition.empty()) reduce_to_density(library, gas);

    const host::Owned<cGas2005> calculator = library.gas_calculator();
    calculator->metering_class = 1;
    draw_curves(request, fmt::format("Natural gas, {}", method_name(gas.method)),
                {{"K", "compressibility coefficient K"},
                 {"Z", "compressibility factor Z"},
                 {"rho", "density, kg/m3"},
                 {"mu", "dynamic viscosity, uPa s"},
                 {"kappa", "isentropic exponent"}},
                grid, [&](double t, double p, std::size_t chosen) {
                    const State s = compute(library, *calculator, gas, t, p);
                    const double values[] = {s.K, s.Z, s.rho, s.mu, s.kappa};
                    return Drawn{s.computed ? values[chosen] : std::nan(""), 0};
                });
    const bool single = !request.csv && grid.size() == 1;
    bool all = true, begun = false;
    grid.for_each([&](double t, double p) {
        const State s = compute(library, *calculator, gas, t, p);
        all = all && s.computed;
        if (!single && !begun) print_head(request.csv, gas, s.rho_c);
        begun = true;
        single ? print_sheet(gas, s) : print_row(request.csv, s);
    });
    return all ? 0 : 1;
}

}  // namespace

Command gas_command() {
    const auto request = std::make_shared<Request>();
    Command command{
        "gas",
        "Compressibility and properties of natural gas.",
        "T and P are a number or a range start:stop:step; ranges give a table, at most\n"
        "1000000 rows, and curves with --svg: over the first range, a line for each value\n"
        "of the second, at most 12 (else the other way). Exit status 1 when a state was refused.\n\n"
        "Printed: K = Z/Zc, Z, density at standard and working conditions kg/m3, dynamic\n"
        "viscosity uPa s, isentropic exponent, heats of combustion. Of these aga8 takes\n"
        "viscosity, exponent and heats from the density at standard conditions, and the\n"
        "first two with the nitrogen and carbon dioxide of the composition.\n\n"
        "A composition file has the heading component,mole_percent or\n"
        "component,volume_fraction and lines such as methane,96.5 or CH4;96,5, components by\n"
        "name or formula, as a spreadsheet writes them; see examples/.",
        {{"--method", "METHOD", "nx19, gerg91 (by density), aga8, vnic (by composition)", &request->method},
         {"--t", "T", "temperature, -23.15..66.85 degC", &request->t},
         {"--p", "P", "absolute pressure, 0.001..30 MPa", &request->p},
         {"--composition", "FILE", "composition file, for every method", &request->composition},
         {"--composition-sum", "SUM", "100 (default): outside 99..101 % refused, or any",
          &request->composition_sum},
         {"--normalise", "", "scale the composition to 100 %", &request->normalise},
         {"--rho-c", "RHO", "nx19, gerg91: density at 20 degC and 101.325 kPa, 0..1 kg/m3", &request->rho_c},
         {"--n2", "X", "nx19, gerg91: nitrogen, 0..100 mol % (default 0)", &request->nitrogen},
         {"--co2", "X", "nx19, gerg91: carbon dioxide, 0..100 mol % (default 0)", &request->carbon_dioxide},
         {"--vapour", "RHO", "water vapour in a cubic metre, kg (default 0)", &request->vapour},
         {"--heat", "BASIS", "vnic: heats in kJ0, kcal0, kJ20 (default), kcal20, per\nm3 at 0 or 20 degC",
          &request->heat}}};
    for (const Option& option : output_options(*request, "K (default), Z, rho, mu, kappa"))
        command.options.push_back(option);
    command.run = [request](const Installation& files) { return run(files, *request); };
    return command;
}

}  // namespace kalorfix::tool
