// SPDX-License-Identifier: MIT
// The files of a protocol: its points, and what the device showed there.
#include <algorithm>
#include <cmath>

#include "tools/cells.h"
#include "tools/metering/units.h"
#include "tools/protocol/protocol.h"
#include "tools/text.h"

namespace kalorfix::tool::protocol {
namespace {

constexpr double largest = 1e12;

// A file of numbers under named columns.
class Numbers {
public:
    Numbers(const std::string& file, const std::string& what) : lines_(file, what) {
        std::string_view line;
        if (!lines_.next_entry(line)) lines_.fail("holds no heading");
        separator_ = separator_of(line);
        for (const std::string_view cell : raw_cells(line, separator_)) names_.emplace_back(cell_content(cell));
    }

    [[nodiscard]] const std::vector<std::string>& names() const { return names_; }
    [[nodiscard]] const Lines& lines() const { return lines_; }

    /// The cells of the next row; nothing for an empty one.
    bool next(std::vector<std::optional<double>>& row) {
        std::string_view line;
        if (!lines_.next_entry(line)) return false;
        const std::vector<std::string_view> cells = raw_cells(line, separator_);
        if (cells.size() != names_.size())
            lines_.fail("expected ", names_.size(), " cells as in the heading, not ", cells.size());
        row.clear();
        for (std::size_t k = 0; k < cells.size(); ++k) {
            const std::string_view text = cell_content(cells[k]);
            row.push_back(text.empty() ? std::nullopt : cell_number(text, separator_));
            if (!text.empty() && !(row.back() && std::fabs(*row.back()) <= largest))
                lines_.fail_at(text, names_[k], ": expected a number within -1e12..1e12, not ", quoted(text));
        }
        return true;
    }

private:
    Lines lines_;
    char separator_ = ',';
    std::vector<std::string> names_;
};

}  // namespace

std::vector<State> read_points(const std::string& file) {
    using metering::Measure;
    struct Wanted {
        std::string_view prefix;
        Measure measure;
        double State::*value;
        double factor = 1.0, offset = 0.0;
        std::size_t column = static_cast<std::size_t>(-1);
    };
    std::array<Wanted, 3> wanted{{{"t_", Measure::temperature, &State::t_C},
                                  {"p_", Measure::pressure, &State::p_Pa},
                                  {"dp_", Measure::pressure, &State::dp_Pa}}};
    Numbers numbers(file, "these points");
    for (std::size_t k = 0; k < numbers.names().size(); ++k) {
        const std::string& name = numbers.names()[k];
        const auto found =
            std::ranges::find_if(wanted, [&](const Wanted& w) { return name.starts_with(w.prefix); });
        const metering::Unit* const unit =
            found == wanted.end()
                ? nullptr
                : metering::find_unit(std::string_view(name).substr(found->prefix.size()), found->measure);
        if (!unit || found->column != static_cast<std::size_t>(-1))
            numbers.lines().fail("no such column here: ", quoted(name),
                                 "; there are t_C, p_MPa and dp_kPa, each once, in "
                                 "whatever unit");
        found->column = k;
        found->factor = unit->factor;
        found->offset = unit->offset;
    }
    for (const Wanted& one : wanted)
        if (one.column == static_cast<std::size_t>(-1))
            numbers.lines().fail("the heading lacks a column such as ", one.prefix == "t_"   ? "t_C"
                                                                        : one.prefix == "p_" ? "p_MPa"
                                                                                             : "dp_kPa");
    std::vector<State> points;
    for (std::vector<std::optional<double>> row; numbers.next(row);) {
        State at;
        for (const Wanted& one : wanted) {
            if (!row[one.column])
                numbers.lines().fail(numbers.names()[one.column], ": a point needs a number here");
            at.*one.value = *row[one.column] * one.factor + one.offset;
        }
        if (!(at.p_Pa > 0.0) || !(at.dp_Pa >= 0.0))
            numbers.lines().fail("expected p above 0 and dp not below 0");
        points.push_back(at);
        if (points.size() > most_points)
            numbers.lines().fail("at most ", most_points, " points fit on two pages");
    }
    if (points.empty()) numbers.lines().fail("holds no point");
    return points;
}

Device read_device(const std::string& file, std::size_t points, const std::vector<Shown>& shown) {
    Numbers numbers(file, "these readings of a device");
    constexpr std::size_t number = static_cast<std::size_t>(-1);
    Device device{std::vector<Readings>(points), std::vector<bool>(shown.size(), false)};
    std::vector<std::size_t> target;  // of each column
    const auto fail_of_column = [&](const std::string& name) {
        numbers.lines().fail("no such column here: ", quoted(name), "; there are point, ",
                             joined(shown, &Shown::column), ", each once");
    };
    for (const std::string& name : numbers.names()) {
        const auto found = std::ranges::find(shown, name, &Shown::column);
        if (name != "point" && found == shown.end()) fail_of_column(name);
        target.push_back(name == "point" ? number : static_cast<std::size_t>(found - shown.begin()));
        if (std::ranges::count(target, target.back()) > 1) fail_of_column(name);
        if (name != "point") device.shown[target.back()] = true;
    }
    const auto place = std::ranges::find(target, number);
    if (place == target.end() || target.size() < 2) fail_of_column("");
    for (std::vector<std::optional<double>> row; numbers.next(row);) {
        const double point = row[static_cast<std::size_t>(place - target.begin())].value_or(0.0);
        if (!(point >= 1.0 && point <= static_cast<double>(points)) || point != std::floor(point))
            numbers.lines().fail("point: expected a whole number within 1..", points);
        Readings& at = device.at[static_cast<std::size_t>(point) - 1];
        if (!at.empty()) numbers.lines().fail("point ", point, " stands there already");
        at.resize(shown.size());
        for (std::size_t k = 0; k < target.size(); ++k)
            if (target[k] != number) at[target[k]] = row[k];
    }
    for (Readings& at : device.at) at.resize(shown.size());
    return device;
}

}  // namespace kalorfix::tool::protocol
