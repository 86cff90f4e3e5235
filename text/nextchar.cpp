#include "text/nextchar.h"

#include <algorithm>

namespace toolkit {
namespace {

bool separates(char c) { return c == ' ' || c == ','; }

}  // namespace

void nextchar(const base::Line& chl, int il, int& ip, base::Line& cha,
              int& ia) {
  const int start = std::min(il, 130);
  // One past the last non-blank character.
  const int npl =
      start +
      static_cast<int>(
          base::trimmed(chl.columns(start + 1, 131, "chl")).size()) +
      1;
  ip = start + 1;
  if (start > 0) {
    while (ip <= npl && !separates(chl.at(ip, "chl"))) ++ip;
  }
  while (ip <= npl && separates(chl.at(ip, "chl"))) ++ip;

  cha = base::Line(chl.columns(ip, npl, "chl"));
  ia = 0;
  while (ia < base::kLine && !separates(cha.at(ia + 1, "cha"))) ++ia;
}

}  // namespace toolkit
