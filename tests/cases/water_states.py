# SPDX-License-Identifier: MIT
"""Writes water_states.txt: states of water and steam computed with python3-iapws (Debian), class IAPWS95.

Its solver and its ideal part (edition 2018 of the release) set the permitted deviations.
Run: /usr/bin/python3 water_states.py > water_states.txt
"""
from iapws import IAPWS95, __version__

LIQUID = [(0.01, 0.1), (4, 0.101325), (20, 0.101325), (20, 100), (60, 1), (95, 0.1), (99, 50), (130, 0.5), (150, 5),
          (200, 2), (250, 10), (300, 20), (330, 25), (350, 30), (360, 20), (370, 22)]
STEAM = [(30, 0.002), (120, 0.1), (150, 0.3), (200, 1), (200, 1.5), (250, 3), (300, 1.2), (300, 8), (350, 15),
         (365, 18), (400, 0.01), (400, 10), (500, 5), (560, 13), (600, 20), (700, 1), (799, 30)]
DENSE = [(382, 22.5), (380, 25), (385, 24), (400, 30), (420, 40), (450, 60), (550, 80), (700, 100), (799, 99)]

print("# States of water and steam; written by water_states.py.\n")
for name, states, loose in (("liquid", LIQUID, 1), ("steam", STEAM, 1), ("dense", DENSE, 5)):
    print("[t_param_1]")
    print(f"source: python3-iapws {__version__}, class IAPWS95")
    print("origin: program")
    print("note: enthalpies lie 2.4e-7 kJ/kg apart by the constant of the ideal part in use")
    print(f"tolerance: rho_kg_m3=r{2e-8 * loose:g} h_kJ_kg={4e-6 * loose:g} kappa=r{2e-7 * loose:g}")
    print("columns: case t_C p_MPa -> status rho_kg_m3 h_kJ_kg kappa")
    for k, (t, p) in enumerate(states, 1):
        s = IAPWS95(T=t + 273.15, P=p)
        kappa = s.w**2 * s.rho / (p * 1e6)
        print(f"{name}-{k:<3} {t:<6} {p:<9} computed {s.rho:<20.14g} {s.h:<20.14g} {kappa:.12g}")
    print()
