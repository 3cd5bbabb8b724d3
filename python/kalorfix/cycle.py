"""What a cycle gives, and the places of its numbers in a row."""

from __future__ import annotations

from dataclasses import dataclass


@dataclass(slots=True)
class Cycle:
    """What a cycle gave, as a line of `kalorfix run --format csv`; the unit is in the name. A number that does not exist
    for this medium and device, or that the refused step did not come to, is None."""

    status: str  #: computed or refused
    step: str  #: the step that refused: state, properties, geometry, flow, totals
    reason: str  #: why: the limit, and the value that broke it; or what has no reading
    phase: str  #: water, superheated steam, wet steam
    heat_unit: str  #: of the heats of combustion
    t_C: float | None
    p_Pa: float | None
    dp_Pa: float | None = None
    ps_MPa: float | None = None
    ts_C: float | None = None
    composition_sum: float | None = None  #: as it was given, mol % or in fractions
    K: float | None = None
    rho_c_kg_m3: float | None = None
    rho_kg_m3: float | None = None
    mu_uPa_s: float | None = None
    kappa: float | None = None
    h_kJ_kg: float | None = None
    lower_heat: float | None = None
    higher_heat: float | None = None
    D_mm: float | None = None
    d_mm: float | None = None
    beta: float | None = None
    E: float | None = None
    K_p: float | None = None
    Re: float | None = None
    C: float | None = None
    K_sh: float | None = None
    epsilon: float | None = None
    q_m_t_h: float | None = None
    q_v_m3_h: float | None = None
    q_c_m3_h: float | None = None
    q_e_GJ_h: float | None = None
    q_h_GJ_h: float | None = None

    @property
    def computed(self) -> bool:
        """Whether all steps of the cycle succeeded."""
        return self.status == "computed"


TEXTS = ("status", "step", "reason", "phase", "heat_unit")
COLUMNS = tuple(Cycle.__dataclass_fields__)
# Places in a row.
AT_T, AT_P, AT_DP, AT_PS, AT_RHO = (
    COLUMNS.index(name) for name in ("t_C", "p_Pa", "dp_Pa", "ps_MPa", "rho_kg_m3"))
AT_SUM, AT_K, AT_H, AT_LOWER, AT_D, AT_RE, AT_Q = (
    COLUMNS.index(name) for name in ("composition_sum", "K", "h_kJ_kg", "lower_heat", "D_mm", "Re", "q_m_t_h"))
