#include "tools/station/result_columns.h"

#include <array>
#include <cmath>

namespace kalorfix::tool::station {
namespace {

using Value = std::optional<float>;

Value finite(float value) { return std::isfinite(value) ? Value(value) : Value(); }

bool is_gas(const ResultRow& r) { return r.channel.medium == Medium::gas; }

// A result of a step that has passed.
template <auto member, Step step>
Value result(const ResultRow& r) {
    return r.outcome.passed(step) ? finite(r.outcome.*member) : Value();
}

template <auto member, Step step>
Value of_gas(const ResultRow& r) {
    return is_gas(r) ? result<member, step>(r) : Value();
}

template <auto member, Step step>
Value of_heat(const ResultRow& r) {
    return is_gas(r) ? Value() : result<member, step>(r);
}

// Devices 10..23 have no diameter ratio and what depends on it; meters solve no flow.
constexpr short last_standard_device = 9;

template <auto member, Step step>
Value of_standard(const ResultRow& r) {
    return r.channel.device <= last_standard_device ? result<member, step>(r) : Value();
}

template <auto member, Step step>
Value of_differential(const ResultRow& r) {
    return is_meter(r.channel.device) ? Value() : result<member, step>(r);
}

// The Reynolds number is told of a refused flow too.
Value reynolds(const ResultRow& r) {
    const bool reached = r.outcome.passed(Step::geometry) && r.outcome.Re != 0.0F;
    return reached && !is_meter(r.channel.device) ? finite(r.outcome.Re) : Value();
}

Value differential(const ResultRow& r) {
    return is_meter(r.channel.device) ? Value() : Value(r.outcome.input.dp);
}

enum class Kind { mass, volume, standard_volume, energy, heat };

// The number of an integrator less one; nothing where the medium has no such.
std::optional<std::size_t> index(Kind kind, const ResultRow& r) {
    switch (kind) {
        case Kind::mass:
            return 0;
        case Kind::volume:
            return 1;
        case Kind::standard_volume:
            return is_gas(r) ? std::optional<std::size_t>(2) : std::nullopt;
        case Kind::energy:
            return is_gas(r) ? std::optional<std::size_t>(3) : std::nullopt;
        default:
            return is_gas(r) ? std::nullopt : std::optional<std::size_t>(2);
    }
}

template <Kind kind>
Value flow_of(const ResultRow& r) {
    const auto k = index(kind, r);
    return k && r.outcome.passed(Step::flow) ? finite(r.outcome.q[*k]) : Value();
}

template <Kind kind>
Value total_of(const ResultRow& r) {
    const auto k = index(kind, r);
    return k ? finite(r.registers[*k].total) : Value();
}

template <Kind kind, std::size_t set>
Value closed(const ResultRow& r) {
    const auto k = index(kind, r);
    if (!k) return {};
    const Interval& interval = r.registers[*k].interval[set];
    return interval.closed ? finite(interval.result) : Value();
}

constexpr std::array columns{
    ResultColumn{"t_C", [](const ResultRow& r) { return Value(r.outcome.input.t_C); }},
    ResultColumn{"p_Pa", [](const ResultRow& r) { return Value(r.outcome.input.p_Pa); }},
    ResultColumn{"dp_Pa", differential},
    ResultColumn{"ps_MPa", of_heat<&Outcome::ps_MPa, Step::state>},
    ResultColumn{"ts_C", of_heat<&Outcome::ts_C, Step::state>},
    ResultColumn{"K", of_gas<&Outcome::K, Step::state>},
    ResultColumn{"rho_c_kg_m3", of_gas<&Outcome::rho_c, Step::state>},
    ResultColumn{"rho_kg_m3", result<&Outcome::rho, Step::properties>},
    ResultColumn{"mu_uPa_s", result<&Outcome::mu_uPas, Step::properties>},
    ResultColumn{"kappa", result<&Outcome::kappa, Step::properties>},
    ResultColumn{"h_kJ_kg", of_heat<&Outcome::h_kJ_kg, Step::properties>},
    ResultColumn{"lower_heat", of_gas<&Outcome::lower_heat, Step::properties>},
    ResultColumn{"higher_heat", of_gas<&Outcome::higher_heat, Step::properties>},
    ResultColumn{"D_mm", of_differential<&Outcome::D_mm, Step::geometry>},
    ResultColumn{"d_mm", of_differential<&Outcome::d_mm, Step::geometry>},
    ResultColumn{"beta", of_standard<&Outcome::beta, Step::geometry>},
    ResultColumn{"E", of_standard<&Outcome::E, Step::geometry>},
    ResultColumn{"K_p", of_standard<&Outcome::K_p, Step::geometry>},
    ResultColumn{"Re", reynolds},
    ResultColumn{"C", of_standard<&Outcome::C, Step::flow>},
    ResultColumn{"K_sh", of_standard<&Outcome::K_sh, Step::flow>},
    ResultColumn{"epsilon", of_differential<&Outcome::epsilon, Step::flow>},
    ResultColumn{"q_m_t_h", flow_of<Kind::mass>},
    ResultColumn{"q_v_m3_h", flow_of<Kind::volume>},
    ResultColumn{"q_c_m3_h", flow_of<Kind::standard_volume>},
    ResultColumn{"q_e_GJ_h", flow_of<Kind::energy>},
    ResultColumn{"q_h_GJ_h", flow_of<Kind::heat>},
    ResultColumn{"total_mass_t", total_of<Kind::mass>},
    ResultColumn{"total_volume_m3", total_of<Kind::volume>},
    ResultColumn{"total_standard_volume_m3", total_of<Kind::standard_volume>},
    ResultColumn{"total_energy_GJ", total_of<Kind::energy>},
    ResultColumn{"total_heat_GJ", total_of<Kind::heat>},
    ResultColumn{"hour_mass_t", closed<Kind::mass, 0>},
    ResultColumn{"hour_volume_m3", closed<Kind::volume, 0>},
    ResultColumn{"hour_standard_volume_m3", closed<Kind::standard_volume, 0>},
    ResultColumn{"hour_energy_GJ", closed<Kind::energy, 0>},
    ResultColumn{"hour_heat_GJ", closed<Kind::heat, 0>},
    ResultColumn{"day_mass_t", closed<Kind::mass, 1>},
    ResultColumn{"day_volume_m3", closed<Kind::volume, 1>},
    ResultColumn{"day_standard_volume_m3", closed<Kind::standard_volume, 1>},
    ResultColumn{"day_energy_GJ", closed<Kind::energy, 1>},
    ResultColumn{"day_heat_GJ", closed<Kind::heat, 1>},
};

}  // namespace

std::span<const ResultColumn> result_columns() { return columns; }

}  // namespace kalorfix::tool::station
