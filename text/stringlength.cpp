#include "text/stringlength.h"

#include <string>
#include <string_view>

namespace toolkit {

void stringlength(base::Line& ch, int& il) {
  il = 0;
  const std::string_view counted = ch.columns<1, 131>();
  const auto first = counted.find_first_not_of(' ');
  if (first == counted.npos || counted.front() == '\0') return;
  il = static_cast<int>(counted.find_last_not_of(' ') - first) + 1;
  if (first > 0) ch = std::string(ch.full().substr(first));
}

void lc_character(base::Line& ch) {
  int il = 0;
  stringlength(ch, il);
  for (int i = 1; i <= il; ++i) {
    char& c = ch.at(i, "ch");
    if ('A' <= c && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
}

}  // namespace toolkit
