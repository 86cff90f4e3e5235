#include "attenuate/batch.h"

#include <unistd.h>

#include <chrono>
#include <optional>
#include <string_view>

#include "attenuate/answer.h"
#include "attenuate/complaint.h"
#include "attenuate/lines.h"
#include "attenuate/words.h"
#include "attenuate/writers.h"

namespace attenuate {
namespace {

// Tells on a terminal how far the list is.
class Progress {
 public:
  void at(std::size_t line) {
    if (!terminal_ || line % 4096 != 0) return;
    const auto now = Clock::now();
    if (now < next_) return;
    next_ = now + std::chrono::milliseconds(500);
    shown_ = true;
    complain("\r" + std::to_string(line) + " lines");
  }
  void clear() {
    if (shown_) complain("\r\033[K");
    shown_ = false;
  }

 private:
  using Clock = std::chrono::steady_clock;

  // Where answers and progress share a terminal, the answers are progress
  // enough.
  bool terminal_ = ::isatty(STDERR_FILENO) == 1 && ::isatty(STDOUT_FILENO) != 1;
  bool shown_ = false;
  Clock::time_point next_ = Clock::now() + std::chrono::milliseconds(500);
};

bool is_passed_over(std::string_view line) {
  const std::size_t first = line.find_first_not_of(" \t\r");
  return first == std::string_view::npos || line[first] == '#';
}

void refuse_option(std::string_view line) {
  const std::size_t at = line.find(" --");
  if (!line.starts_with("--") && at == std::string_view::npos) return;
  const int column = line.starts_with("--") ? 1 : static_cast<int>(at) + 2;
  throw physics::InputError("options stand before the list, not in it", column);
}

}  // namespace

int answer_batch(const std::string& file, const Settings& settings,
                 Output& output) {
  Lines lines(file, [&output] { output.flush(); });
  const auto writer = writer_for(output, settings, Shape::kBatch);
  Reader reader(*settings.data);
  Answerer answerer(settings);
  Question question;
  Progress progress;
  bool failed = false;
  std::size_t number = 0;
  while (const auto line = lines.next(kLongestLine)) {
    progress.at(++number);
    if (is_passed_over(*line)) continue;
    writer->at_line(number);
    try {
      refuse_option(*line);
      reader.read_line(*line, question);
      answerer.answer(question, *writer);
    } catch (const physics::InputError& error) {
      failed = true;
      progress.clear();
      complain(complaint(error, question.typed.empty() ? *line : question.typed,
                         "line " + std::to_string(number)));
    }
  }
  progress.clear();
  writer->finish();
  return failed ? kSomeFailed : 0;
}

}  // namespace attenuate
