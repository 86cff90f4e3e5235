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

// Without what editors leave at the ends: a byte order mark, a CR.
std::string_view bare(std::string_view line, bool first) {
  if (first && line.starts_with("\xEF\xBB\xBF")) line.remove_prefix(3);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

void refuse_option(std::string_view line, Question& question) {
  const std::size_t at = line.starts_with("--") ? 0 : line.find(" --");
  if (at == std::string_view::npos) return;
  question.typed = line;
  throw physics::InputError("options stand before the list, not in it",
                            question.column(at == 0 ? 0 : at + 1));
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
  while (const auto next = lines.next(kLongestLine)) {
    progress.at(++number);
    const std::string_view line = bare(*next, number == 1);
    if (is_passed_over(line)) continue;
    writer->at_line(number);
    try {
      refuse_option(line, question);
      reader.read_line(line, question);
      answerer.answer(question, *writer);
    } catch (const physics::InputError& error) {
      failed = true;
      progress.clear();
      complain(
          complaint(error, question.typed, "line " + std::to_string(number)));
    }
  }
  progress.clear();
  writer->finish();
  return failed ? kSomeFailed : 0;
}

}  // namespace attenuate
