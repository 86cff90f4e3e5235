// What was understood, in words.

#ifndef ATTENUATE_ECHO_H_
#define ATTENUATE_ECHO_H_

#include <string>
#include <vector>

#include "attenuate/question.h"

namespace attenuate {

// A material: "CuSO4 + 5 H2O  249.69 g/mol  2.286 g/cm3 (typed)".
std::string echo(const physics::Material& material);

// A layer of a question: its material and thickness.
std::string echo(const Question& question, std::size_t layer);

// The mass fractions: "Cu 25.45 %  S 12.84 %  O 57.67 %  H 4.037 %", in lines
// of at most `width` characters; none for an element.
std::vector<std::string> fractions(const physics::Material& material,
                                   std::size_t width);

}  // namespace attenuate

#endif  // ATTENUATE_ECHO_H_
