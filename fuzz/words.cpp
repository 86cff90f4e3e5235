// Lines of a list: whatever is in them is answered or refused.

#include "attenuate/words.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "attenuate/answer.h"
#include "attenuate/complaint.h"

namespace {

// No number may be anything but a number.
class Checker : public attenuate::Writer {
 public:
  void begin(const attenuate::Question& /*question*/) override {}
  void row(const attenuate::Row& row) override {
    if (row.transmission && !(*row.transmission >= 0)) std::abort();
    if (row.transmission && !(*row.transmission <= 1)) std::abort();
    if (row.mu_rho && !(row.mu_rho->cm2_g > 0)) std::abort();
    if (row.mu_x && !std::isfinite(*row.mu_x)) std::abort();
  }
  void end() override {}
};

bool is_short(const attenuate::Question& question) {
  std::size_t energies = 0;
  for (const auto& beam : question.beams) energies += beam.count;
  return energies < 1000;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size) {
  static const attenuate::Settings settings;
  static attenuate::Reader reader(*settings.data);
  static attenuate::Answerer answerer(settings);
  const std::string_view line(reinterpret_cast<const char*>(data), size);
  attenuate::Question question;
  try {
    reader.read_line(line, question);
    Checker checker;
    if (is_short(question)) answerer.answer(question, checker);
  } catch (const physics::InputError& error) {
    attenuate::complaint(error, line);
  }
  return 0;
}
