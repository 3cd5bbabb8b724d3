// SPDX-License-Identifier: MIT
// The command-line tool: it opens kalorfix.so as a host does.
#include <fmt/format.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <sstream>
#include <system_error>

#include "tools/closest.h"
#include "tools/commands.h"
#include "tools/host.h"
#include "tools/manual.h"
#include "tools/output_file.h"
#include "tools/station/station_keys.h"
#include "tools/text.h"

namespace kalorfix::tool {
namespace {

// An option without its value, as from an unset variable of a script, is not an option left out.
std::string not_empty(const std::string& value) { return value.empty() ? "needs a value, not ''" : ""; }

void describe(CLI::App& app, const Command& command) {
    for (const Option& option : command.options) {
        CLI::Option* added = nullptr;
        if (std::holds_alternative<bool*>(option.target))
            added = app.add_flag(option.name, *std::get<bool*>(option.target), option.what);
        else
            added = app.add_option(option.name, *std::get<std::string*>(option.target), option.what)
                        ->option_text(option.value)
                        ->check(not_empty);
        added->required(option.required);
        if (option.what.empty()) added->group("");  // not in the help
    }
    app.footer(command.notes);
    for (const Command& one : command.commands) {
        CLI::App* const below = app.add_subcommand(one.name, one.what);
        below->fallthrough(one.takes_general_options && command.takes_general_options);
        describe(*below, one);
    }
    if (!command.commands.empty() && app.get_parent()) app.require_subcommand(1);
}

std::string names_of(const std::vector<Command>& commands) {
    std::string names;
    for (const Command& one : commands)
        names += (names.empty() ? "" : &one == &commands.back() ? " and " : ", ") + one.name;
    return names;
}

std::vector<std::string> command_names(const std::vector<Command>& commands) {
    std::vector<std::string> names;
    for (const Command& one : commands) names.push_back(one.name);
    return names;
}

std::vector<std::string> options_of(const Command& command) {
    std::vector<std::string> names;
    for (const Option& option : command.options)
        for (const std::string_view name : split(option.name, ','))
            if (name.starts_with("--")) names.emplace_back(name);
    return names;
}

// What the parser found, in words that name the argument.
std::string explain(const CLI::App& app, const Command& program, const CLI::ParseError& error) {
    const std::string text = error.what();
    const std::vector<CLI::App*> chosen = app.get_subcommands();
    const std::vector<std::string> unknown = app.remaining(true);
    const std::string help =
        "; see kalorfix " + (chosen.empty() ? "" : chosen.front()->get_name() + " ") + "--help";
    if (!unknown.empty()) {
        const std::string& first = unknown.front();
        const CLI::App* at = &app;
        const Command* command = &program;
        for (std::vector<CLI::App*> below = chosen; !below.empty(); below = at->get_subcommands()) {
            at = below.front();
            command = &*std::ranges::find(command->commands, at->get_name(), &Command::name);
        }
        if (first.starts_with("-")) {
            std::vector<std::string> options = options_of(*command);
            for (const std::string& general : options_of(program)) options.push_back(general);
            return first + ": no such option" + did_you_mean(first, options) + help;
        }
        if (chosen.empty() || !command->commands.empty())
            return first + ": no such command" + did_you_mean(first, command_names(command->commands)) +
                   "; there are " + names_of(command->commands);
        return first + ": nothing expected here" + help;
    }
    if (chosen.empty() && dynamic_cast<const CLI::RequiredError*>(&error))
        return "a command is missing; there are " + names_of(program.commands);
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error))
        return text.substr(0, text.find(':')) + ": takes one value, given once" + help;
    return text;
}

constexpr int bad_input = 2;

// One line whatever the user typed, and no failure of its own when nobody listens to standard error.
int complain(const std::string& what) {
    std::fprintf(stderr, "kalorfix: %s\n", printable(what).c_str());
    return bad_input;
}

// As if the signal had ended the program, but with its temporary files removed.
constexpr int closed_pipe = 128 + SIGPIPE;

// Output may fail as late as here, on a full disk for one.
int finish(int status) {
    errno = 0;
    if (std::fflush(stdout) != 0 || std::ferror(stdout))
        return errno == EPIPE ? closed_pipe : complain("cannot write the output");
    return status;
}

Command program(std::string& library, std::string& gas_data) {
    return {"kalorfix",
            "Flow of natural gas, water and steam by differential pressure, and the\nproperties behind it.",
            "kalorfix COMMAND --help states units and limits.",
            {{"--lib", "FILE",
              "library to open (default: kalorfix.so beside this program or\n"
              "in ../lib or ../lib/<triplet>, else where the system finds it)",
              &library},
             {"--gas-data", "FILE",
              "gas data file (default: gas.dat beside the library\nor in ../share/kalorfix)", &gas_data}},
            {demo_command(), water_command(), gas_command(), gasdat_command(), verify_command(), run_command(),
             calc_command(), check_command(), uncertainty_command(), audit_command(), protocol_command(),
             materials_command(), id_command()}};
}

// The help of the program, of a command, or of a key of a station file.
int help(const CLI::App& app, const std::string& overview, const Command& all, const std::string& word) {
    if (word.empty()) {
        fmt::print("{}", overview);
    } else if (std::ranges::find(all.commands, word, &Command::name) != all.commands.end()) {
        fmt::print("{}", app.get_subcommand(word)->help(all.name));
    } else if (const std::string key = station::key_help(word); !key.empty()) {
        fmt::print("{}", key);
    } else {
        std::vector<std::string> known = station::key_names();
        for (const std::string& name : command_names(all.commands)) known.insert(known.begin(), name);
        throw InputError(word, ": no such command and no such key of a station file", did_you_mean(word, known),
                         "; see kalorfix help");
    }
    return 0;
}

int run(int argc, char** argv) {
    constexpr std::size_t option_column = 20;
    std::string library, gas_data;
    std::string word, page, overview;
    Command all = program(library, gas_data);
    CLI::App app{all.what, all.name};
    all.commands.push_back({.name = "help",
                            .what = "The help of a command, or of a key of a station file.",
                            .notes = "",
                            .options = {{"WORD", "[WORD]", "command, or key such as D20_mm", &word},
                                        {"--man", "TEMPLATE", "", &page}},
                            .run = [&](const Installation&) {
                                if (page.empty()) return help(app, overview, all, word);
                                fmt::print("{}", manual_page(all, page));
                                return 0;
                            }});
    app.get_formatter()->column_width(option_column);
    describe(app, all);
    app.set_version_flag("--version", "kalorfix " KALORFIX_VERSION, "Print the version and exit");
    overview = app.help();  // once a command is chosen, the parser's help is that of the command
    if (argc == 1) {
        std::fputs(overview.c_str(), stderr);
        return bad_input;
    }
    app.require_subcommand(1);
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& asked) {
        std::ostringstream text;
        const int status = app.exit(asked, text, text);
        fmt::print("{}", text.str());
        return finish(status);
    } catch (const CLI::ParseError& error) {
        return complain(explain(app, all, error));
    }
    const Command* command = &all;
    for (const CLI::App* at = &app; !command->commands.empty();) {
        at = at->get_subcommands().front();
        command = &*std::ranges::find(command->commands, at->get_name(), &Command::name);
    }
    // A name without a slash would be looked for along the loader's path instead of here.
    if (!library.empty()) library = std::filesystem::absolute(library).string();
    library = host::library_file(library);
    if (gas_data.empty()) gas_data = host::gas_data_of(library);
    return finish(command->run({library, gas_data}));
}

}  // namespace
}  // namespace kalorfix::tool

int main(int argc, char** argv) {
    std::signal(SIGPIPE, SIG_IGN);
    try {
        return kalorfix::tool::run(argc, argv);
    } catch (const kalorfix::tool::ClosedPipe&) {
        return kalorfix::tool::closed_pipe;
    } catch (const std::system_error& error) {
        // Printing to a pipe that nobody reads.
        return error.code().value() == EPIPE ? kalorfix::tool::closed_pipe
                                             : kalorfix::tool::complain(error.what());
    } catch (const std::exception& error) {
        return kalorfix::tool::complain(error.what());
    }
}
