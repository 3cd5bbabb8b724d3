// The exported routines that set the working composition, and its density at standard conditions.
#include "gas/composition.h"
#include "gas/working_state.h"
#include "kalorfix_gas.h"
#include "runtime/float_environment.h"

namespace gas = kalorfix::gas;
using kalorfix::FloatEnvironment;

void PF1_1(float x0, float x1, float x2, float x3, float x4, float x5, float x6, float x7, float x8, float x9,
           float x10, float x11, float x12, float x13, float x14) {
    const FloatEnvironment guard;
    gas::store_composition(
        gas::from_mole_percent({x0, x1, x2, x3, x4, x5, x6, x7, x8, x9, x10, x11, x12, x13, x14}));
}

void PF1_2(float r0, float r1, float r2, float r3, float r4, float r5, float r6, float r7, float r8, float r9,
           float r10, float r11, float r12, float r13, float r14) {
    const FloatEnvironment guard;
    // Without the table there is no mole fraction: an empty composition, which every method refuses.
    if (!gas::mole_fraction_tables_loaded()) return gas::store_composition({});
    gas::store_composition(
        gas::from_volume_fractions({r0, r1, r2, r3, r4, r5, r6, r7, r8, r9, r10, r11, r12, r13, r14}, Zci));
}

float PF2() {
    const FloatEnvironment guard;
    return Roc = gas::standard_density_tables_loaded()
                     ? gas::standard_density(gas::working_composition(), Bi, Rocui)
                     : 0.0F;
}
