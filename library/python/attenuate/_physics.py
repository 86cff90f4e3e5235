"""Materials, stacks, sources and absorbers."""

from __future__ import annotations

import ctypes
import html
import operator
import weakref
from typing import Any, Dict, List, NamedTuple, Optional, Sequence, Tuple, Union

import numpy as np
import numpy.typing as npt

from . import _library
from ._library import AttenuateError, UnknownValue

Values = Union[np.float64, "npt.NDArray[np.float64]"]
Energies = npt.ArrayLike
_TYPED, _READ, _DENSITY_ORIGIN, _NOTES = range(4)


def version() -> str:
    """Version of the library, such as "1.0.0"."""
    return str(_library.lib.attenuate_version().decode())


def tables() -> str:
    """Version and origin of the tables, one line."""
    return str(_library.lib.attenuate_tables().decode())


def _number(value: Any, what: str) -> float:
    """One number, which neither a truth value nor a text is."""
    if isinstance(value, (bool, np.bool_, str, bytes)) or np.ndim(value) > 0:
        raise TypeError(f"{what} is a number, not {value!r}")
    return float(value)


def _input(values: Energies) -> "npt.NDArray[np.float64]":
    """Contiguous float64, without a copy of what is that already."""
    if isinstance(values, np.ma.MaskedArray):
        raise TypeError("a masked array, whose mask would be lost: give its "
                        "compressed() or filled() values")
    array = np.asarray(values)
    if array.dtype.kind not in "fiu":
        raise TypeError(f"numbers are needed, not {array.dtype}")
    return np.asarray(array, dtype=np.float64, order="C")


def _evaluate(function: str, handle: int, energies: Energies) -> Values:
    keV = _input(energies)
    values = np.empty(keV.shape)
    _library.call(function, handle, keV.ctypes.data, values.ctypes.data,
                  keV.size)
    return values if keV.ndim else values[()]


class Thickness(NamedTuple):
    """A thickness by areal mass, and as a length where a density is known."""

    g_cm2: float
    cm: Optional[float]

    def __str__(self) -> str:
        text = f"{self.g_cm2 * 1e3:.6g} mg/cm2"
        return text if self.cm is None else f"{text} = {self.cm * 1e4:.6g} um"


class _Constant:
    """What can be a key of a dict, and so has attributes that are set once."""

    def __setattr__(self, name: str, value: Any) -> None:
        if name in self.__dict__:
            raise AttributeError(f"{name} of a {type(self).__name__} is fixed")
        super().__setattr__(name, value)


class Material(_Constant):
    """What a formula, a name or a mixture stands for; made by material().

    A material does not change. Materials of one text and density are equal,
    can be keys of a dict, and are pickled as these two.

    Attributes:
        text: as typed.
        read: as understood, such as "CuSO4 + 5 H2O".
        notes: readings that could surprise.
    """

    def __init__(self, text: str, density: Optional[float] = None) -> None:
        if density is not None:
            density = _number(density, "a density")
            if not density > 0:
                raise AttenuateError("a density must be above 0")
        self._density = density
        self._handle = _library.handle("material_new", _library.encoded(text),
                                       density or 0.0, text=text)
        weakref.finalize(self, _library.lib.attenuate_material_free,
                         self._handle)
        self.text = _library.text_of(self._handle, _TYPED)
        self.read = _library.text_of(self._handle, _READ)
        notes = _library.text_of(self._handle, _NOTES)
        self.notes: Tuple[str, ...] = tuple(notes.split("\n")) if notes else ()

    def __reduce__(self) -> Any:
        return Material, (self.text, self._density)

    def __eq__(self, other: object) -> bool:
        return (isinstance(other, Material) and self.text == other.text
                and self._density == other._density)

    def __hash__(self) -> int:
        return hash((self.text, self._density))

    @property
    def density(self) -> float:
        """g/cm3. Raises UnknownValue where nobody knows it."""
        return _library.number("density", self._handle)

    @property
    def density_origin(self) -> str:
        """Where the density is from: "typed", a handbook; "" if unknown."""
        return _library.text_of(self._handle, _DENSITY_ORIGIN)

    @property
    def molar_mass(self) -> float:
        """g/mol. Raises UnknownValue for mixtures."""
        return _library.number("molar_mass", self._handle)

    @property
    def mass_fractions(self) -> Dict[str, float]:
        """Shares of the elements by mass, which add up to 1."""
        n = _library.count("composition", self._handle, None, None)
        z = (ctypes.c_int * n)()
        share = (ctypes.c_double * n)()
        _library.call("composition", self._handle, z, share, n, None)
        return {_library.symbol(z[i]): share[i] for i in range(n)}

    def mu_rho(self, energies: Energies) -> Values:
        """Mass attenuation coefficient in cm2/g, coherent scattering included.

        Args:
            energies: keV, a number or an array of any shape.

        Returns:
            A number, or an array of the same shape.

        Raises:
            OutsideTable: an energy below 1 keV, above 20 MeV, or NaN.
            TypeError: no numbers.
        """
        return _evaluate("mu_rho", self._handle, energies)

    def mu_en_rho(self, energies: Energies) -> Values:
        """Mass energy-absorption coefficient in cm2/g; as mu_rho()."""
        return _evaluate("mu_en_rho", self._handle, energies)

    def mu(self, energies: Energies) -> Values:
        """Linear attenuation coefficient in 1/cm; as mu_rho().

        Raises also UnknownValue where the density is not known.
        """
        return _evaluate("mu", self._handle, energies)

    def uncertainty(self, energies: Energies) -> Values:
        """Relative uncertainty of mu/rho (k = 1); as mu_rho()."""
        return _evaluate("uncertainty", self._handle, energies)

    def areal_mass(self, thickness: "ThicknessLike") -> float:
        """g/cm2 of a thickness.

        Args:
            thickness: "25um", "50mg/cm2", "30mg/d13mm" (pressed to a disc of
                13 mm), "30mg/1.33cm2"; or a number, in g/cm2 already.
        """
        if isinstance(thickness, Thickness):
            return thickness.g_cm2
        if isinstance(thickness, str):
            return _library.number("areal_mass", self._handle,
                                   _library.encoded(thickness), text=thickness)
        return _number(thickness, "a thickness without unit")

    def transmission(self, thickness: "ThicknessLike",
                     energies: Energies) -> Values:
        """Share of the beam that passes, exp(-mu x): between 0 and 1.

        Args:
            thickness: as for areal_mass().
            energies: keV, a number or an array of any shape.

        Raises:
            AttenuateError: the thickness cannot be read.
            UnknownValue: a length without a known density.
            OutsideTable: an energy outside the tables.
        """
        return stack((self, thickness)).transmission(energies)

    def thickness(self, T: float, energy: Energies,
                  weights: Optional[Energies] = None) -> Thickness:
        """The thickness that transmits T; as Stack.thickness()."""
        return stack((self, None)).thickness(T, energy, weights)

    def __repr__(self) -> str:
        density = "" if self._density is None else f", density={self._density}"
        return f"attenuate.material({self.text!r}{density})"

    def _repr_html_(self) -> str:
        facts = [("read as", html.escape(self.read))]
        try:
            facts.append(("density", f"{self.density:.6g} g/cm<sup>3</sup> "
                          f"({html.escape(self.density_origin)})"))
        except UnknownValue:
            facts.append(("density", "not known"))
        try:
            facts.append(("molar mass", f"{self.molar_mass:.6g} g/mol"))
        except UnknownValue:
            pass
        facts += [(name, f"{100 * share:.4g} % by mass")
                  for name, share in self.mass_fractions.items()]
        facts += [("note", html.escape(note)) for note in self.notes]
        return _table(html.escape(self.text), facts)


ThicknessLike = Union[str, float, Thickness]
MaterialLike = Union[str, Material]


def _table(title: str, rows: Sequence[Tuple[str, str]]) -> str:
    """Of cells that are HTML already."""
    body = "".join(f"<tr><th>{a}</th><td>{b}</td></tr>" for a, b in rows)
    return f"<table><caption>{title}</caption>{body}</table>"


def material(text: MaterialLike, density: Optional[float] = None) -> Material:
    """Reads a material.

    Args:
        text: a formula ("Na2[Fe(CN)5NO]*2H2O", "Fe2O3@5.24"), a name
            ("kapton") or a mixture ("18% Cr // 8% Ni // Fe").
        density: g/cm3, in place of that of the text.

    Raises:
        AttenuateError: the text cannot be read.

    >>> attenuate.material("Na2[Fe(CN)5NO]*2H2O", density=1.72).molar_mass
    297.9...
    """
    if isinstance(text, Material):
        return text if density is None else Material(text.text, density)
    return Material(text, density)


class Stack(_Constant):
    """Layers in the order of the beam; made by stack().

    One layer may have the thickness None, which thickness() finds.

    Attributes:
        materials: of the layers.
        g_cm2: their areal masses, None for the unknown one.
    """

    def __init__(self, *layers: "tuple[MaterialLike, Optional[ThicknessLike]]"
                 ) -> None:
        read = []
        for position, (of, thick) in enumerate(layers):
            try:
                layer = material(of)
                read.append((layer, None if thick is None
                             else layer.areal_mass(thick)))
            except AttenuateError as error:
                error.position = position
                raise
        self.materials = tuple(m for m, _ in read)
        self.g_cm2 = tuple(d for _, d in read)
        if self.g_cm2.count(None) > 1:
            raise AttenuateError("only one thickness may be unknown")
        array = (_library.Layer * len(layers))(*(
            (m._handle, d or 0.0) for m, d in zip(self.materials, self.g_cm2)))
        self._handle = _library.handle("stack_new", array, len(layers))
        weakref.finalize(self, _library.lib.attenuate_stack_free, self._handle)

    def __reduce__(self) -> Any:
        return Stack, tuple(zip(self.materials, self.g_cm2))

    def __eq__(self, other: object) -> bool:
        return (isinstance(other, Stack) and self.g_cm2 == other.g_cm2
                and self.materials == other.materials)

    def __hash__(self) -> int:
        return hash((self.materials, self.g_cm2))

    def _complete(self) -> int:
        if None in self.g_cm2:
            raise AttenuateError("a layer has no thickness", position=self.
                                 g_cm2.index(None), hint="thickness() finds it")
        return self._handle

    def mu_x(self, energies: Energies) -> Values:
        """The exponent: mu/rho times areal mass, summed over the layers."""
        return _evaluate("mu_x", self._complete(), energies)

    def transmission(self, energies: Energies,
                     weights: Optional[Energies] = None,
                     by_energy: bool = False) -> Values:
        """Share of the beam that passes, exp(-mu x): between 0 and 1.

        Args:
            energies: keV, a number or an array of any shape.
            weights: of the energies as lines of one beam, relative to each
                other and of the same shape; the answer is one number then.
            by_energy: lines count by weight times energy.

        Raises:
            OutsideTable: an energy outside the tables.
            AttenuateError: a layer without thickness; weights that are
                negative, or all 0.
            TypeError: by_energy without weights.
        """
        handle = self._complete()
        if weights is None:
            if by_energy:
                raise TypeError("by_energy needs weights")
            return _evaluate("transmission", handle, energies)
        keV, shares = _beam(energies, weights)
        return np.float64(_library.number(
            "beam_transmission", handle, keV.ctypes.data, shares.ctypes.data,
            keV.size, int(by_energy)))

    def thickness(self, T: float, energy: Energies,
                  weights: Optional[Energies] = None,
                  layer: Optional[int] = None,
                  by_energy: bool = False) -> Thickness:
        """The thickness of one layer with which the whole transmits T.

        Args:
            T: above 0 and at most 1.
            energy: keV; several are lines of one beam.
            weights: of the lines, relative to each other; equal without.
            layer: which, from 0; without it the one whose thickness is None,
                or the last.
            by_energy: lines count by weight times energy.

        Raises:
            UnknownValue: no thickness does it, since the other layers alone
                transmit less.
            OutsideTable: an energy outside the tables.
        """
        n = len(self.materials)
        if layer is None:
            layer = (self.g_cm2.index(None) if None in self.g_cm2 else n - 1)
        if not -n <= operator.index(layer) < n:
            raise AttenuateError("the stack has no such layer")
        if self.g_cm2[layer] is not None:
            self._complete()
        keV, shares = _beam(energy, np.ones_like(_input(energy))
                            if weights is None else weights)
        g_cm2 = _library.number(
            "thickness", self._handle, layer % n,
            _number(T, "a transmission"), keV.ctypes.data,
            shares.ctypes.data, keV.size, int(by_energy))
        try:
            return Thickness(g_cm2, g_cm2 / self.materials[layer].density)
        except UnknownValue:
            return Thickness(g_cm2, None)

    def __repr__(self) -> str:
        layers = (f"({m!r}, {d!r})"
                  for m, d in zip(self.materials, self.g_cm2))
        return f"attenuate.stack({', '.join(layers)})"

    def _repr_html_(self) -> str:
        return _table("layers in the order of the beam", [
            (html.escape(m.text),
             "?" if d is None else f"{d * 1e3:.6g} mg/cm<sup>2</sup>")
            for m, d in zip(self.materials, self.g_cm2)])


def _beam(energies: Energies, weights: Energies
          ) -> "tuple[npt.NDArray[np.float64], npt.NDArray[np.float64]]":
    keV, shares = _input(energies), _input(weights)
    if keV.shape != shares.shape:
        raise AttenuateError(f"{shares.shape} weights for {keV.shape} lines")
    return keV, shares


def stack(*layers: "tuple[MaterialLike, Optional[ThicknessLike]]") -> Stack:
    """Layers in the order of the beam.

    Args:
        layers: pairs of a material (or its text) and a thickness, as for
            Material.areal_mass(); one may be None.

    Raises:
        AttenuateError: a material or thickness that cannot be read.

    >>> str(attenuate.stack(("kapton", "50um"), ("Fe", None)).thickness(
    ...     T=0.3, energy=14.41))
    '18.76... mg/cm2 = 23.83... um'
    """
    return Stack(*layers)


class Edge(NamedTuple):
    """An absorption edge: energy in keV; mu above over mu below, of this shell
    alone (1 where there is none)."""

    shell: str
    keV: float
    jump: float


def edges(element: str) -> List[Edge]:
    """Absorption edges of an element ("Fe", "iron"), K first."""
    z = ctypes.c_int()
    _library.call("element", _library.encoded(element), ctypes.byref(z),
                  text=element)
    n = _library.count("edges", z.value, None)
    found = (_library.Edge * n)()
    _library.call("edges", z.value, found, n, None)
    return [Edge(e.shell.decode(), e.keV, e.jump) for e in found]


class Lines(NamedTuple):
    """Lines of a source: energies in keV, photons per 100 decays (of an anode
    relative to 100 for K alpha 1)."""

    keV: "npt.NDArray[np.float64]"
    intensity: "npt.NDArray[np.float64]"


def source(name: str) -> Lines:
    """Lines of a source, such as "57Co", "241Am", "CuKa".

    >>> foil = attenuate.stack(("Fe", "25um"))
    >>> print(foil.transmission(*attenuate.source("57Co")))
    0.70...
    """
    word = _library.encoded(name)
    n = _library.count("source", word, None, None, text=name)
    keV, intensity = np.empty(n), np.empty(n)
    doubles = ctypes.POINTER(ctypes.c_double)
    _library.call("source", word, keV.ctypes.data_as(doubles),
                  intensity.ctypes.data_as(doubles), n, None)
    return Lines(keV, intensity)


class Absorber(_Constant):
    """The best Moessbauer absorber of a material; made by absorber().

    Attributes:
        material, isotope: as given.
        best: areal mass in g/cm2 that measures the line in the shortest time.
        thinnest, thickest: between these it takes 10 % longer at most.
        keV: energy of the transition.
        mu_rho: cm2/g at that energy, by electrons.
        isotope_fraction: share of the element's atoms.
        t_per_g_cm2: effective thickness of the line per g/cm2.
    """

    def __init__(self, material_: MaterialLike, isotope: str, f: float,
                 enriched: Optional[float], line: float, background: float
                 ) -> None:
        f = _number(f, "a recoil-free fraction")
        line = _number(line, "the share of a line")
        background = _number(background, "a background")
        if enriched is not None:
            enriched = _number(enriched, "an enrichment")
            if not enriched > 0:
                raise AttenuateError("an enrichment must be above 0")
        self._arguments = (material_, isotope, f, enriched, line, background)
        self.material = material(material_)
        self.isotope = isotope
        self._found = _library.Absorber()
        _library.call("best_absorber", self.material._handle,
                      _library.encoded(isotope), f, enriched or 0.0, line,
                      background, ctypes.byref(self._found), text=isotope)
        self.best: float = self._found.best
        self.thinnest: float = self._found.thinnest
        self.thickest: float = self._found.thickest
        self.keV: float = self._found.keV
        self.mu_rho: float = self._found.mu_rho
        self.isotope_fraction: float = self._found.isotope_fraction
        self.t_per_g_cm2: float = self._found.t_per_g_cm2

    def __reduce__(self) -> Any:
        return Absorber, self._arguments

    @property
    def effective_thickness(self) -> float:
        """t_a of the line at the best areal mass."""
        return self.best * self.t_per_g_cm2

    @property
    def transmission(self) -> float:
        """Share of the photons that the electrons let pass, at the best."""
        return float(np.exp(-self.mu_rho * self.best))

    def relative_time(self, g_cm2: Energies) -> Values:
        """Counting time for the same relative error of the line's depth.

        Args:
            g_cm2: areal masses, a number or an array of any shape.

        Returns:
            1 at the best areal mass; infinite at 0.
        """
        masses = _input(g_cm2)
        times = np.empty(masses.shape)
        _library.call("counting_time", ctypes.byref(self._found),
                      masses.ctypes.data, times.ctypes.data, masses.size)
        return times if masses.ndim else times[()]

    def __repr__(self) -> str:
        _, isotope, f, enriched, line, background = self._arguments
        return (f"attenuate.absorber({self.material!r}, {isotope!r}, f={f}, "
                f"enriched={enriched}, line={line}, background={background})")

    def _repr_html_(self) -> str:
        unit = "mg/cm<sup>2</sup>"
        return _table(html.escape(f"{self.material.text} for {self.isotope}"), [
            ("best", f"{self.best * 1e3:.4g} {unit}"),
            ("10 % more time", f"{self.thinnest * 1e3:.4g} to "
             f"{self.thickest * 1e3:.4g} {unit}"),
            ("effective thickness", f"{self.effective_thickness:.4g}"),
            ("transmission", f"{self.transmission:.4g}")])


def absorber(material: MaterialLike, isotope: str = "57Fe", *, f: float,
             enriched: Optional[float] = None, line: float = 1.0,
             background: float = 0.0) -> Absorber:
    """How thick a Moessbauer absorber measures a line in the shortest time.

    The depth of the line, lost to saturation in thick absorbers, is weighed
    against the counts that they take away (S. J. Long, T. E. Cranshaw and G.
    Longworth, Moessbauer Eff. Ref. Data J. 6 (1983) 42; saturation after S.
    Margulies and J. R. Ehrman, Nucl. Instr. Meth. 12 (1961) 131).

    Args:
        material: that holds the isotope.
        isotope: "57Fe"; "155Gd@105.3" where an isotope has several
            transitions.
        f: recoil-free fraction of the absorber, 1e-6 to 1.
        enriched: percent of the element's atoms that are the isotope; without
            it what the formula says (^57Fe), or the natural abundance.
        line: share of the absorption that is in the line: 1 for a single one,
            1/4 for the outermost of a sextet.
        background: counts in the window that are not the line, per count of
            the line, without absorber.

    Raises:
        AttenuateError: an isotope that is not known or not in the material; a
            number out of its range.
    """
    return Absorber(material, isotope, f, enriched, line, background)
