// SPDX-License-Identifier: MIT
// The files of a protocol: its points, and what the device showed there.
#include <algorithm>
#include <cmath>

#include "tools/metering/units.h"
#include "tools/protocol/protocol.h"
#include "tools/spreadsheet.h"
#include "tools/text.h"
#include "tools/units.h"

namespace kalorfix::tool::protocol {
namespace {

constexpr double largest = 1e12;

// A file of numbers under named columns.
class Numbers {
public:
    Numbers(const std::string& file, const std::string& what, char decimal)
        : lines_(file, what), sheet_(decimal) {
        std::string_view line;
        if (!sheet_.heading(lines_, line)) lines_.fail("holds no heading");
        sheet_.split(lines_, line, cells_);
        drop_empty_end(0);
        for (const std::string_view cell : cells_) names_.emplace_back(cell);
    }

    [[nodiscard]] const std::vector<std::string>& names() const { return names_; }
    [[nodiscard]] const Lines& lines() const { return lines_; }

    /// The cells of the next row; nothing for an empty one.
    bool next(std::vector<std::optional<double>>& row) {
        std::string_view line;
        do {
            if (!lines_.next_entry(line, sheet_.separator() == '\t' ? " " : " \t")) {
                sheet_.finish(lines_);
                return false;
            }
            sheet_.split(lines_, line, cells_);
        } while (std::ranges::all_of(cells_, &std::string_view::empty));
        drop_empty_end(names_.size());
        if (cells_.size() != names_.size()) lines_.fail(sheet_.wrong_count(names_.size(), cells_.size()));
        row.clear();
        for (std::size_t k = 0; k < cells_.size(); ++k) {
            const std::string_view text = cells_[k];
            row.push_back(text.empty() ? std::nullopt : sheet_.number(lines_, text));
            if (!text.empty() && !(row.back() && std::fabs(*row.back()) <= largest))
                lines_.fail_at(text, names_[k], ": expected a number within -1e12..1e12, not ", quoted(text));
        }
        return true;
    }

private:
    void drop_empty_end(std::size_t fewest) {
        while (cells_.size() > fewest && cells_.back().empty()) cells_.pop_back();
    }

    Lines lines_;
    Spreadsheet sheet_;
    std::vector<std::string_view> cells_{};
    std::vector<std::string> names_{};
};

// A column of the device's flows: which it is, and its unit.
struct DeviceColumn {
    std::size_t shown;
    double factor;
};

std::optional<DeviceColumn> device_column(const std::string& name, const std::vector<Shown>& shown) {
    constexpr std::size_t prefix = 4;  // q_m_
    for (std::size_t k = 0; k < shown.size(); ++k) {
        if (!name.starts_with(shown[k].column.substr(0, prefix))) continue;
        const Unit* const unit =
            find_unit(metering::dimension_of(shown[k].kind), std::string_view(name).substr(prefix));
        if (unit) return DeviceColumn{k, unit->factor};
    }
    return std::nullopt;
}

}  // namespace

std::vector<State> read_points(const std::string& file, char decimal) {
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
    Numbers numbers(file, "these points", decimal);
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

Device read_device(const std::string& file, std::size_t points, const std::vector<Shown>& shown, char decimal) {
    Numbers numbers(file, "these readings of a device", decimal);
    constexpr std::size_t number = static_cast<std::size_t>(-1);
    Device device{std::vector<Readings>(points), std::vector<bool>(shown.size(), false)};
    std::vector<DeviceColumn> target;  // of each column
    const auto fail_of_column = [&](const std::string& name) {
        numbers.lines().fail("no such column here: ", quoted(name), "; there are point, ",
                             joined(shown, &Shown::column), " or these in other units, each once");
    };
    for (const std::string& name : numbers.names()) {
        const std::optional<DeviceColumn> flow = device_column(name, shown);
        if (name != "point" && !flow) fail_of_column(name);
        target.push_back(flow.value_or(DeviceColumn{number, 1.0}));
        if (std::ranges::count(target, target.back().shown, &DeviceColumn::shown) > 1) fail_of_column(name);
        if (flow) device.shown[flow->shown] = true;
    }
    const auto place = std::ranges::find(target, number, &DeviceColumn::shown);
    if (place == target.end() || target.size() < 2) fail_of_column("");
    for (std::vector<std::optional<double>> row; numbers.next(row);) {
        const double point = row[static_cast<std::size_t>(place - target.begin())].value_or(0.0);
        if (!(point >= 1.0 && point <= static_cast<double>(points)) || point != std::floor(point))
            numbers.lines().fail("point: expected a whole number within 1..", points);
        Readings& at = device.at[static_cast<std::size_t>(point) - 1];
        if (!at.empty()) numbers.lines().fail("point ", point, " stands there already");
        at.resize(shown.size());
        for (std::size_t k = 0; k < target.size(); ++k)
            if (target[k].shown != number && row[k]) at[target[k].shown] = *row[k] * target[k].factor;
    }
    for (Readings& at : device.at) at.resize(shown.size());
    return device;
}

}  // namespace kalorfix::tool::protocol
