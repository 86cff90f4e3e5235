#include "base/text.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "tests/support.h"
#include "toolkit/text/harmless.h"
#include "toolkit/text/itoc8.h"
#include "toolkit/text/nextchar.h"
#include "toolkit/text/stringend.h"
#include "toolkit/text/stringlength.h"
#include "toolkit/text/trlch.h"
#include "toolkit/text/trlnu.h"

namespace {

using base::Text;

std::vector<float> numbers_in(const char* text, int columns = 132) {
  int iout = 0;
  base::Array<float, 32> out{"out"};
  toolkit::trlch(columns, text, iout, out);
  std::vector<float> numbers;
  for (int i = 1; i <= iout; ++i) numbers.push_back(out(i));
  for (int i = iout + 1; i <= 32; ++i) EXPECT_EQ(out(i), 0.0F) << text;
  return numbers;
}

TEST(Trlch, FindsEveryNumberInFreeText) {
  const struct {
    const char* text;
    std::vector<float> numbers;
  } cases[] = {
      {"", {}},
      {"copper foil", {}},
      {"122", {122}},
      {"5 keV", {5}},
      {"  -0.5 keV", {-0.5F}},
      {"1.2.3", {1.2F, 0.3F}},
      {".5,1", {0.5F, 1}},
      {"5+3", {5, 3}},
      {"+5x6", {5, 6}},
      {". 7", {0, 7}},
      // An exponent needs a point in the mantissa.
      {"1.5e3", {1500}},
      {"1.e3", {1000}},
      {".e3", {0}},
      {"2.5E+3", {2500}},
      {"1.e.5", {0x1.94c584p+1F}},  // 10 to the power 0.5
      {"1.5ee3", {1.5F, 3}},
      {"1.5e 3", {1.5F, 3}},
      {"1.5e- 3", {0x1.89374cp-10F}},  // only the very next blank cancels
      {"1e3", {1, 3}},
      {" 1e3", {13}},
      {"x1e", {1}},
      // A minus belongs to what follows, at any distance; one that ends a
      // number stays.
      {"- 5", {-5}},
      {"-1 2", {-1, 2}},
      {"5-3", {5, -3}},
      {"5-3 7", {5, -3, -7}},
      {"--5 6", {-5, -6}},
      // Digit by digit in single precision: one step above 7.874F.
      {"7.874", {0x1.f7efa0p+2F}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(numbers_in(c.text), c.numbers) << "text: '" << c.text << "'";
  }
  EXPECT_EQ(numbers_in("12345", 3), std::vector<float>{123});
  EXPECT_EQ(numbers_in("12. 5", 3), std::vector<float>{});
}

TEST(Trlch, HoldsThirtyTwoNumbersAndTheExponentOfTheLast) {
  std::string text;
  for (int i = 1; i <= 33; ++i)
    text += "1.e" + std::string(i > 31 ? "2" : "") + " ";
  const std::vector<float> numbers = numbers_in(text.c_str());
  ASSERT_EQ(numbers.size(), 32U);
  EXPECT_EQ(numbers[30], 1.0F);
  EXPECT_EQ(numbers[31], 100.0F);
}

TEST(Trlnu, WritesNumbersByFormatCode) {
  const struct {
    float value;
    const char* format;
    const char* text;
  } cases[] = {
      {122.0F, "f8.2", "122.00"},
      {0.25F, "f8.1", "0.2"},  // a 5 never rounds up
      {0.26F, "f8.1", "0.3"},
      {9.96F, "f8.1", "10.0"},
      {0.05F, "f8.2", "0.05"},
      {0.096F, "f8.2", "0.10"},
      {0.999F, "f8.2", "1.00"},
      {0.006F, "f8.2", "0.01"},
      {0.0009F, "f8.2", "0.00"},
      {0.0F, "f8.2", "0.00"},
      {-0.001F, "f8.2", "-0.00"},
      {123.0F, "f8.0", "123."},
      {0.7F, "f8.0", "1."},
      {999.98F, "f8.2", "0999.98"},  // reads back as the same
      {0.125F, "F8.4", "0.1250"},
      {5.0F, " +f8.1", "+5.0"},
      {2.7F, "i3", "3"},
      {-0.7F, "i3", "-1"},
      {122.5F, "I5", "122"},
      {12345.0F, "e15.5", "1.23450e4"},
      {0.0025F, "E9.2", "2.50E-3"},
      {9.999F, "+e9.2", "+1.00e+1"},
      {0.0F, "e9.2", "0.00e-1"},
      {1.0F, "e9.2", "1.00e0"},
      {12345.0F, "a20.2", "1.23*10@u4@n"},
      {0x1p-149F, "e9.2", "1.00e-45"},
  };
  for (const auto& c : cases) {
    Text<7> format = c.format;
    Text<24> chr;
    Text<24> chl;
    int width = 0;
    int im = -1;
    toolkit::trlnu(format, c.value, chr, width, chl, im);
    const std::string text = c.text;
    EXPECT_EQ(chl, text) << c.format;
    EXPECT_EQ(im, static_cast<int>(text.size())) << text;
    const auto left = static_cast<std::size_t>(width) - text.size();
    EXPECT_EQ(chr, std::string(left, ' ') + text);
  }
}

TEST(Trlnu, WhatDoesNotFitShowsStars) {
  const float infinity = std::numeric_limits<float>::infinity();
  const struct {
    float value;
    const char* format;
    const char* format_after;
    const char* text;
    int im;  // 5 where it stays as it was
  } cases[] = {
      {1234567.0F, "f8.2", "f8.2", "***1234567.00***", 5},
      {2e10F, "f8.2", "e15.5", "2.00000e10", 10},
      {0.3F, "i3", "i3", "  0", 3},
      {1.0F, "f25.2", "f25.2", "************************", 5},
      {infinity, "f8.2", "e15.5", "***************", 15},
      {std::numeric_limits<float>::quiet_NaN(), "f8.2", "f8.2", "********", 8},
  };
  for (const auto& c : cases) {
    Text<7> format = c.format;
    Text<24> chr;
    Text<24> chl;
    int width = 0;
    int im = 5;
    toolkit::trlnu(format, c.value, chr, width, chl, im);
    EXPECT_EQ(format, c.format_after) << c.text;
    EXPECT_EQ(chl, c.text);
    EXPECT_TRUE(chr.trimmed().ends_with(c.text)) << chr.full();
    EXPECT_EQ(im, c.im) << c.text;
  }
  Text<7> format = "f8.4";
  Text<24> field;
  int n = 0;
  EXPECT_EQ(tests::cause_of(
                [&] { toolkit::trlnu(format, -1e10F, field, n, field, n); }),
            "Substring out of bounds: upper bound (17) of 'work' exceeds "
            "string length (16)");
  format = "x8.2";
  EXPECT_EQ(tests::cause_of(
                [&] { toolkit::trlnu(format, 1.0F, field, n, field, n); }),
            "Format 'x8.2' is none of i, f, e, a");
}

// What a prompt shows must read back as the value that it showed.
TEST(Trlnu, FixedTextIsWithinHalfAStepOfTheNumber) {
  for (float x = 0.003F; x < 9e4F; x *= 1.00731F) {
    Text<7> format = "f9.2";
    Text<24> chr;
    Text<24> chl;
    int width = 0;
    int im = 0;
    toolkit::trlnu(format, x, chr, width, chl, im);
    const auto shown = std::stod(std::string(chl.trimmed()));
    // A 5 is cut off, not rounded: up to 0.6 of a step, and the digits that
    // single precision has.
    EXPECT_NEAR(shown, x, 0.0061 + 3e-7 * static_cast<double>(x)) << chl.full();
  }
}

TEST(Itoc8, WritesFromColumnTwo) {
  const struct {
    int number;
    const char* field;
  } cases[] = {{42, " 42"}, {-17, "-17"}, {0, ""}, {9999999, " 9999999"}};
  for (const auto& c : cases) {
    Text<8> field = "xxxxxxxx";
    toolkit::itoc8(field, c.number);
    EXPECT_EQ(field, c.field);
  }
  Text<8> field;
  for (const int number : {10000000, std::numeric_limits<int>::min()}) {
    EXPECT_NE(tests::cause_of([&] { toolkit::itoc8(field, number); }), "");
  }
}

TEST(C8toi, ReadsAFieldAndBlanksLetters) {
  const struct {
    const char* field;
    int number;
    const char* after;
  } cases[] = {
      {"  -17   ", -17, "  -17"},
      {"abc", 0, ""},
      {"", 0, ""},
      {"+-5", -5, "+-5"},
      {"28Ni", 28, "28"},
      {"1.5", 85, "1.5"},
      {"1234567", 1234567, "1234567"},
      {"x 82 y", 82, "  82"},
  };
  for (const auto& c : cases) {
    Text<8> field = c.field;
    int number = -1;
    toolkit::c8toi(field, number);
    EXPECT_EQ(number, c.number) << c.field;
    EXPECT_EQ(field, c.after);
  }
  for (const char* full : {"12345678", "       5", "       -"}) {
    Text<8> field = full;
    int number = 0;
    EXPECT_EQ(tests::cause_of([&] { toolkit::c8toi(field, number); }),
              "Substring out of bounds: upper bound (9) of 'ch' exceeds string"
              " length (8)");
  }
}

TEST(Strings, LengthLowerCaseEnd) {
  int il = 0;
  Text<132> text = "   aBC";
  toolkit::stringlength(text, il);
  EXPECT_EQ(il, 3);
  EXPECT_EQ(text, "aBC");
  text = "  Fe \xC4";
  toolkit::lc_character(text);
  EXPECT_EQ(text, "fe \xC4");
  // Column 132 moves along, uncounted and as it was.
  text = " X";
  text.at(132, "text") = 'W';
  toolkit::lc_character(text);
  EXPECT_EQ(text.columns(1, 1, "text"), "x");
  EXPECT_EQ(text.at(131, "text"), 'W');
  for (const std::string_view same :
       {std::string_view("\0 ab", 4), std::string_view()}) {
    text = same;
    toolkit::stringlength(text, il);
    EXPECT_EQ(il, 0);
    EXPECT_EQ(text, same);
  }
  for (const auto& [from, to] :
       std::vector<std::pair<int, int>>{{5, 5}, {7, 6}, {0, 13}, {200, 13}}) {
    il = from;
    toolkit::stringend("Photon energy", il);
    EXPECT_EQ(il, to) << from;
  }
}

TEST(Strings, NextcharStepsThroughWords) {
  const struct {
    const char* line;
    int il, ip;
    const char* rest;
    int length;
  } cases[] = {
      {"read, write x", 4, 7, "write x", 5},
      {"  ,read", 0, 4, "read", 4},
      {"read", 1, 6, "", 0},
      {"", 0, 2, "", 0},
  };
  for (const auto& c : cases) {
    int ip = 0;
    int ia = 0;
    Text<132> rest;
    toolkit::nextchar(c.line, c.il, ip, rest, ia);
    EXPECT_EQ(ip, c.ip) << c.line;
    EXPECT_EQ(rest, c.rest);
    EXPECT_EQ(ia, c.length);
  }
}

TEST(Harmless, NothingSteersTheTerminal) {
  EXPECT_EQ(toolkit::harmless("a\tb\x1b[2J\x7f\n"), "a b?[2J??");
  EXPECT_EQ(toolkit::harmless("\xC3\xA4 \xE2\x82\xAC"),
            "\xC3\xA4 \xE2\x82\xAC");
  // A control character of the second set, bare or in UTF-8, and cut letters.
  EXPECT_EQ(toolkit::harmless("\x9B"
                              "1m\xC2\x9B\xE2\x82"),
            "?1m????");
}

}  // namespace
