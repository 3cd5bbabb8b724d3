// Birth and end of the calculators.
#include <algorithm>

#include "kalorfix_calculators.h"
#include "runtime/tick_source.h"

namespace {

// The first interval of every integrator runs from the making of the object.
template <class Calculator>
void start_integrators(Calculator& calculator) {
    std::ranges::fill(calculator.first_call, static_cast<unsigned char>(1));
    std::ranges::fill(calculator.last_tick, kalorfix::tick_count());
}

}  // namespace

cCommon2005::cCommon2005() = default;
cCommon2005::~cCommon2005() = default;

cGas2005::cGas2005() { start_integrators(*this); }
cGas2005::~cGas2005() = default;
bool cGas2005::IsGas() { return true; }

cTeplo2005::cTeplo2005() { start_integrators(*this); }
cTeplo2005::~cTeplo2005() = default;
bool cTeplo2005::IsGas() { return false; }
