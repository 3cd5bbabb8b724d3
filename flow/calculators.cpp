// Birth and end of the calculators.
#include <algorithm>
#include <cstdint>

#include "kalorfix.h"

namespace {

// The first interval of every integrator runs from the making of the object.
template <class Calculator>
void start_integrators(Calculator& calculator) {
    std::ranges::fill(calculator.first_call, static_cast<unsigned char>(1));
    std::ranges::fill(calculator.last_tick, static_cast<std::uint32_t>(abs_clock()));
}

}  // namespace

// Fields that nothing has computed yet read as zero; only a class of 0 or 1 makes a channel usable.
cCommon2005::cCommon2005()
    : metering_class(3),
      device_type(0),
      by_material(0),
      mat_D(0.0),
      mat_d(0.0),
      D20(0.0),
      d20(0.0),
      R_sh(0.0),
      r_n0(0.0),
      r_n_at_end(0),
      tau(0.0),
      alpha_eps(0.0),
      valid(0),
      t(0.0),
      T(0.0),
      p(0.0),
      R_a(0.0),
      D(0.0),
      d(0.0),
      beta(0.0),
      E(0.0),
      K_p(0.0),
      rho_w(0.0),
      mu(0.0),
      kappa(0.0),
      phase(0),
      q_m(0.0),
      q_v(0.0),
      Re(0.0),
      C(0.0),
      K_sh(0.0),
      epsilon(0.0) {}

cCommon2005::~cCommon2005() = default;

cGas2005::cGas2005()
    : Method(0),
      Xi_in{},
      Xi_sum(0.0),
      Ro_c(0.0),
      K_c(0.0),
      H_low(0.0),
      H_high(0.0),
      Ro_vap(0.0),
      q_c(0.0),
      q_e(0.0),
      total{},
      interval_start{},
      interval_time{},
      first_call{},
      last_tick{},
      dt{},
      downtime_min{} {
    start_integrators(*this);
}

cGas2005::~cGas2005() = default;

bool cGas2005::IsGas() { return true; }

cTeplo2005::cTeplo2005()
    : dP_sat(0.0),
      T_sat(0.0),
      p_sat(0.0),
      phase_tn(0),
      h_w(0.0),
      q_h(0.0),
      total{},
      interval_start{},
      interval_time{},
      first_call{},
      last_tick{},
      dt{},
      downtime_min{} {
    start_integrators(*this);
}

cTeplo2005::~cTeplo2005() = default;

bool cTeplo2005::IsGas() { return false; }
