// What is built in: constants that data/tools/maketables.cpp writes from
// data/sources when the program is built. Nothing of it needs work at start-up.

#ifndef PHYSICS_CONSTANTS_H_
#define PHYSICS_CONSTANTS_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "physics/data.h"
#include "physics/table.h"

namespace physics::constants {

template <typename T>
using List = std::span<const T>;
// One entry an element, Z = 1 first.
template <typename T>
using OfElement = std::array<T, kElements>;

// A row of the dialogue's file.
struct BlockRow {
  double energy_MeV;
  double mu_rho;
  double mu_en_rho;  // 0 where not published
};

// A stretch of a table that is worth less than the rest.
struct Doubt {
  int z;
  Energy from, to;  // both included
  std::string_view text;
};

// A way to write the name of an entry of another list.
struct Spelling {
  std::string_view word;
  std::uint16_t index;
};

// Where a symbol of one or two letters stands in `z_of_symbol`.
constexpr std::size_t symbol_place(char capital, char small) {
  return static_cast<std::size_t>(capital - 'A') * 27 +
         static_cast<std::size_t>(small == '\0' ? 0 : small - 'a' + 1);
}
inline constexpr std::size_t kSymbolPlaces = 26UL * 27;

extern const OfElement<Element> elements;
extern const List<HeavyElement> heavy_elements;  // Z = 93 first
// 0 where there is none.
extern const std::array<std::uint8_t, kSymbolPlaces> z_of_symbol;
extern const OfElement<Table> tables;
extern const OfElement<List<BlockRow>> block_rows;
extern const OfElement<List<Modification>> modifications;
extern const OfElement<List<Edge>> edges;
extern const List<Doubt> doubts;
extern const List<Nuclide> nuclides;  // by Z, then by mass number
extern const List<NamedMaterial> materials;
extern const List<Spelling> material_spellings;  // hyphens; sorted
extern const List<Source> sources;
extern const List<Spelling> source_spellings;  // folded by fold_source; sorted
extern const List<UncertaintyRow> uncertainty_rows;
extern const List<Transition> transitions;
extern const List<RecoilFree> recoil_free_fractions;

}  // namespace physics::constants

#endif  // PHYSICS_CONSTANTS_H_
