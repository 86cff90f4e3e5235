// Densities of the elements in the solid state.

#ifndef ATTENUATION_ELEMENTDENSITY_H_
#define ATTENUATION_ELEMENTDENSITY_H_

namespace attenuation {

// The density in g/cm3 of element `nz` (atomic number, above 0) in the
// modification that the user picks from a menu, shown also where there is only
// one.
//
// Reads "dichte.dat" in the current directory through unit 2, which is closed
// before the menu: its help reads details files by that unit.
// Fatal: the file is missing or ends first; more than 64 modifications; the
// menu is left without a choice; the terminal is too narrow for the density.
float elementdensity(int nz);

}  // namespace attenuation

#endif  // ATTENUATION_ELEMENTDENSITY_H_
