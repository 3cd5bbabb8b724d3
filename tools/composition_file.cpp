#include "tools/composition_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>

#include "tools/component_names.h"
#include "tools/range.h"

namespace kalorfix::tool {
namespace {

constexpr std::size_t longest_line = 200;
constexpr int most_lines = 1000;

class Reader {
public:
    explicit Reader(const std::string& file) : file_(file), in_(file) {
        if (!std::filesystem::is_regular_file(file) || !in_)
            throw InputError{fmt::format("{}: cannot read this composition file", file)};
    }

    // The next line that is not empty and no comment, without the blanks around it.
    bool next(std::string& line) {
        while (std::getline(in_, line)) {
            ++number_;
            if (line.size() > longest_line || number_ > most_lines) fail("too long for a composition");
            if (number_ == 1 && line.starts_with("\xEF\xBB\xBF")) line.erase(0, 3);
            line = trimmed(line);
            if (!line.empty() && !line.starts_with('#')) return true;
        }
        return false;
    }

    [[noreturn]] void fail(const std::string& what) const {
        throw InputError{fmt::format("{}:{}: {}", file_, number_, what)};
    }

    static std::string trimmed(std::string_view text) {
        constexpr const char* blanks = " \t\r";
        const std::size_t begin = text.find_first_not_of(blanks);
        if (begin == std::string_view::npos) return {};
        return std::string(text.substr(begin, text.find_last_not_of(blanks) - begin + 1));
    }

private:
    std::string file_;
    std::ifstream in_;
    int number_ = 0;
};

struct Cells {
    std::string first, second;
};

Cells split(const Reader& reader, const std::string& line) {
    const std::size_t comma = line.find(',');
    if (comma == std::string::npos || line.find(',', comma + 1) != std::string::npos)
        reader.fail(fmt::format("expected two columns, such as methane,96.5, not {}", line));
    return {Reader::trimmed(std::string_view(line).substr(0, comma)),
            Reader::trimmed(std::string_view(line).substr(comma + 1))};
}

double number(const Reader& reader, const std::string& text, double upper) {
    double value = 0.0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end || !(value >= 0.0 && value <= upper))
        reader.fail(fmt::format("expected a number from 0 to {}, not '{}'", upper, text));
    return value;
}

std::string all_names() {
    std::string names;
    for (const std::string_view name : component_names)
        names += (names.empty() ? "" : ", ") + std::string(name);
    return names;
}

}  // namespace

GivenComposition read_composition(const std::string& file) {
    Reader reader(file);
    GivenComposition gas;
    std::string line;
    const bool begun = reader.next(line);
    const std::string heading = begun ? line : std::string();
    if (heading != "component,mole_percent" && heading != "component,volume_fraction")
        reader.fail("expected the heading component,mole_percent or component,volume_fraction");
    gas.volume_fractions = heading.ends_with("fraction");
    std::array<bool, component_names.size()> seen{};
    while (reader.next(line)) {
        const Cells cells = split(reader, line);
        const auto found = std::find(component_names.begin(), component_names.end(), cells.first);
        if (found == component_names.end())
            reader.fail("no such component: " + cells.first + "; there are " + all_names());
        const auto i = static_cast<std::size_t>(found - component_names.begin());
        if (seen[i]) reader.fail(fmt::format("{} stands here for the second time", cells.first));
        seen[i] = true;
        gas.x[i] = number(reader, cells.second, gas.volume_fractions ? 1.0 : 100.0);
    }
    if (std::all_of(gas.x.begin(), gas.x.end(), [](double x) { return x == 0.0; }))
        reader.fail("the composition is empty");
    return gas;
}

}  // namespace kalorfix::tool
