#include "gas/working_state.h"

#include <algorithm>

#include "gas/gas_data.h"
#include "kalorfix_gas.h"

namespace kalorfix::gas {
namespace {

template <class... Pointers>
bool all_loaded(Pointers... tables) {
    return (... && (tables != nullptr)) && !(some_table_not_whole() && (... || table_not_whole(tables)));
}

}  // namespace

bool state_accepted(float T_K, float dp_kPa, float p_MPa) {
    if (T_K <= 70.0F || T_K >= 1500.0F) return false;
    if (p_MPa <= 0.0F || p_MPa >= 100.0F) return false;
    if (dp_kPa < 0.0F) return false;
    const double p_kPa = static_cast<double>(p_MPa) * 1000.0;
    return !(static_cast<double>(dp_kPa) / p_kPa >= 0.25);
}

void store_composition(const Fractions& x) {
    const Composition gas = with_present_components(x);
    std::copy(x.begin(), x.end(), Xi);
    for (std::size_t n = 0; n < gas.count; ++n) Index[n] = static_cast<short>(gas.present[n]);
    NumXi = static_cast<short>(gas.count);
}

Composition working_composition() {
    Composition gas;
    std::copy(std::begin(Xi), std::end(Xi), gas.x.begin());
    const std::size_t listed = NumXi < 0 ? 0 : std::min(static_cast<std::size_t>(NumXi), component_count);
    for (std::size_t n = 0; n < listed; ++n)
        if (Index[n] >= 0 && static_cast<std::size_t>(Index[n]) < component_count)
            gas.present[gas.count++] = static_cast<std::size_t>(Index[n]);
    return gas;
}

bool aga8_tables_loaded() {
    return all_loaded(Ei, Ki, Gi, Qi, Fi, Eij_, Uij, Kij, Gij_, an, bn, cn, kn, un, gn, qn, fn);
}

bool vnic_tables_loaded() { return all_loaded(V_Mi, Roki, Tki, FPi, Lij, Xij, Akl, Bkl); }

bool mole_fraction_tables_loaded() { return all_loaded(Zci); }

bool standard_density_tables_loaded() { return all_loaded(Bi, Rocui); }

bool molar_mass_table_loaded() { return all_loaded(Mi); }

bool heat_capacity_tables_loaded() { return all_loaded(L1ij, B1ij); }

}  // namespace kalorfix::gas
