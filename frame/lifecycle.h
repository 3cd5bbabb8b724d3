// SPDX-License-Identifier: MIT
// The steps of Init and Done.
#pragma once

/// The whole initialisation; the argument is not used. Returns non-zero when done.
int InitMisc(char unused);

/// The whole release. Returns 1.
int DeInitMisc();

/// Reads Num_gas_trub from the settings file, or says that there is none. Returns 1.
int ReadSOIni();

/// Builds the path of the gas data file and loads it. Returns 1, loaded or not.
int InitGas();

/// Measures the controller's downtime into ProstoyTime. Returns 1.
int InitProstoyTime();
