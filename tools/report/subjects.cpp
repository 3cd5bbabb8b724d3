// SPDX-License-Identifier: MIT
#include "tools/report/verification.h"

namespace kalorfix::tool::report {

const std::vector<Subject>& subjects() {
    static const Text flow_equations =
        "GOST 8.586.2-2005, 8.586.3-2005, 8.586.4-2005 (ISO 5167-2:2003, -3:2003, -4:2003)";
    static const Text flow_in_force =
        "GOST 8.586.3 and 8.586.5: yes, the other parts not looked up; ISO 5167:2003: no, superseded in 2022";
    static const Text gas_in_force = "no: superseded on 2017-01-01 by the edition of 2015";
    static const Text unknown = "not checked: not on record here";
    static const Text density_accepted = "250..340 K, 0.001..30 MPa, ends excluded; density 0..1 kg/m3";
    static const Text density_documented =
        "250..340 K, up to 12 MPa; density 0.66..1.0 kg/m3; nitrogen and carbon dioxide up to 15 mol % each";
    static const std::vector<Subject> all{
        {"t_param_1", "Properties of water and steam",
         "Helmholtz function of IAPWS-95; viscosity by the IAPS formulation of 1985",
         "IAPWS R6-95 with the ideal part of the 1995 edition; Revised Release on the IAPS Formulation 1985 "
         "for the "
         "Viscosity of Ordinary Water Substance",
         "IAPWS R6-95: yes, revised in 2016 and 2018, the ideal part here is that of 1995; viscosity: no, "
         "superseded in 2008",
         "0..800 degC, 0..100 MPa, both inclusive; saturated vapour (mode 3) up to 371.85 degC", unknown},
        {"t_phase_1", "Phase of water and steam", "explicit saturation pressure, tolerance in pressure",
         "IAPWS SR1-86(1992)", "not looked up", "0..800 degC, 0.001..100 MPa", unknown},
        {"heat_carrier", "State and properties of a heat-carrier channel",
         "column correction, decision of the phase, properties of water, steam and wet steam",
         "IAPWS R6-95; IAPWS SR1-86(1992)",
         "IAPWS R6-95: yes, revised in 2016 and 2018; IAPWS SR1-86: not looked up",
         "state 0..1000 degC and 0.001..100 MPa after the column; properties up to 800 degC; share 0..1",
         unknown},
        {"standard_density", "Density of a composition at standard conditions",
         "summation over the table of the components", "GOST 30319.1-96", gas_in_force, "293.15 K, 101.325 kPa",
         unknown},
        {"gas_by_density.0", "Compressibility by NX19 mod.", "NX19 mod. from density, nitrogen, carbon dioxide",
         "GOST 30319.2-96; viscosity and exponent GOST 30319.1-96", gas_in_force, density_accepted,
         density_documented},
        {"gas_by_density.1", "Compressibility by GERG-91 mod.",
         "GERG-91 mod. from density, nitrogen, carbon dioxide",
         "GOST 30319.2-96; viscosity and exponent GOST 30319.1-96", gas_in_force, density_accepted,
         density_documented},
        {"gas_by_composition.2", "Compressibility by AGA8-92DC", "AGA8-92DC detail characterisation",
         "AGA Report No. 8 (1992); GOST 30319.2-96",
         "no: AGA Report No. 8 superseded in 2017, GOST 30319.2-96 on 2017-01-01 by the edition of 2015",
         "250..340 K, 0.001..30 MPa, ends excluded", unknown},
        {"gas_by_composition.3", "Compressibility by VNIC SMV",
         "VNIC SMV equation of state, 8 components; viscosity and exponent from the composition",
         "GOST 30319.2-96; GOST 30319.3-96", gas_in_force, "250..340 K, 0.001..30 MPa, ends excluded", unknown},
        {"gas", "State and properties of a gas channel",
         "window of the state, selection of the method, composition, heats of combustion, water vapour",
         "GOST 30319.1-96, 30319.2-96, 30319.3-96", gas_in_force,
         "-23.15..66.85 degC, 0.001..30 MPa after the column, ends excluded; K below 0.9999; contents 0..100 "
         "mol % or 0..1; "
         "density up to 1 kg/m3",
         unknown},
        {"discharge", "Discharge coefficient and roughness correction",
         "Reader-Harris/Gallagher equation for orifice plates; equations of nozzles and Venturi tubes",
         flow_equations, flow_in_force,
         "Reynolds number by device and diameter ratio, as listed under the limits",
         "as accepted, but for a machined Venturi tube, for which ISO 5167-4 gives C at Re 2e5..1e6"},
        {"expansibility", "Expansibility factor", "equations of orifice plates, nozzles and Venturi tubes",
         flow_equations, flow_in_force, "dp/p up to 0.25; 1 for liquid water", "dp/p up to 0.25"},
        {"heat_channel", "Set-up, geometry and flow of a heat-carrier channel",
         "expansion, bluntness of the edge, iteration of the flow equation; averaging devices; meters",
         "GOST 8.586.1-2005 to 8.586.5-2005 (ISO 5167-1:2003 to -4:2003)", flow_in_force,
         "diameters and ratios by device, materials by temperature, as listed under the limits",
         "as accepted, but for averaging devices and straight lengths, which are not on record here"},
        {"gas_channel", "Set-up, geometry and flow of a gas channel",
         "expansion, bluntness of the edge, iteration of the flow equation; averaging devices; meters",
         "GOST 8.586.1-2005 to 8.586.5-2005 (ISO 5167-1:2003 to -4:2003)", flow_in_force,
         "as for heat carriers",
         "as accepted, but for averaging devices and straight lengths, which are not on record here"},
    };
    return all;
}

}  // namespace kalorfix::tool::report
