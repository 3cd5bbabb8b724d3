#include "tools/gas.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <vector>

#include "gas/composition.h"
#include "tools/composition_file.h"
#include "tools/range.h"

namespace kalorfix::tool {
namespace {

constexpr double min_t_C = -23.15, max_t_C = 66.85;
constexpr double min_p_MPa = 0.001, max_p_MPa = 30.0;
constexpr double Pa_per_MPa = 1e6;
constexpr std::size_t nitrogen = 10, carbon_dioxide = 11;

struct Method {
    std::string_view name, title;
    short code;
    bool by_density;
};
constexpr std::array<Method, 4> methods{{{"nx19", "NX19 mod.", 0, true},
                                         {"gerg91", "GERG-91 mod.", 1, true},
                                         {"aga8", "AGA8-92DC", 2, false},
                                         {"vnic", "VNIC SMV", 3, false}}};

struct HeatBasis {
    std::string_view name, unit;
    char unit_code, temperature_code;
};
constexpr std::array<HeatBasis, 4> bases{{{"kJ0", "kJ/m3 at 0 degC", 0, 0},
                                          {"kcal0", "kcal/m3 at 0 degC", 1, 0},
                                          {"kJ20", "kJ/m3 at 20 degC", 0, 1},
                                          {"kcal20", "kcal/m3 at 20 degC", 1, 1}}};

const Method& find_method(const std::string& name) {
    for (const Method& method : methods)
        if (method.name == name) return method;
    throw InputError{name.empty() ? "--method: give one of nx19, gerg91, aga8, vnic"
                                  : fmt::format("--method {}: there are nx19, gerg91, aga8 and vnic", name)};
}

// Everything about the gas that does not change from state to state.
struct Gas {
    const Method* method;
    const HeatBasis* basis;
    GivenComposition composition;
    double rho_c = 0.0;
    double vapour = 0.0;
    [[nodiscard]] std::string_view heat_unit() const {
        return method->code < 3 ? "MJ/m3 at 20 degC" : basis->unit;
    }
};

struct State {
    double t_C, p_MPa;
    bool computed = false;
    std::string_view refused{};
    double sum = 0, K = 0, Z = 0, rho_c = 0;
    double rho = 0, mu = 0, kappa = 0, lower_heat = 0, higher_heat = 0;
};

double within(const char* option, const std::string& text, double low, double high, const char* unit) {
    const Range range = parse_range(option, text);
    if (range.count != 1) throw InputError{fmt::format("{} {}: expected one number", option, text)};
    require_within(option, text, range, low, high, unit);
    return range.start;
}

// Z = K Zc: the closed formula of Zc cancels, so that this is what the equation of state gave.
double compressibility_factor(const host::Library& library, const Gas& gas, double K) {
    const host::GasState& state = library->gas;
    if (gas.method->code == 3) return static_cast<double>(*state.Z);
    if (gas.method->by_density)
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

State compute(const host::Library& library, cGas2005& c, const Gas& gas, double t_C, double p_MPa) {
    constexpr double no_column = 0.0;
    const std::array<double, 15>& x = gas.composition.x;
    State s{.t_C = t_C, .p_MPa = p_MPa};
    const char valid =
        library->Param_gs(&c, t_C, p_MPa * Pa_per_MPa, no_column, no_column, gas.method->code,
                          gas.composition.volume_fractions ? 1 : 0, x[0], x[1], x[2], x[3], x[4], x[5], x[6],
                          x[7], x[8], x[9], x[10], x[11], x[12], x[13], x[14], gas.rho_c, s.sum, s.K, s.rho_c);
    if (valid != 1) {
        s.refused = why_refused(s.K);
        return s;
    }
    s.Z = compressibility_factor(library, gas, s.K);
    s.computed = library->gas_tf_Param(&c, gas.basis->unit_code, gas.basis->temperature_code, gas.vapour, s.rho,
                                       s.mu, s.kappa, s.lower_heat, s.higher_heat) == 1;
    if (!s.computed)
        s.refused = "refused: no water vapour at this pressure, its saturation temperature is too high";
    // The sums assume mole per cent and are a hundredth for fractions.
    if (gas.composition.volume_fractions && gas.method->code == 3) {
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
    row("method", gas.method->title);
    row("temperature", fmt::format("{:.8g}", s.t_C), "degC");
    row("absolute pressure", fmt::format("{:.8g}", s.p_MPa), "MPa");
    if (!gas.method->by_density)
        row("sum of the composition", digits(s.sum, 7), gas.composition.volume_fractions ? "" : "mol %");
    row("density at standard conditions", digits(s.rho_c, 7), "kg/m3");
    if (!s.computed) {
        row("compressibility coefficient K", s.K == 0.0 ? "-" : digits(s.K, 7));
        fmt::print("  {}\n", s.refused);
        return;
    }
    row("compressibility coefficient K", digits(s.K, 7));
    row("compressibility factor Z", digits(s.Z, 7));
    row("density", digits(s.rho, 7), "kg/m3");
    row("dynamic viscosity", digits(s.mu, 6), "uPa s");
    row("isentropic exponent", digits(s.kappa, 6));
    row("lower heat of combustion", digits(s.lower_heat, 6), gas.heat_unit());
    row("higher heat of combustion", digits(s.higher_heat, 6), gas.heat_unit());
}

void print_table_head(const Gas& gas, double rho_c) {
    fmt::print("{}, density at standard conditions {:#.7g} kg/m3\n", gas.method->title, rho_c);
    fmt::print("{:>7} {:>8} {:>9} {:>9} {:>10} {:>9} {:>8}\n", "t", "p", "K", "Z", "density", "viscosity",
               "kappa");
    fmt::print("{:>7} {:>8} {:>9} {:>9} {:>10} {:>9}\n", "degC", "MPa", "", "", "kg/m3", "uPa s");
}

void print_table_row(const State& s) {
    if (s.computed)
        fmt::print("{:>7.6g} {:>8.6g} {:>9.6f} {:>9.6f} {:>#10.6g} {:>#9.6g} {:>#8.6g}\n", s.t_C, s.p_MPa, s.K,
                   s.Z, s.rho, s.mu, s.kappa);
    else
        fmt::print("{:>7.6g} {:>8.6g} {:>9}  {}\n", s.t_C, s.p_MPa,
                   s.K == 0.0 ? std::string("-") : fmt::format("{:.6f}", s.K), s.refused);
}

// The unit of the heats stands in the names of their columns.
void print_csv_head(const Gas& gas) {
    std::string unit(gas.heat_unit());
    for (char& c : unit)
        if (c == ' ' || c == '/') c = '_';
    fmt::print("t_C,p_MPa,status,rho_c_kg_m3,K,Z,rho_kg_m3,mu_uPa_s,kappa,lower_heat_{},higher_heat_{}\n", unit,
               unit);
}

void print_csv_row(const State& s) {
    if (s.computed)
        fmt::print("{},{},1,{},{},{},{},{},{},{},{}\n", s.t_C, s.p_MPa, s.rho_c, s.K, s.Z, s.rho, s.mu, s.kappa,
                   s.lower_heat, s.higher_heat);
    else
        fmt::print("{},{},0,{},{},,,,,,\n", s.t_C, s.p_MPa, s.rho_c,
                   std::isnan(s.K) || s.K == 0.0 ? std::string() : fmt::format("{}", s.K));
}

Range checked_range(const char* option, const std::string& text, double low, double high, const char* unit,
                    const char* example) {
    if (text.empty()) throw InputError{fmt::format("{}: give {}", option, example)};
    const Range range = parse_range(option, text);
    // The library's window is open: its ends do not belong to it.
    for (const double end : {range.start, range.last()})
        if (!(low < end && end < high))
            throw InputError{fmt::format("{} {}: must lie between {} and {} {}, the ends excluded", option,
                                         text, low, high, unit)};
    return range;
}

const HeatBasis& find_basis(const std::string& name) {
    for (const HeatBasis& basis : bases)
        if (basis.name == name) return basis;
    throw InputError{fmt::format("--heat {}: there are kJ0, kcal0, kJ20 and kcal20", name)};
}

// Density, nitrogen and carbon dioxide of a composition, for the methods that know a gas by these.
void reduce_to_density(const host::Library& library, Gas& gas) {
    std::array<double, 15>& x = gas.composition.x;
    const auto f = [&x](std::size_t i) { return static_cast<float>(x[i]); };
    (gas.composition.volume_fractions ? library->PF1_2 : library->PF1_1)(
        f(0), f(1), f(2), f(3), f(4), f(5), f(6), f(7), f(8), f(9), f(10), f(11), f(12), f(13), f(14));
    gas.rho_c = static_cast<double>(library->PF2());
    if (gas.composition.volume_fractions)
        for (std::size_t i = 0; i < x.size(); ++i) x[i] = 100.0 * static_cast<double>(library->gas.Xi[i]);
    gas.composition.volume_fractions = false;
    if (!(gas.rho_c <= 1.0))
        throw InputError{fmt::format("--composition: its density is {:#.5g} kg/m3; {} takes up to 1", gas.rho_c,
                                     gas.method->title)};
}

Gas read_gas(const GasRequest& request) {
    Gas gas{.method = &find_method(request.method), .basis = &find_basis(request.heat), .composition = {}};
    gas.vapour = within("--vapour", request.vapour, 0.0, 1000.0, "kg/m3");
    if (!request.composition.empty()) {
        if (!request.rho_c.empty())
            throw InputError{"--rho-c: the density follows from --composition; leave one out"};
        gas.composition = read_composition(request.composition);
        return gas;
    }
    if (!gas.method->by_density)
        throw InputError{fmt::format("--composition: {} needs a composition file", gas.method->title)};
    if (request.rho_c.empty())
        throw InputError{
            "--rho-c: give the density at standard conditions in kg/m3, such as --rho-c 0.68, or "
            "--composition FILE"};
    gas.rho_c = within("--rho-c", request.rho_c, 0.0, 1.0, "kg/m3");
    gas.composition.x[nitrogen] = within("--n2", request.nitrogen, 0.0, 100.0, "mol %");
    gas.composition.x[carbon_dioxide] = within("--co2", request.carbon_dioxide, 0.0, 100.0, "mol %");
    return gas;
}

void draw(const host::Library& library, cGas2005& c, const Gas& gas, const Drawing& drawing, const Range& t,
          const Range& p) {
    static const std::vector<Drawable> offered{{"K", "compressibility coefficient K"},
                                               {"Z", "compressibility factor Z"},
                                               {"rho", "density, kg/m3"},
                                               {"mu", "dynamic viscosity, uPa s"},
                                               {"kappa", "isentropic exponent"}};
    const std::size_t chosen = drawn_quantity(drawing, offered);
    if (drawing.file.empty()) return;
    const std::string title = fmt::format("Natural gas, {}", gas.method->title);
    draw_curves(drawing.file, title, offered[chosen], t, p, [&](double t_C, double p_MPa) {
        const State s = compute(library, c, gas, t_C, p_MPa);
        const double values[] = {s.K, s.Z, s.rho, s.mu, s.kappa};
        return Drawn{s.computed ? values[chosen] : std::nan(""), 0};
    });
}

}  // namespace

bool needs_gas_data(const GasRequest& request) {
    return !find_method(request.method).by_density || !request.composition.empty();
}

bool gas(const host::Library& library, const GasRequest& request) {
    Gas gas = read_gas(request);
    const Range t =
        checked_range("--t", request.t, min_t_C, max_t_C, "degC", "the temperature in degC, such as --t 15");
    const Range p = checked_range("--p", request.p, min_p_MPa, max_p_MPa, "MPa",
                                  "the absolute pressure in MPa, such as --p 5.5");
    if (t.count > max_rows / p.count)
        throw InputError{fmt::format("--t, --p: at most {} rows in all", max_rows)};
    if (gas.method->by_density && !request.composition.empty()) reduce_to_density(library, gas);

    const host::Owned<cGas2005> calculator = library.gas_calculator();
    calculator->metering_class = 1;
    draw(library, *calculator, gas, request.drawing, t, p);
    const bool single = !request.csv && t.count * p.count == 1;
    bool all = true;
    for (std::size_t i = 0; i < t.count; ++i)
        for (std::size_t j = 0; j < p.count; ++j) {
            const State s = compute(library, *calculator, gas, t[i], p[j]);
            all = all && s.computed;
            if (single) {
                print_sheet(gas, s);
            } else {
                if (i == 0 && j == 0) request.csv ? print_csv_head(gas) : print_table_head(gas, s.rho_c);
                request.csv ? print_csv_row(s) : print_table_row(s);
            }
        }
    return all;
}

}  // namespace kalorfix::tool
