// Commands and options described without the parser, which one file alone includes.
#pragma once

#include <functional>
#include <string>
#include <variant>
#include <vector>

namespace kalorfix::tool {

struct Option {
    std::string name;   ///< "--t", "-o,--output", or STATION for an argument without a name of its own
    std::string value;  ///< what stands for the value in the help; nothing for a switch
    std::string what;   ///< a line of the help, or several
    std::variant<std::string*, bool*> target;
    bool required = false;
};

/// The files that a command works with.
struct Installation {
    std::string library;
    std::string gas_data;  ///< empty when there is none
};

struct Command {
    std::string name, what;
    std::string notes;  ///< what the help says behind the options
    std::vector<Option> options{};
    std::vector<Command> commands{};
    std::function<int(const Installation&)> run{};  ///< returns the exit status; may throw InputError
    bool takes_general_options = true;
};

/// The command that the arguments ask for, its targets filled. Null when help or version were asked for and printed, or when the
/// help went to standard error because there was no argument; then `status` is the exit status. Throws InputError.
[[nodiscard]] const Command* chosen_command(const Command& program, const std::string& version, int argc,
                                            char** argv, int& status);

}  // namespace kalorfix::tool
