#include "prompts/yesno.h"

#include <string>

#include "base/unit.h"
#include "help/help.h"
#include "prompts/prompt.h"
#include "terminal/show.h"
#include "text/stringend.h"
#include "text/stringlength.h"

namespace toolkit {

using base::Line;

void yesno(Line& querytype, char& ch1, Line& chcom, int ncol, int nrd,
           int nwr) {
  const Mode mode = take_mode(querytype);
  int ld = ncol;
  stringend(querytype, ld);

  if (mode == Mode::kReplay) {
    if (const auto line = replayed(kEndOfScriptAtYesNo, nwr)) {
      terminal::show(line->trimmed(), nwr);
      const bool yes = line->full().find("[y]", 1) != std::string_view::npos;
      ch1 = yes ? 'y' : 'n';
      return;
    }
  }

  for (;;) {
    const std::string prompt =
        std::string(querytype.columns(1, ld, "querytype")) + " [" + ch1 + "]";
    terminal::show(prompt, nwr);
    Line answer;
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
