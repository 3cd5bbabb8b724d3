# SPDX-License-Identifier: MIT
"""The library itself: found, loaded as a copy of its own, its exported functions.

A calculator is an object of the library's classes (kalorfix_calculators.h); its members are called as plain functions
that take the object first, which is what they are on all Linux targets.
"""

from __future__ import annotations

import ctypes
import hashlib
import os
import shutil
import sysconfig
import tempfile
import threading
import weakref
from ctypes import c_byte, c_char_p, c_double, c_float, c_int, c_short, c_ushort, c_void_p
from pathlib import Path
from typing import Any

from . import _gas_data

_out = c_void_p  # an address, of a double unless said otherwise
_PACKAGE = Path(__file__).resolve().parent
_CALCULATOR_BYTES = 4096  # the largest class takes 672
_LONGEST_DIRECTORY = 60  # the library takes paths of up to 99 bytes

# Name here: exported name, result, arguments behind the object.
_PLAIN: dict[str, tuple[str, Any, list[Any]]] = {
    "Init": ("Init", c_int, []),
    "Done": ("Done", c_int, []),
    "t_param_1": ("t_param_1", c_short, [c_double, c_double, c_short, _out, _out, _out, _out]),
    "t_phase_1": ("t_phase_1", c_short, [c_double, c_double, c_double, _out]),
}
_MEMBERS: dict[str, tuple[str, Any, list[Any]]] = {
    "make_gas": ("_ZN8cGas2005C1Ev", None, []),
    "make_heat": ("_ZN10cTeplo2005C1Ev", None, []),
    "Init_TR": ("_ZN11cCommon20057Init_TREcscddddddcddRc", c_byte,
                [c_byte, c_short, c_byte] + [c_double] * 6 + [c_byte, c_double, c_double, _out]),
    "Param_tr": ("_ZN11cCommon20058Param_trERdS0_S0_S0_S0_", c_byte, [_out] * 5),
    "Param_gs": ("_ZN8cGas20058Param_gsEddddscddddddddddddddddRdS0_S0_", c_byte,
                 [c_double] * 4 + [c_short, c_byte] + [c_double] * 16 + [_out] * 3),
    "gas_tf": ("_ZN8cGas20058tf_ParamEccdRdS0_S0_S0_S0_", c_byte, [c_byte, c_byte, c_double] + [_out] * 5),
    "gas_flow": ("_ZN8cGas20059mgn_ParamEcddddRdS0_S0_S0_S0_S0_S0_S0_", c_byte,
                 [c_byte] + [c_double] * 4 + [_out] * 8),
    "Param_tn": ("_ZN10cTeplo20058Param_tnEddddddRsRdS1_", c_byte, [c_double] * 6 + [_out, _out, _out]),
    "heat_tf": ("_ZN10cTeplo20058tf_ParamEctdRdS0_S0_S0_", c_byte, [c_byte, c_ushort, c_double] + [_out] * 4),
    "heat_flow": ("_ZN10cTeplo20059mgn_ParamEcdddRdS0_S0_S0_S0_S0_S0_", c_byte,
                  [c_byte] + [c_double] * 3 + [_out] * 7),
    "in_Param": ("_ZN11cCommon20058in_ParamEdddsdcRdS0_S0_", c_byte,
                 [c_double] * 3 + [c_short, c_double, c_byte] + [_out] * 3),
    "in2_Param": ("_ZN11cCommon20059in2_ParamEfftddddRdS0_S0_", c_byte,
                  [c_float, c_float, c_ushort] + [c_double] * 4 + [_out] * 3),
}


def find_library(path: str | os.PathLike[str] | None = None) -> Path:
    """The file of the library: `path`, else KALORFIX_LIBRARY, else that of the build tree or installation around this
    package. Raises FileNotFoundError with the places that were looked at."""
    given = path or os.environ.get("KALORFIX_LIBRARY")
    if given:
        places = [Path(given)]
    elif (_PACKAGE.parents[1] / "include/kalorfix.h").is_file():  # python/kalorfix of a source tree
        places = [_PACKAGE.parents[1] / build / "kalorfix.so" for build in ("build/release", "build/demo", "build")]
    else:  # lib/python3/dist-packages/kalorfix of an installation
        triplet = sysconfig.get_config_var("MULTIARCH") or ""
        places = [_PACKAGE.parents[2] / lib / "kalorfix.so" for lib in (triplet, "", "../lib64")]
    for place in places:
        if place.is_file():
            return place.resolve()
    raise FileNotFoundError("there is no kalorfix.so at " + ", ".join(str(place) for place in places) +
                            "; give its path, or set KALORFIX_LIBRARY")


def find_gas_data(library: Path) -> Path | None:
    """The gas data file of a library file: beside it, or in share/kalorfix of its installation."""
    directory = library.parent
    for place in (directory, directory / "../share/kalorfix", directory / "../../share/kalorfix"):
        if (place / "gas.dat").is_file():
            return (place / "gas.dat").resolve()
    return None


class Library:
    """kalorfix.so with its gas data, loaded as a copy of its own: what one library computes leaves no trace in another.

    path      the file; without it KALORFIX_LIBRARY, then that of the build tree or installation around this package
    gas_data  gas.dat; without it that of the library. The methods by composition, AGA8-92DC and VNIC SMV, need it

    One lock holds the steps of a cycle together, so that threads may share a library. `close` gives the memory back,
    as does the end of the last reference. Raises FileNotFoundError and OSError where there is no such library.
    """

    def __init__(self, path: str | os.PathLike[str] | None = None,
                 gas_data: str | os.PathLike[str] | None = None) -> None:
        self.path = find_library(path)
        if gas_data is not None and not Path(gas_data).is_file():
            raise FileNotFoundError(f"{gas_data}: no such gas data file")
        self.gas_data = Path(gas_data).resolve() if gas_data is not None else find_gas_data(self.path)
        self.lock = threading.RLock()
        self.closed = False
        self._contents: tuple[float, float] | None = None  # what the last method by density left, mol %
        self._gas_data_faults: list[str] | None = None
        self._load()
        self.spare, self.spare_heat = self._spare("make_gas"), self._spare("make_heat")

    def _spare(self, make: str) -> ctypes.Array[ctypes.c_char]:
        """A channel that meters volume, for states."""
        meter_volume, calculator = 21, self.calculator(make)
        self.call("Init_TR", calculator, 1, meter_volume, 0, *[0.0] * 6, 0, 0.0, 0.0, ctypes.byref(c_byte()))
        return calculator

    def _load(self) -> None:
        parent = tempfile.gettempdir()
        with tempfile.TemporaryDirectory(prefix="kalorfix-",
                                         dir=parent if len(parent) <= _LONGEST_DIRECTORY else "/tmp") as root:
            # The loader knows a file again by its inode and would hand out the state that is there already.
            copy = shutil.copyfile(self.path, os.path.join(root, "kalorfix.so"))
            # DEEPBIND: other libraries of the process may export names such as T or K.
            self._dll = ctypes.PyDLL(copy, mode=os.RTLD_NOW | os.RTLD_LOCAL | os.RTLD_DEEPBIND)
            self._functions = {name: self._bind(*what) for name, what in _PLAIN.items()}
            self._functions |= {name: self._bind(symbol, result, [c_void_p, *arguments])
                                for name, (symbol, result, arguments) in _MEMBERS.items()}
            self._initialise(root)
        self._finish = weakref.finalize(self, _unload, self._dll._handle)
        self._finish.atexit = False

    def _bind(self, symbol: str, result: Any, arguments: list[Any]) -> Any:
        try:
            function = self._dll[symbol]
        except AttributeError:
            raise OSError(f"{self.path} is no kalorfix library: it does not export {symbol}") from None
        function.restype, function.argtypes = result, arguments
        return function

    def _initialise(self, root: str) -> None:
        """Init with directories of its own, written into the library's and not into the environment of the process."""
        Path(root, "tornkntr.ini").write_text("[TORNOL]\nNum_gas_trub = 1\n")
        if self.gas_data is not None:
            # What is judged is what is loaded.
            with open(self.gas_data, "rb") as file:
                self._gas_bytes, self._gas_size = file.read(_gas_data.BYTES), os.fstat(file.fileno()).st_size
            Path(root, "gas.dat").write_bytes(self._gas_bytes)
        names = ("TORNPATH", "PATHDB", "PRG", "SYSTEM", "LIB", "DIC", "SETTINGS", "PRG_DEBUG", "XML_SETTINGS")
        self._directory = ctypes.create_string_buffer(os.fsencode(root))
        paths = (c_char_p * len(names)).in_dll(self._dll, "SRV_Path")
        for name in ("PATHDB", "SYSTEM", "SETTINGS"):
            paths[names.index(name)] = ctypes.cast(self._directory, c_char_p)
        self._functions["Init"]()
        loaded = c_byte.in_dll(self._dll, "Gas_Not_Init").value == 1
        if self.gas_data is not None and not loaded:
            raise OSError(f"{self.gas_data}: the library cannot read this gas data file")

    def call(self, name: str, *arguments: Any) -> Any:
        """Calls an exported function, by its name in this module. The caller holds the lock."""
        if self.closed:
            raise ValueError("the library is closed")
        return self._functions[name](*arguments)

    def calculator(self, make: str) -> ctypes.Array[ctypes.c_char]:
        """A new object of the library's classes, in memory of this process; it owns nothing else."""
        memory = ctypes.create_string_buffer(_CALCULATOR_BYTES)
        with self.lock:
            self.call(make, memory)
        return memory

    def floats(self, name: str, count: int = 1) -> list[float]:
        """Values of an exported array or variable of single precision. The caller holds the lock."""
        if self.closed:
            raise ValueError("the library is closed")
        return list((c_float * count).in_dll(self._dll, name))

    def double(self, name: str) -> float:
        """The value of an exported constant. The caller holds the lock."""
        return c_double.in_dll(self._dll, name).value

    def require_gas_data(self, what: str) -> None:
        """Raises ValueError where there are no gas data, or faulty ones; judged once, as by the tool."""
        if self.gas_data is None:
            raise ValueError(f"{what} needs gas data, and there is no gas.dat beside the library; give Library gas_data")
        if self._gas_data_faults is None:
            self._gas_data_faults = _gas_data.faults(self._gas_bytes, self._gas_size)
        if self._gas_data_faults:
            others = len(self._gas_data_faults) - 1
            raise ValueError(f"{self.gas_data}: these gas data are not used: {self._gas_data_faults[0]}" +
                             (f"; and {others} more" if others else ""))

    def leave_contents(self, contents: tuple[float, float] | None) -> None:
        """Sees to the nitrogen and carbon dioxide (mol %) with which AGA8-92DC takes viscosity and exponent: those that
        the last method by density left. None says that another calculation has left its own. The caller holds the lock."""
        if contents is not None and contents != self._contents:
            gerg91, x = 1, [0.0] * 15
            x[10], x[11] = contents
            self.call("Param_gs", self.spare, 20.0, 1e6, 0.0, 0.0, gerg91, 0, *x, 0.7,
                      *(ctypes.byref(c_double()) for _ in range(3)))
        self._contents = contents

    def sha256(self) -> str:
        """Digest of the library file, by which a metrologist identifies it."""
        return hashlib.sha256(self.path.read_bytes()).hexdigest()

    def close(self) -> None:
        """Unloads the library. What was made with it refuses to compute from then on."""
        with self.lock:
            self.closed = True
            self._finish()

    def __enter__(self) -> Library:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def __reduce__(self) -> tuple[Any, ...]:
        return Library, (self.path, self.gas_data)


def _unload(handle: int) -> None:
    close = ctypes.CDLL(None).dlclose
    close.argtypes = [c_void_p]
    close(handle)


_default: Library | None = None
_default_lock = threading.Lock()


def default_library() -> Library:
    """The library of those who name none, loaded when it is first wanted."""
    global _default
    with _default_lock:
        if _default is None or _default.closed:
            _default = Library()
        return _default
