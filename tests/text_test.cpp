#include "base/text.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <tuple>

#include "base/array.h"
#include "base/edit.h"
#include "base/harmless.h"
#include "base/unit.h"
#include "tests/support.h"
#include "text/itoc8.h"
#include "text/nextchar.h"
#include "text/stringend.h"
#include "text/stringlength.h"
#include "text/trlch.h"
#include "text/trlnu.h"

namespace {

using base::Text;
using tests::has;

TEST(Fields, AreCutPaddedAndChecked) {
  Text<4> text = "abcdef";
  EXPECT_EQ(text.full(), "abcd");
  text = std::string("a");
  EXPECT_EQ(text, "a  ");
  EXPECT_FALSE(text == " a");
  text.put(2, 3, "xyz", "text");
  EXPECT_EQ(text.full(), "axy ");
  EXPECT_CAUSE(text.at(0, "element"),
               "Substring out of bounds: lower bound (0) of 'element' is less "
               "than one");
  base::Array<int, 65, 0> lpart{"lpart"};
  lpart(0) = lpart(64) = 7;
  const auto here = "tests/text_test.cpp:" + std::to_string(__LINE__ + 1);
  EXPECT_TRUE(has(tests::fatal_end_of([&] { lpart(-1); }).report(), here));
}

// As printed by a Fortran runtime (gfortran 12, "f" edit descriptors).
TEST(Edit, WritesFixedFields) {
  // Ties to even; 99.9995 is below the tie in single precision. The leading
  // zero goes when the width forces it, the sign never.
  for (const auto& f : tests::table(
           "-0.00049,7,3,-0.000|0.125,7,2,0.12|0.375,7,2,0.38|0.5,4,3,.500|"
           "99.9995,6,3,99.999|-9.9996,6,3,******|-9.9996,7,3,-10.000|"
           "-0.5,5,3,-.500|-0.5,4,3,****|-0.5,3,0,-0.|inf,8,2,Infinity|"
           "-inf,8,2,-Inf|inf,2,1,**|-nan,6,3,NaN")) {
    const int width = std::stoi(f[1]), decimals = std::stoi(f[2]);
    const std::string text =
        base::fixed_field(std::strtof(f[0].c_str(), nullptr), width, decimals);
    EXPECT_EQ(text.size(), width);
    EXPECT_EQ(text.substr(text.find_first_not_of(' ')), f[3]) << f[0];
  }
}

// As read by a Fortran runtime (gfortran 12, "e11.5").
TEST(Edit, ReadsCoefficientFields) {
  const std::pair<const char*, double> numbers[] = {
      {"1.00000E-03", 1e-3},  {"           ", 0.0},  {"12345      ", 0.12345},
      {"12345e5    ", 12345}, {"1 . 5 e+ 3 ", 1500}, {"1.5-3      ", 1.5e-3},
      {"15d2       ", 0.015}, {"1.5q2      ", 150},  {"-.5        ", -0.5},
      {"+          ", 0},     {".E5        ", 0},    {"1E-999     ", 0}};
  for (const auto& [field, value] : numbers)
    EXPECT_EQ(base::read_e(field, 5), value) << field;
  for (const char* field : {"1.5E       ", "1.5e+-3    ", "1..5       ",
                            "1,5        ", "0x10       ", "\t1.5       ", "--1",
                            "1.5E999    ", "1E9999999999", "NaN"}) {
    EXPECT_FALSE(base::read_e(field, 5)) << field;
  }
}

TEST(Unit, RecordsEndInLfOrCrLfAndAreCutAtTheirField) {
  const tests::WorkingDirectory directory;
  base::Unit unit(1);
  const auto records_of = [&](const std::string& content) {
    tests::write("records", content);
    unit.open("records   ");
    std::string records;
    for (Text<8> record; unit.try_read(record);)
      records += std::string(record.trimmed()) + "|";
    return records;
  };
  EXPECT_EQ(records_of("one\r\n\n123456789\r\n\r\r\nlast"),
            "one||12345678|\r|last|");
  // Longer than the buffer, with the line end on either side of its edge.
  for (const std::size_t length : {65534U, 65535U, 65536U, 65537U, 200000U}) {
    const std::string line(length, 'x');
    EXPECT_EQ(records_of(line + "\r\nnext\nx"), "xxxxxxxx|next|x|") << length;
  }
  EXPECT_CAUSE(unit.create("no/such"),
               "Cannot write file 'no/such': No such file or directory");
  EXPECT_CAUSE(unit.open("."), "Cannot open file '.': Is a directory");
}

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
  for (const auto& [text, numbers] : lines)
    EXPECT_EQ(numbers_in(text), numbers) << text;
  EXPECT_EQ(numbers_in("12345", 3), std::vector<float>{123});
  EXPECT_EQ(numbers_in("12. 5", 3), std::vector<float>{});
  // There is room for 32 numbers and the exponent of the last.
  std::string ones;
  for (int i = 1; i <= 31; ++i) ones += "1. ";
  EXPECT_EQ(numbers_in(ones + "1.e2 3.e2").back(), 100.0F);
}

TEST(Trlnu, WritesNumbersByFormatCode) {
  Text<7> format;
  Text<24> chr, chl;
  int width = 0, im = 0;
  for (const auto& f : tests::table(
           // A 5 never rounds up. 0999.98 reads back as the same number.
           "0.25,f8.1,0.2|0.26,f8.1,0.3|9.96,f8.1,10.0|0.096,f8.2,0.10|"
           "0.999,f8.2,1.00|0.006,f8.2,0.01|0,f8.2,0.00|-0.001,f8.2,-0.00|"
           "0.7,f8.0,1.|999.98,f8.2,0999.98|5, +f8.1,+5.0|-0.7,i3,-1|"
           "0.3,i3,  0|122.5,I5,122|0.0025,E9.2,2.50E-3|0x1p-149,e9.2,1.00e-45|"
           "9.999,+e9.2,+1.00e+1|12345,a20.2,1.23*10@u4@n|"
           // Beyond 1e10 the format is e15.5.
           "2e10,f8.2,2.00000e10|inf,f8.2,***************|"
           // What does not fit stands whole between stars, and leaves `im`.
           "1234567,f8.2,***1234567.00***")) {
    const float value = std::strtof(f[0].c_str(), nullptr);
    const int length = static_cast<int>(f[2].size());
    format = f[1];
    im = 5;
    toolkit::trlnu(format, value, chr, width, chl, im);
    EXPECT_EQ(format, value > 1e10F ? "e15.5" : f[1]) << f[2];
    EXPECT_EQ(chl, f[2]) << f[1];
    EXPECT_EQ(im, length > 15 ? 5 : length) << f[2];
    EXPECT_TRUE(chr.trimmed().ends_with(f[2])) << f[2];
    EXPECT_EQ(chr.length(), std::max(width, length));
  }
  format = "f8.4";
  EXPECT_THROW(toolkit::trlnu(format, -1e10F, chr, width, chl, im),
               base::RangeError);
}

TEST(Codes, AreWrittenFromColumnTwoAndReadFromAnywhere) {
  Text<8> field = "xxxxxxxx";
  for (const auto& [number, written] :
       {std::pair(-17, "-17"), {0, ""}, {9999999, " 9999999"}}) {
    toolkit::itoc8(field, number);
    EXPECT_EQ(field, written);
  }
  EXPECT_THROW(toolkit::itoc8(field, 10000000), base::RangeError);
  EXPECT_THROW(toolkit::itoc8(field, INT_MIN), base::RangeError);
  int n = -1;
  for (const auto& f :
       tests::table("  -17   ,-17,  -17|+-5,-5,+-5|28Ni,28,28|x 82 y,82,  82|"
                    "1234567,1234567,1234567")) {
    field = f[0];
    toolkit::c8toi(field, n);
    EXPECT_EQ(std::to_string(n), f[1]) << f[0];
    EXPECT_EQ(field, f[2]);
  }
  for (Text<8> full : {"12345678", "       5", "       -"})
    EXPECT_THROW(toolkit::c8toi(full, n), base::RangeError) << full.full();
}

TEST(Strings, AreMovedLoweredMeasuredAndTakenApart) {
  // Column 132 moves along as it was.
  Text<132> text("  AFeZ \xC4");
  text.at(132, "text") = 'W';
  toolkit::lc_character(text);
  EXPECT_EQ(text, "afez \xC4" + std::string(123, ' ') + "W");
  // Up to a column, or all of it.
  for (const auto& [from, end] :
       {std::pair(5, 5), {7, 6}, {0, 13}, {200, 13}}) {
    int il = from;
    toolkit::stringend("Photon energy", il);
    EXPECT_EQ(il, end) << from;
  }
  const std::tuple<const char*, int, int, const char*, int> words[] = {
      {"read, write x", 4, 7, "write x", 5},
      {"read", 1, 6, "", 0},
      {"  ,read", 0, 4, "read", 4},
      {"", 131, 132, "", 0}};
  for (const auto& [line, il, word_at, word, length] : words) {
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
