#include "base/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <string>
#include <tuple>
#include <vector>

#include "base/harmless.h"
#include "tests/support.h"
#include "toolkit/text/itoc8.h"
#include "toolkit/text/nextchar.h"
#include "toolkit/text/stringend.h"
#include "toolkit/text/stringlength.h"
#include "toolkit/text/trlch.h"
#include "toolkit/text/trlnu.h"

namespace {

using base::Text;

std::vector<float> numbers_in(const std::string& text, int columns = 132) {
  int iout = 0;
  base::Array<float, 32> out{"out"};
  toolkit::trlch(columns, text, iout, out);
  std::vector<float> numbers;
  for (int i = 1; i <= iout; ++i) numbers.push_back(out(i));
  return numbers;
}

TEST(Trlch, FindsEveryNumberInFreeText) {
  using Line = std::pair<const char*, std::vector<float>>;
  const Line lines[] = {
      Line("copper foil", {}), Line(" -0.5 keV", {-0.5F}),
      Line(".5,122", {0.5F, 122}), Line("1.5e3 1.e3", {1500, 1000}),
      Line("1.2.3", {1.2F, 0.3F}), Line("5+3", {5, 3}), Line(". 7", {0, 7}),
      // An exponent needs a point in the mantissa. Its power may be broken.
      Line("2.5E+3", {2500}), Line("1e3", {1, 3}), Line(" 1e3", {13}),
      Line("1.5ee3", {1.5F, 3}), Line("1.e.5", {0x1.94c584p+1F}),
      // Only the very next blank cancels it.
      Line("1.5e 3", {1.5F, 3}), Line("1.5e- 3", {0x1.89374cp-10F}),
      // A minus belongs to what follows, at any distance; one that ends a
      // number stays.
      Line("--5 6", {-5, -6}), Line("5-3 7", {5, -3, -7}),
      // Digit by digit in single precision: one step above 7.874F.
      Line("7.874", {0x1.f7efa0p+2F})};
  for (const auto& [text, numbers] : lines) {
    EXPECT_EQ(numbers_in(text), numbers) << text;
  }
  EXPECT_EQ(numbers_in("12345", 3), std::vector<float>{123});
  EXPECT_EQ(numbers_in("12. 5", 3), std::vector<float>{});
  // There is room for 32 numbers and the exponent of the last.
  std::string ones;
  for (int i = 1; i <= 31; ++i) ones += "1. ";
  EXPECT_EQ(numbers_in(ones + "1.e2 3.e2").back(), 100.0F);
}

// A number as text; `im` stays 5 where nothing sets it.
struct Formatted {
  Formatted(float value, const std::string& code) : format(code) {
    toolkit::trlnu(format, value, chr, width, chl, im);
  }
  Text<7> format;
  Text<24> chr, chl;
  int width = 0, im = 5;
};

TEST(Trlnu, WritesNumbersByFormatCode) {
  using Case = std::tuple<float, const char*, std::string>;
  const Case cases[] = {
      // A 5 never rounds up. 0999.98 reads back as the same number.
      Case(0.25F, "f8.1", "0.2"), Case(0.26F, "f8.1", "0.3"),
      Case(9.96F, "f8.1", "10.0"), Case(0.096F, "f8.2", "0.10"),
      Case(0.999F, "f8.2", "1.00"), Case(0.006F, "f8.2", "0.01"),
      Case(0, "f8.2", "0.00"), Case(-0.001F, "f8.2", "-0.00"),
      Case(0.7F, "f8.0", "1."), Case(999.98F, "f8.2", "0999.98"),
      Case(5, " +f8.1", "+5.0"), Case(-0.7F, "i3", "-1"),
      Case(0.3F, "i3", "  0"), Case(122.5F, "I5", "122"),
      Case(0.0025F, "E9.2", "2.50E-3"), Case(9.999F, "+e9.2", "+1.00e+1"),
      Case(12345, "a20.2", "1.23*10@u4@n"), Case(0x1p-149F, "e9.2", "1.00e-45"),
      // Beyond 1e10 the format is e15.5.
      Case(2e10F, "f8.2", "2.00000e10"),
      Case(INFINITY, "f8.2", "***************"),
      // What does not fit stands whole between stars, and leaves `im`.
      Case(1234567, "f8.2", "***1234567.00***")};
  for (const auto& [value, format, text] : cases) {
    const Formatted shown(value, format);
    const int length = static_cast<int>(text.size());
    EXPECT_EQ(shown.format, value > 1e10F ? "e15.5" : format) << text;
    EXPECT_EQ(shown.chl, text) << format;
    EXPECT_EQ(shown.im, length > 15 ? 5 : length) << text;
    EXPECT_TRUE(shown.chr.trimmed().ends_with(text)) << text;
    EXPECT_EQ(shown.chr.length(), std::max(shown.width, length));
  }
  EXPECT_THROW(Formatted(-1e10F, "f8.4"), base::RangeError);
}

// What a prompt shows must read back as the value that it showed. A 5 is cut
// off, not rounded: up to 0.6 of a step, and the digits of single precision.
TEST(Trlnu, FixedTextIsWithinHalfAStepOfTheNumber) {
  for (float x = 0.003F; x < 9e4F; x *= 1.00731F) {
    const std::string shown(Formatted(x, "f9.2").chl.trimmed());
    EXPECT_NEAR(std::stod(shown), x, 0.0061 + 3e-7 * static_cast<double>(x));
  }
}

TEST(Itoc8, WritesFromColumnTwo) {
  Text<8> field = "xxxxxxxx";
  for (const auto& [number, written] :
       {std::pair(-17, "-17"), {0, ""}, {9999999, " 9999999"}}) {
    toolkit::itoc8(field, number);
    EXPECT_EQ(field, written);
  }
  EXPECT_THROW(toolkit::itoc8(field, 10000000), base::RangeError);
  EXPECT_THROW(toolkit::itoc8(field, INT_MIN), base::RangeError);
}

TEST(C8toi, ReadsAFieldAndBlanksLetters) {
  using Case = std::tuple<const char*, int, const char*>;
  int n = -1;
  for (const auto& [typed, number, after] :
       {Case("  -17   ", -17, "  -17"), Case("+-5", -5, "+-5"),
        Case("28Ni", 28, "28"), Case("1234567", 1234567, "1234567"),
        Case("x 82 y", 82, "  82")}) {
    Text<8> field = typed;
    toolkit::c8toi(field, n);
    EXPECT_EQ(n, number) << typed;
    EXPECT_EQ(field, after);
  }
  for (Text<8> full : {"12345678", "       5", "       -"}) {
    EXPECT_THROW(toolkit::c8toi(full, n), base::RangeError) << full.full();
  }
}

TEST(Strings, LowerCaseMovesToTheLeft) {
  // Column 132 moves along as it was.
  Text<132> text("  Fe \xC4");
  text.at(132, "text") = 'W';
  toolkit::lc_character(text);
  EXPECT_EQ(text, "fe \xC4" + std::string(125, ' ') + "W");
}

TEST(Strings, StringendLooksUpToAColumn) {
  for (const auto& [from, end] :
       {std::pair(5, 5), {7, 6}, {0, 13}, {200, 13}}) {
    int il = from;
    toolkit::stringend("Photon energy", il);
    EXPECT_EQ(il, end) << from;
  }
}

TEST(Strings, NextcharStepsThroughWords) {
  using Case = std::tuple<const char*, int, int, const char*, int>;
  for (const auto& [line, il, word_at, word, length] :
       {Case("read, write x", 4, 7, "write x", 5), Case("read", 1, 6, "", 0),
        Case("  ,read", 0, 4, "read", 4), Case("", 131, 132, "", 0)}) {
    int ip = 0, ia = 0;
    Text<132> rest;
    toolkit::nextchar(line, il, ip, rest, ia);
    EXPECT_EQ(std::tuple(ip, ia), std::tuple(word_at, length)) << line;
    EXPECT_EQ(rest, word);
  }
}

// The last: controls of the second set, bare and in UTF-8, and cut letters.
TEST(Harmless, NothingSteersTheTerminal) {
  const std::string euro = "\xC3\xA4 \xE2\x82\xAC \xF0\x9F\x98\x80";
  EXPECT_EQ(base::harmless(euro), euro);
  EXPECT_EQ(base::harmless("a\tb\x1b[2J\x7f\n"), "a b?[2J??");
  EXPECT_EQ(base::harmless("\x9B.m\xC2\x9B\xE2\x82"), "?.m????");
}

}  // namespace
