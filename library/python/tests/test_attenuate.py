"""The Python module against numbers from elsewhere, and its edges."""

import concurrent.futures
import copy
import gc
import pathlib
import pickle
import subprocess
import sys
from typing import Any, Callable, NamedTuple

import attenuate
import numpy as np
import pytest

IRON = attenuate.material("Fe")


class Published(NamedTuple):
    material: str
    keV: float
    mu_rho: float
    mu_en_rho: float


# Tables of NIST, Hubbell and Seltzer, NISTIR 5632.
PUBLISHED = [
    Published("Fe", 10.0, 170.6, 136.9),
    Published("Fe", 1000.0, 0.05995, 0.02599),
    Published("Pb", 100.0, 5.549, 1.976),
    Published("H2O", 50.0, 0.2269, 0.04223),
]


@pytest.mark.parametrize("row", PUBLISHED, ids=lambda row: row.material)
def test_coefficients_are_the_published_ones(row: Published) -> None:
    material = attenuate.material(row.material)
    assert material.mu_rho(row.keV) == pytest.approx(row.mu_rho, rel=2e-3)
    assert material.mu_en_rho(row.keV) == pytest.approx(row.mu_en_rho, rel=3e-3)


def test_material_knows_what_was_read() -> None:
    hydrate = attenuate.material("CuSO4.5H2O")
    assert hydrate.read == "CuSO4 + 5 H2O"
    assert hydrate.molar_mass == pytest.approx(249.68, abs=0.01)
    assert hydrate.notes
    assert sum(hydrate.mass_fractions.values()) == pytest.approx(1)
    assert IRON.density == 7.874
    heavier = attenuate.material("Fe", density=8.0)
    assert heavier.mu(14.41) == pytest.approx(8.0 * IRON.mu_rho(14.41))
    assert attenuate.edges("iron")[0] == ("K", 7.112, pytest.approx(7.9, .01))


@pytest.mark.parametrize("shape", [(), (0,), (5,), (3, 4), (2, 0, 3), (2, 3, 4)])
def test_arrays_keep_their_shape(shape: "tuple[int, ...]") -> None:
    keV = np.linspace(5, 150, int(np.prod(shape))).reshape(shape)
    for function in (IRON.mu_rho, IRON.mu_en_rho, IRON.mu, IRON.uncertainty,
                     lambda e: IRON.transmission("25um", e)):
        values = function(keV)
        assert np.shape(values) == shape
        assert values.dtype == np.float64


def test_whatever_holds_numbers_is_taken() -> None:
    keV = np.linspace(5, 150, 12)
    expected = IRON.mu_rho(keV)
    for same in (list(keV), keV.reshape(3, 4).T.copy().T.ravel(),
                 keV.astype(">f8"), np.repeat(keV, 2)[::2]):
        assert np.array_equal(IRON.mu_rho(same), expected)
    assert IRON.mu_rho(14) == IRON.mu_rho(np.float32(14)) == IRON.mu_rho([14])[0]


def test_contiguous_doubles_are_read_in_place(
        monkeypatch: pytest.MonkeyPatch) -> None:
    seen = []
    call = attenuate._library.call
    monkeypatch.setattr(attenuate._library, "call",
                        lambda *a, **k: seen.append(a) or call(*a, **k))
    keV = np.linspace(5, 150, 12)
    IRON.mu_rho(keV)
    assert seen[0][2] == keV.ctypes.data


def test_stack_transmits_and_finds_a_thickness() -> None:
    whole = attenuate.stack(("kapton", "50um"), ("Fe", "25um"))
    keV, photons = attenuate.source("57Co")
    single = whole.transmission(keV)
    assert whole.transmission(keV, photons) == pytest.approx(
        np.average(single, weights=photons))
    assert whole.transmission(keV, photons, by_energy=True) == pytest.approx(
        np.average(single, weights=photons * keV))
    assert np.allclose(np.exp(-whole.mu_x(keV)), single, rtol=1e-13)
    wanted = attenuate.stack(("kapton", "50um"), ("Fe", None))
    found = wanted.thickness(T=0.3, energy=14.41)
    assert whole.materials == wanted.materials
    again = attenuate.stack(("kapton", "50um"), ("Fe", found))
    assert again.transmission(14.41) == pytest.approx(0.3)
    assert found.cm == pytest.approx(found.g_cm2 / 7.874)
    assert whole.thickness(T=0.3, energy=14.41, layer=-1) == found
    assert attenuate.stack().transmission(14.41) == 1


class Wrong(NamedTuple):
    action: Callable[[], Any]
    kind: type
    shown: str


WRONG = [
    Wrong(lambda: attenuate.material("FE2O3"), attenuate.AttenuateError,
          "'E' is not an element\n  FE2O3\n   ^\nhint: did you mean Fe2O3?"),
    Wrong(lambda: attenuate.material("Fe\0"), attenuate.AttenuateError, "code 0"),
    Wrong(lambda: attenuate.material("Fe", density=-1), ValueError, "density"),
    Wrong(lambda: attenuate.material(26), TypeError, "text"),
    Wrong(lambda: IRON.mu_rho([14, 0.5]), attenuate.OutsideTable, "0.5 keV"),
    Wrong(lambda: IRON.mu_rho(np.nan), attenuate.OutsideTable, "not a number"),
    Wrong(lambda: IRON.mu_rho("14.41"), TypeError, "numbers"),
    Wrong(lambda: IRON.mu_rho(14 + 1j), TypeError, "numbers"),
    Wrong(lambda: IRON.areal_mass("25"), ValueError, "25"),
    Wrong(lambda: attenuate.material("C10H8O4").mu(14), attenuate.UnknownValue,
          "density of C10H8O4"),
    Wrong(lambda: attenuate.stack(("Fe", None)).mu_x(14), ValueError,
          "no thickness"),
    Wrong(lambda: attenuate.stack(("Fe", None), ("Fe", None)), ValueError,
          "only one"),
    Wrong(lambda: attenuate.stack(("Fe", 1)).thickness(2, 14), ValueError,
          "transmission"),
    Wrong(lambda: attenuate.stack(("Fe", 1)).thickness(.5, 14, layer=7),
          ValueError, "no such layer"),
    Wrong(lambda: attenuate.stack(("Fe", None)).thickness(.5, 14, layer=5),
          attenuate.AttenuateError, "no such layer"),
    Wrong(lambda: attenuate.stack().thickness(.5, 14), ValueError, "no such"),
    Wrong(lambda: attenuate.stack(("Fe", 1)).transmission(14, by_energy=True),
          TypeError, "weights"),
    Wrong(lambda: attenuate.material("Fe", True), TypeError, "density"),
    Wrong(lambda: attenuate.material("Fe", "7"), TypeError, "density"),
    Wrong(lambda: attenuate.material("Fe", np.array([1.5])), TypeError, "dens"),
    Wrong(lambda: IRON.mu_rho(np.ma.array([14, 15], mask=[0, 1])), TypeError,
          "mask"),
    Wrong(lambda: setattr(IRON, "text", "Cu"), AttributeError, "fixed"),
    Wrong(lambda: attenuate.material("Fe\ud800"), attenuate.AttenuateError,
          "no text\n  Fe?\n    ^"),
    Wrong(lambda: attenuate.edges("\udcff"), attenuate.AttenuateError, "text"),
    Wrong(lambda: attenuate.source("\x1b[31m"), attenuate.AttenuateError,
          "no text\n  ?[31m\n  ^"),
    Wrong(lambda: attenuate.absorber("Fe", "57Fe\n", f=1), ValueError, "text"),
    Wrong(lambda: attenuate.source("57C0"), ValueError, "no source"),
    Wrong(lambda: attenuate.edges("Xx"), ValueError, "no element"),
]


@pytest.mark.parametrize("wrong", WRONG, ids=lambda wrong: wrong.shown[:20])
def test_errors_say_what_is_wrong(wrong: Wrong) -> None:
    with pytest.raises(wrong.kind) as caught:
        wrong.action()
    assert wrong.shown in str(caught.value)
    if isinstance(caught.value, attenuate.AttenuateError):
        str(caught.value).encode()
        assert isinstance(caught.value, ValueError)
        again = pickle.loads(pickle.dumps(caught.value))
        assert str(again) == str(caught.value)


def test_errors_of_a_stack_tell_the_layer() -> None:
    for wrong in (("xx)", "1um"), ("Fe", "1")):
        with pytest.raises(attenuate.AttenuateError) as caught:
            attenuate.stack(("Fe", "1um"), wrong)
        assert caught.value.position == 1


def test_absorber_chooses_among_transitions() -> None:
    for isotope, keV in (("155Gd", 86.5), ("155Gd@105.3", 105.3)):
        found = attenuate.absorber("Gd", isotope, f=0.5)
        assert found.keV == pytest.approx(keV, abs=.1)


def test_objects_travel() -> None:
    stack = attenuate.stack(("kapton", "50um"), (IRON, None))
    heavy = attenuate.material("Fe2O3", density=5.24)
    for thing in (heavy, stack):
        for same in (pickle.loads(pickle.dumps(thing)), copy.deepcopy(thing),
                     eval(repr(thing))):
            assert same == thing and hash(same) == hash(thing)
    assert heavy != attenuate.material("Fe2O3")
    with concurrent.futures.ProcessPoolExecutor(1) as pool:
        assert pool.submit(heavy.mu_rho, 14.41).result() == heavy.mu_rho(14.41)


def test_tables_of_notebooks_hold_no_foreign_html() -> None:
    assert "7.874 g/cm" in IRON._repr_html_()
    stack = attenuate.stack(("Fe", 0.1), ("Cu", None))
    assert "<td>100 mg/cm" in stack._repr_html_()
    assert "<td>?" in stack._repr_html_()


def test_handles_are_freed() -> None:
    script = """
import attenuate, resource
def use():
    return resource.getrusage(resource.RUSAGE_SELF).ru_maxrss
def make(n):
    for _ in range(n): attenuate.stack((attenuate.material("Fe2O3"), 1.0))
make(2000); before = use(); make(20000)
assert use() - before < 20000, use() - before
"""
    subprocess.run([sys.executable, "-c", script], check=True)
    gc.collect()


@pytest.mark.parametrize("name", ["/nowhere/libattenuate.so.1", "libm.so.6"])
def test_wrong_library_is_explained(name: str,
                                    monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setenv("ATTENUATE_LIBRARY", name)
    with pytest.raises(ImportError, match="ATTENUATE_LIBRARY"):
        attenuate._library._load()


@pytest.mark.parametrize("module, taken", [
    ("lib/python3.9/site-packages/attenuate", True),
    ("lib/python3/dist-packages/attenuate", True),
    ("x/attenuate", False),
    ("x/python/attenuate", False)])
def test_library_is_looked_for_below_the_prefix_only(
        module: str, taken: bool, tmp_path: pathlib.Path,
        monkeypatch: pytest.MonkeyPatch) -> None:
    library = tmp_path / "lib" / "libattenuate.so.1"
    (tmp_path / module).mkdir(parents=True)
    library.parent.mkdir(exist_ok=True)
    library.touch()
    monkeypatch.delenv("ATTENUATE_LIBRARY", raising=False)
    monkeypatch.setattr(attenuate._library, "__file__",
                        str(tmp_path / module / "_library.py"))
    assert (str(library) in attenuate._library._candidates()) == taken
