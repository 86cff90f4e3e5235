#include "physics/data.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "physics/constants.h"

namespace physics {
namespace {

std::size_t index(int z) { return static_cast<std::size_t>(z) - 1; }

class Builtin final : public Data {
 public:
  std::span<const Element> elements() const override {
    return constants::elements;
  }
  const Table& table(int z) const override {
    return constants::tables.at(index(z));
  }
  std::optional<Block> block(int z) const override;
  std::span<const Modification> modifications(int z) const override {
    return constants::modifications.at(index(z));
  }
  std::string_view doubt(int z, Energy energy) const override;
  std::string_view version() const override {
    return "tables 1: NIST (Hubbell and Seltzer, NISTIR 5632, version 1.4), "
           "corrected and completed after XCOM and Kissel";
  }
};

std::optional<Block> Builtin::block(int z) const {
  const auto rows = constants::block_rows.at(index(z));
  if (rows.empty()) return {};
  Block block;
  for (const constants::BlockRow& row : rows) {
    ++block.points;
    block.xi(block.points) = row.energy_MeV;
    block.yi(block.points) = row.mu_rho;
    block.zi(block.points) = row.mu_en_rho;
  }
  return block;
}

std::string_view Builtin::doubt(int z, Energy energy) const {
  for (const constants::Doubt& doubt : constants::doubts) {
    if (doubt.z == z && doubt.from <= energy && energy <= doubt.to) {
      return doubt.text;
    }
  }
  return {};
}

constinit const Builtin kBuiltin;

// Z of a symbol, up to 118; 0 if there is none.
int z_of(std::string_view symbol) {
  if (symbol.empty() || symbol.size() > 2) return 0;
  const char capital = symbol[0];
  const char small = symbol.size() == 2 ? symbol[1] : '\0';
  if (capital < 'A' || 'Z' < capital) return 0;
  if (small != '\0' && (small < 'a' || 'z' < small)) return 0;
  return constants::z_of_symbol[constants::symbol_place(capital, small)];
}

// The entry of `list` that `word` spells; null if there is none.
template <typename T>
const T* spelled(std::string_view word,
                 constants::List<constants::Spelling> spellings,
                 constants::List<T> list) {
  const auto at = std::lower_bound(
      spellings.begin(), spellings.end(), word,
      [](const auto& spelling, auto key) { return spelling.word < key; });
  if (at == spellings.end() || at->word != word) return nullptr;
  return &list[at->index];
}

// Letters and digits of `name`, in small letters.
std::string fold_source(std::string_view name) {
  std::string word;
  for (char c : name) {
    if ('A' <= c && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    if (c != '-' && c != ' ') word += c;
  }
  return word;
}

// Damerau-Levenshtein distance: letters changed, left out, put in, or two
// neighbours swapped (each place once).
std::size_t distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> before(b.size() + 1);
  std::vector<std::size_t> last(b.size() + 1);
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    before.swap(last);
    last.swap(row);
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t changed = a[i - 1] == b[j - 1] ? 0 : 1;
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + changed});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
        row[j] = std::min(row[j], before[j - 2] + 1);
      }
    }
  }
  return row[b.size()];
}

}  // namespace

const Data& builtin() { return kBuiltin; }

const Element* element_with_symbol(std::string_view symbol) {
  const int z = z_of(symbol);
  if (z == 0 || z > kElements) return nullptr;
  return &constants::elements[index(z)];
}

const Element* element_with_name(std::string_view name) {
  // The spellings of IUPAC and of Britain beside those of the tables.
  static constexpr std::array<std::array<std::string_view, 2>, 3> kOther{
      {{"aluminium", "aluminum"},
       {"caesium", "cesium"},
       {"sulphur", "sulfur"}}};
  for (const auto& [other, ours] : kOther) {
    if (name == other) name = ours;
  }
  const auto at = std::find_if(
      constants::elements.begin(), constants::elements.end(),
      [name](const Element& element) { return element.name == name; });
  return at == constants::elements.end() ? nullptr : at;
}

const HeavyElement* heavy_element(std::string_view symbol) {
  const int z = z_of(symbol);
  if (z <= kElements) return nullptr;
  return &constants::heavy_elements[index(z) - kElements];
}

const Nuclide* nuclide(int z, int mass_number) {
  const auto list = constants::nuclides;
  const auto at =
      std::lower_bound(list.begin(), list.end(), std::pair{z, mass_number},
                       [](const Nuclide& nuclide, const auto& key) {
                         return std::pair{nuclide.z, nuclide.mass_number} < key;
                       });
  const bool found =
      at != list.end() && at->z == z && at->mass_number == mass_number;
  return found ? &*at : nullptr;
}

std::span<const NamedMaterial> materials() { return constants::materials; }

const NamedMaterial* named_material(std::string_view name) {
  std::string word(name);
  std::replace(word.begin(), word.end(), ' ', '-');
  return spelled(word, constants::material_spellings, constants::materials);
}

std::span<const Source> sources() { return constants::sources; }

const Source* source(std::string_view name) {
  return spelled(fold_source(name), constants::source_spellings,
                 constants::sources);
}

std::span<const Edge> edges(int z) { return constants::edges.at(index(z)); }

std::span<const UncertaintyRow> uncertainty_rows() {
  return constants::uncertainty_rows;
}

std::span<const Transition> transitions() { return constants::transitions; }

std::span<const RecoilFree> recoil_free_fractions() {
  return constants::recoil_free_fractions;
}

std::vector<std::string> nearest(std::string_view word,
                                 std::span<const std::string_view> known,
                                 std::size_t most) {
  // Half of a short word changed is another word.
  const std::size_t limit = std::min<std::size_t>(word.size() / 3 + 1, 3);
  struct Near {
    std::size_t distance;
    std::string_view word;
  };
  std::vector<Near> near;
  for (const std::string_view candidate : known) {
    const std::size_t longer = std::max(candidate.size(), word.size());
    if (longer - std::min(candidate.size(), word.size()) > limit) continue;
    const std::size_t d = distance(word, candidate);
    if (d <= limit && d < longer) near.push_back({d, candidate});
  }
  std::stable_sort(near.begin(), near.end(), [](const Near& a, const Near& b) {
    return a.distance < b.distance;
  });
  std::vector<std::string> words;
  for (const Near& n : near) {
    if (words.size() < most) words.emplace_back(n.word);
  }
  return words;
}

}  // namespace physics
