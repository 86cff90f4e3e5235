#include "attenuation/ask.h"

#include "base/unit.h"
#include "prompts/askstring.h"
#include "prompts/askvalue.h"
#include "prompts/yesno.h"
#include "terminal/window.h"

namespace attenuation {

using base::kTerminalInput;
using base::kTerminalOutput;
using base::Text;
using terminal::term;

float ask_value(std::string_view question, std::string_view form, float value,
                help::Key help_key) {
  Text<132> querytype = question;
  Text<7> format = form;
  Text<132> chcom = std::string_view(help_key);
  toolkit::askvalue(querytype, format, value, chcom, term.ncol(1),
                    kTerminalInput, kTerminalOutput);
  return value;
}

Text<132> ask_string(std::string_view question, std::string_view answer,
                     help::Key help_key) {
  Text<132> querytype = question;
  Text<132> chstr = answer;
  Text<132> chcom = std::string_view(help_key);
  toolkit::askstring(querytype, chstr, chcom, term.ncol(1), kTerminalInput,
                     kTerminalOutput);
  return chstr;
}

bool ask_yes(std::string_view question, help::Key help_key) {
  Text<132> querytype = question;
  char ch1 = 'y';
  Text<132> chcom = std::string_view(help_key);
  toolkit::yesno(querytype, ch1, chcom, term.ncol(1), kTerminalInput,
                 kTerminalOutput);
  return ch1 == 'y';
}

}  // namespace attenuation
