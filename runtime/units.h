// SPDX-License-Identifier: MIT
// Conversions between the units of the host and those of the formulas, each said once.
#pragma once

namespace kalorfix::units {

inline constexpr double zero_celsius_K = 273.15;

inline constexpr double MPa_per_Pa = 1e-6;
inline constexpr double Pa_per_MPa = 1e6;
inline constexpr double kPa_per_MPa = 1000.0;

inline constexpr double m_per_mm = 0.001;
inline constexpr double mm_per_m = 1000.0;
inline constexpr double inch_m = 0.0254;

inline constexpr double Pas_per_uPas = 1e-6;
inline constexpr double uPas_per_Pas = 1e6;

inline constexpr double kg_per_t = 1000.0;
inline constexpr double t_per_kg = 0.001;
inline constexpr double per_thousand = 0.001;
inline constexpr double th_per_kgs = 3.6;  ///< t/h in a kg/s

inline constexpr double seconds_per_hour = 3600.0;
inline constexpr double seconds_per_minute = 60.0;
inline constexpr double minutes_per_hour = 60.0;

/// Of the column of liquid between a pressure tap and its transmitter, m/s2.
inline constexpr double standard_gravity = 9.80665;

}  // namespace kalorfix::units
