// SPDX-License-Identifier: MIT
// What the property commands share: a grid of temperatures and pressures, and its quantities as curves.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/commands.h"
#include "tools/text.h"

namespace kalorfix::tool {

struct StateRequest {
    std::string t, p;  ///< degC and MPa, number or range
    bool csv = false;
    std::string svg_file;  ///< empty: nothing is drawn
    std::string quantity;  ///< to be drawn; empty: the first that the command offers
};

/// The options --csv, --svg and --quantity; `quantities` are those that it offers.
[[nodiscard]] std::vector<Option> output_options(StateRequest& request, const std::string& quantities);

/// start, start + step, ... up to stop; a single number has one value.
struct Range {
    double start = 0.0;
    double step = 0.0;
    std::size_t count = 1;
    double end = 0.0;  ///< the last of several values

    // The last value is kept: counted up it may miss the stop, and then a limit, by a rounding error.
    double operator[](std::size_t k) const {
        return count > 1 && k + 1 == count ? end : start + static_cast<double>(k) * step;
    }
    [[nodiscard]] double last() const { return (*this)[count - 1]; }
};

inline constexpr std::size_t max_rows = 1'000'000;

/// Reads "number" or "start:stop:step" with every value within limits, without their ends if these are excluded. Throws
/// InputError naming the option.
[[nodiscard]] Range parse_range(std::string_view option, const std::string& text, const Limits& limits,
                                bool ends_excluded = false);

struct Grid {
    Range t_C, p_MPa;

    [[nodiscard]] std::size_t size() const { return t_C.count * p_MPa.count; }
    void for_each(const std::function<void(double t_C, double p_MPa)>& visit) const;
};

/// Throws InputError when the grid has more rows than a table may have.
void require_size(const Grid& grid);

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

/// Draws, if that is asked for, over the first of temperature and pressure that is a range, a line for each value of the other;
/// over the pressure where only that leaves at most 12 lines. A pressure that is not a number does not matter and gets no
/// legend. Throws InputError for a quantity that is not offered or has no file, when there is no range, when there are too many
/// lines, or when the file cannot be written.
void draw_curves(const StateRequest& request, const std::string& title, const std::vector<Drawable>& offered,
                 const Grid& grid,
                 const std::function<Drawn(double t_C, double p_MPa, std::size_t quantity)>& value);

}  // namespace kalorfix::tool
