"""Attenuation of X-ray and gamma beams, 1 keV to 20 MeV, hydrogen to uranium.

    >>> import attenuate
    >>> iron = attenuate.material("Fe")
    >>> round(float(iron.mu_rho(14.41)), 1)
    63.7
    >>> window = attenuate.stack(("kapton", "50um"), ("Fe", "25um"))
    >>> T = window.transmission([6.4, 14.41, 122.06])

Energies are in keV, mass attenuation coefficients in cm2/g, areal masses in
g/cm2, densities in g/cm3, lengths in cm. Arrays of any shape go in and come
out; float64 arrays that are contiguous are read in place. Whatever can be
wrong raises AttenuateError, a ValueError that shows where and what to type
instead.

Coefficients come from the published NIST tables (Hubbell and Seltzer, NISTIR
5632), completed and corrected where further sources show them wrong, and
interpolated by a monotone cubic in logarithms. Narrow beam: no build-up of
scattered photons.
"""

from ._library import AttenuateError, OutsideTable, UnknownValue
from ._physics import (Absorber, Edge, Lines, Material, Stack, Thickness,
                       absorber, edges, material, source, stack, tables,
                       version)

__all__ = [
    "Absorber", "AttenuateError", "Edge", "Lines", "Material", "OutsideTable",
    "Stack", "Thickness", "UnknownValue", "absorber", "edges", "material",
    "source", "stack", "tables", "version",
]
__version__ = version()
