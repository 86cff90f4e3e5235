// The forms of an answer.

#ifndef ATTENUATE_WRITERS_H_
#define ATTENUATE_WRITERS_H_

#include <cstddef>
#include <memory>
#include <optional>

#include "attenuate/answer.h"
#include "attenuate/output.h"
#include "attenuate/settings.h"

namespace attenuate {

// Writers of a batch say which line a row answers.
class AnswerWriter : public Writer {
 public:
  // Line `line` of a list, from 1, comes next.
  virtual void at_line(std::size_t line) = 0;
  // No more questions come.
  virtual void finish() {}
};

enum class Shape { kSingle, kBatch };

// `output` and `settings` outlive the writer.
std::unique_ptr<AnswerWriter> text_writer(Output& output,
                                          const Settings& settings,
                                          Shape shape);
// Values separated by `separator`.
std::unique_ptr<AnswerWriter> separated_writer(Output& output,
                                               const Settings& settings,
                                               Shape shape, char separator);
std::unique_ptr<AnswerWriter> json_writer(Output& output,
                                          const Settings& settings,
                                          Shape shape);
std::unique_ptr<AnswerWriter> json_lines_writer(Output& output,
                                                const Settings& settings,
                                                Shape shape);

// The one that the settings ask for.
std::unique_ptr<AnswerWriter> writer_for(Output& output,
                                         const Settings& settings, Shape shape);

}  // namespace attenuate

#endif  // ATTENUATE_WRITERS_H_
