"""The shared library: where it is found, its functions, its errors."""

from __future__ import annotations

import ctypes
import os
import pathlib
import sys
import unicodedata
from ctypes import POINTER, Structure, byref, c_char, c_char_p, c_double
from ctypes import c_int, c_size_t, c_void_p
from typing import Any, List, NoReturn, Optional

_NAME = "libattenuate.so.1"


class AttenuateError(ValueError):
    """An input that cannot be read, or that has no answer.

    Attributes:
        message: what is wrong, one line.
        text: the input, where the error is about one; else "".
        column: where in the text, in characters from 1; 0 for all of it.
        hint: what to type instead, or "".
        position: index of the wrong energy in the flattened array, of the
            wrong layer or line; 0 for other errors.
    """

    def __init__(self, message: str, text: str = "", column: int = 0,
                 hint: str = "", position: int = 0) -> None:
        super().__init__(message)
        self.message = message
        self.text = text
        self.column = column
        self.hint = hint
        self.position = position

    def __str__(self) -> str:
        lines = [self.message]
        if self.text and self.column > 0:
            # Characters that steer a terminal, and halves of surrogate pairs.
            shown = "".join("?" if unicodedata.category(c) in ("Cc", "Cs") else
                            c for c in self.text)
            lines += ["  " + shown, "  " + " " * (self.column - 1) + "^"]
        if self.hint:
            lines.append("hint: " + self.hint)
        return "\n".join(lines)

    def __reduce__(self) -> Any:
        return type(self), (self.message, self.text, self.column, self.hint,
                            self.position)


class OutsideTable(AttenuateError):
    """An energy outside the tables (1 keV to 20 MeV), or not a number."""


class UnknownValue(AttenuateError):
    """What was asked for does not exist, such as a density nobody knows."""


class Error(Structure):
    _fields_ = [("status", c_int), ("column", c_int), ("position", c_size_t),
                ("message", c_char * 256), ("hint", c_char * 256)]


class Layer(Structure):
    _fields_ = [("material", c_void_p), ("g_cm2", c_double)]


class Edge(Structure):
    _fields_ = [("keV", c_double), ("jump", c_double), ("shell", c_char * 4)]


class Absorber(Structure):
    _fields_ = [(name, c_double) for name in (
        "keV", "mu_rho", "isotope_fraction", "t_per_g_cm2", "background",
        "best", "thinnest", "thickest")]


def _candidates() -> List[str]:
    """Files to try, the first that exists wins; a bare name asks the linker."""
    chosen = os.environ.get("ATTENUATE_LIBRARY")
    if chosen:
        return [chosen]
    here = pathlib.Path(__file__).resolve().parent
    found = [here / _NAME]  # beside the module, as pip installs it
    prefixes = [pathlib.Path(sys.prefix)]
    # PREFIX/lib/python3*/site-packages/attenuate. No other folder above the
    # module is looked into: anybody may write to /tmp/lib, say.
    packages = here.parent
    python = packages.parent
    if (packages.name in ("dist-packages", "site-packages")
            and python.name.startswith("python3")
            and python.parent.name in ("lib", "lib64")):
        prefixes.insert(0, python.parent.parent)
    for prefix in prefixes:
        found += [prefix / "lib" / _NAME, prefix / "lib64" / _NAME]
        found += sorted(prefix.glob("lib/*-linux-gnu*/" + _NAME))
    return [str(path) for path in found if path.exists()] + [_NAME]


_doubles = c_void_p  # addresses: an ndarray's, without a wrapper for each call
_size = POINTER(c_size_t)
_double = POINTER(c_double)
_error = POINTER(Error)
_array = [c_void_p, _doubles, _doubles, c_size_t, _error]

_SIGNATURES: "dict[str, list[Any]]" = {
    "material_new": [c_char_p, c_double, POINTER(c_void_p), _error],
    "material_text": [c_void_p, c_int, c_char_p, c_size_t, _size, _error],
    "areal_mass": [c_void_p, c_char_p, _double, _error],
    "density": [c_void_p, _double, _error],
    "molar_mass": [c_void_p, _double, _error],
    "composition": [c_void_p, POINTER(c_int), _double, c_size_t, _size,
                    _error],
    "mu_rho": _array,
    "mu_en_rho": _array,
    "mu": _array,
    "uncertainty": _array,
    "stack_new": [POINTER(Layer), c_size_t, POINTER(c_void_p), _error],
    "mu_x": _array,
    "transmission": _array,
    "beam_transmission": [c_void_p, _doubles, _doubles, c_size_t, c_int,
                          _double, _error],
    "thickness": [c_void_p, c_size_t, c_double, _doubles, _doubles, c_size_t,
                  c_int, _double, _error],
    "element": [c_char_p, POINTER(c_int), _error],
    "edges": [c_int, POINTER(Edge), c_size_t, _size, _error],
    "best_absorber": [c_void_p, c_char_p, c_double, c_double, c_double,
                      c_double, POINTER(Absorber), _error],
    "counting_time": [POINTER(Absorber), _doubles, _doubles, c_size_t, _error],
    "source": [c_char_p, _double, _double, c_size_t, _size, _error],
}


def _load() -> ctypes.CDLL:
    tried = _candidates()[0]
    try:
        library = ctypes.CDLL(tried)
        for name, arguments in _SIGNATURES.items():
            getattr(library, "attenuate_" + name).argtypes = arguments
        for name in ("version", "tables", "symbol"):
            getattr(library, "attenuate_" + name).restype = c_char_p
        library.attenuate_symbol.argtypes = [c_int]
        for name in ("material_free", "stack_free"):
            getattr(library, "attenuate_" + name).argtypes = [c_void_p]
            getattr(library, "attenuate_" + name).restype = None
        return library
    # The latter of a library that is another one, or older.
    except (OSError, AttributeError) as error:
        raise ImportError(
            f"{tried} cannot be loaded ({error}). Install libattenuate "
            "(cmake --install, or the Debian package), or say where it is in "
            "the environment variable ATTENUATE_LIBRARY.") from error


lib = _load()
_FUNCTIONS = {name: getattr(lib, "attenuate_" + name) for name in _SIGNATURES}


def encoded(text: str) -> bytes:
    """`text` for C, which would take a NUL for its end."""
    if not isinstance(text, str):
        raise TypeError(f"a text is needed, not {type(text).__name__}")
    if "\0" in text:
        raise AttenuateError("a character of code 0 is no text", text,
                             text.index("\0") + 1)
    try:
        return text.encode()
    except UnicodeEncodeError as error:
        raise AttenuateError("half a surrogate pair is no text", text,
                             error.start + 1) from None


def _fail(error: Error, text: str) -> NoReturn:
    kind = {4: OutsideTable, 5: UnknownValue}.get(error.status, AttenuateError)
    if error.status == 7:
        raise MemoryError
    raise kind(error.message.decode(), text, error.column, error.hint.decode(),
               error.position)


def call(name: str, *arguments: Any, text: str = "") -> None:
    """Calls attenuate_NAME; raises AttenuateError, with `text` as the input."""
    error = Error()
    if _FUNCTIONS[name](*arguments, byref(error)) != 0:
        _fail(error, text)


def number(name: str, *arguments: Any, text: str = "") -> float:
    """The one number that attenuate_NAME gives."""
    result = c_double()
    call(name, *arguments, byref(result), text=text)
    return result.value


def handle(name: str, *arguments: Any, text: str = "") -> int:
    result = c_void_p()
    call(name, *arguments, byref(result), text=text)
    assert result.value is not None
    return result.value


def count(name: str, *arguments: Any, text: str = "") -> int:
    """How many entries attenuate_NAME would give."""
    result = c_size_t()
    call(name, *arguments, 0, byref(result), text=text)
    return result.value


def text_of(material: int, which: int) -> str:
    needed = c_size_t()
    call("material_text", material, which, None, 0, byref(needed))
    buffer = ctypes.create_string_buffer(needed.value)
    call("material_text", material, which, buffer, needed.value, None)
    return buffer.value.decode()


def symbol(z: int) -> str:
    found: Optional[bytes] = lib.attenuate_symbol(z)
    if found is None:
        raise AttenuateError("an atomic number is 1 to 92")
    return found.decode()
