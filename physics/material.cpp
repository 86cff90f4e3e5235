#include "physics/material.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <utility>

#include "physics/formula.h"

namespace physics {
namespace {

using namespace std::string_view_literals;

constexpr std::size_t kLongestText = 10000;
constexpr std::size_t kMostParts = 40;
constexpr std::string_view kNothing =
    "a formula (Fe2O3), a name (kapton) or a mixture (18% Cr // 8% Ni // Fe)";

bool is_digit(char c) { return '0' <= c && c <= '9'; }
bool is_small(char c) { return 'a' <= c && c <= 'z'; }
bool is_capital(char c) { return 'A' <= c && c <= 'Z'; }

std::string lower(std::string_view text) {
  std::string small(text);
  for (char& c : small) {
    if (is_capital(c)) c = static_cast<char>(c + 32);
  }
  return small;
}

// Three digits, for advice.
std::string three_digits(double value) {
  const double scale = std::pow(10.0, 2.0 - std::floor(std::log10(value)));
  return plain(std::round(value * scale) / scale);
}

double weight_of(int z, const Data& data) {
  return data.elements()[static_cast<std::size_t>(z - 1)].weight;
}

double mass_of(const Part& part, const Data& data) {
  if (part.mass_number > 0) {
    if (const Nuclide* known = nuclide(part.z, part.mass_number)) {
      return known->mass;
    }
  }
  return weight_of(part.z, data);
}

void add(std::vector<Constituent>& all, int z, double mass_fraction,
         double weight) {
  for (Constituent& one : all) {
    if (one.z != z) continue;
    one.mass_fraction += mass_fraction;
    one.weight += weight;
    return;
  }
  all.push_back({z, mass_fraction, weight});
}

// Constituents and molar mass from the composition.
void weigh(Material& material, const Data& data) {
  const double mass = molar_mass(*material.composition, data);
  material.molar_mass = mass;
  material.constituents.reserve(material.composition->size());
  for (const Part& part : *material.composition) {
    add(material.constituents, part.z, part.atoms * mass_of(part, data) / mass,
        part.atoms * weight_of(part.z, data) / mass);
  }
}

// "H 0.111898; O 0.888102", adding up to 1 within their rounding.
void read_fractions(Material& material, std::string_view text) {
  double sum = 0.0;
  while (!text.empty()) {
    const std::string_view one = trimmed(text.substr(0, text.find(';')));
    text.remove_prefix(std::min(text.size(), text.find(';')));
    if (!text.empty()) text.remove_prefix(1);
    const std::size_t blank = std::min(one.find(' '), one.size());
    const int z = blank == 0 || blank > 2
                      ? 0
                      : symbol(one[0], blank == 2 ? one[1] : '\0');
    const double fraction = number(trimmed(one.substr(blank)));
    if (z == 0) continue;
    add(material.constituents, z, fraction, fraction);
    sum += fraction;
  }
  for (Constituent& one : material.constituents) {
    one.mass_fraction /= sum;
    one.weight /= sum;
  }
}

bool is_formula(std::string_view composition) {
  return composition.find(' ') == composition.npos;
}

// What the catalogue's entry consists of.
Material catalogued(const NamedMaterial& entry, const Data& data) {
  Material material;
  material.read = entry.name;
  if (is_formula(entry.composition)) {
    FormulaReading reading = read_formula(entry.composition);
    material.read += " (" + reading.echo + ")";
    material.composition = std::move(reading.composition);
    weigh(material, data);
  } else {
    read_fractions(material, entry.composition);
  }
  if (entry.density.g_cm3 > 0.0) {
    material.density = entry.density;
    material.density_origin = entry.density_origin;
  }
  return material;
}

bool same_substance(const Material& a, const Material& b) {
  // The catalogue's fractions are rounded, some from older atomic weights.
  constexpr double kRounding = 3e-4;
  return a.constituents.size() == b.constituents.size() &&
         std::all_of(a.constituents.begin(), a.constituents.end(),
                     [&b](const Constituent& one) {
                       return std::any_of(
                           b.constituents.begin(), b.constituents.end(),
                           [&one](const Constituent& other) {
                             return one.z == other.z &&
                                    std::abs(one.mass_fraction -
                                             other.mass_fraction) < kRounding;
                           });
                     });
}

bool is_same(std::string_view formula, const NamedMaterial& entry) {
  Material material;
  material.composition = read_formula(formula).composition;
  weigh(material, builtin());
  return same_substance(material, catalogued(entry, builtin()));
}

// Words between "; ".
template <typename Action>
void for_each_alias(std::string_view aliases, const Action& action) {
  while (!aliases.empty()) {
    const std::size_t end = std::min(aliases.find(';'), aliases.size());
    action(trimmed(aliases.substr(0, end)));
    aliases.remove_prefix(std::min(aliases.size(), end + 1));
  }
}

// The catalogue's entry that is the same substance; of several the gas, where
// the material is one element, then the one that goes by its formula.
const NamedMaterial* same_in_catalogue(const Material& material) {
  const NamedMaterial* best = nullptr;
  int best_rank = 0;
  for (const NamedMaterial& entry : materials()) {
    if (!same_substance(material, catalogued(entry, builtin()))) continue;
    int rank = 1;
    for_each_alias(entry.aliases, [&](std::string_view alias) {
      if (alias == lower(material.typed)) rank = 2;
    });
    if (material.constituents.size() == 1 && entry.kind == "gas") rank = 3;
    if (rank > best_rank) {
      best = &entry;
      best_rank = rank;
    }
  }
  return best;
}

// "@0.789", or what to put there.
std::string at_density(const Material& material) {
  const NamedMaterial* same = same_in_catalogue(material);
  if (same == nullptr || same->density.g_cm3 <= 0.0) {
    return "@ and the density in g/cm3";
  }
  return "@" + three_digits(same->density.g_cm3);
}

// Names that can be typed, for "did you mean".
const std::vector<std::string_view>& known_names() {
  static const std::vector<std::string_view> all = [] {
    std::vector<std::string_view> names;
    for (const Element& element : builtin().elements()) {
      names.push_back(element.name);
    }
    for (const NamedMaterial& entry : materials()) {
      names.push_back(entry.name);
      for_each_alias(entry.aliases, [&names](std::string_view alias) {
        if (named_material(alias)) names.push_back(alias);
      });
    }
    return names;
  }();
  return all;
}

// The entry that has `word` among its aliases, though no name: "fe2o3",
// "nai(tl)".
const NamedMaterial* with_alias(std::string_view word) {
  for (const NamedMaterial& entry : materials()) {
    bool found = false;
    for_each_alias(entry.aliases, [&](std::string_view alias) {
      found = found || alias == word;
    });
    if (found) return &entry;
  }
  return nullptr;
}

[[noreturn]] void unknown_name(std::string_view name, int column) {
  std::string message = "no material is called " + in_quotes(name);
  const NamedMaterial* alias = with_alias(name);
  auto meant = recapitalised(name);
  // "co2" is carbon dioxide to everybody, though Co2 is nearer in letters.
  if (alias && lower(alias->composition) == name) meant = alias->composition;
  if (alias && !(meant && is_same(*meant, *alias))) {
    throw FormulaError(
        message + "; did you mean " + std::string(alias->name) + "?", column);
  }
  const auto near = nearest(name, known_names());
  const bool looks_like_formula =
      alias || std::any_of(name.begin(), name.end(), is_digit);
  if (meant && (looks_like_formula || near.empty())) {
    throw FormulaError(message + ", and a formula begins with a capital",
                       column, "did you mean " + *meant + "?");
  }
  if (near.empty()) {
    throw FormulaError(message, column, "`attenuate materials` lists all");
  }
  message += "; did you mean ";
  for (std::size_t i = 0; i < near.size(); ++i) {
    if (i > 0) message += i + 1 < near.size() ? ", " : " or ";
    message += near[i];
  }
  throw FormulaError(message + "?", column);
}

enum class Kind { kNone, kWeight, kAtoms, kVolume, kAmount };

struct Share {
  Kind kind = Kind::kNone;
  std::string_view unit;  // as typed, but "wt%" for "%"
  double value = 0.0;
  std::size_t begin = 0;           // of the share, or of the part without
  std::size_t material_begin = 0;  // of what it is a share of
  std::string_view typed;          // the part without its share
  Material material;
};

class Reader {
 public:
  Reader(std::string_view text, const Data& data) : text_(text), data_(data) {}

  Material read() {
    if (text_.size() > kLongestText) {
      throw FormulaError("the material is longer than " +
                             std::to_string(kLongestText) + " characters",
                         0);
    }
    check_text(text_);
    const std::string_view all = trimmed(text_);
    if (all.empty()) {
      throw FormulaError("no material given", 1, std::string(kNothing));
    }
    const auto begin = static_cast<std::size_t>(all.data() - text_.data());
    std::size_t at = begin;
    Material material = is_mixture(at) ? mixture(at, '\0')
                                       : component(begin, begin + all.size());
    if (at < text_.size() && at > begin) fail("')' closes nothing", at);
    material.typed = all;
    return material;
  }

 private:
  [[noreturn]] void fail(const std::string& message, std::size_t at,
                         std::string hint = {}) const {
    throw FormulaError(message, column_of(text_, at), std::move(hint));
  }
  char peek(std::size_t at) const {
    return at < text_.size() ? text_[at] : '\0';
  }
  std::size_t skip(std::size_t at) const {
    while (const std::size_t length = blank_at(text_, at)) at += length;
    return at;
  }
  std::string_view between(std::size_t begin, std::size_t end) const {
    return text_.substr(begin, end - begin);
  }

  // A mixture, or one part of what should be one.
  bool is_mixture(std::size_t at) const {
    if (text_.find("//") != text_.npos) return true;
    Share share;
    return is_digit(peek(at)) && share_at(at, share) > at;
  }

  // Reads the share at `at`, such as "18%": its end, or `at` if there is none.
  std::size_t share_at(std::size_t at, Share& share) const {
    const std::size_t end = number_end(text_, at);
    if (end == at) return at;
    const std::size_t unit = skip(end);
    struct Unit {
      std::string_view typed;
      Kind kind;
      double scale;  // of masses g, of volumes cm3
    };
    constexpr std::array units = {
        Unit{"%", Kind::kWeight, 1.0},   Unit{"wt%", Kind::kWeight, 1.0},
        Unit{"at%", Kind::kAtoms, 1.0},  Unit{"vol%", Kind::kVolume, 1.0},
        Unit{"mg", Kind::kAmount, 1e-3}, Unit{"g", Kind::kAmount, 1.0},
        Unit{"mL", Kind::kAmount, 1.0}};
    for (const Unit& known : units) {
      if (text_.substr(unit, known.typed.size()) != known.typed) continue;
      // "5gold" has no unit.
      const std::size_t behind = unit + known.typed.size();
      if (known.kind == Kind::kAmount && is_small(peek(behind))) continue;
      share.kind = known.kind;
      share.unit = known.typed == "%" ? "wt%" : known.typed;
      share.value = number(between(at, end));
      if (share.value <= 0.0) fail("a share must be above 0", at);
      if (!(share.value <= 1e9)) fail("a share is at most 1000000000", at);
      share.value *= known.scale;
      return behind;
    }
    if (text_.substr(unit, 4) == "mol%") {
      fail("'mol%' is not known", unit, "wt%, at% or vol%");
    }
    return at;
  }

  // mixture = part "//" part { "//" part }
  //
  // at       receives the end
  // closing  ')' inside brackets: the end
  Material mixture(std::size_t& at, char closing) {
    std::vector<Share> shares;
    for (;;) {
      shares.push_back(part(at, closing));
      if (++parts_ > kMostParts) {
        fail("a mixture has at most " + std::to_string(kMostParts) + " parts",
             shares.back().begin);
      }
      if (text_.substr(at, 2) != "//") break;
      at += 2;
    }
    if (shares.size() == 1 && shares[0].kind != Kind::kNone) {
      const Share& only = shares[0];
      const bool all = only.kind != Kind::kAmount && only.value == 100.0;
      if (!all) {
        fail("a share of " + in_quotes(only.typed) + " and no other part",
             only.begin, "a mixture is written 18% Cr // 8% Ni // Fe");
      }
    }
    return mixed(shares);
  }

  Share part(std::size_t& at, char closing) {
    Share share;
    at = skip(at);
    share.begin = at;
    at = skip(share_at(at, share));
    share.material_begin = at;
    if (peek(at) == '%') fail("'%' has no number in front of it", at);
    if (const std::size_t close = nested_end(at); close > at) {
      nested(at, close, share, closing);
    } else {
      const std::size_t end = part_end(at, closing);
      if (trimmed(between(at, end)).empty()) {
        fail("no material given", std::min(at, text_.size()),
             std::string(kNothing));
      }
      share.material = component(at, end);
      at = end;
    }
    share.typed = trimmed(between(share.material_begin, at));
    return share;
  }

  // Behind the part that begins at `at`: names and formulas hold no "//".
  std::size_t part_end(std::size_t at, char closing) const {
    int depth = 0;
    for (; at < text_.size() && text_.substr(at, 2) != "//"; ++at) {
      const char c = text_[at];
      if (c == '(') ++depth;
      if (c == ')' && --depth < 0 && closing != '\0') break;
    }
    return at;
  }

  // The end of the bracketed mixture at `at`, or `at` if there is none.
  std::size_t nested_end(std::size_t at) const {
    if (peek(at) != '(') return at;
    int depth = 0;
    bool parts = false;
    for (std::size_t i = at; i < text_.size(); ++i) {
      parts = parts || text_.substr(i, 2) == "//";
      if (text_[i] == '(') ++depth;
      if (text_[i] == ')' && --depth == 0) return parts ? i + 1 : at;
    }
    return at;
  }

  void nested(std::size_t& at, std::size_t close, Share& share, char closing) {
    if (++depth_ > kDeepestBrackets) {
      fail(
          "brackets are nested deeper than " + std::to_string(kDeepestBrackets),
          at);
    }
    std::size_t inside = at + 1;
    share.material = mixture(inside, ')');
    --depth_;
    if (inside != close - 1) fail("')' closes nothing", inside);
    share.material.read = "(" + share.material.read + ")";
    at = skip(close);
    const std::size_t end = part_end(at, closing);
    if (peek(at) == '@') {
      density(share.material, at, end);
      share.material.read += "@" + plain(share.material.density->g_cm3);
    } else if (at < end) {
      fail(in_quotes(trimmed(between(at, end))) + " stands behind a mixture",
           at);
    }
    at = end;
  }

  // ( compound | name ) [ "@" number ]
  Material component(std::size_t begin, std::size_t end) {
    const std::size_t sign =
        std::min(between(begin, end).find('@'), end - begin) + begin;
    begin = skip(begin);
    const std::string_view text = trimmed(between(begin, sign));
    if (text.empty()) fail("no material given", begin, std::string(kNothing));
    Material material;
    if (!named(text, begin, material)) compound(text, begin, material);
    if (sign < end) density(material, sign, end);
    return material;
  }

  bool named(std::string_view text, std::size_t begin, Material& material) {
    if (!is_small(text[0]) && !is_digit(text[0])) return false;
    if (text.size() > kLongestFormula) {
      fail("the formula is longer than 200 characters",
           begin + kLongestFormula);
    }
    if (const Element* element = element_with_name(text)) {
      material.composition = {{element->z, 1.0, 0}};
      weigh(material, data_);
      usual_density(material);
      material.read = std::string(element->name) + " (" +
                      std::string(element->symbol) + ")";
      return true;
    }
    if (const NamedMaterial* entry = named_material(text)) {
      material = catalogued(*entry, data_);
      return true;
    }
    if (is_digit(text[0])) return false;
    unknown_name(text, column_of(text_, begin));
  }

  void compound(std::string_view text, std::size_t begin, Material& material) {
    const int column = column_of(text_, begin);
    try {
      FormulaReading reading = read_formula(text, column);
      material.read = std::move(reading.echo);
      material.composition = std::move(reading.composition);
      material.notes = std::move(reading.notes);
    } catch (const FormulaError& error) {
      // "Kapton", "PTFE"
      const std::string small = lower(text);
      if (text.size() > kLongestFormula ||
          !(element_with_name(small) || named_material(small))) {
        throw;
      }
      throw FormulaError(
          error.message(), error.column(),
          "did you mean " + small + "? Names are written in small letters");
    }
    weigh(material, data_);
    note_name(text, material);
    if (material.composition->size() == 1) usual_density(material);
  }

  // PVC is phosphorus, vanadium and carbon; NaI(Tl) has one Tl to each NaI.
  static void note_name(std::string_view text, Material& material) {
    constexpr std::size_t kLongest = 12;
    if (text.size() > kLongest) return;
    const std::size_t open = text.find('(');
    const bool doped = text.back() == ')' && text.size() - open <= 4;
    if (!doped && !std::all_of(text.begin(), text.end(), [](char c) {
          return is_capital(c) || is_digit(c);
        })) {
      return;
    }
    const std::string small = lower(text);
    const NamedMaterial* entry =
        doped ? with_alias(small) : named_material(small);
    if (!entry || same_substance(material, catalogued(*entry, builtin()))) {
      return;
    }
    material.notes.push_back(std::string(text) +
                             " is read as a formula; the material is called " +
                             (doped ? std::string(entry->name) : small));
  }

  // An element's usual form, where that is solid or liquid at room temperature.
  void usual_density(Material& material) {
    const Part& part = material.composition->front();
    const auto forms = data_.modifications(part.z);
    Density density;
    if (!forms.empty() && forms[0].temperature == "room") {
      density = forms[0].density;
      material.density_origin =
          std::string(forms[0].form) + "; " + std::string(forms[0].origin);
    } else if (part.z == 80) {
      // The elements' densities are those of solids; the catalogue has the
      // liquid.
      if (const NamedMaterial* liquid = named_material("mercury liquid")) {
        density = liquid->density;
        material.density_origin = liquid->density_origin;
      }
    }
    if (density.g_cm3 <= 0.0) return;
    // Isotopes take the same room.
    density.g_cm3 *= mass_of(part, data_) / weight_of(part.z, data_);
    if (part.mass_number > 0) {
      material.density_origin += "; in proportion to the isotope's mass";
    }
    material.density = density;
  }

  // The density behind the "@" of column `sign`.
  void density(Material& material, std::size_t sign, std::size_t end) const {
    const std::size_t begin = skip(sign + 1);
    const std::string_view digits = trimmed(between(sign + 1, end));
    if (digits.empty()) {
      fail("no density behind '@'", std::min(sign + 1, text_.size()),
           "Fe2O3@5.24 means 5.24 g/cm3");
    }
    if (number_end(digits, 0) != digits.size()) {
      std::string points(digits);
      std::replace(points.begin(), points.end(), ',', '.');
      const bool decimal = number_end(points, 0) == points.size();
      const std::size_t behind = number_end(digits, 0);
      std::string hint = "a density is a plain number of g/cm3: @5.24";
      if (decimal) hint = "decimals take a point: @" + points;
      if (digits[0] == '.') hint = "a number begins with a digit: @0" + points;
      fail(in_quotes(digits) + " is not a density",
           begin + (decimal ? behind : 0), hint);
    }
    const double value = number(digits);
    if (value <= 0.0) fail("a density must be above 0", begin);
    if (value > 1000.0) {
      fail("a density of " + std::string(digits) +
               " g/cm3 is above the limit "
               "of 1000",
           begin, "a density is in g/cm3");
    }
    material.density = {value};
    material.density_origin = "typed";
  }

  // What the parts make together.
  Material mixed(std::vector<Share>& shares) {
    if (shares.size() == 1) return std::move(shares[0].material);
    const Kind kind = common_kind(shares);
    if (kind != Kind::kAmount) complete(shares);

    Material all;
    std::vector<double> masses;
    double sum = 0.0;
    for (const Share& share : shares) {
      masses.push_back(mass(share));
      sum += masses.back();
    }
    double volume = 0.0;  // of a gram
    bool known = true;
    for (std::size_t i = 0; i < shares.size(); ++i) {
      const Material& one = shares[i].material;
      const double fraction = masses[i] / sum;
      for (const Constituent& element : one.constituents) {
        add(all.constituents, element.z, fraction * element.mass_fraction,
            fraction * element.weight);
      }
      known = known && one.density.has_value();
      if (known) volume += fraction / one.density->g_cm3;
      all.notes.insert(all.notes.end(), one.notes.begin(), one.notes.end());
      all.read += (i > 0 ? " // " : "") + shown(shares[i]);
    }
    if (known) {
      all.density = {1.0 / volume};
      all.density_origin = "volumes of the parts added";
    }
    return all;
  }

  Kind common_kind(const std::vector<Share>& shares) const {
    const Share* first = nullptr;
    for (const Share& share : shares) {
      if (share.kind == Kind::kNone) continue;
      if (first == nullptr) first = &share;
      if (share.kind == first->kind) continue;
      fail(std::string(share.unit) + " and " + std::string(first->unit) +
               " in one mixture",
           share.begin, "use one kind");
    }
    if (first == nullptr) {
      fail("no part has a share", shares[0].begin,
           "18% Cr // 8% Ni // Fe leaves the rest to Fe");
    }
    if (first->kind != Kind::kAmount) return first->kind;
    for (const Share& share : shares) {
      if (share.kind != Kind::kNone) continue;
      fail("how much of " + in_quotes(share.typed) + "?", share.begin,
           "with " + std::string(first->unit) + " every part has an amount");
    }
    return first->kind;
  }

  // Percentages add up to 100, or one that is left out takes the rest.
  void complete(std::vector<Share>& shares) const {
    constexpr double kTolerance = 0.1;
    double sum = 0.0;
    Share* rest = nullptr;
    const Share* last = shares.data();
    for (Share& share : shares) {
      sum += share.value;
      if (share.kind != Kind::kNone) last = &share;
      if (share.kind != Kind::kNone) continue;
      if (rest != nullptr) {
        fail("two parts without a percentage", share.begin,
             "only one can take the rest");
      }
      rest = &share;
    }
    const std::string total = "the parts add up to " + short_number(sum) + " %";
    if (rest != nullptr) {
      // What the sum of decimals leaves of 100 is no share.
      if (sum > 100.0 - 1e-9) {
        fail(total + ", which leaves nothing for " + in_quotes(rest->typed),
             rest->begin);
      }
      rest->value = std::round((100.0 - sum) * 1e9) / 1e9;
      rest->kind = last->kind;
      rest->unit = last->unit;
    } else if (std::abs(sum - 100.0) > kTolerance + 1e-9) {
      fail(total + ", not 100 %", last->begin,
           sum < 100.0 ? "leave the last percentage out to take the rest" : "");
    }
  }

  // Relative to those of the other parts.
  double mass(const Share& share) const {
    const Material& material = share.material;
    if (share.kind == Kind::kAtoms) {
      double atoms = 0.0;  // in a gram, mol
      for (const Constituent& one : material.constituents) {
        atoms += one.weight / weight_of(one.z, data_);
      }
      return share.value / atoms;
    }
    if (share.kind == Kind::kVolume || share.unit == "mL") {
      if (!material.density) {
        fail(std::string(share.unit) + " needs the density of " +
                 std::string(share.typed),
             share.material_begin,
             std::string(share.typed) + at_density(material));
      }
      return share.value * material.density->g_cm3;
    }
    return share.value;
  }

  // A part as it could be typed.
  static std::string shown(const Share& share) {
    const double scale = share.unit == "mg" ? 1e3 : 1.0;
    std::string text = plain(std::round(share.value * scale * 1e9) / 1e9) +
                       std::string(share.unit == "wt%" ? "%" : share.unit) +
                       ' ';
    const Material& material = share.material;
    const bool name = is_small(share.typed[0]) || is_digit(share.typed[0]);
    const bool formula = material.composition && !name;
    text += formula || share.typed[0] == '('
                ? material.read
                : std::string(
                      trimmed(share.typed.substr(0, share.typed.find('@'))));
    if (material.density_origin == "typed" && share.typed[0] != '(') {
      text += "@" + plain(material.density->g_cm3);
    }
    return text;
  }

  std::string_view text_;
  const Data& data_;
  std::size_t parts_ = 0;
  int depth_ = 0;
};

}  // namespace

double molar_mass(const Composition& composition, const Data& data) {
  double mass = 0.0;
  for (const Part& part : composition) {
    mass += part.atoms * mass_of(part, data);
  }
  return mass;
}

Material material(std::string_view text, const Data& data) {
  return Reader(text, data).read();
}

std::string density_advice(const Material& material) {
  const NamedMaterial* same = same_in_catalogue(material);
  std::string advice = "add " + at_density(material);
  if (same && same->kind == "gas")
    advice += " (" + std::string(same->name) + ")";
  // At the end of a mixture it would be the density of the last part.
  if (material.typed.find("//") != std::string::npos)
    advice += " behind brackets around the mixture";
  return advice;
}

std::optional<std::string> flat_notation(const Composition& composition) {
  constexpr int kComponents = 12, kLead = 82, kLargest = 999;
  std::string flat;
  int components = 0;
  for (const Part& part : composition) {
    if (part.mass_number > 0 || part.z > kLead ||
        part.atoms > kComponents * kLargest ||
        part.atoms != std::floor(part.atoms)) {
      return std::nullopt;
    }
    const std::string_view name =
        builtin().elements()[static_cast<std::size_t>(part.z - 1)].symbol;
    const int most = name.size() == 1 ? kLargest : 9;
    for (int left = static_cast<int>(part.atoms); left > 0; left -= most) {
      if (++components > kComponents) return std::nullopt;
      flat += std::string(name) + "_" + std::to_string(std::min(left, most));
    }
  }
  return flat;
}

}  // namespace physics
