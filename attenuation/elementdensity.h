// Densities of the elements in the solid state.

#ifndef ATTENUATION_ELEMENTDENSITY_H_
#define ATTENUATION_ELEMENTDENSITY_H_

namespace attenuation {

// The density in g/cm3 of element `nz` (atomic number, above 0) in the
// modification that the user picks from a menu, shown also where there is only
// one.
//
// Reads "dichte.dat" in the current directory: records with the atomic number
// in columns 1-8 and the menu's text from column 9 on, in which the density is
// the first number from column 39 of the record on. The records of an element
// follow one another; another record must follow the last.
// Fatal: the file is missing or ends first; more than 64 modifications; the
// menu is left without a choice; the terminal is too narrow for the density.
float elementdensity(int nz);

}  // namespace attenuation

#endif  // ATTENUATION_ELEMENTDENSITY_H_
