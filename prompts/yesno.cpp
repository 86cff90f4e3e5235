#include "prompts/yesno.h"

#include <string>

#include "base/unit.h"
#include "help/help.h"
#include "prompts/prompt.h"
#include "text/stringend.h"
#include "text/stringlength.h"

namespace toolkit {

using base::Text;

void yesno(Text<132>& querytype, char& ch1, Text<132>& chcom, int ncol, int nrd,
           int nwr) {
  base::Unit& out = base::unit(nwr);
  const Mode mode = take_mode(querytype);
  int ld = ncol;
  stringend(querytype, ld);

  if (mode == Mode::kReplay) {
    Text<132> line;
    if (replayed(line, kEndOfScriptAtYesNo, nwr)) {
      out.write(line.trimmed());
      const bool yes = line.full().find("[y]", 1) != std::string_view::npos;
      ch1 = yes ? 'y' : 'n';
      return;
    }
  }

  for (;;) {
    const std::string prompt =
        std::string(querytype.columns(1, ld, "querytype")) + " [" + ch1 + "]";
    out.write(prompt);
    Text<132> answer;
    base::unit(nrd).read(answer);
    go_to_answer(nwr);
    lc_character(answer);

    const char first = answer.columns<1, 1>().front();
    if (answer.columns<1, 2>() == "he") {
      help::help(chcom);
      continue;
    }
    if (answer.blank()) {
      if (mode == Mode::kRecord) base::unit(base::kScriptUnit).write(prompt);
      return;
    }
    if (first == '*' || first == 'q') {
      ch1 = '*';
      return;
    }
    if (first == 'n' || first == 'y') ch1 = first;
    erase_prompt(ld, nwr);
  }
}

}  // namespace toolkit
