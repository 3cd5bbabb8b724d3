// SPDX-License-Identifier: MIT
// Results of a station run: a table for a person, CSV or JSON lines for programs, or only what closed hours and days held.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tools/output_file.h"
#include "tools/station/calendar.h"
#include "tools/station/cycle.h"
#include "tools/station/registers.h"

namespace kalorfix::tool::station {

/// Which channels have a result: devices 10..23 have no diameter ratio and what depends on it, meters solve no flow.
enum class Of { all, gas, composition, heat_carrier, standard_device, differential_pressure };
[[nodiscard]] bool has(const Channel& channel, Of whose);

/// A number that a step of a cycle gives.
struct Result {
    std::string_view name;  ///< of its column, with the unit; empty for what is shown on a sheet alone
    float Outcome::*value;
    Step step;
    Of whose;
    std::string_view label;  ///< on a sheet
    const char* layout;
    std::string_view unit;  ///< there; empty also for heats of combustion, whose unit depends on the method
};
inline constexpr std::array<Result, 20> cycle_results{{
    {"ps_MPa", &Outcome::ps_MPa, Step::state, Of::heat_carrier, "saturation pressure at t", "{:.5f}", "MPa"},
    {"ts_C", &Outcome::ts_C, Step::state, Of::heat_carrier, "saturation temperature at p", "{:.3f}", "degC"},
    {"composition_sum", &Outcome::sum, Step::state, Of::composition, "sum of the composition as given",
     "{:.4f}", ""},
    {"K", &Outcome::K, Step::state, Of::gas, "compressibility coefficient K", "{:.6f}", ""},
    {"rho_c_kg_m3", &Outcome::rho_c, Step::state, Of::gas, "density at standard conditions", "{:.5f}", "kg/m3"},
    {"rho_kg_m3", &Outcome::rho, Step::properties, Of::all, "density", "{:.4f}", "kg/m3"},
    {"mu_uPa_s", &Outcome::mu_uPas, Step::properties, Of::all, "dynamic viscosity", "{:.3f}", "uPa s"},
    {"kappa", &Outcome::kappa, Step::properties, Of::all, "isentropic exponent", "{:#.6g}", ""},
    {"h_kJ_kg", &Outcome::h_kJ_kg, Step::properties, Of::heat_carrier, "specific enthalpy", "{:.3f}", "kJ/kg"},
    {"lower_heat", &Outcome::lower_heat, Step::properties, Of::gas, "lower heat of combustion", "{:.4f}", ""},
    {"higher_heat", &Outcome::higher_heat, Step::properties, Of::gas, "higher heat of combustion", "{:.4f}",
     ""},
    {"D_mm", &Outcome::D_mm, Step::geometry, Of::differential_pressure, "pipe at working temperature", "{:.4f}",
     "mm"},
    {"d_mm", &Outcome::d_mm, Step::geometry, Of::differential_pressure, "device at working temperature",
     "{:.4f}", "mm"},
    {"beta", &Outcome::beta, Step::geometry, Of::standard_device, "diameter ratio", "{:.6f}", ""},
    {"E", &Outcome::E, Step::geometry, Of::standard_device, "velocity-of-approach factor", "{:.6f}", ""},
    {"K_p", &Outcome::K_p, Step::geometry, Of::standard_device, "correction for edge bluntness", "{:.6f}", ""},
    {"Re", &Outcome::Re, Step::flow, Of::differential_pressure, "Reynolds number", "{:.5e}", ""},
    {"C", &Outcome::C, Step::flow, Of::standard_device, "discharge coefficient", "{:.6f}", ""},
    {"K_sh", &Outcome::K_sh, Step::flow, Of::standard_device, "correction for roughness", "{:.6f}", ""},
    {"epsilon", &Outcome::epsilon, Step::flow, Of::differential_pressure, "expansibility factor", "{:.6f}", ""},
}};

/// How the cycles of a channel ended.
struct ChannelSummary {
    std::uint64_t computed = 0, refused = 0;
    std::uint64_t held = 0;         ///< readings that the registers of --continue hold already
    std::string first_refusal;      ///< time, step and reason
    std::uint64_t at_rest = 0;      ///< of the computed: below the cut-off
    float lowest_dp_Pa = 0.0F;      ///< of these
    std::uint64_t passed_over = 0;  ///< of the refused: longer than a step that counts
    double passed_over_s = 0.0;
    double longest_s = 0.0, longest_end_s = 0.0;  ///< the longest step between two readings, and the later one
    bool longest_counted = false;
    Amounts longest_amount{};

    [[nodiscard]] bool has_readings() const { return computed + refused > 0; }
};

struct RunEnd {
    const StationRegisters& registers;
    const std::vector<ChannelSummary>& summaries;
    const std::vector<Calendar>& calendars;
    std::string interrupted;  ///< by what, how far, and how to go on; empty when the run is whole
    bool with_registers;      ///< they are not written to a file of their own
};

class Results {
public:
    Results(const Station& station, TimeKind kind, OutputFile& out)
        : station_(station), kind_(kind), out_(out) {}
    virtual ~Results() = default;
    Results(const Results&) = delete;
    Results& operator=(const Results&) = delete;

    /// Before the first cycle.
    virtual void begin() {}
    virtual void cycle(const Cycle& cycle) = 0;
    virtual void end(const RunEnd& end) = 0;

protected:
    const Station& station_;
    TimeKind kind_;
    OutputFile& out_;
};

/// The formats: table, csv, csv_commas (semicolons and decimal commas), json, hours, days; the
/// tables with _folded behind them fit 80 columns. Null for another word.
[[nodiscard]] std::unique_ptr<Results> make_results(const std::string& format, const Station& station,
                                                    TimeKind kind, OutputFile& out);

/// Constants, measured values and each step with its status and its results, units beside them. It ends with the step that was
/// refused and the reason.
[[nodiscard]] std::string sheet(const Cycle& cycle);

/// A line for a step, and one for a value, as on the sheet.
[[nodiscard]] std::string sheet_step(std::string_view name, std::string_view outcome);
[[nodiscard]] std::string sheet_row(std::string_view label, std::string_view value, std::string_view unit = {});

}  // namespace kalorfix::tool::station
