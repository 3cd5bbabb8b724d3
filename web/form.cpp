// SPDX-License-Identifier: MIT
#include "web/form.h"

#include <cmath>

#include "flow/device.h"
#include "flow/geometry.h"
#include "tools/composition_sum.h"
#include "tools/names.h"
#include "tools/text.h"

namespace kalorfix::page {
namespace {

using metering::Question;
using metering::Unknown;

constexpr double longest_mm = 10000.0, highest_Pa = 1e12, hottest_C = 1e6;

double material(Form& form, std::string_view key) {
    const double code = form.number(key, 1, flow::material_count);
    if (code != std::floor(code)) form.fail(key, "choose one");
    return code;
}

metering::Pipeline read_pipeline(Form& form) {
    metering::Pipeline pipe;
    pipe.device = static_cast<short>(form.row("device", tool::devices) + 1);
    pipe.D20_mm = form.number("D20", 1e-3, longest_mm, "mm");
    const bool found = form.word("unknown") == "bore";
    if (!found) pipe.d20_mm = form.number("d20", 0, longest_mm, "mm");
    pipe.by_material = form.word("expansion") != "coefficients";
    if (pipe.by_material) {
        pipe.pipe_material = material(form, "material_D");
        pipe.device_material = material(form, "material_d");
    } else {
        pipe.pipe_material = form.number("expansion_D", 0, 1e-3, "1/degC");
        pipe.device_material = form.number("expansion_d", 0, 1e-3, "1/degC");
    }
    pipe.roughness_mm = form.number_or("roughness", 0, 0, 100, "mm");
    const flow::DeviceRow& device = flow::device_row(pipe.device);
    if (device.family == flow::Family::orifice) {
        pipe.edge_radius_mm = form.number("edge", 0, 10, "mm");
        pipe.interval_years = form.number_or("interval", 1, 0, 100, "years");
        pipe.edge_at_end = form.given("edge_at_end");
    }
    if (device.family == flow::Family::configured) pipe.alpha_eps = form.number("alpha", 0, 100);
    pipe.metering_class = form.given("coarse") ? 0 : 1;
    return pipe;
}

void read_composition(Form& form, metering::Gas& gas) {
    gas.volume_fractions = form.given("fractions");
    const double whole = gas.volume_fractions ? 1.0 : 100.0;
    double sum = 0.0;
    for (std::size_t i = 0; i < gas.x.size(); ++i) {
        const std::string key = "x_" + std::string(tool::components[i]);
        gas.x[i] = form.number_or(key, 0, 0, whole, gas.volume_fractions ? "" : "mol %");
        sum += gas.x[i];
    }
    constexpr double widest = 0.01;
    if (!(std::fabs(sum - whole) <= widest * whole))
        form.fail("sum", tool::cat("the composition sums to ", sum, ", not to ", whole));
}

metering::Gas read_gas(Form& form) {
    metering::Gas gas;
    gas.method = static_cast<short>(form.row("method", tool::methods));
    if (tool::is_by_density(gas.method)) {
        gas.rho_c = form.number("rho_c", 0, 1, "kg/m3");
        gas.x[tool::nitrogen] = form.number("n2", 0, 100, "mol %");
        gas.x[tool::carbon_dioxide] = form.number("co2", 0, 100, "mol %");
        const double alone = tool::weight_of_contents(gas.x[tool::nitrogen], gas.x[tool::carbon_dioxide]);
        if (alone > gas.rho_c)
            form.fail("rho_c", tool::cat("nitrogen and carbon dioxide alone weigh ", alone,
                                         " kg/m3, more than the gas"));
    } else {
        read_composition(form, gas);
    }
    gas.vapour_kgm3 = form.number_or("vapour", 0, 0, 1000, "kg/m3");
    if (gas.method == tool::vnic && form.given("heat")) {
        const std::size_t row = form.row("heat", tool::heat_units);
        gas.heat_unit = static_cast<char>(row % 2);
        gas.heat_basis = static_cast<char>(row / 2);
    }
    gas.by_higher_heat = form.given("higher");
    return gas;
}

}  // namespace

Form::Form(std::string_view lines) {
    for (const std::string_view line : tool::split(lines, '\n')) {
        const std::size_t space = std::min(line.find(' '), line.size());
        const std::string_view value = tool::trimmed(line.substr(space));
        if (!value.empty()) fields_[std::string(line.substr(0, space))] = value;
    }
}

std::string Form::word(std::string_view key) const {
    const auto found = fields_.find(key);
    return found == fields_.end() ? std::string() : found->second;
}

double Form::number(std::string_view key, double low, double high, std::string_view unit) {
    const std::string text = word(key);
    const tool::Limits limits{low, high, unit};
    const std::optional<double> value = tool::number_within(text, limits);
    if (!value) fail(key, "expected a number within " + limits.text());
    return value.value_or(low);
}

double Form::number_or(std::string_view key, double otherwise, double low, double high, std::string_view unit) {
    return given(key) ? number(key, low, high, unit) : otherwise;
}

void Form::fail(std::string_view key, std::string what) {
    if (!fault_) fault_ = {std::string(key), std::move(what)};
}

metering::Medium read_medium(Form& form) {
    const std::string medium = form.word("medium");
    if (medium == "water") {
        metering::HeatCarrier heat;
        if (form.given("phase"))
            if (const std::size_t phase = form.row("phase", tool::phases); phase != 0)
                heat.phase = static_cast<unsigned short>(phase);
        heat.x = form.number_or("x", 0, 0, 1);
        return heat;
    }
    if (medium == "given") {
        metering::GivenMedium given{
            form.number("rho", 1e-9, 1e5, "kg/m3"), form.number("mu", 1e-6, 1e12, "uPa s"), {}, {}};
        if (form.given("kappa")) given.kappa = form.number("kappa", 1.000001, 100);
        if (given.kappa && form.given("rho_std")) given.rho_c = form.number("rho_std", 1e-9, 1e3, "kg/m3");
        return given;
    }
    if (medium != "gas") form.fail("medium", "choose one");
    return read_gas(form);
}

metering::Point read_point(Form& form) {
    metering::Point point{read_pipeline(form), {}, read_medium(form)};
    point.column.height_m = form.number_or("column", 0, -1000, 1000, "m");
    point.column.density_kgm3 = form.number_or("column_rho", 0, 0, 20000, "kg/m3");
    return point;
}

Question read_question(Form& form) {
    Question q;
    const std::string unknown = form.word("unknown");
    q.unknown = unknown == "dp" ? Unknown::dp : unknown == "bore" ? Unknown::bore : Unknown::flow;
    q.t_C = form.number("t", -hottest_C, hottest_C, "degC");
    q.p_Pa = form.number("p", 1e-9, highest_Pa, "Pa");
    if (q.unknown != Unknown::dp) q.dp_Pa = form.number("dp", 1e-9, highest_Pa, "Pa");
    constexpr std::string_view kinds[] = {"mass", "volume", "standard_volume", "energy"};
    for (std::size_t k = 0; k < std::size(kinds); ++k)
        if (form.word("kind") == kinds[k]) q.kind = static_cast<metering::Flow>(k);
    if (q.unknown != Unknown::flow) q.flow = form.number("q", 1e-12, 1e12);
    return q;
}

metering::Envelope read_envelope(Form& form) {
    metering::Envelope e;
    e.t_low_C = form.number("t_low", -hottest_C, hottest_C, "degC");
    e.t_high_C = form.number("t_high", e.t_low_C, hottest_C, "degC");
    e.p_low_Pa = form.number("p_low", 1e-9, highest_Pa, "Pa");
    e.p_high_Pa = form.number("p_high", e.p_low_Pa, highest_Pa, "Pa");
    if (form.given("dp_high")) {
        e.dp_low_Pa = form.number_or("dp_low", 0, 0, highest_Pa, "Pa");
        e.dp_high_Pa = form.number("dp_high", *e.dp_low_Pa, highest_Pa, "Pa");
    }
    return e;
}

}  // namespace kalorfix::page
