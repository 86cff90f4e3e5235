#include "prompts/prompt.h"

#include <string>
#include <string_view>

#include "base/unit.h"
#include "help/help.h"
#include "help/key.h"
#include "terminal/ansi.h"

namespace toolkit {
namespace {

using base::Line;

constexpr std::string_view kScriptKey = help::Key("zoxu/script/alteration");

void restore(Line& querytype, std::string_view question) {
  querytype.put(1, static_cast<int>(question.size()), question, "querytype");
}

}  // namespace

Mode take_mode(Line& querytype) {
  char& flag = querytype.at(132, "querytype");
  const Mode mode = flag == 'r'   ? Mode::kReplay
                    : flag == 'w' ? Mode::kRecord
                                  : Mode::kInteractive;
  flag = ' ';
  return mode;
}

void go_to_answer(int nwr) {
  base::unit(nwr).write(std::string(" ") + terminal::kUp2);
}

void erase_prompt(int width, int nwr) {
  go_to_answer(nwr);
  const std::string blanks(static_cast<std::size_t>(width > 0 ? width : 0),
                           ' ');
  base::unit(nwr).write(blanks);
  base::unit(nwr).write(blanks);
  base::unit(nwr).write(std::string(" ") + terminal::kUp3);
}

std::optional<Line> replayed(std::string_view message, int nwr) {
  Line line;
  if (base::unit(base::kScriptUnit).try_read(line)) return line;
  base::unit(nwr).write(message);
  return std::nullopt;
}

void refuse_back(Line& querytype, std::string_view question, int nwr) {
  querytype = kScriptKey;
  help::help(querytype);
  base::unit(nwr).write(" a script file has not been defined");
  restore(querytype, question);
}

void show_help(Line& querytype, std::string_view question, const Line& chcom,
               Mode mode) {
  help::help(chcom);
  if (mode == Mode::kRecord) {
    querytype = kScriptKey;
    help::help(querytype);
  }
  restore(querytype, question);
}

}  // namespace toolkit
