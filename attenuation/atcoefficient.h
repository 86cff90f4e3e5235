// The mass attenuation coefficient of a sample of several elements.

#ifndef ATTENUATION_ATCOEFFICIENT_H_
#define ATTENUATION_ATCOEFFICIENT_H_

#include "attenuation/contentformula.h"
#include "physics/flatformula.h"

namespace attenuation {

// Asks for the photon energy and looks the coefficient of a compound up.
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
// Fatal: end of input; whatever ends coefficient_of.
void atcoefficient(int nrd, int nwr, int j, const PerComponent& indx,
                   const PerComponent& mult, const physics::ElementNames& ename,
                   const physics::MolarWeights& emolweight, float& value,
                   float& atc);

// The two halves of it. The question has 80 columns, whatever the terminal has.
float asked_energy(float value, int nrd, int nwr);
// Opens the coefficient file anew for every component.
// Fatal: an element or the energy is not in its table; an element without a
// name, or with one of 12 characters, which the lookup cannot hold.
float coefficient_of(const physics::Components& components,
                     const physics::ElementNames& ename,
                     const physics::MolarWeights& emolweight, float energy);

}  // namespace attenuation

#endif  // ATTENUATION_ATCOEFFICIENT_H_
