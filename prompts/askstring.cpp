#include "prompts/askstring.h"

#include <algorithm>
#include <string>

#include "base/fatal.h"
#include "base/unit.h"
#include "prompts/prompt.h"
#include "terminal/readaline.h"
#include "terminal/show.h"
#include "text/stringlength.h"

namespace toolkit {
namespace {

using base::Line;
using base::Text;

Line typed_line() {
  std::string line = terminal::edited_line(">");
  line.resize(std::min(line.size(), std::size_t{base::kLine}));
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
Line recorded_answer(const Line& line, int ls) {
  const auto open = line.full().find('[');
  if (open == std::string_view::npos) {
    base::fatal("Script line '" + std::string(line.trimmed()) +
                    "' has no answer in brackets",
                "record the script again, or write the answer as [C_2F_4]");
  }
  return line.full().substr(open + 1, static_cast<std::size_t>(ls));
}

}  // namespace

void askstring(Line& querytype, Line& chstr, Line& chcom, int ncol, int /*nrd*/,
               int nwr) {
  const Mode mode = take_mode(querytype);
  Line question = querytype;
  int ld = 0;
  stringlength(question, ld);
  int ls = 0;
  stringlength(chstr, ls);
  ls = std::max(ls, 1);

  if (mode == Mode::kReplay) {
    if (const auto line = replayed(kEndOfScript, nwr)) {
      chstr = recorded_answer(*line, ls);
      return;
    }
  }

  const Text<80> querystore = querytype.columns(1, ld, "querytype");
  const std::string restored(Line(querystore).columns(1, ld, "querystore"));
  Text<80> chstore = chstr.columns(1, ls, "chstr");
  std::string prompt;
  char ch1 = ' ';
  for (;;) {
    prompt = std::string(querytype.columns(1, ld, "querytype")) + " [" +
             kept(chstore, ls) + "]";
    terminal::show((mode == Mode::kRecord ? "(b) " : "") + prompt, nwr);
    terminal::addhist(kept(chstore, ls).c_str());
    Line answer = typed_line();
    const Text<4> ch4 = answer.columns<1, 4>();
    ch1 = answer.columns<1, 1>().front();
    go_to_answer(nwr);
    Line cp132 = answer;
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
  chstr = ch1 == ' ' ? Line(chstore) : Line("*");
  if (mode == Mode::kRecord) base::unit(base::kScriptUnit).write(prompt);
}

}  // namespace toolkit
