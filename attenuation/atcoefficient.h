// The mass attenuation coefficient of a sample of several elements.

#ifndef ATTENUATION_ATCOEFFICIENT_H_
#define ATTENUATION_ATCOEFFICIENT_H_

#include "attenuation/contentformula.h"
#include "attenuation/elementlist.h"

namespace attenuation {

// Asks for the photon energy and combines the coefficients of the elements by
// mass fraction (Bragg's additivity rule): every element counts with its
// multiplicity times its molar weight.
//
// nrd, nwr    units of the dialogue
// j           number of elements, 0..12
// indx        their indexes into the element list, 1..82
// mult        their atoms per formula unit
// ename       element names
// emolweight  molar weights in g/mol
// value       default energy in keV in, the energy used out
// atc         receives mu/rho of the sample in cm2/g; not a number if no atom
//             is counted
//
// Fatal: end of input; an element or the energy is not in its table; a name of
// 12 characters, which the lookup cannot hold.
void atcoefficient(int nrd, int nwr, int j, const Composition& indx,
                   const Composition& mult, const ElementNames& ename,
                   const MolarWeights& emolweight, float& value, float& atc);

}  // namespace attenuation

#endif  // ATTENUATION_ATCOEFFICIENT_H_
