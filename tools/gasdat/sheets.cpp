// SPDX-License-Identifier: MIT
#include "tools/gasdat/sheets.h"

#include "tools/names.h"
#include "tools/text.h"

namespace kalorfix::tool::gasdat {
namespace {

// Names of the 15 components, and of the 8 of VNIC SMV.
using Names = std::array<std::string_view, 15>;
std::vector<std::string> names15(const Names& names) { return {names.begin(), names.end()}; }
std::vector<std::string> names8(const Names& names) {
    std::vector<std::string> list;
    for (const std::size_t i : vnic_components) list.emplace_back(names[i]);
    return list;
}

std::vector<std::string> numbered(const char* prefix, int from, int to) {
    std::vector<std::string> list;
    for (int k = from; k <= to; ++k) list.push_back(prefix + std::to_string(k));
    return list;
}

std::vector<Block> make_blocks() {
    std::vector<Block> list{
        {"V_Mi", "molar mass, kg/kmol", 8, 1.0, 500.0},
        {"Roki", "critical density, kg/m3", 8, 20.0, 1000.0},
        {"Tki", "critical temperature, K", 8, 3.0, 1000.0},
        {"FPi", "acentric factor", 8, -0.5, 1.5},
        {"Lij", "binary correction lambda of the critical volume", 64, -1.0, 0.9},
        {"Xij", "binary correction xi of the critical temperature", 64, -1.0, 0.9},
        {"Akl", "coefficients a_kl of w^k / t^l", 80, -1e4, 1e4},
        {"Bkl", "coefficients b_kl, multiplied by the acentric factor of the mixture", 80, -1e4, 1e4},
        {"Eij_", "binary energy parameter E*", 225, 0.3, 2.0},
        {"Uij", "binary parameter U of the mixture energy", 225, 0.3, 2.0},
        {"Kij", "binary size parameter K", 225, 0.3, 2.0},
        {"Gij_", "binary orientation parameter G*", 225, 0.0, 3.0},
        {"an", "coefficient a_n", 53, -100.0, 100.0},
        {"bn", "density exponent b_n", 53, 1.0, 12.0, true},
        {"cn", "c_n: 1 where the term has an exponential", 53, 0.0, 1.0, true},
        {"kn", "density exponent k_n in the exponential", 53, 0.0, 12.0, true},
        {"un", "temperature exponent u_n", 53, -31.5, 31.5},
        {"gn", "g_n: 1 where the orientation counts", 53, 0.0, 1.0, true},
        {"qn", "q_n: 1 where the quadrupole counts", 53, 0.0, 1.0, true},
        {"fn", "f_n: 1 where the high-temperature parameter counts", 53, 0.0, 1.0, true},
        {"Mi", "molar mass, kg/kmol", 15, 1.0, 500.0},
        {"Zci", "compressibility factor at 293.15 K and 0.101325 MPa", 15, 0.5, 1.1},
        {"Rocui", "ideal-gas density at 293.15 K and 0.101325 MPa, kg/m3", 15, 0.04, 20.0},
        {"Bi", "summation factor sqrt(b)", 15, 0.0, 0.7},
        {"Ei", "energy parameter E, K", 15, 0.1, 1000.0},
        {"Ki", "size parameter K, (m3/kmol)^(1/3)", 15, 0.1, 2.0},
        {"Gi", "orientation parameter G", 15, 0.0, 2.0},
        {"Qi", "quadrupole parameter Q", 15, 0.0, 2.0},
        {"Fi", "high-temperature parameter F", 15, 0.0, 2.0},
        {"L1ij", "ideal-gas cp/R, coefficients of (T/theta)^0..10", 88, -1e5, 1e5},
        {"B1ij", "ideal-gas cp/R, coefficients of (T/theta)^-1..-6", 48, -1e5, 1e5},
    };
    std::size_t first = 0;
    for (Block& block : list) {
        block.first = first;
        first += block.values;
    }
    return list;
}

std::size_t index_of(std::string_view name) {
    std::size_t index = 0;
    while (blocks()[index].name != name) ++index;
    return index;
}

// A column for each of the blocks from `first` on.
Sheet list(std::string_view name, std::string_view title, std::string_view row_name,
           std::vector<std::string> rows, std::string_view first, std::string_view columns) {
    Sheet sheet{name, title, row_name, std::move(rows), {}};
    std::size_t index = index_of(first);
    for (const std::string_view column : words(columns)) {
        sheet.columns.push_back({std::string(column), index, blocks()[index].first});
        ++index;
    }
    return sheet;
}

Sheet matrix(std::string_view name, std::string_view title, std::string_view block_name,
             std::string_view row_name, std::vector<std::string> rows,
             const std::vector<std::string>& columns) {
    Sheet sheet{name, title, row_name, std::move(rows), {}};
    const std::size_t index = index_of(block_name);
    for (std::size_t column = 0; column < columns.size(); ++column)
        sheet.columns.push_back({columns[column], index, blocks()[index].first + column, columns.size()});
    return sheet;
}

Sheet pairs15(std::string_view name, std::string_view title, std::string_view block_name) {
    return matrix(name, title, block_name, "component", names15(components), names15(formulas));
}

Sheet pairs8(std::string_view name, std::string_view title, std::string_view block_name) {
    return matrix(name, title, block_name, "component", names8(components), names8(formulas));
}

std::vector<Sheet> make_sheets() {
    return {
        list("vnic_components", "Components of VNIC SMV", "component", names8(components), "V_Mi",
             "molar_mass_kg_kmol critical_density_kg_m3 critical_temperature_K acentric_factor"),
        pairs8("vnic_binary_volume", "VNIC SMV: binary correction of the critical volume", "Lij"),
        pairs8("vnic_binary_temperature", "VNIC SMV: binary correction of the critical temperature", "Xij"),
        matrix("vnic_a", "VNIC SMV: coefficients a_kl; 0 where there is no term", "Akl", "k",
               numbered("", 1, 10), numbered("l", 0, 7)),
        matrix("vnic_b", "VNIC SMV: coefficients b_kl; 0 where there is no term", "Bkl", "k",
               numbered("", 1, 10), numbered("l", 0, 7)),
        pairs15("aga8_binary_energy", "AGA8-92DC: binary energy parameter E*", "Eij_"),
        pairs15("aga8_binary_mixture_energy", "AGA8-92DC: binary parameter of the mixture energy U", "Uij"),
        pairs15("aga8_binary_size", "AGA8-92DC: binary size parameter K", "Kij"),
        pairs15("aga8_binary_orientation", "AGA8-92DC: binary orientation parameter G*", "Gij_"),
        list("aga8_terms", "AGA8-92DC: the 53 terms", "n", numbered("", 1, 53), "an", "a b c k u g q f"),
        list(
            "components", "Components of the composition", "component", names15(components), "Mi",
            "molar_mass_kg_kmol z_standard ideal_density_kg_m3 summation_factor E_K K_m3_kmol_cube_root G Q F"),
        matrix("heat_capacity_positive", "Ideal-gas cp/R: coefficients of rising powers of T/theta", "L1ij",
               "component", names8(components), numbered("c", 0, 10)),
        matrix("heat_capacity_negative", "Ideal-gas cp/R: coefficients of falling powers of T/theta", "B1ij",
               "component", names8(components), numbered("d", 1, 6)),
    };
}

}  // namespace

const std::vector<Block>& blocks() {
    static const std::vector<Block> all = make_blocks();
    return all;
}

const std::vector<Sheet>& sheets() {
    static const std::vector<Sheet> all = make_sheets();
    return all;
}

const Block& block(std::string_view name) { return blocks()[index_of(name)]; }

}  // namespace kalorfix::tool::gasdat
