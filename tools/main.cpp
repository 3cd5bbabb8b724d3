// The command-line tool: it opens kalorfix.so as a host does.
#include <CLI/CLI.hpp>

#include <fmt/format.h>

#include <cstdio>
#include <string>
#include <vector>

#include "tools/demo.h"
#include "tools/identity.h"
#include "tools/range.h"
#include "tools/water.h"

namespace tool = kalorfix::tool;
using kalorfix::host::Library;

namespace {

constexpr int bad_input = 2;

int complain(const std::string& what) {
    std::fflush(stdout);
    fmt::print(stderr, "kalorfix: {}\n", what.substr(0, what.find('\n')));
    return bad_input;
}

int run(int argc, char** argv) {
    CLI::App app{
        "Flow of natural gas, water and steam by differential pressure, and the properties behind it."};
    app.name("kalorfix");
    std::string library_file;
    app.add_option("--lib", library_file, "library to open (default: kalorfix.so beside this program)");
    app.set_version_flag("--version", "kalorfix " KALORFIX_VERSION);

    CLI::App* const demo = app.add_subcommand(
        "demo", "a steam and a water channel on built-in input: every step with its status and results");

    tool::WaterRequest request;
    std::string mode = "state";
    CLI::App* const water = app.add_subcommand(
        "water", "density (kg/m3), viscosity (uPa s), enthalpy (kJ/kg), isentropic exponent and phase");
    water->add_option("--t", request.t, "temperature, 0..800 degC: a number or start:stop:step")->required();
    water->add_option("--p", request.p, "absolute pressure, 0..100 MPa: a number or start:stop:step");
    water->add_option("--mode", mode, "state, or saturated: saturated vapour at t, 0..371.85 degC, without --p")
        ->check(CLI::IsMember({"state", "saturated"}))
        ->capture_default_str();
    water->add_option("--dp", request.dp_MPa, "tolerance of the phase decision, MPa")->capture_default_str();
    water->add_flag("--csv", request.csv, "comma-separated values with units in the column names");

    CLI::App* const id =
        app.add_subcommand("id", "version, build, digests of library and gas data, directories");

    if (argc == 1) {
        fmt::print(stderr, "{}", app.help());
        return bad_input;
    }
    app.require_subcommand(1);
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& help) {
        return app.exit(help);
    } catch (const CLI::ParseError& error) {
        const std::vector<std::string> unknown = app.remaining();
        if (app.get_subcommands().empty() && !unknown.empty())
            return complain(fmt::format("{}: no such command; there are demo, water and id", unknown.front()));
        return complain(error.what());
    }

    int result = 0;
    if (*demo) {
        const tool::DemoRuntime runtime;
        const Library library(library_file);
        result = tool::demo(library) ? 0 : 1;
    } else if (*water) {
        request.saturated = mode == "saturated";
        tool::water(Library(library_file), request);
    } else if (*id) {
        tool::identity(Library(library_file));
    }
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) return complain("cannot write the output");
    return result;
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
