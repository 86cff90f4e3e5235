#include "prompts/askvalue.h"

#include <algorithm>
#include <string>

#include "base/array.h"
#include "base/fatal.h"
#include "base/unit.h"
#include "prompts/prompt.h"
#include "text/stringend.h"
#include "text/stringlength.h"
#include "text/trlch.h"
#include "text/trlnu.h"

namespace toolkit {
namespace {

using base::Text;

// A value as the prompt shows it.
class ShownValue {
 public:
  void format(Text<7>& form, float value) {
    Text<24> chr;
    int width = 0;
    base::with_advice<base::RangeError>(
        [&] { trlnu(form, value, chr, width, chl_, im_); },
        "the number has too many digits for the question");
  }
  std::string_view shown() const { return chl_.columns(1, im_, "chl"); }
  const Text<24>& text() const { return chl_; }

 private:
  Text<24> chl_;
  // Kept from the value before when a text is too long for its format.
  int im_ = 0;
};

int numbers_in(const Text<132>& text, int columns, float& first) {
  int iout = 0;
  base::Array<float, 32> out{"out"};
  trlch(columns, text, iout, out);
  first = out(1);
  return iout;
}

// The number between the last "[" and "]" of a script line.
float recorded_value(const Text<132>& line) {
  const std::string_view text = line.columns<1, 80>();
  const auto close = text.rfind(']');
  const auto open =
      close == text.npos ? text.npos : text.substr(0, close).rfind('[');
  if (open == text.npos) {
    base::fatal("Script line '" + std::string(line.trimmed()) +
                    "' has no value in brackets",
                "record the script again, or write the value as [1.5]");
  }
  const Text<24> value = text.substr(open + 1, close - open - 1);
  float first = 0.0F;
  numbers_in(value, 16, first);
  return first;
}

}  // namespace

void askvalue(Text<132>& querytype, Text<7>& form, float& value,
              Text<132>& chcom, int ncol, int nrd, int nwr) {
  base::Unit& out = base::unit(nwr);
  const Mode mode = take_mode(querytype);
  int ld = ncol;
  stringend(querytype, ld);
  ShownValue default_value;
  default_value.format(form, value);

  if (mode == Mode::kReplay) {
    Text<132> line;
    if (replayed(line, kEndOfScript, nwr)) {
      out.write(line.trimmed());
      value = recorded_value(line);
      return;
    }
  }

  const std::string querystore(querytype.columns(1, ld, "querytype"));
  for (;;) {
    const std::string prompt =
        std::string(querytype.columns(1, ld, "querytype")) + "=[" +
        std::string(default_value.shown()) + "]";
    out.write((mode == Mode::kRecord ? "(b) " : "") + prompt);
    Text<132> answer;
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
      if (numbers_in(default_value.text(), std::max(ncol, 24), value) == 0) {
        base::note("no number can be read in " +
                   std::string(default_value.text().trimmed()) +
                   ": it counts as 0");
      }
      return;
    }
    const char first = answer.columns<1, 1>().front();
    if (first == '*' || first == 'q') {
      querytype = "*";
      return;
    }
    float typed = 0.0F;
    if (numbers_in(answer, ncol, typed) != 1) continue;
    value = typed;
    default_value.format(form, value);
    erase_prompt(ld, nwr);
  }
}

}  // namespace toolkit
