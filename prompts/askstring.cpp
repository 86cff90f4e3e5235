#include "prompts/askstring.h"

#include <algorithm>
#include <string>

#include "base/array.h"
#include "base/fatal.h"
#include "base/harmless.h"
#include "base/unit.h"
#include "prompts/prompt.h"
#include "terminal/readaline.h"
#include "text/stringlength.h"

namespace toolkit {
namespace {

using base::Text;

Text<132> edited_line() {
  base::Array<int, 132> k{"k"};
  const int length = terminal::readaline(k, ">");
  std::string line;
  for (int i = 1; i <= length; ++i) line += static_cast<char>(k(i));
  if (!line.empty()) terminal::addhist(line.c_str());
  return line;
}

// The first `ls` characters of the kept answer.
std::string kept(const Text<80>& chstore, int ls) {
  return base::with_advice<base::RangeError>(
      [&] { return std::string(chstore.columns(1, ls, "chstore")); },
      "an answer has at most 80 characters: shorten it");
}

// The `ls` characters behind the first "[" of a script line.
Text<132> recorded_answer(const Text<132>& line, int ls) {
  const auto open = line.full().find('[');
  if (open == std::string_view::npos) {
    base::fatal("Script line '" + std::string(line.trimmed()) +
                    "' has no answer in brackets",
                "record the script again, or write the answer as [C_2F_4]");
  }
  return line.full().substr(open + 1, static_cast<std::size_t>(ls));
}

}  // namespace

void askstring(Text<132>& querytype, Text<132>& chstr, Text<132>& chcom,
               int ncol, int /*nrd*/, int nwr) {
  base::Unit& out = base::unit(nwr);
  const Mode mode = take_mode(querytype);
  Text<132> question = querytype;
  int ld = 0;
  stringlength(question, ld);
  int ls = 0;
  stringlength(chstr, ls);
  ls = std::max(ls, 1);

  if (mode == Mode::kReplay) {
    Text<132> line;
    if (replayed(line, kEndOfScript, nwr)) {
      chstr = recorded_answer(line, ls);
      return;
    }
  }

  const Text<80> querystore = querytype.columns(1, ld, "querytype");
  const std::string restored(
      Text<132>(querystore).columns(1, ld, "querystore"));
  Text<80> chstore = chstr.columns(1, ls, "chstr");
  std::string prompt;
  char ch1 = ' ';
  for (;;) {
    prompt = std::string(querytype.columns(1, ld, "querytype")) + " [" +
             kept(chstore, ls) + "]";
    // Ctrl-V types characters that would steer the terminal.
    out.write(base::harmless((mode == Mode::kRecord ? "(b) " : "") + prompt));
    terminal::addhist(kept(chstore, ls).c_str());
    Text<132> answer = edited_line();
    const Text<4> ch4 = answer.columns<1, 4>();
    ch1 = answer.columns<1, 1>().front();
    go_to_answer(nwr);
    Text<132> cp132 = answer;
    lc_character(cp132);

    if (ch4 == "back") {
      chcom.put(1, 4, "back", "chcom");
      if (mode == Mode::kRecord) return;
      refuse_back(querytype, restored, nwr);
      continue;
    }
    if (cp132.columns<1, 3>() == "he ") {
      show_help(querytype, restored, chcom, mode);
      continue;
    }
    if (ch4.blank() || ch1 == '*' || ch1 == 'q') break;
    stringlength(answer, ls);
    chstore = answer;
    erase_prompt(ncol, nwr);
  }
  chstr = ch1 == ' ' ? Text<132>(chstore) : Text<132>("*");
  if (mode == Mode::kRecord) base::unit(base::kScriptUnit).write(prompt);
}

}  // namespace toolkit
