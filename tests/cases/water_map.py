"""Writes water_map.txt: the density of water and steam over the whole range, computed with python3-iapws (Debian), class IAPWS95.

States within 1e-3 of the saturation pressure are left out: there the two programs may take different sides.
Run: /usr/bin/python3 water_map.py > water_map.txt
"""
from iapws import IAPWS95, __version__
from iapws.iapws97 import _PSat_T

T_C = [10, 40, 70, 100, 140, 180, 220, 260, 300, 340, 380, 420, 470, 520, 580, 640, 700, 760, 799]
P_MPA = [0.001, 0.003, 0.01, 0.03, 0.1, 0.3, 1, 2, 4, 7, 10, 15, 20, 30, 45, 70, 99]

print("# The density of water and steam over the whole range; written by water_map.py.\n")
print("[t_param_1]")
print(f"source: python3-iapws {__version__}, class IAPWS95")
print("note: a map of the density; its solver sets the permitted deviation")
print("tolerance: rho_kg_m3=r2e-8")
print("columns: case t_C p_MPa -> status rho_kg_m3")
for t in T_C:
    for p in P_MPA:
        if t + 273.15 < 647 and abs(p / _PSat_T(t + 273.15) - 1) < 1e-3:
            continue
        s = IAPWS95(T=t + 273.15, P=p)
        print(f"map-{t}-{p:<10} {t:<6} {p:<9} computed {s.rho:.12g}")
