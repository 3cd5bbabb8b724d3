#include "tools/cases/case_file.h"

#include <charconv>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <string_view>

namespace kalorfix::cases {
namespace {

// The words that stand for numbers in statuses, phases and selectors.
const std::map<std::string, double, std::less<>> words{
    {"computed", 1.0},
    {"refused", 0.0},
    {"undecided", 0.0},
    {"water", 1.0},
    {"steam", 2.0},
    {"wet", 3.0},
    {"gas", 0.0},
    {"orifice-corner", 1.0},
    {"orifice-d-d2", 2.0},
    {"orifice-flange", 3.0},
    {"nozzle-isa1932", 4.0},
    {"nozzle-long-radius", 5.0},
    {"venturi-nozzle", 6.0},
    {"venturi-cast", 7.0},
    {"venturi-machined", 8.0},
    {"venturi-welded", 9.0},
};

class Reader {
public:
    explicit Reader(std::string name) : name_(std::move(name)) {}

    void line(const std::string& text) {
        ++line_;
        const std::string body = text.substr(0, text.find('#'));
        std::istringstream words_in(body);
        std::string first;
        if (!(words_in >> first)) return;
        if (first.front() == '[')
            start_table(first);
        else if (tables_.empty())
            fail("a table must begin with [function]");
        else if (first.back() == ':')
            setting(first, body.substr(body.find(':') + 1));
        else
            row(body);
    }

    std::vector<Table> finish() {
        if (!tables_.empty()) check_complete();
        return std::move(tables_);
    }

private:
    [[noreturn]] void fail(const std::string& what) const {
        throw std::runtime_error(name_ + ":" + std::to_string(line_) + ": " + what);
    }

    static std::vector<std::string> split(const std::string& text) {
        std::istringstream in(text);
        std::vector<std::string> tokens;
        for (std::string token; in >> token;) tokens.push_back(token);
        return tokens;
    }

    void check_complete() const {
        const Table& table = tables_.back();
        if (table.source.empty()) fail("the table of " + table.function + " names no source");
        if (table.cases.empty()) fail("the table of " + table.function + " has no rows");
    }

    void start_table(const std::string& header) {
        if (!tables_.empty()) check_complete();
        if (header.size() < 3 || header.back() != ']') fail("expected [function], found " + header);
        tables_.push_back({header.substr(1, header.size() - 2), {}, {}, {}, line_});
        inputs_.clear();
        outputs_.clear();
        fixed_.clear();
        tolerances_.clear();
        deviations_.clear();
    }

    void setting(const std::string& key, const std::string& value) {
        const std::size_t begin = value.find_first_not_of(" \t");
        const std::string text = begin == std::string::npos
                                     ? std::string()
                                     : value.substr(begin, value.find_last_not_of(" \t") + 1 - begin);
        if (key == "source:")
            tables_.back().source = text;
        else if (key == "note:")
            tables_.back().notes.push_back(text);
        else if (key == "fixed:")
            for (const auto& [name, number] : assignments(text)) fixed_[name] = value_of(number);
        else if (key == "tolerance:")
            for (const auto& [name, number] : assignments(text)) tolerances_[name] = tolerance_of(number);
        else if (key == "deviation:")
            deviation(text);
        else if (key == "columns:")
            columns(split(text));
        else
            fail("unknown setting " + key);
    }

    void deviation(const std::string& text) {
        const std::size_t space = text.find(' ');
        if (space == std::string::npos) fail("expected name=bound and a reason, found " + text);
        for (const auto& [name, bound] : assignments(text.substr(0, space)))
            deviations_[name] = {tolerance_of(bound), text.substr(text.find_first_not_of(' ', space))};
    }

    std::map<std::string, std::string> assignments(const std::string& text) const {
        std::map<std::string, std::string> found;
        for (const std::string& token : split(text)) {
            const std::size_t equals = token.find('=');
            if (equals == std::string::npos) fail("expected name=value, found " + token);
            found[token.substr(0, equals)] = token.substr(equals + 1);
        }
        return found;
    }

    void columns(const std::vector<std::string>& tokens) {
        inputs_.clear();
        outputs_.clear();
        bool behind_arrow = false;
        for (std::size_t k = 0; k < tokens.size(); ++k) {
            if (k == 0) {
                if (tokens[k] != "case") fail("the first column must be: case");
            } else if (tokens[k] == "->") {
                behind_arrow = true;
            } else {
                (behind_arrow ? outputs_ : inputs_).push_back(tokens[k]);
            }
        }
        if (outputs_.empty()) fail("no column behind ->");
    }

    void row(const std::string& body) {
        if (outputs_.empty()) fail("a row before its columns");
        const std::vector<std::string> tokens = split(body);
        if (tokens.size() != 1 + inputs_.size() + outputs_.size())
            fail("expected " + std::to_string(1 + inputs_.size() + outputs_.size()) + " columns, found " +
                 std::to_string(tokens.size()));
        Case result{tokens[0], line_, fixed_, {}};
        for (std::size_t k = 0; k < inputs_.size(); ++k) result.inputs[inputs_[k]] = value_of(tokens[1 + k]);
        for (std::size_t k = 0; k < outputs_.size(); ++k) {
            const std::string& token = tokens[1 + inputs_.size() + k];
            if (token != "-") result.expected.push_back(expected_of(outputs_[k], token));
        }
        tables_.back().cases.push_back(std::move(result));
    }

    Expected expected_of(const std::string& column, const std::string& token) const {
        const std::size_t tilde = token.find('~');
        Expected expected{column, 0.0, token.substr(0, tilde), {}, {}};
        expected.value = value_of(expected.text);
        if (tilde != std::string::npos)
            expected.tolerance = tolerance_of(token.substr(tilde + 1));
        else if (const auto found = tolerances_.find(column); found != tolerances_.end())
            expected.tolerance = found->second;
        if (const auto found = deviations_.find(column); found != deviations_.end())
            expected.declared = found->second;
        return expected;
    }

    double value_of(const std::string& text) const {
        const std::optional<double> value = parse_value(text);
        if (!value) fail("not a number or a known word: " + text);
        return *value;
    }

    Tolerance tolerance_of(const std::string& text) const {
        Tolerance tolerance;
        std::istringstream parts(text);
        for (std::string part; std::getline(parts, part, ',');) {
            const bool relative = !part.empty() && part.front() == 'r';
            (relative ? tolerance.relative : tolerance.absolute) = value_of(relative ? part.substr(1) : part);
        }
        return tolerance;
    }

    std::string name_;
    int line_ = 0;
    std::vector<Table> tables_;
    std::vector<std::string> inputs_, outputs_;
    Values fixed_;
    std::map<std::string, Tolerance> tolerances_;
    std::map<std::string, Deviation> deviations_;
};

}  // namespace

std::optional<double> parse_value(const std::string& text) {
    if (const auto word = words.find(text); word != words.end()) return word->second;
    double value = 0.0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end || text.empty()) return std::nullopt;
    return value;
}

std::vector<Table> read_tables(std::istream& in, const std::string& name) {
    Reader reader(name);
    for (std::string text; std::getline(in, text);) reader.line(text);
    return reader.finish();
}

}  // namespace kalorfix::cases
