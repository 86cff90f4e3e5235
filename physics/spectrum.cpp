#include "physics/spectrum.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>

#include "physics/errors.h"
#include "physics/table.h"

namespace physics {

namespace {

// Longer lines are no list of two columns; a file without line ends does not
// fill the memory.
constexpr std::size_t kMaxLine = 1000;
constexpr std::string_view kBlanks = " \t\r";

[[noreturn]] void fail(std::size_t line, const std::string& message,
                       const std::string& hint = {}) {
  throw InputError("line " + std::to_string(line) + ": " + message, 0, hint);
}

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

class Lines {
 public:
  explicit Lines(std::istream& in) : in_(in) {}

  // The next line without its end; nothing at the end of the file.
  std::optional<std::string_view> next() {
    ++number_;
    in_.getline(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
    const std::string_view line(buffer_.data());
    if (in_.fail() && !in_.eof() && line.size() == kMaxLine) {
      fail(number_, "longer than " + std::to_string(kMaxLine) + " characters",
           "a spectrum has two columns: keV and photons");
    }
    // A code 0 ends what the buffer holds before the line ends.
    const auto read = static_cast<std::size_t>(in_.gcount());
    if (read > line.size() + (in_.eof() ? 0 : 1)) fail(number_, "binary data");
    if (in_.fail() && line.empty()) return {};
    return line;
  }

  std::size_t number() const { return number_; }

 private:
  std::istream& in_;
  std::size_t number_ = 0;
  std::array<char, kMaxLine + 1> buffer_{};
};

struct Field {
  std::string_view text;
  char separator = 0;  // behind it; 0 at the end of the line
};

// Takes the first field off `rest`.
Field field(std::string_view& rest) {
  rest = trimmed(rest);
  const auto end = std::min(rest.find_first_of(" \t,;"), rest.size());
  Field result{rest.substr(0, end)};
  if (end < rest.size()) result.separator = rest[end];
  rest = trimmed(rest.substr(end));
  if (!rest.empty() && (rest[0] == ',' || rest[0] == ';')) {
    result.separator = rest[0];
    rest.remove_prefix(1);
  }
  return result;
}

std::optional<double> number(std::string_view text) {
  if (!text.empty() && text[0] == '+') text.remove_prefix(1);
  double value = 0.0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  // Beyond the range of a double is no number of photons either.
  if (error != std::errc() || stop != end || !std::isfinite(value)) return {};
  return value;
}

// "nan" and the like: a value that went wrong, not a heading.
bool no_number(std::string_view text) {
  double value = 0.0;
  return std::from_chars(text.data(), text.data() + text.size(), value).ec ==
         std::errc();
}

// What was found, fit for a message.
std::string quoted(std::string_view text) {
  std::string result = "'";
  for (const char c : text.substr(0, 20))
    result += c >= ' ' && c <= '~' ? c : '?';
  return result + (text.size() > 20 ? "...'" : "'");
}

}  // namespace

std::vector<Line> read_spectrum(std::istream& in) {
  std::vector<Line> lines;
  double before = 0.0;
  std::size_t bins = 0;
  bool first = true;
  Lines file(in);
  while (const std::optional<std::string_view> text = file.next()) {
    const std::size_t n = file.number();
    std::string_view rest = trimmed(*text);
    if (n == 1 && rest.substr(0, 3) == "\xEF\xBB\xBF") rest.remove_prefix(3);
    if (rest.empty() || rest[0] == '#') continue;
    const bool heading =
        first && ((rest[0] >= 'A' && rest[0] <= 'Z') ||
                  (rest[0] >= 'a' && rest[0] <= 'z') || rest[0] == '"');
    first = false;
    const Field first_field = field(rest);
    const Field second_field = field(rest);
    const std::optional<double> keV = number(first_field.text);
    if (!keV && heading && !no_number(first_field.text)) continue;
    if (!keV) fail(n, quoted(first_field.text) + " is no energy in keV");
    if (second_field.text.empty()) {
      fail(n, "one column", "a spectrum has two: keV and photons");
    }
    // "14,4 100" would be read as 14 keV and 4 photons, "14;4,5" as 4 photons.
    if (second_field.separator != 0 &&
        (first_field.separator == ',') != (second_field.separator == ',')) {
      fail(n, "',' separates columns here, and something else does too",
           "a decimal takes a point: 14.4");
    }
    const std::optional<double> photons = number(second_field.text);
    if (!photons) {
      fail(n, quoted(second_field.text) + " is no number of photons");
    }
    if (*keV <= 0.0) fail(n, "an energy is above 0");
    if (*photons < 0.0) fail(n, "less than no photons");
    if (*keV <= before) {
      fail(n, "the energies do not rise",
           "sort -g FILE; the first column is the energy");
    }
    if (++bins > kMaxBins) {
      fail(n, "more than " + std::to_string(kMaxBins) + " bins");
    }
    before = *keV;
    if (*photons > 0.0) lines.push_back({{*keV}, *photons});
  }
  if (lines.empty()) {
    throw InputError(bins == 0 ? "the spectrum is empty"
                               : "no bin of the spectrum has photons",
                     0, "two columns: keV and photons");
  }
  return lines;
}

Bins bins(const Material& material, std::span<const Line> lines,
          std::span<const Layer> before, Weighting weighting, Rule rule,
          const Data& data) {
  if (lines.empty()) throw InputError("the beam has no lines", 0);
  std::vector<double> exponents;
  exponents.reserve(lines.size());
  for (const Line& line : lines)
    exponents.push_back(mu_x(before, line.energy, rule, data));
  const double least = *std::min_element(exponents.begin(), exponents.end());
  double largest = 0.0;
  for (const Line& line : lines) largest = std::max(largest, line.weight);

  Bins result;
  result.reserve(lines.size());
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const Line& line = lines[i];
    const double factor =
        weighting == Weighting::kEnergy ? line.energy.keV : 1.0;
    // In parts of the largest, so that no sum overflows.
    const double weight =
        line.weight / largest * factor * std::exp(least - exponents[i]);
    if (weight == 0.0) continue;
    result.push_back(
        {weight, line.energy.keV,
         mass_attenuation(material, line.energy, rule, data).cm2_g});
  }
  return result;
}

namespace {

struct Sums {
  double weight = 0.0;  // what passes, relative to the line that passes best
  double energy = 0.0;  // the same, times keV
  double mu = 0.0;      // the same, times mu/rho
  double least = 0.0;   // the smallest exponent
};

Sums sums(const Bins& bins, AreaMass d) {
  Sums result;
  double least = bins.front().mu_rho;
  for (const Bin& bin : bins) least = std::min(least, bin.mu_rho);
  for (const Bin& bin : bins) {
    const double passed = bin.weight * std::exp((least - bin.mu_rho) * d.g_cm2);
    result.weight += passed;
    result.energy += passed * bin.keV;
    result.mu += passed * bin.mu_rho;
  }
  result.least = least * d.g_cm2;
  return result;
}

}  // namespace

double exponent(const Bins& bins, AreaMass d) {
  const Sums behind = sums(bins, d);
  return behind.least - std::log(behind.weight / sums(bins, {}).weight);
}

MassAttenuation effective(const Bins& bins, AreaMass d) {
  const Sums in_front = sums(bins, {});
  if (d.g_cm2 <= 0.0) return {in_front.mu / in_front.weight};
  return {exponent(bins, d) / d.g_cm2};
}

Energy mean_energy(const Bins& bins, AreaMass d) {
  const Sums behind = sums(bins, d);
  return {behind.energy / behind.weight};
}

AreaMass thickness_for(const Bins& bins, double wanted) {
  if (!(wanted > 0.0 && wanted <= 1.0)) {
    throw InputError("a transmission is above 0 and at most 1", 0);
  }
  // The exponent rises with d and bends down, so that Newton's steps from 0
  // never go too far; the answer is there when a step no longer counts.
  const double target = -std::log(wanted);
  const double start = sums(bins, {}).weight;
  double d = 0.0;
  for (;;) {
    const Sums behind = sums(bins, {d});
    const double missing =
        target - (behind.least - std::log(behind.weight / start));
    const double next = d + missing * behind.weight / behind.mu;
    if (!(next > d * (1.0 + 1e-15))) return {d};
    d = next;
  }
}

}  // namespace physics
