# SPDX-License-Identifier: MIT
"""Writes water_map.txt: the density of water and steam, computed with python3-iapws (Debian), class IAPWS95.

A coarse map of the whole range, the states beside the saturation line and those around the critical point.
Run: /usr/bin/python3 water_map.py > water_map.txt
"""
from iapws import IAPWS95, __version__

MAP = [(t, p) for t in (10, 100, 180, 260, 340, 420, 520, 640, 799) for p in (0.001, 0.1, 10, 30, 99)]
SATURATION = [(10, 0.003), (40, 0.003), (40, 0.01), (70, 0.03), (70, 0.1), (100, 0.3), (140, 0.3), (140, 1), (180, 1),
              (180, 2), (220, 2), (220, 4), (260, 4), (260, 7), (300, 7), (300, 10), (340, 15)]
CRITICAL = [(340, 20), (380, 15), (380, 20), (380, 30), (380, 45), (420, 15), (420, 20), (420, 45), (470, 30)]

print("# The density of water and steam over the whole range; written by water_map.py.\n")
print("[t_param_1]")
print(f"source: python3-iapws {__version__}, class IAPWS95")
print("origin: program")
print("note: a map of the density; its solver sets the permitted deviation")
print("tolerance: rho_kg_m3=r2e-8")
print("columns: case t_C p_MPa -> status rho_kg_m3")
for t, p in sorted(MAP + SATURATION + CRITICAL):
    s = IAPWS95(T=t + 273.15, P=p)
    print(f"map-{t}-{p:<10} {t:<6} {p:<9} computed {s.rho:.12g}")
