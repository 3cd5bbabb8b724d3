#include "tools/metering/units.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "runtime/units.h"
#include "tools/text.h"

namespace kalorfix::metering {
namespace {

using units::inch_m;
using units::mm_per_m;
using units::zero_celsius_K;

constexpr double pound_kg = 0.45359237, foot_m = 12.0 * inch_m;
constexpr double psi_Pa = pound_kg * units::standard_gravity / (inch_m * inch_m);

constexpr std::array lengths{Unit{"mm", 1.0}, Unit{"cm", 10.0}, Unit{"m", mm_per_m}, Unit{"um", 1e-3},
                             Unit{"in", inch_m* mm_per_m}};
constexpr std::array pressures{Unit{"Pa", 1.0},        Unit{"kPa", 1e3},      Unit{"MPa", 1e6},
                               Unit{"bar", 1e5},       Unit{"mbar", 100.0},   Unit{"hPa", 100.0},
                               Unit{"psi", psi_Pa},    Unit{"atm", 101325.0}, Unit{"kgf/cm2", 98066.5},
                               Unit{"kgf/m2", 9.80665}};
constexpr std::array temperatures{Unit{"C", 1.0}, Unit{"degC", 1.0}, Unit{"K", 1.0, -zero_celsius_K},
                                  Unit{"F", 5.0 / 9.0, -160.0 / 9.0}, Unit{"degF", 5.0 / 9.0, -160.0 / 9.0}};
constexpr std::array viscosities{Unit{"uPas", 1.0}, Unit{"mPas", 1e3}, Unit{"Pas", 1e6}, Unit{"cP", 1e3}};
constexpr std::array densities{Unit{"kg/m3", 1.0}, Unit{"g/cm3", 1e3},
                               Unit{"lb/ft3", pound_kg / (foot_m * foot_m * foot_m)}};
constexpr std::array flows{Unit{"t/h", 1.0, 0, Flow::mass},
                           Unit{"kg/h", 1e-3, 0, Flow::mass},
                           Unit{"kg/s", 3.6, 0, Flow::mass},
                           Unit{"t/d", 1.0 / 24.0, 0, Flow::mass},
                           Unit{"m3/h", 1.0, 0, Flow::volume},
                           Unit{"m3/s", 3600.0, 0, Flow::volume},
                           Unit{"m3/d", 1.0 / 24.0, 0, Flow::volume},
                           Unit{"l/s", 3.6, 0, Flow::volume},
                           Unit{"m3/h-std", 1.0, 0, Flow::standard_volume},
                           Unit{"m3/s-std", 3600.0, 0, Flow::standard_volume},
                           Unit{"m3/d-std", 1.0 / 24.0, 0, Flow::standard_volume},
                           Unit{"GJ/h", 1.0, 0, Flow::energy},
                           Unit{"MW", 3.6, 0, Flow::energy},
                           Unit{"kW", 3.6e-3, 0, Flow::energy},
                           Unit{"Gcal/h", 4.1868, 0, Flow::energy}};

std::span<const Unit> all_of(Dimension dimension) {
    switch (dimension) {
        case Dimension::length:
            return lengths;
        case Dimension::pressure:
            return pressures;
        case Dimension::temperature:
            return temperatures;
        case Dimension::viscosity:
            return viscosities;
        case Dimension::density:
            return densities;
        case Dimension::flow:
            break;
    }
    return flows;
}

}  // namespace

const Unit* find_unit(std::string_view word, Dimension dimension) {
    const std::span<const Unit> all = all_of(dimension);
    const auto found = std::ranges::find(all, word, &Unit::word);
    return found == all.end() ? nullptr : &*found;
}

std::optional<Quantity> read_quantity(std::string_view text, Dimension dimension, std::string_view otherwise) {
    double value = 0.0;
    text = tool::trimmed(text);
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc()) return std::nullopt;
    const std::string_view word = tool::trimmed(text.substr(static_cast<std::size_t>(stop - text.data())));
    const Unit* const unit = find_unit(word.empty() ? otherwise : word, dimension);
    if (!unit) return std::nullopt;
    value = unit->factor * value + unit->offset;
    return std::isfinite(value) ? std::optional(Quantity{value, unit}) : std::nullopt;
}

std::string unit_words(Dimension dimension) { return tool::joined(all_of(dimension), &Unit::word); }

}  // namespace kalorfix::metering
