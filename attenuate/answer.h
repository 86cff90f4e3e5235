// From a question to numbers.

#ifndef ATTENUATE_ANSWER_H_
#define ATTENUATE_ANSWER_H_

#include <optional>
#include <span>
#include <vector>

#include "attenuate/question.h"
#include "attenuate/settings.h"

namespace attenuate {

// What one layer does at one energy.
struct LayerValue {
  physics::MassAttenuation mu_rho;
  double relative_u = 0.0;  // of mu/rho, k = 1
  double mu_x = 0.0;
};

// The answer for one energy, or the sum over the lines of a source. Absent is
// what the question gives no answer to.
struct Row {
  std::optional<physics::Energy> energy;  // but for a sum
  const physics::Source* source = nullptr;
  const physics::SourceLine* line = nullptr;  // null for a sum
  double weight = 1.0;                        // of the line

  std::span<const LayerValue> layers;  // as many as the question has

  // Of a single layer.
  std::optional<physics::MassAttenuation> mu_rho;
  std::optional<double> u_mu_rho;                // cm2/g
  std::optional<physics::LinearAttenuation> mu;  // with a density
  std::optional<physics::MassAttenuation> mu_en_rho;

  // Of the layer whose thickness was asked for, or of a single one.
  std::optional<physics::AreaMass> area_mass;
  std::optional<physics::AreaMass> u_area_mass;  // where asked for
  std::optional<physics::Length> thickness;      // with a density

  // Of the whole.
  std::optional<double> mu_x;
  std::optional<double> transmission;
  std::optional<double> u_transmission;
};

// Where rows go, in the order of the question's energies.
class Writer {
 public:
  virtual ~Writer() = default;
  virtual void begin(const Question& question) = 0;
  virtual void row(const Row& row) = 0;
  virtual void end() = 0;
};

// Answers one question after the other; keeps its storage.
class Answerer {
 public:
  explicit Answerer(const Settings& settings) : settings_(settings) {}

  // Adds notes on edges and doubtful tables to `question`, then writes it and
  // its rows. Throws physics::InputError before anything is written: no
  // thickness gives the wanted transmission, or a note where `strict` wants
  // none.
  void answer(Question& question, Writer& writer);

 private:
  // One energy.
  void set_values(const Question& question, physics::Energy energy);
  void set_single(const Question& question, Row& row) const;
  void set_thickness(const Question& question, Row& row) const;
  Row row_at(const Question& question, physics::Energy energy);

  // The thickness of the unknown layer for lines together.
  physics::AreaMass u_of_unknown(const Question& question,
                                 std::span<const physics::Line> lines);
  void solve(Question& question, std::span<const physics::Line> lines);
  void check_solvable(Question& question);

  // A word for energies.
  std::span<const physics::Line> lines_of(const Beam& beam);
  void answer_source(Question& question, const Beam& beam, Writer& writer);
  void answer_energies(Question& question, const Beam& beam, Writer& writer);

  void check_tables(const Question& question);

  const Settings& settings_;
  std::vector<LayerValue> values_;
  std::vector<physics::Line> lines_;
  physics::AreaMass u_unknown_;
};

}  // namespace attenuate

#endif  // ATTENUATE_ANSWER_H_
