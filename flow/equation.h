// The flow equation of differential-pressure devices.
#pragma once

#include "flow/discharge.h"

namespace kalorfix::flow {

/// The medium at the device.
struct Medium {
    double p_Pa;
    double kappa;
    double mu_Pas;
    bool liquid;
};

/// Pressure ratio above which the expansibility equations do not hold.
inline constexpr double max_pressure_ratio = 0.25;

/// Expansibility of an orifice plate (1..3) at the pressure ratio tau = 1 - dp/p. The coefficient of beta^4 is
/// 0.265, not the 0.256 of the standard: kept on purpose. GOST 8.586.2-2005, 5.3.2.2.
[[nodiscard]] double orifice_expansibility(double beta, double kappa, double tau);

/// Expansibility of nozzles and Venturi tubes (4..9), adiabatic. GOST 8.586.3-2005, 5.1.6.3.
[[nodiscard]] double nozzle_expansibility(double beta, double kappa, double tau);

/// Reynolds number of the pipe at the mass flow q_m in kg/s.
[[nodiscard]] double reynolds(double q_m_kgs, double D_m, double mu_Pas);

/// The mass flow in kg/s through a cross section of the given diameter: pi/4 diameter^2 coefficient
/// sqrt(2 dp rho). GOST 8.586.1-2005, 5.1.
[[nodiscard]] double mass_flow_kgs(double diameter_m, double coefficient, double dp_Pa, double rho_kgm3);

/// Blockage of a bar of width d across a pipe D: 4 d / (pi D).
[[nodiscard]] double blockage(double D_m, double d_m);

/// Expansibility of averaging devices; 1 for a liquid.
[[nodiscard]] double averaging_expansibility(double blockage, const Medium& medium, double dp_Pa);

/// Flow coefficient of devices 10..18: linear for 10 and 11, tabulated coefficients for 12..18.
[[nodiscard]] double averaging_coefficient(Device device, double blockage);

/// Reynolds number of averaging devices: the velocity in the pipe with the width of the device as the length.
[[nodiscard]] double averaging_reynolds(double q_m_kgs, double D_m, double d_m, double mu_Pas);

/// Reynolds number that devices 10..18 must exceed.
[[nodiscard]] double averaging_min_Re(Device device);

}  // namespace kalorfix::flow
