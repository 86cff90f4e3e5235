#include "menu/query.h"

#include <algorithm>

#include "terminal/window.h"

namespace menu {

Scrd scrd;
ShowHelp show_help;

void query(int& lq, int& lk, base::Text<132>& cheader, base::Text<80>& chdf) {
  Question question{.entries = lq, .header = cheader, .wanted = chdf};
  char& layout = question.wanted.at(80, "chdf");
  char& go = question.header.at(131, "cheader");
  char& window_mode = question.header.at(132, "cheader");
  question.block = layout == '#';
  question.go = go == 'g';
  question.window_mode = window_mode;
  layout = window_mode = ' ';
  if (question.go) go = ' ';

  cheader.at(132, "cheader") = ' ';
  cut_at_window(cheader);
  const Answer answer = ask(question, scrd, show_help);
  chdf = answer.typed;
  if (answer.lines) {
    chdf.at(80, "chdf") = static_cast<char>('0' + *answer.lines);
  }
  lk = answer.entry ? 0 : lq;
  lq = answer.entry.value_or(lq);
}

}  // namespace menu
