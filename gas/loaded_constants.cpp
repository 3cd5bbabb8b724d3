#include "gas/loaded_constants.h"

#include <array>

#include "gas/working_state.h"
#include "kalorfix_gas.h"
#include "runtime/float_environment.h"

namespace kalorfix::gas {
namespace {

// Constants with the addresses of the tables that they were made of.
template <class Made, std::size_t tables>
struct Loaded {
    Made constants;
    std::array<const float*, tables> of{};

    template <class Make>
    const Made& made(const std::array<const float*, tables>& loaded, Make&& make) {
        if (of != loaded) {
            make(constants);
            of = loaded;
        }
        return constants;
    }
};

Loaded<aga8::Constants, 17> for_aga8;
Loaded<vnic::Constants, 6> for_vnic;

}  // namespace

const aga8::Constants& aga8_constants() {
    return for_aga8.made(
        {Ei, Ki, Gi, Qi, Fi, Eij_, Uij, Kij, Gij_, an, bn, cn, kn, un, gn, qn, fn}, [](aga8::Constants& made) {
            aga8::make_constants(
                {{Ei, Ki, Gi, Qi, Fi}, {Eij_, Uij, Kij, Gij_}, {an, bn, cn, kn, un, gn, qn, fn}}, made);
        });
}

const vnic::Constants& vnic_constants() {
    return for_vnic.made({V_Mi, Roki, Tki, FPi, Lij, Xij}, [](vnic::Constants& made) {
        vnic::make_constants({V_Mi, Roki, Tki, FPi, Lij, Xij}, made);
    });
}

void tables_changed() {
    const FloatEnvironment guard;
    for_aga8.of = {};
    for_vnic.of = {};
    if (aga8_tables_loaded()) static_cast<void>(aga8_constants());
    if (vnic_tables_loaded()) static_cast<void>(vnic_constants());
}

}  // namespace kalorfix::gas
