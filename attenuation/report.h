// The lines of the result.

#ifndef ATTENUATION_REPORT_H_
#define ATTENUATION_REPORT_H_

namespace attenuation {

// Mass attenuation coefficient `atc` (cm2/g), `density` (g/cm3) and their
// product as linear attenuation coefficient (mm-1), in fields of `width`
// columns with three decimals: 7 for elements, 6 for compounds.
void report_coefficient(float atc, float density, int width);

// The areal mass in mg/cm2; `thick` is in g/cm2.
void report_areal_mass(float thick);

// The exponents mu x of the lower and the upper line of the two-line source.
void report_exponents(float lower, float upper);

// The transmitted fraction.
void report_transmission(float trm);

}  // namespace attenuation

#endif  // ATTENUATION_REPORT_H_
