"""Flow of natural gas, water and steam by GOST 8.586-2005 / ISO 5167, and the properties behind it, from kalorfix.so.

    Gas, Heat    channels with the keys of a station; .cycle(t, p, dp) and .frame(df) compute
    Station      the channels of a station file
    water, gas   single states
    Library      the library: which file, which gas data; two of them do not disturb each other

Temperatures are in degC, pressures absolute and in MPa, differential pressures in kPa, unless a name says otherwise. What
cannot be computed is a result with status "refused" and its reason; a wrong argument is a ValueError that names its limit.
"""

from ._native import Library
from .channels import Channel
from .composition import COMPONENTS
from .cycle import Cycle
from .gas_channel import Gas
from .heat_channel import Heat
from .states import GasState, WaterState, gas, water
from .station import Station
from .totals import Interval, Register, Registers

__all__ = ["COMPONENTS", "Channel", "Cycle", "Gas", "GasState", "Heat", "Interval", "Library", "Register", "Registers",
           "Station", "WaterState", "gas", "water"]
