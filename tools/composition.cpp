#include "tools/composition.h"

#include <algorithm>

#include "tools/names.h"
#include "tools/text.h"

namespace kalorfix::tool {

GivenComposition read_composition(const std::string& file) {
    Lines lines(file, "this composition file");
    GivenComposition gas;
    std::string_view line;
    if (!lines.next_entry(line) || (line != "component,mole_percent" && line != "component,volume_fraction"))
        lines.fail("expected the heading component,mole_percent or component,volume_fraction");
    gas.volume_fractions = line.ends_with("fraction");
    const Limits limits = gas.volume_fractions ? Limits{0.0, 1.0, ""} : Limits{0.0, 100.0, "mol %"};
    std::array<bool, components.size()> seen{};
    while (lines.next_entry(line)) {
        const std::vector<std::string_view> cells = split(line, ',');
        if (cells.size() != 2) lines.fail("expected two columns, such as methane,96.5, not " + quoted(line));
        const auto* const found = std::ranges::find(components, cells[0]);
        if (found == components.end())
            lines.fail("no such component: " + quoted(cells[0]) + "; there are " + joined(components));
        const auto i = static_cast<std::size_t>(found - components.begin());
        if (seen[i]) lines.fail(std::string(cells[0]) + " stands here for the second time");
        seen[i] = true;
        const std::optional<double> share = number_within(cells[1], limits);
        if (!share) lines.fail(expected_within(cells[1], limits));
        gas.x[i] = *share;
    }
    if (std::ranges::all_of(gas.x, [](double x) { return x == 0.0; })) lines.fail("the composition is empty");
    return gas;
}

}  // namespace kalorfix::tool
