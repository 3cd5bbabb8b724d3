// SPDX-License-Identifier: MIT
#include "tools/manual.h"

#include <algorithm>
#include <map>
#include <sstream>

#include "tools/text.h"

namespace kalorfix::tool {
namespace {

std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

// Text as it stands, also at the begin of a line; names, paths and options are not parted.
std::string escaped(std::string_view text) {
    static const std::map<char, std::string_view> special{{'-', "\\-"},   {'\\', "\\e"},  {'\'', "\\(aq"},
                                                          {'`', "\\(ga"}, {'^', "\\(ha"}, {'~', "\\(ti"}};
    std::string all = text.starts_with('.') ? "\\&" : "";
    for (std::size_t k = 0; k < text.size(); ++k) {
        const std::string_view word = text.substr(k, text.find(' ', k) - k);
        if ((k == 0 || text[k - 1] == ' ') && (word.find_first_of("_/") != word.npos || word.starts_with("--")))
            all += "\\%";
        const auto found = special.find(text[k]);
        all += found == special.end() ? text.substr(k, 1) : found->second;
    }
    return all;
}

std::string bold(std::string_view text) { return cat("\\fB", escaped(text), "\\fR"); }
std::string italic(std::string_view text) { return text.empty() ? "" : cat("\\fI", escaped(text), "\\fR"); }

bool is_positional(const Option& option) { return !option.name.starts_with('-'); }

// A line of an example, gone on behind "\" where the page would be too narrow for it.
std::string example_line(std::string_view line) {
    constexpr std::size_t widest = 70;
    std::string all;
    while (line.size() > widest) {
        const std::size_t blank = line.rfind(' ', widest - 2);
        if (blank == std::string_view::npos || blank < widest / 2) break;
        all += cat(escaped(line.substr(0, blank)), " \\e\n      ");
        line.remove_prefix(blank + 1);
    }
    return cat(all, escaped(line), "\n");
}

// What a help says in lines: paragraphs; behind two blanks "word  meaning", gone on further to the right, or else an example.
std::string filled(const std::string& help) {
    enum class In { nothing, paragraph, list, example } in = In::nothing;
    std::string all;
    const auto enter = [&](In next, std::string_view opening) {
        if (in == In::example && next != in) all += ".EE\n";
        if (next != in || next == In::list) all += opening;
        in = next;
    };
    for (const std::string& line : lines_of(help)) {
        const std::size_t indent = std::min(line.find_first_not_of(' '), line.size());
        const std::size_t gap = line.find("  ", indent);
        if (indent == line.size()) {
            enter(In::nothing, "");
        } else if (indent == 2 && gap != std::string_view::npos) {
            enter(In::list, cat(".TP\n", bold(line.substr(indent, gap - indent)), "\n"));
            all += cat(escaped(trimmed(std::string_view(line).substr(gap))), "\n");
        } else if (indent > 2 && in == In::list) {
            all += cat(escaped(trimmed(line)), "\n");
        } else if (indent >= 2) {
            enter(In::example, ".PP\n.EX\n");
            all += example_line(std::string_view(line).substr(2));
        } else {
            enter(In::paragraph, ".PP\n");
            all += cat(escaped(line), "\n");
        }
    }
    enter(In::nothing, "");
    return all;
}

// What stands for an argument: its value, or its own name.
std::string argument(const Option& option) {
    return italic(trimmed(option.value).empty() ? option.name : option.value);
}

std::string options(const std::vector<Option>& described) {
    std::string all;
    for (const Option& option : described) {
        if (option.what.empty()) continue;
        all += ".TP\n";
        if (is_positional(option))
            all += argument(option);
        else
            all += cat(joined(split(option.name, ','), bold), option.value.empty() ? "" : " ",
                       italic(option.value));
        all += "\n";
        for (const std::string& line : lines_of(option.what)) all += cat(escaped(trimmed(line)), "\n");
    }
    return all;
}

std::string section(const Command& command, const std::string& name) {
    std::string all = cat(".SS ", escaped(name), "\n");
    for (const std::string& line : lines_of(command.what)) all += cat(escaped(line), "\n");
    all += options(command.options) + filled(command.notes);
    for (const Command& below : command.commands) all += section(below, cat(name, " ", below.name));
    return all;
}

// A line for each command that has none below it.
std::string synopsis(const Command& command, const std::string& name) {
    std::string all;
    for (const Command& below : command.commands) all += synopsis(below, cat(name, " ", below.name));
    if (!command.commands.empty()) return all;
    all = bold(name);
    bool others = false;
    for (const Option& option : command.options) {
        const bool bracketed = option.required || option.value.starts_with('[');
        if (is_positional(option))
            all += bracketed ? cat(" ", argument(option)) : cat(" [", argument(option), "]");
        else if (option.required)
            all += cat(" ", bold(split(option.name, ',').back()), " ", italic(option.value));
        else
            others = others || !option.what.empty();
    }
    return cat(all, others ? " [\\fIoptions\\fR]" : "", "\n.br\n");
}

}  // namespace

std::string manual_page(const Command& program, const std::string& template_file) {
    const std::optional<std::string> page = content_of(template_file);
    if (!page) throw InputError(template_file, ": ", why_unreadable(template_file));
    std::vector<std::string> missing;
    for (const Command& command : program.commands) missing.push_back(command.name);
    std::string all;
    int number = 0;
    for (const std::string& line : lines_of(*page)) {
        ++number;
        if (line.size() < 3 || !line.starts_with('@') || !line.ends_with('@')) {
            all += cat(line, "\n");
            continue;
        }
        const std::string word = line.substr(1, line.size() - 2);
        const auto command = std::ranges::find(program.commands, word, &Command::name);
        if (word == "SYNOPSIS")
            all += synopsis(program, program.name);
        else if (word == "OPTIONS")
            all += options(program.options);
        else if (command != program.commands.end())
            all += section(*command, command->name);
        else
            throw InputError(template_file, ":", number, ": no such command: ", word);
        std::erase(missing, word);
    }
    if (!missing.empty()) throw InputError(template_file, ": lacks ", joined(missing));
    return all;
}

}  // namespace kalorfix::tool
