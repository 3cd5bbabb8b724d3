// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <utility>

#include "tools/gasdat/gas_file.h"
#include "tools/names.h"
#include "tools/text.h"

namespace kalorfix::tool::gasdat {
namespace {

// Binary tables: symmetric, with this on the diagonal.
constexpr std::pair<std::string_view, float> binaries[] = {{"Lij", 0.0F}, {"Xij", 0.0F}, {"Eij_", 1.0F},
                                                           {"Uij", 1.0F}, {"Kij", 1.0F}, {"Gij_", 1.0F}};

// How many terms the rows of the coefficient tables have; the positions behind them are no terms and must be 0.
constexpr std::array<std::size_t, 10> equation_terms{8, 7, 7, 6, 6, 5, 4, 4, 4, 3};
constexpr std::array<std::size_t, 8> rising_terms{11, 7, 7, 7, 6, 7, 7, 6};
constexpr std::array<std::size_t, 8> falling_terms{6, 5, 4, 5, 2, 6, 4, 5};
constexpr std::array<double, 8> theta_K{100, 100, 100, 100, 300, 100, 300, 100};

std::string short_number(double value) { return number_text(static_cast<float>(value)); }

class Judge {
public:
    explicit Judge(const GasFile& file) : values_(file.values), count_(file.count) {}

    void values();
    void symmetry();
    void empty_positions();
    void agreement();
    void heat_capacities();
    std::vector<std::string> found;

private:
    [[nodiscard]] float at(std::string_view table, std::size_t k) const {
        return values_[block(table).first + k];
    }
    [[nodiscard]] double number(std::string_view table, std::size_t k) const {
        return static_cast<double>(at(table, k));
    }

    // The place of a value as a person finds it in the listing.
    [[nodiscard]] static std::string place(std::string_view table, std::size_t k) {
        const std::size_t position = block(table).first + k;
        for (const Sheet& sheet : sheets())
            for (std::size_t column = 0; column < sheet.columns.size(); ++column)
                for (std::size_t row = 0; row < sheet.rows.size(); ++row)
                    if (sheet.position(row, column) == position)
                        return cat(table, " [", sheet.name, ", row ", sheet.rows[row], ", column ",
                                   sheet.columns[column].name, "]");
        return std::string(table);
    }
    void report(std::string_view table, std::size_t k, const std::string& what) {
        found.push_back(place(table, k) + ": " + number_text(at(table, k)) + ", " + what);
    }
    void agree(std::string_view table, std::size_t k, double expected, double relative,
               const std::string& with) {
        if (std::fabs(number(table, k) - expected) > relative * std::fabs(expected))
            report(table, k, "does not agree with " + with + ", which asks for " + short_number(expected));
    }
    void rest_is_zero(std::string_view table, std::size_t row, std::size_t terms, std::size_t columns) {
        for (std::size_t column = terms; column < columns; ++column)
            if (at(table, row * columns + column) != 0.0F)
                report(table, row * columns + column, "is no term and must be 0");
    }

    const Values& values_;
    std::size_t count_;
};

void Judge::values() {
    for (const Block& b : blocks())
        for (std::size_t k = 0; k < b.values && b.first + k < count_; ++k) {
            const double value = number(b.name, k);
            if (!std::isfinite(value))
                report(b.name, k, "must be a number");
            else if (!(b.low <= value && value <= b.high))
                report(b.name, k, cat("must lie within ", short_number(b.low), "..", short_number(b.high)));
            else if (b.whole && value != std::floor(value))
                report(b.name, k, "must be a whole number");
            else if (b.name == "un" && 2.0 * value != std::floor(2.0 * value))
                report(b.name, k, "must be a multiple of 1/2");
            else if (b.name == "kn" && (at("cn", k) == 0.0F) != (value == 0.0))
                report(b.name, k, "must be 0 where c is 0, and only there");
        }
}

void Judge::symmetry() {
    for (const auto& [table, diagonal] : binaries) {
        const auto size = static_cast<std::size_t>(std::lround(std::sqrt(block(table).values)));
        for (std::size_t i = 0; i < size; ++i) {
            if (at(table, i * size + i) != diagonal)
                report(table, i * size + i, "must be " + number_text(diagonal) + ": a component with itself");
            for (std::size_t j = 0; j < i; ++j)
                if (at(table, i * size + j) != at(table, j * size + i))
                    report(table, i * size + j,
                           "must equal its mirror image " + number_text(at(table, j * size + i)));
        }
    }
}

void Judge::empty_positions() {
    for (std::size_t k = 0; k < equation_terms.size(); ++k)
        for (const std::string_view table : {"Akl", "Bkl"}) rest_is_zero(table, k, equation_terms[k], 8);
    for (std::size_t k = 0; k < rising_terms.size(); ++k) {
        rest_is_zero("L1ij", k, rising_terms[k], 11);
        rest_is_zero("B1ij", k, falling_terms[k], 6);
    }
}

void Judge::agreement() {
    constexpr double R = 8.31451, T_K = 293.15, p_kPa = 101.325;
    for (std::size_t k = 0; k < vnic_components.size(); ++k)
        agree("V_Mi", k, number("Mi", vnic_components[k]), 1e-3, "the molar mass in Mi");
    for (std::size_t i = 0; i < components.size(); ++i) {
        agree("Rocui", i, number("Mi", i) * p_kPa / (R * T_K), 1e-3, "the molar mass in Mi");
        const double z = 1.0 - number("Bi", i) * number("Bi", i);
        agree("Zci", i, z, 2e-3, "the summation factor in Bi");
    }
}

void Judge::heat_capacities() {
    constexpr double T_K = 300.0, lowest = 2.4, highest = 30.0;
    for (std::size_t i = 0; i < theta_K.size(); ++i) {
        const double ratio = T_K / theta_K[i];
        double cp = 0.0;
        for (std::size_t m = 0; m < rising_terms[i]; ++m)
            cp += number("L1ij", 11 * i + m) * std::pow(ratio, static_cast<double>(m));
        for (std::size_t m = 0; m < falling_terms[i]; ++m)
            cp += number("B1ij", 6 * i + m) * std::pow(ratio, -1.0 - static_cast<double>(m));
        if (!(lowest <= cp && cp <= highest))
            found.push_back(cat("L1ij, B1ij [heat_capacity_positive, heat_capacity_negative, row ",
                                components[vnic_components[i]], "]: cp/R at 300 K is ", short_number(cp),
                                ", must lie within 2.4..30"));
    }
}

}  // namespace

std::vector<std::string> faults(const GasFile& file) {
    Judge judge(file);
    if (file.size != file_size)
        judge.found.push_back(cat("the file has ", file.size, " bytes, must have ", file_size));
    judge.values();
    if (file.count < value_count) return judge.found;
    judge.symmetry();
    judge.empty_positions();
    judge.agreement();
    judge.heat_capacities();
    return judge.found;
}

void require_sound(const std::string& path) {
    const std::vector<std::string> found = faults(read_gas_file(path));
    if (found.empty()) return;
    const std::string others =
        found.size() == 1 ? "" : cat("; and ", found.size() - 1, " more, see kalorfix gasdat check");
    throw InputError(path, ": these gas data are not used: ", found.front(), others);
}

void require_gas_data(const std::string& path) {
    if (path.empty())
        throw InputError(
            "--gas-data: there is no gas.dat beside the library, which methods by composition need; give the "
            "file");
    require_sound(path);
}

}  // namespace kalorfix::tool::gasdat
