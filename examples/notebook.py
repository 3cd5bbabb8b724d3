# SPDX-License-Identifier: MIT
"""kalorfix in Python, in cells that a notebook or a plain interpreter runs from top to bottom.

    PYTHONPATH=python python3 examples/notebook.py      in a source tree that is built
"""
# %% States: degC, MPa absolute
from pathlib import Path

import kalorfix

steam = kalorfix.water(t=300, p=1.2)
print(f"steam {steam.rho_kg_m3:.5f} kg/m3, {steam.h_kJ_kg:.3f} kJ/kg")

here = Path(__file__).resolve().parent if "__file__" in globals() else Path("examples")
gas = kalorfix.gas(t=15, p=5.5, method="aga8", composition=here / "natural_gas.csv")
print(f"gas {gas.rho_kg_m3:.4f} kg/m3, K {gas.K:.6f}, {gas.lower_heat:.4f} {gas.heat_unit}")

# %% A channel has the keys of a station file; the differential pressure is in kPa
nozzle = kalorfix.Heat(device="nozzle_isa1932", phase="from_state", pipe_material=7, device_material=32, D20_mm=300,
                       d20_mm=180, roughness_mm=0.1)
cycle = nozzle.cycle(300, 1.2, 40)
print(f"{cycle.phase}: {cycle.q_m_t_h:.4f} t/h, {cycle.q_h_GJ_h:.4f} GJ/h")

# %% What cannot be computed is a value with its reason
print(nozzle.cycle(301, 0.12, 42).reason)

# %% What is wrong with an argument is an exception that names the limit
try:
    kalorfix.gas(t=15, p=5.5, method="aga8", composition={"methane": 0.97, "ethane": 0.03})
except ValueError as error:
    print(error)

# %% How the flow answers to each reading: a thousandth more of each
for name, reading in (("t", (300.3, 1.2, 40)), ("p", (300, 1.2012, 40)), ("dp", (300, 1.2, 40.04))):
    print(f"{name:>3} +0.1 %: mass flow {1e3 * (nozzle.cycle(*reading).q_m_t_h / cycle.q_m_t_h - 1):+.2f} per mille")

# %% A day of a station, in pandas
try:
    import pandas
except ImportError:
    raise SystemExit("the rest needs pandas")

station = kalorfix.Station(here / "station.ini")
day = station.frame(pandas.read_csv(here / "readings_day.csv"))
print(day.groupby("channel")[["q_m_t_h", "rho_kg_m3", "C"]].mean().round(5))
print(day[day.status == "refused"].groupby(["channel", "step"]).size())

# %% The hours that closed
hours = day.loc[day.hour_mass_t.notna() & (day.channel == "GAS 1"), ["time", "hour_mass_t", "hour_energy_GJ"]]
print(hours.head(3).to_string(index=False))
