// The mass attenuation coefficient of one element, from its table.

#ifndef ATTENUATION_ATTENUATION_H_
#define ATTENUATION_ATTENUATION_H_

namespace attenuation {

// Finds the mass attenuation coefficient of one element at one energy, by
// physics::parabola.
//
// energy  photon energy in keV
// atc     receives mu/rho in cm2/g
//
// File unit 1 must stand just before the titles of the element's block. It is
// left behind the record that ended the block, or behind the 64th point, and
// stays open.
// Fatal: end of file inside the block; an energy outside the usable table.
void attenuation(float energy, float& atc);

}  // namespace attenuation

#endif  // ATTENUATION_ATTENUATION_H_
