#include "attenuate/writers.h"

namespace attenuate {

std::unique_ptr<AnswerWriter> writer_for(Output& output,
                                         const Settings& settings,
                                         Shape shape) {
  switch (settings.format) {
    case Format::kTsv:
      return separated_writer(output, settings, shape, '\t');
    case Format::kCsv:
      return separated_writer(output, settings, shape, ',');
    case Format::kJson:
      return json_writer(output, settings, shape);
    case Format::kJsonLines:
      return json_lines_writer(output, settings, shape);
    case Format::kText:
      break;
  }
  return text_writer(output, settings, shape);
}

}  // namespace attenuate
