#include "prompts/askvalue.h"

#include <algorithm>
#include <string>
#include <vector>

#include "base/fatal.h"
#include "base/unit.h"
#include "prompts/prompt.h"
#include "terminal/show.h"
#include "text/stringend.h"
#include "text/stringlength.h"
#include "text/trlch.h"
#include "text/trlnu.h"

namespace toolkit {
namespace {

using base::Line;
using base::Text;

// What the prompt shows of a value, and all that counts as shown.
struct ShownValue {
  std::string shown;
  Text<24> text;
};

// form  becomes the format that was used
ShownValue shown_value(Text<7>& form, float value) {
  const FormattedNumber number = base::with_advice<base::RangeError>(
      [&] { return formatted(form, value); },
      "the number has too many digits for the question");
  form = number.format;
  const int length = number.length.value_or(0);
  return {std::string(number.left.columns(1, length, "chl")), number.left};
}

float first_of(const std::vector<float>& numbers) {
  return numbers.empty() ? 0.0F : numbers.front();
}

// The number between the last "[" and "]" of a script line.
float recorded_value(const Line& line) {
  const std::string_view text = line.columns<1, 80>();
  const auto close = text.rfind(']');
  const auto open =
      close == text.npos ? text.npos : text.substr(0, close).rfind('[');
  if (open == text.npos) {
    base::fatal("Script line '" + std::string(line.trimmed()) +
                    "' has no value in brackets",
                "record the script again, or write the value as [1.5]");
  }
  // More than 16 columns no format writes.
  const Text<16> value = text.substr(open + 1, close - open - 1);
  return first_of(numbers_in(value.full()));
}

// Tells why the question is asked again.
void note_not_one(std::size_t numbers, std::string_view answer) {
  const bool comma = answer.find(',') != answer.npos;
  base::note(std::string(numbers == 0 || comma ? "no number"
                                               : "more than one number") +
             " in '" + std::string(answer) + "'" +
             (comma ? " (decimals take a point)" : "") +
             ": the question stands");
}

}  // namespace

void askvalue(Line& querytype, Text<7>& form, float& value, Line& chcom,
              int ncol, int nrd, int nwr) {
  const Mode mode = take_mode(querytype);
  int ld = ncol;
  stringend(querytype, ld);
  ShownValue current = shown_value(form, value);

  if (mode == Mode::kReplay) {
    if (const auto line = replayed(kEndOfScript, nwr)) {
      terminal::show(line->trimmed(), nwr);
      value = recorded_value(*line);
      return;
    }
  }

  const std::string querystore(querytype.columns(1, ld, "querytype"));
  for (;;) {
    const std::string prompt =
        std::string(querytype.columns(1, ld, "querytype")) + "=[" +
        current.shown + "]";
    terminal::show((mode == Mode::kRecord ? "(b) " : "") + prompt, nwr);
    Line answer;
    base::unit(nrd).read(answer);
    go_to_answer(nwr);
    lc_character(answer);

    if (answer.columns<1, 4>() == "back") {
      chcom.put(1, 4, "back", "chcom");
      if (mode == Mode::kRecord) return;
      refuse_back(querytype, querystore, nwr);
      continue;
    }
    if (answer.columns<1, 2>() == "he") {
      show_help(querytype, querystore, chcom, mode);
      continue;
    }
    if (answer.blank()) {
      if (mode == Mode::kRecord) base::unit(base::kScriptUnit).write(prompt);
      // All of what is shown counts, also where the line is narrower.
      const std::vector<float> numbers = numbers_in(current.text.full());
      if (numbers.empty()) {
        base::note("no number can be read in " +
                   std::string(current.text.trimmed()) + ": it counts as 0");
      }
      value = first_of(numbers);
      return;
    }
    const char first = answer.columns<1, 1>().front();
    if (first == '*' || first == 'q') {
      querytype = "*";
      return;
    }
    const std::vector<float> typed =
        numbers_in(answer.columns(1, std::min(ncol, base::kLine), "answer"));
    if (typed.size() != 1) {
      note_not_one(typed.size(), answer.trimmed());
      continue;
    }
    value = typed.front();
    current = shown_value(form, value);
    erase_prompt(ld, nwr);
  }
}

}  // namespace toolkit
