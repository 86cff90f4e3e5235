// The samples that the program offers.

#ifndef ATTENUATION_CATALOGUE_H_
#define ATTENUATION_CATALOGUE_H_

#include <array>
#include <string_view>

#include "help/key.h"

namespace attenuation {

enum class Kind {
  kElement,      // a given element
  kSymbol,       // an element whose symbol is asked
  kComposition,  // a given composition
  kFormula,      // a compound whose formula is asked
  kTwoLines,     // the same at the two gamma lines of 57Co
};

struct Atoms {
  int index = 0;            // into the element list, which is the atomic number
  std::string_view symbol;  // that the list should have there
  int count = 0;
};

using Composed = std::array<Atoms, 6>;

inline constexpr Composed kMylar{{{6, "C", 10}, {1, "H", 8}, {8, "O", 4}}};
inline constexpr Composed kTeflon{{{6, "C", 2}, {9, "F", 4}}};
// Two hydrogen atoms, not the four of the dihydrate: the preset's own count,
// kept so that results stay comparable.
inline constexpr Composed kNitroprusside{{{11, "Na", 2},
                                          {26, "Fe", 1},
                                          {6, "C", 5},
                                          {7, "N", 6},
                                          {8, "O", 3},
                                          {1, "H", 2}}};
inline constexpr Composed kFas{
    {{7, "N", 2}, {1, "H", 20}, {26, "Fe", 1}, {16, "S", 2}, {8, "O", 14}}};

struct Sample {
  std::string_view text;  // in the menu
  help::Key help_key;
  Kind kind;
  std::string_view element;  // name, Kind::kElement only
  float density;          // g/cm3; of elements unused: the density table has it
  float energy;           // default photon energy, keV; not of kTwoLines
  std::string_view form;  // how the energy is shown, element samples only
  Composed atoms{};       // Kind::kComposition only
};

// clang-format off
inline constexpr std::array<Sample, 11> kCatalogue{{
    {"1 Nickel foil", "read/element",
     Kind::kElement,     "Nickel",   8.908F,  122.0F,  "f8.2"},
    {"2 Iron foil", "read/element",
     Kind::kElement,     "Iron",     7.874F,  14.4F,   "f8.2"},
    {"3 Lead shielding", "read/element",
     Kind::kElement,     "Lead",     11.342F, 122.0F,  "f8.1"},
    {"4 Aluminium foil", "read/element",
     Kind::kElement,     "Aluminum", 2.7F,    14.4F,   "f8.2"},
    {"5 ES: element symbol", "read/element",
     Kind::kSymbol,      "",         8.92F,   14.4F,   "f8.2"},
    {"6 mylar C_10H_8O_4", "read/mylar",
     Kind::kComposition, "",         1.38F,   14.4F,   "", kMylar},
    {"7 teflon C_2F_4", "read/teflon",
     Kind::kComposition, "",         2.2F,    14.4F,   "", kTeflon},
    {"8 Na_2Fe[(CN)_5NO]2H_2O", "read/sodiumnitrop",
     Kind::kComposition, "",         1.72F,   14.4F,   "", kNitroprusside},
    {"9 FAS", "read/fas",
     Kind::kComposition, "",         1.86F,   14.4F,   "", kFas},
    {"10 compound", "read/compound",
     Kind::kFormula,     "",         0.0F,    14.4F,   ""},
    {"11 0.111(136.5keV), 0.889(122.0keV)", "read/bgco57",
     Kind::kTwoLines,    "",         1.86F,   0.0F,    ""},
}};
// clang-format on

// A line of a source: the energy that is proposed, in keV, and its share among
// the photons of all lines.
struct SourceLine {
  float energy;
  float share;
};

// The gamma lines of 57Co, for Kind::kTwoLines.
inline constexpr std::array<SourceLine, 2> kCobaltLines{{
    {122.01F, 0.889F},
    {136.46F, 0.111F},
}};

}  // namespace attenuation

#endif  // ATTENUATION_CATALOGUE_H_
