// The mass attenuation coefficient of one element, from its table.

#ifndef ATTENUATION_ATTENUATION_H_
#define ATTENUATION_ATTENUATION_H_

#include "base/array.h"

namespace attenuation {

// The points of one element's block of the coefficient file: energies in MeV,
// mu/rho and mu_en/rho in cm2/g, each from subscript 1 on. Slots that were not
// read are 0.
struct Block {
  base::Array<double, 64> xi{"xi"};
  base::Array<double, 64> yi{"yi"};
  base::Array<double, 64> zi{"zi"};
  int points = 0;
};

// Reads a block from file unit 1, which must stand just before the six header
// records of the element. It is left behind the record that ended the block
// (the first that is no data record) or behind the 64th point.
// Fatal: end of file inside the block.
void read_block(Block& block);

// Finds the mass attenuation coefficient of one element at one energy.
//
// energy  photon energy in keV
// atc     receives mu/rho in cm2/g
//
// Reads the block with read_block. On an absorption edge, tabulated as two
// points of one energy, the value above the edge is taken. Between points a
// parabola is fitted (see parabel), through four points, or three next to an
// edge. It needs a point on either side of the interval: usable are the first
// energy itself and those from the second to the last but one.
//
// Fatal: end of file inside the block; an energy outside the usable table.
void attenuation(float energy, float& atc);

}  // namespace attenuation

#endif  // ATTENUATION_ATTENUATION_H_
