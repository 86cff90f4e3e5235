// Numbers as text: a point whatever the locale, the same bytes everywhere.

#ifndef ATTENUATE_NUMBER_H_
#define ATTENUATE_NUMBER_H_

#include <cstddef>
#include <string>

namespace attenuate {

// What append_number writes at most.
inline constexpr std::size_t kNumberSize = 32;

// Writes `value`, which is finite, at `to` and returns the end of it: rounded
// to 1 to 17 significant digits without zeros at the end, with an exponent
// below 1e-4 and where the digits do not reach the point, as printf's %g.
char* append_number(char* to, double value, int digits);

std::string number(double value, int digits = 6);

// With "%": two significant digits, as an uncertainty deserves.
std::string percent(double fraction);

// An energy in words: "14.41 keV", "20 MeV".
std::string energy_in_words(double keV);

// A length in the unit that suits it: "25 um", "1.5 m".
std::string length_in_words(double cm, int digits = 6);

// An areal mass: "19.685 mg/cm2", "2.3 g/cm2".
std::string area_mass_in_words(double g_cm2, int digits = 6);

}  // namespace attenuate

#endif  // ATTENUATE_NUMBER_H_
