#include "tools/composition.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "tools/closest.h"
#include "tools/names.h"
#include "tools/spreadsheet.h"
#include "tools/text.h"

namespace kalorfix::tool {

namespace {

// Small letters and digits alone; letters of the Cyrillic alphabet that look like those of formulas become these.
std::string bare(std::string_view name) {
    constexpr std::pair<std::string_view, char> alike[] = {{"\u0421", 'c'}, {"\u0441", 'c'}, {"\u041E", 'o'},
                                                           {"\u043E", 'o'}, {"\u041D", 'h'}, {"\u0435", 'e'}};
    std::string text(name);
    for (const auto& [cyrillic, latin] : alike)
        for (std::size_t at = 0; (at = text.find(cyrillic)) != std::string::npos;)
            text.replace(at, cyrillic.size(), 1, latin);
    std::erase_if(text, [](char c) { return c == '-' || c == '_' || c == ' '; });
    std::ranges::transform(text, text.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

// Other names that are in use.
constexpr std::pair<std::string_view, std::size_t> other_names[] = {
    {"isobutane", 4}, {"isopentane", 6}, {"hexane", 7},  {"nhexane", 7},         {"heptane", 8},
    {"nheptane", 8},  {"octane", 9},     {"noctane", 9}, {"hydrogensulfide", 12}};

std::size_t find_component(const Lines& lines, std::string_view name) {
    const std::string wanted = bare(name);
    for (std::size_t i = 0; i < components.size(); ++i)
        if (wanted == bare(components[i]) || wanted == bare(formulas[i])) return i;
    if (wanted == "butane" || wanted == "c4h10" || wanted == "pentane" || wanted == "c5h12")
        lines.fail(name, ": the straight (n-) or the branched (i-) one? Write n-", name, " or i-", name);
    for (const auto& [other, i] : other_names)
        if (wanted == other) return i;
    lines.fail("no such component: ", quoted(name), did_you_mean(name, {components.begin(), components.end()}),
               "; there are ", joined(components), ", or their formulas");
}

}  // namespace

GivenComposition read_composition(const std::string& file) {
    // With a limit of 100 a comma before three digits never parts thousands.
    Lines lines(file, "this composition file");
    Spreadsheet sheet;
    GivenComposition gas;
    std::string_view line;
    std::vector<std::string_view> cells;
    const bool any = sheet.heading(lines, line);
    if (any) sheet.split(lines, line, cells);
    if (cells.size() != 2 || cells[0] != "component" ||
        (cells[1] != "mole_percent" && cells[1] != "volume_fraction"))
        lines.fail("expected the heading component,mole_percent or component,volume_fraction",
                   any ? ", not " + quoted(line) : "");
    gas.volume_fractions = cells[1] == "volume_fraction";
    const Limits limits = gas.volume_fractions ? Limits{0.0, 1.0, ""} : Limits{0.0, 100.0, "mol %"};
    std::array<bool, components.size()> seen{};
    while (lines.next_entry(line)) {
        sheet.split(lines, line, cells);
        while (cells.size() > 2 && cells.back().empty()) cells.pop_back();
        if (std::ranges::all_of(cells, &std::string_view::empty)) continue;
        if (cells.size() != 2)
            lines.fail("expected two columns, such as methane", std::string(1, sheet.separator()), "96.5, not ",
                       quoted(line));
        const std::size_t i = find_component(lines, cells[0]);
        if (seen[i]) lines.fail(std::string(components[i]) + " stands here for the second time");
        seen[i] = true;
        const std::optional<double> share = sheet.number(lines, cells[1]);
        if (!share || *share < limits.low || *share > limits.high)
            lines.fail(expected_within(cells[1], limits));
        gas.x[i] = *share;
    }
    if (std::ranges::all_of(gas.x, [](double x) { return x == 0.0; })) lines.fail("the composition is empty");
    return gas;
}

}  // namespace kalorfix::tool
