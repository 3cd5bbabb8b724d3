// The command-line tool: it opens kalorfix.so as a host does.
#include <CLI/CLI.hpp>

#include <fmt/format.h>

#include <charconv>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "tools/demo.h"
#include "tools/gas.h"
#include "tools/gasdat/command.h"
#include "tools/identity.h"
#include "tools/range.h"
#include "tools/report/command.h"
#include "tools/runtime.h"
#include "tools/station/command.h"
#include "tools/station/example_day.h"
#include "tools/water.h"

namespace tool = kalorfix::tool;
using kalorfix::host::Library;

namespace {

constexpr int bad_input = 2;

struct Command {
    std::string library_file;
    std::string mode = "state";
    std::string gas_data_file;
    tool::WaterRequest water_request;
    tool::GasRequest gas_request;
    tool::gasdat::Command gasdat;
    tool::report::Command verify;
    tool::station::RunRequest run_request;
    CLI::App* demo = nullptr;
    CLI::App* water = nullptr;
    CLI::App* gas = nullptr;
    CLI::App* run = nullptr;
    CLI::App* id = nullptr;
};

// One line whatever the user typed, and no failure of its own when nobody listens to standard error.
int complain(std::string what) {
    for (char& c : what)
        if (const auto code = static_cast<unsigned char>(c); code < ' ' || code == 0x7F) c = '?';
    std::fprintf(stderr, "kalorfix: %s\n", what.c_str());
    return bad_input;
}

// Output may fail as late as here, on a full disk for one.
int finish(int status) {
    std::cout.flush();
    if (!std::cout || std::fflush(stdout) != 0 || std::ferror(stdout))
        return complain("cannot write the output");
    return status;
}

std::string check_tolerance(const std::string& text) {
    double value = 0.0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error == std::errc() && stop == end && std::isfinite(value)) return {};
    return "expected a number, such as 0.001, not '" + text + "'";
}

void add_water(CLI::App& app, Command& command) {
    tool::WaterRequest& request = command.water_request;
    command.water = app.add_subcommand("water", "Properties and phase of water and steam.");
    command.water->fallthrough();
    command.water->add_option("--t", request.t, "temperature, 0..800 degC (needed)")->option_text("T");
    command.water->add_option("--p", request.p, "absolute pressure, 0..100 MPa")->option_text("P");
    command.water
        ->add_option("--mode", command.mode,
                     "state: at --t and --p (default)\n"
                     "saturated: saturated vapour at --t, 0..371.85 degC, no --p")
        ->option_text("MODE")
        ->check(CLI::IsMember({"state", "saturated"}));
    command.water
        ->add_option("--dp", request.dp_MPa, "tolerance of the saturated phase, 0..100 MPa (default 0.001)")
        ->option_text("DP")
        ->check(check_tolerance, "", "");
    command.water->add_flag("--csv", request.csv, "all digits, comma-separated, units in the column names");
    command.water->add_option("--svg", request.drawing.file, "draw a quantity into FILE as well")
        ->option_text("FILE");
    command.water
        ->add_option("--quantity", request.drawing.quantity, "what to draw: rho (default), mu, h, kappa")
        ->option_text("Q");
    command.water->footer(
        "T and P are a number or a range start:stop:step, such as 150 or 20:200:20;\n"
        "ranges give a table, at most 1000000 rows, and curves with --svg: over the first\n"
        "range, a line for each value of the second, at most 12 (else the other way).\n\n"
        "Printed: density kg/m3, dynamic viscosity uPa s, specific enthalpy kJ/kg,\n"
        "isentropic exponent kappa, phase, saturation pressure at T in MPa (- above the\n"
        "critical temperature).\n\n"
        "The phase is decided from 0.001 MPa up: steam from 371.85 degC or 21.5 MPa on;\n"
        "else water at or below 100 degC; else saturated within DP of the saturation\n"
        "pressure; else water above it and steam below. The properties do not depend on\n"
        "that decision: they are the liquid's from the saturation pressure up.");
}

void add_gas(CLI::App& app, Command& command) {
    tool::GasRequest& request = command.gas_request;
    command.gas = app.add_subcommand("gas", "Compressibility and properties of natural gas.");
    command.gas->fallthrough();
    const auto option = [&](const char* name, std::string& target, const char* what, const char* value) {
        command.gas->add_option(name, target, what)->option_text(value);
    };
    option("--method", request.method, "nx19, gerg91 (by density), aga8, vnic (by composition)", "METHOD");
    option("--t", request.t, "temperature, -23.15..66.85 degC", "T");
    option("--p", request.p, "absolute pressure, 0.001..30 MPa", "P");
    option("--composition", request.composition, "composition file, for every method", "FILE");
    option("--rho-c", request.rho_c, "nx19, gerg91: density at 20 degC and 101.325 kPa, 0..1 kg/m3", "RHO");
    option("--n2", request.nitrogen, "nx19, gerg91: nitrogen, 0..100 mol % (default 0)", "X");
    option("--co2", request.carbon_dioxide, "nx19, gerg91: carbon dioxide, 0..100 mol % (default 0)", "X");
    option("--vapour", request.vapour, "water vapour in a cubic metre, kg (default 0)", "RHO");
    option("--heat", request.heat, "vnic: heats in kJ0, kcal0, kJ20 (default), kcal20, per\nm3 at 0 or 20 degC",
           "BASIS");
    command.gas->add_flag("--csv", request.csv, "all digits, comma-separated, units in the column names");
    option("--svg", request.drawing.file, "draw a quantity into FILE as well", "FILE");
    option("--quantity", request.drawing.quantity, "what to draw: K (default), Z, rho, mu, kappa", "Q");
    command.gas->footer(
        "T and P are a number or a range start:stop:step; ranges give a table, at most\n"
        "1000000 rows, and curves with --svg: over the first range, a line for each value\n"
        "of the second, at most 12 (else the other way). Exit status 1 when a state was refused.\n\n"
        "Printed: K = Z/Zc, Z, density at standard and working conditions kg/m3, dynamic\n"
        "viscosity uPa s, isentropic exponent, heats of combustion. Of these aga8 takes\n"
        "viscosity, exponent and heats from the density at standard conditions, and the\n"
        "first two as for a gas without nitrogen and carbon dioxide.\n\n"
        "A composition file has the heading component,mole_percent or\n"
        "component,volume_fraction and lines such as methane,96.5; see examples/.");
}

void describe(CLI::App& app, Command& command) {
    constexpr std::size_t option_column = 20;
    app.name("kalorfix");
    app.get_formatter()->column_width(option_column);
    app.add_option("--lib", command.library_file,
                   "library to open (default: kalorfix.so beside this program or\n"
                   "in ../lib or ../lib/<triplet>, else where the system finds it)")
        ->option_text("FILE");
    app.add_option("--gas-data", command.gas_data_file,
                   "gas data file (default: gas.dat beside the library\nor in ../share/kalorfix)")
        ->option_text("FILE");
    app.set_version_flag("--version", "kalorfix " KALORFIX_VERSION, "Print the version and exit");
    command.demo = app.add_subcommand(
        "demo", "Steam, water and gas channels on built-in input, step by step,\nand the day of a station.");
    command.demo->footer(
        "Every step of a channel's cycle with its status and its results, units beside\n"
        "them, and the totals of a simulated hour. Then the day of the station in examples/.\n"
        "Exit status 1 when a step of the channels is refused.");
    add_water(app, command);
    add_gas(app, command);
    tool::gasdat::describe(app, command.gasdat);
    tool::report::describe(app, command.verify);
    command.run = tool::station::add_command(app, command.run_request);
    command.id = app.add_subcommand("id", "Version, build, digests of library and gas data, paths.");
    command.demo->fallthrough();
    command.id->fallthrough();
    app.footer("kalorfix COMMAND --help states units and limits.");
}

// What CLI11 found, in words that name the argument.
std::string explain(const CLI::App& app, const CLI::ParseError& error) {
    const std::string text = error.what();
    const std::vector<CLI::App*> chosen = app.get_subcommands();
    const std::vector<std::string> unknown = app.remaining(true);
    const std::string help =
        fmt::format("see kalorfix {}--help", chosen.empty() ? std::string() : chosen.front()->get_name() + " ");
    if (!unknown.empty()) {
        const std::string& first = unknown.front();
        if (first.starts_with("-")) return fmt::format("{}: no such option; {}", first, help);
        if (chosen.empty())
            return fmt::format("{}: no such command; there are demo, water, gas, run, gasdat, verify and id",
                               first);
        return fmt::format("{}: nothing expected here; {}", first, help);
    }
    if (chosen.empty() && dynamic_cast<const CLI::RequiredError*>(&error))
        return "a command is missing; there are demo, water, gas, run, gasdat, verify and id";
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error))
        return fmt::format("{}: takes one value, given once; {}", text.substr(0, text.find(':')), help);
    return text;
}

// The gas data file in use; empty when none is given and none is installed.
std::string gas_data(const Command& command, const std::string& library) {
    return command.gas_data_file.empty() ? kalorfix::host::gas_data_of(library) : command.gas_data_file;
}

int run_gas(const Command& command, const std::string& library_file) {
    const std::string data = gas_data(command, library_file);
    if (data.empty() && tool::needs_gas_data(command.gas_request))
        throw tool::InputError{
            "--gas-data: there is no gas.dat beside the library or in share/kalorfix; give the file"};
    const kalorfix::host::Runtime runtime(data);
    const Library library(library_file);
    library->Init();
    return tool::gas(library, command.gas_request) ? 0 : 1;
}

int run_demo(const Command& command, const std::string& library_file) {
    const std::string data = gas_data(command, library_file);
    bool good = false;
    {
        const kalorfix::host::Runtime runtime(data);
        good = tool::demo(Library(library_file));
    }
    const int day = tool::station::run_example_day(library_file, data);
    return good ? day : 1;
}

int execute(const Command& command) {
    if (*command.gasdat.top) return tool::gasdat::run(command.gasdat);
    // A name without a slash would be looked for along the loader's path instead of here.
    const std::string file = kalorfix::host::library_file(
        command.library_file.empty() ? std::string()
                                     : std::filesystem::absolute(command.library_file).string());
    if (*command.demo) return run_demo(command, file);
    if (*command.gas) return run_gas(command, file);
    if (*command.verify.top) return tool::report::run(command.verify, file, gas_data(command, file));
    if (*command.run) return tool::station::run(file, gas_data(command, file), command.run_request);
    if (*command.water) {
        tool::WaterRequest request = command.water_request;
        request.saturated = command.mode == "saturated";
        tool::water(Library(file), request);
    } else if (*command.id) {
        tool::identity(Library(file));
    }
    return 0;
}

int run(int argc, char** argv) {
    CLI::App app{
        "Flow of natural gas, water and steam by differential pressure, and the\nproperties behind it."};
    Command command;
    describe(app, command);
    if (argc == 1) {
        std::fputs(app.help().c_str(), stderr);
        return bad_input;
    }
    app.require_subcommand(1);
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& asked) {
        return finish(app.exit(asked));
    } catch (const CLI::ParseError& error) {
        return complain(explain(app, error));
    }
    return finish(execute(command));
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const tool::InputError& error) {
        return complain(error.text);
    } catch (const std::exception& error) {
        return complain(error.what());
    }
}
