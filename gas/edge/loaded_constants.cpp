#include "gas/edge/loaded_constants.h"

#include <array>

#include "gas/edge/module_state.h"
#include "kalorfix_gas.h"
#include "runtime/float_environment.h"

namespace kalorfix::gas::edge {
namespace {

// Constants with the addresses of the tables that they were made of.
template <class Made, std::size_t tables>
struct Loaded {
    Made constants;
    std::array<const float*, tables> made_of{};

    template <class Make>
    const Made& made(const std::array<const float*, tables>& loaded, Make&& make) {
        if (made_of != loaded) {
            make(constants);
            made_of = loaded;
        }
        return constants;
    }
};

Loaded<aga8::Constants, 17> aga8_tables;

// The last mixture: from cycle to cycle the composition of a gas seldom changes.
struct {
    Fractions x;
    bool known;
    aga8::Mixture mixture;
} last;
Loaded<vnic::Constants, 6> vnic_tables;

}  // namespace

const aga8::Constants& aga8_constants() {
    return aga8_tables.made(
        {Ei, Ki, Gi, Qi, Fi, Eij_, Uij, Kij, Gij_, an, bn, cn, kn, un, gn, qn, fn}, [](aga8::Constants& made) {
            last.known = false;
            aga8::make_constants(
                {{Ei, Ki, Gi, Qi, Fi}, {Eij_, Uij, Kij, Gij_}, {an, bn, cn, kn, un, gn, qn, fn}}, made);
        });
}

const aga8::Mixture& aga8_mixture(const Composition& gas) {
    const aga8::Constants& constants = aga8_constants();
    if (!last.known || last.x != gas.x) last = {gas.x, true, aga8::mix(gas, constants)};
    return last.mixture;
}

const vnic::Constants& vnic_constants() {
    return vnic_tables.made({V_Mi, Roki, Tki, FPi, Lij, Xij}, [](vnic::Constants& made) {
        vnic::make_constants({V_Mi, Roki, Tki, FPi, Lij, Xij}, made);
    });
}

void tables_changed() {
    const FloatEnvironment guard;
    aga8_tables.made_of = {};
    vnic_tables.made_of = {};
    if (aga8_tables_loaded()) static_cast<void>(aga8_constants());
    if (vnic_tables_loaded()) static_cast<void>(vnic_constants());
}

}  // namespace kalorfix::gas::edge
