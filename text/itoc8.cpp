#include "text/itoc8.h"

#include <cstdint>

namespace toolkit {

void itoc8(base::Text<8>& ch, int nn) {
  ch = "";
  std::int64_t rest = nn;  // the smallest int has no positive counterpart
  if (rest < 0) {
    ch.at(1, "ch") = '-';
    rest = -rest;
  }
  int digits = 0;
  for (std::int64_t left = rest; left != 0; left /= 10) ++digits;
  for (int column = digits + 1; column > 1; --column, rest /= 10) {
    ch.at(column, "ch") = static_cast<char>('0' + rest % 10);
  }
}

void c8toi(base::Text<8>& ch, int& n) {
  for (int i = 1; i <= 8; ++i) {
    char& c = ch.at(i, "ch");
    if (static_cast<unsigned char>(c) > '9') c = ' ';
  }
  n = 0;
  if (ch.blank()) return;
  int i = 1;
  while (ch.at(i, "ch") == ' ') ++i;
  if (ch.at(i, "ch") == '+') ++i;
  const bool negative = ch.at(i, "ch") == '-';
  if (negative) ++i;
  for (; ch.at(i, "ch") != ' '; ++i) n = n * 10 + (ch.at(i, "ch") - '0');
  if (negative) n = -n;
}

}  // namespace toolkit
