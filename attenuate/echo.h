// What was understood, in words.

#ifndef ATTENUATE_ECHO_H_
#define ATTENUATE_ECHO_H_

#include <string>
#include <vector>

#include "attenuate/question.h"
#include "attenuate/settings.h"

namespace attenuate {

// A layer of a question: "CuSO4 + 5 H2O  249.69 g/mol  2.286 g/cm3  50 mg/cm2".
std::string echo(const Question& question, std::size_t layer);

// Where its density is from, where that is not the question itself: "density:
// NIST"; blank without.
std::string density_origin(const physics::Material& material);

// The mass fractions: "Cu 25.45 %  S 12.84 %  O 57.67 %  H 4.037 %", in lines
// of at most `width` characters; none for an element.
std::vector<std::string> fractions(const physics::Material& material,
                                   std::size_t width);

// For people, with --weight energy.
inline constexpr char kByEnergy[] =
    "   lines weighted by energy: photons times keV";

// "pchip" or "parabola".
const char* rule_name(physics::Rule rule);

// What an answer rests on, for the head of tables: program, tables, rule, and
// how lines are weighted where that is not by photons.
std::vector<std::string> basis(const Settings& settings);

}  // namespace attenuate

#endif  // ATTENUATE_ECHO_H_
