#include "tools/command_line.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>

#include "tools/text.h"

namespace kalorfix::tool {
namespace {

void describe(CLI::App& app, const Command& command) {
    for (const Option& option : command.options) {
        CLI::Option* added = nullptr;
        if (std::holds_alternative<bool*>(option.target))
            added = app.add_flag(option.name, *std::get<bool*>(option.target), option.what);
        else
            added = app.add_option(option.name, *std::get<std::string*>(option.target), option.what)
                        ->option_text(option.value);
        added->required(option.required);
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

// What the parser found, in words that name the argument.
std::string explain(const CLI::App& app, const Command& program, const CLI::ParseError& error) {
    const std::string text = error.what();
    const std::vector<CLI::App*> chosen = app.get_subcommands();
    const std::vector<std::string> unknown = app.remaining(true);
    const std::string help =
        "; see kalorfix " + (chosen.empty() ? "" : chosen.front()->get_name() + " ") + "--help";
    if (!unknown.empty()) {
        const std::string& first = unknown.front();
        if (first.starts_with("-")) return first + ": no such option" + help;
        if (chosen.empty()) return first + ": no such command; there are " + names_of(program.commands);
        return first + ": nothing expected here" + help;
    }
    if (chosen.empty() && dynamic_cast<const CLI::RequiredError*>(&error))
        return "a command is missing; there are " + names_of(program.commands);
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error))
        return text.substr(0, text.find(':')) + ": takes one value, given once" + help;
    return text;
}

}  // namespace

const Command* chosen_command(const Command& program, const std::string& version, int argc, char** argv,
                              int& status) {
    constexpr std::size_t option_column = 20;
    CLI::App app{program.what, program.name};
    app.get_formatter()->column_width(option_column);
    describe(app, program);
    app.set_version_flag("--version", version, "Print the version and exit");
    if (argc == 1) {
        std::fputs(app.help().c_str(), stderr);
        return nullptr;
    }
    app.require_subcommand(1);
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& asked) {
        status = app.exit(asked);
        return nullptr;
    } catch (const CLI::ParseError& error) {
        throw InputError(explain(app, program, error));
    }
    const Command* found = &program;
    for (const CLI::App* at = &app; !found->commands.empty();) {
        at = at->get_subcommands().front();
        found = &*std::ranges::find(found->commands, at->get_name(), &Command::name);
    }
    return found;
}

}  // namespace kalorfix::tool
