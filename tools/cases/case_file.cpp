// SPDX-License-Identifier: MIT
#include "tools/cases/case_file.h"

#include <algorithm>
#include <array>

#include "tools/names.h"
#include "tools/text.h"

namespace kalorfix::cases {
namespace {

using tool::words;

// Statuses, and the gas phase of the equations of flow; the other words are those of devices and phases.
constexpr std::pair<std::string_view, double> own_words[] = {{"computed", 1.0}, {"refused", 0.0}, {"gas", 0.0}};

class Reader {
public:
    Reader(std::istream& in, const std::string& name) : lines_(in, name) {}

    std::vector<Table> read() {
        for (std::string_view line; lines_.next(line);) take(tool::trimmed(line.substr(0, line.find('#'))));
        if (!tables_.empty()) check_complete();
        return std::move(tables_);
    }

private:
    using Assignments = std::vector<std::pair<std::string, std::string_view>>;

    void take(std::string_view text) {
        if (text.empty()) return;
        const std::string_view first = words(text).front();
        if (first.front() == '[')
            start_table(first);
        else if (tables_.empty())
            lines_.fail("a table must begin with [function]");
        else if (first.back() == ':')
            setting(first, tool::trimmed(text.substr(first.size())));
        else
            row(words(text));
    }

    void check_complete() const {
        const Table& table = tables_.back();
        if (table.source.empty()) lines_.fail("the table of " + table.function + " names no source");
        if (table.cases.empty()) lines_.fail("the table of " + table.function + " has no rows");
    }

    void start_table(std::string_view header) {
        if (!tables_.empty()) check_complete();
        if (header.size() < 3 || header.back() != ']') lines_.fail("expected [function], found ", header);
        tables_.push_back({std::string(header.substr(1, header.size() - 2)), {}, {}, {}, line()});
        settings_ = {};
    }

    void setting(std::string_view key, std::string_view text) {
        if (key == "source:")
            tables_.back().source = text;
        else if (key == "note:")
            tables_.back().notes.emplace_back(text);
        else if (key == "origin:")
            origin(text);
        else if (key == "fixed:")
            for (const auto& [name, number] : assignments(text)) settings_.fixed[name] = value_of(number);
        else if (key == "tolerance:")
            for (const auto& [name, number] : assignments(text))
                settings_.tolerances[name] = tolerance_of(number);
        else if (key == "deviation:")
            deviation(text);
        else if (key == "columns:")
            columns(words(text));
        else
            lines_.fail("unknown setting ", key);
    }

    void origin(std::string_view text) {
        for (const std::string_view token : words(text))
            if (const std::size_t equals = token.find('='); equals == std::string_view::npos)
                settings_.origin = origin_of(token);
            else
                settings_.origins[std::string(token.substr(0, equals))] = origin_of(token.substr(equals + 1));
    }

    [[nodiscard]] Origin origin_of(std::string_view word) const {
        constexpr std::array<std::string_view, 4> origins{"printed", "program", "own", "limit"};
        const auto* const found = std::ranges::find(origins, word);
        if (found == origins.end())
            lines_.fail("origin: there are printed, program, own and limit, not ", word);
        return static_cast<Origin>(found - origins.begin());
    }

    void deviation(std::string_view text) {
        const std::size_t space = text.find(' ');
        if (space == std::string_view::npos) lines_.fail("expected name=bound and a reason, found ", text);
        for (const auto& [name, bound] : assignments(text.substr(0, space)))
            settings_.deviations[name] = {tolerance_of(bound), std::string(tool::trimmed(text.substr(space)))};
    }

    [[nodiscard]] Assignments assignments(std::string_view text) const {
        Assignments found;
        for (const std::string_view token : words(text)) {
            const std::size_t equals = token.find('=');
            if (equals == std::string_view::npos) lines_.fail("expected name=value, found ", token);
            found.emplace_back(token.substr(0, equals), token.substr(equals + 1));
        }
        return found;
    }

    void columns(const std::vector<std::string_view>& tokens) {
        if (tokens.empty() || tokens[0] != "case") lines_.fail("the first column must be: case");
        const auto arrow = std::ranges::find(tokens, "->");
        if (arrow == tokens.end() || arrow + 1 == tokens.end()) lines_.fail("no column behind ->");
        settings_.inputs.assign(tokens.begin() + 1, arrow);
        settings_.outputs.assign(arrow + 1, tokens.end());
    }

    void row(const std::vector<std::string_view>& tokens) {
        const auto& [inputs, outputs, fixed, tolerances, deviations, origin, origins] = settings_;
        if (outputs.empty()) lines_.fail("a row before its columns");
        if (tokens.size() != 1 + inputs.size() + outputs.size())
            lines_.fail(
                tool::cat("expected ", 1 + inputs.size() + outputs.size(), " columns, found ", tokens.size()));
        Case result{std::string(tokens[0]), line(), fixed, {}};
        for (std::size_t k = 0; k < inputs.size(); ++k) result.inputs[inputs[k]] = value_of(tokens[1 + k]);
        for (std::size_t k = 0; k < outputs.size(); ++k)
            if (const std::string_view token = tokens[1 + inputs.size() + k]; token != "-")
                result.expected.push_back(expected_of(outputs[k], token));
        tables_.back().cases.push_back(std::move(result));
    }

    [[nodiscard]] Expected expected_of(const std::string& column, std::string_view token) const {
        const std::size_t tilde = token.find('~');
        Expected expected{column, 0.0, std::string(token.substr(0, tilde)), {}, {}, settings_.origin};
        expected.value = value_of(expected.text);
        if (tilde != std::string_view::npos)
            expected.tolerance = tolerance_of(token.substr(tilde + 1));
        else if (const auto found = settings_.tolerances.find(column); found != settings_.tolerances.end())
            expected.tolerance = found->second;
        if (const auto found = settings_.deviations.find(column); found != settings_.deviations.end())
            expected.declared = found->second;
        if (const auto found = settings_.origins.find(column); found != settings_.origins.end())
            expected.origin = found->second;
        return expected;
    }

    [[nodiscard]] double value_of(std::string_view text) const {
        const std::optional<double> value = parse_value(text);
        if (!value) lines_.fail("not a number or a known word: ", text);
        return *value;
    }

    [[nodiscard]] Tolerance tolerance_of(std::string_view text) const {
        Tolerance tolerance;
        for (const std::string_view part : tool::split(text, ',')) {
            const bool relative = part.starts_with('r');
            (relative ? tolerance.relative : tolerance.absolute) = value_of(part.substr(relative ? 1 : 0));
        }
        return tolerance;
    }

    [[nodiscard]] int line() const { return static_cast<int>(lines_.number()); }

    tool::Lines lines_;
    std::vector<Table> tables_;
    struct {
        std::vector<std::string> inputs, outputs;
        Values fixed;
        std::map<std::string, Tolerance> tolerances;
        std::map<std::string, Deviation> deviations;
        Origin origin = Origin::not_stated;
        std::map<std::string, Origin> origins;
    } settings_;  // of the table at hand
};

}  // namespace

std::optional<double> parse_value(std::string_view text) {
    for (const auto& [word, value] : own_words)
        if (word == text) return value;
    for (const auto* phase = tool::phases.begin(); phase != tool::phases.end(); ++phase)
        if (phase->case_word == text) return phase - tool::phases.begin();
    std::string word(text);
    std::ranges::replace(word, '-', '_');
    if (const auto* device = std::ranges::find(tool::devices, word, &tool::Device::word);
        device != tool::devices.end())
        return device - tool::devices.begin() + 1;
    return tool::parse<double>(text);
}

std::vector<Table> read_tables(std::istream& in, const std::string& name) { return Reader(in, name).read(); }

}  // namespace kalorfix::cases
