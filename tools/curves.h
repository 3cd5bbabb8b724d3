// The curves of a property table.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/range.h"

namespace kalorfix::tool {

/// What a person may ask to be drawn.
struct Drawing {
    std::string file;      ///< empty: nothing
    std::string quantity;  ///< empty: the first that the table offers
};

/// A quantity of a table as it stands at an axis.
struct Drawable {
    std::string name, label;
};

/// The value of a quantity at a state; a curve is interrupted where it is not a number and where the branch changes, as from
/// liquid to vapour.
struct Drawn {
    double value = 0.0;
    int branch = 0;
};

/// The quantity asked for. Throws InputError for one that is not offered, or for one without a file.
[[nodiscard]] std::size_t drawn_quantity(const Drawing& drawing, const std::vector<Drawable>& offered);

/// Draws over the first of temperature and pressure that is a range, a line for each value of the other; over the pressure where
/// only that leaves at most 12 lines. A pressure that is not a number does not matter and gets no legend. Throws InputError when
/// there is no range, too many lines, or the file cannot be written.
void draw_curves(const std::string& file, const std::string& title, const Drawable& quantity, const Range& t_C,
                 const Range& p_MPa, const std::function<Drawn(double t_C, double p_MPa)>& value);

}  // namespace kalorfix::tool
