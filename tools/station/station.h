// A metering station: the constants of its channels and how each integrator is accounted.
#pragma once

#include <array>
#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/host.h"
#include "tools/metering/instruments.h"
#include "tools/names.h"

namespace kalorfix::tool::station {

enum class Medium { gas, heat_carrier };

inline constexpr std::size_t most_integrators = 4;

/// How one integrator of a channel is accounted.
struct Accounting {
    short exponent = 0;       ///< the register counts units of 10^exponent
    float substitute = 0.0F;  ///< flow per hour that fills a downtime
};

/// An integrator as the interface numbers it.
struct Integrator {
    std::string_view name;  ///< mass, volume, ...
    std::string_view unit;  ///< of the register at exponent 0
    std::string_view flow_unit;
};

/// Gas: mass, volume, standard volume, energy. Heat carrier: mass, volume, heat. Number k + 1 is element k.
[[nodiscard]] std::size_t integrator_count(Medium medium);
[[nodiscard]] const Integrator& integrator(Medium medium, std::size_t k);

struct Gas {
    short method = 0;
    std::string composition_file;  ///< empty where the composition stands in keys
    bool volume_fractions = false;
    std::array<float, 15> x{};
    double sum_pct = 0.0;  ///< of the composition as given
    bool normalised = false;
    float rho_c = 0.0F;
    bool own_contents = true;  ///< AGA8-92DC: viscosity and exponent with them, or with those that were left
    char heat_unit = 0;        ///< 0 kJ, 1 kcal; VNIC SMV only
    char heat_basis = 1;       ///< volume at 0: 0 degC, 1: 20 degC; VNIC SMV only
    bool by_higher_heat = false;
    float vapour = 0.0F;  ///< kg/m3
};

struct HeatCarrier {
    std::optional<unsigned short> phase;  ///< given, or decided from the state
    float x = 0.0F;                       ///< share of the single-phase state in wet steam
    float tolerance_Pa = 1000.0F, tolerance_K = 0.5F;
};

struct Channel {
    Medium medium;
    int number;
    std::string name;  ///< GAS 1, HEAT 1: header of its section and text of its cell in the readings
    char metering_class = 1;
    short device = 0;
    bool by_material = true;
    float pipe_material = 0, device_material = 0;  ///< codes, or expansion coefficients in 1/degC
    float D20_mm = 0, d20_mm = 0, roughness_mm = 0, edge_radius_mm = 0;
    bool edge_at_end = false;
    float interval_years = 0, alpha_eps = 0;
    float column_height_m = 0, column_density = 0;
    std::optional<double> barometer_Pa{};  ///< atmospheric pressure, for readings of gauge pressure
    float cut_off_Pa = -std::numeric_limits<float>::infinity();  ///< a lower differential pressure is no flow
    double longest_step_s = 0;  ///< between two readings, that counts; 0 for any
    int contract_hour = 0;      ///< at which a day of the calendar begins
    int contents_channel = 0;   ///< spare channel that leaves the contents for AGA8-92DC; 0 for none
    Gas gas{};
    HeatCarrier heat{};
    std::array<Accounting, most_integrators> accounting{};
    metering::Instruments instruments{};  ///< read by no cycle

    [[nodiscard]] bool is_gas() const { return medium == Medium::gas; }
    [[nodiscard]] bool needs_gas_data() const { return is_gas() && !is_by_density(gas.method); }
    /// Of its heats of combustion; nothing for a heat carrier.
    [[nodiscard]] std::string_view heat_unit() const {
        return is_gas() ? tool::heat_unit(gas.method, gas.heat_unit, gas.heat_basis) : "";
    }
};

/// Device codes by what they need.
[[nodiscard]] constexpr bool is_orifice(short device) { return 1 <= device && device <= 3; }
[[nodiscard]] constexpr bool is_meter(short device) { return 20 <= device && device <= 23; }
inline constexpr short configured_coefficient = 19, meter_mass = 20, meter_volume = 21,
                       meter_standard_volume = 22, external_flow = 23;

struct Station {
    std::string file;
    std::vector<Channel> channels;  ///< in the order of the file
    std::optional<int> zone_s{};    ///< of the station's clock: its offset from UTC
};

/// Reads and checks a station file; every key of every section. Throws InputError with file, line, channel and what is
/// accepted.
[[nodiscard]] Station read_station(const host::Library& library, const std::string& file);

}  // namespace kalorfix::tool::station
