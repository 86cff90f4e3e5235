#include "base/text.h"

#include <sys/stat.h>

#include <climits>
#include <limits>
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
  const float infinity = std::numeric_limits<float>::infinity();
  const struct {
    float value;
    int width, decimals;
    const char* text;
  } cases[] = {
      {-0.00049F, 7, 3, " -0.000"},
      // Ties to even; 99.9995 is below the tie in single precision.
      {0.125F, 7, 2, "   0.12"},
      {0.375F, 7, 2, "   0.38"},
      {99.9995F, 6, 3, "99.999"},
      {-9.9996F, 6, 3, "******"},
      {-9.9996F, 7, 3, "-10.000"},
      // The leading zero goes when the width forces it, the sign never.
      {0.5F, 4, 3, ".500"},
      {-0.5F, 5, 3, "-.500"},
      {-0.5F, 4, 3, "****"},
      {-0.5F, 3, 0, "-0."},
      {infinity, 8, 2, "Infinity"},
      {-infinity, 8, 2, "    -Inf"},
      {infinity, 2, 1, "**"},
      {std::numeric_limits<float>::quiet_NaN(), 6, 3, "   NaN"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(base::fixed_field(c.value, c.width, c.decimals), c.text);
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
    tests::Words records;
    for (Text<8> record; unit.try_read(record);)
      records.emplace_back(record.trimmed());
    return records;
  };
  EXPECT_EQ(records_of("one\r\n\n123456789\r\n\r\r\nlast"),
            (tests::Words{"one", "", "12345678", "\r", "last"}));
  // Longer than the buffer, with the line end on either side of its edge.
  for (const std::size_t length : {65534U, 65535U, 65536U, 65537U, 200000U}) {
    const std::string line(length, 'x');
    EXPECT_EQ(records_of(line + "\r\nnext\nx"),
              (tests::Words{"xxxxxxxx", "next", "x"}))
        << length;
  }
  EXPECT_CAUSE(unit.create("no/such"),
               "Cannot write file 'no/such': No such file or directory");
  EXPECT_CAUSE(unit.open("."), "Cannot open file '.': Is a directory");
  EXPECT_EQ(mkfifo("fifo", 0600), 0);
  EXPECT_CAUSE(unit.open("fifo"), "Cannot open file 'fifo': Invalid argument");
}

TEST(Trlch, FindsEveryNumberInFreeText) {
  const struct {
    const char* text;
    std::vector<float> numbers;
  } cases[] = {
      {"copper foil", {}},
      {" -0.5 keV", {-0.5F}},
      {".5,122", {0.5F, 122}},
      {"1.5e3 1.e3", {1500, 1000}},
      {"1.2.3", {1.2F, 0.3F}},
      {"5+3", {5, 3}},
      {". 7", {0, 7}},
      // An exponent needs a point in the mantissa. Its power may be broken.
      {"2.5E+3", {2500}},
      {"1e3", {1, 3}},
      {" 1e3", {13}},
      {"1.5ee3", {1.5F, 3}},
      {"1.e.5", {0x1.94c584p+1F}},
      // Only the very next blank cancels it.
      {"1.5e 3", {1.5F, 3}},
      {"1.5e- 3", {0x1.89374cp-10F}},
      // A minus belongs to what follows, at any distance; one that ends a
      // number stays.
      {"--5 6", {-5, -6}},
      {"5-3 7", {5, -3, -7}},
      // Digit by digit in single precision: one step above 7.874F.
      {"7.874", {0x1.f7efa0p+2F}},
      // A point in the last column ends no number.
      {"12.", {}},
  };
  for (const auto& c : cases)
    EXPECT_EQ(toolkit::numbers_in(c.text), c.numbers) << c.text;
  // There is room for 32 numbers and the exponent of the last.
  std::string ones;
  for (int i = 1; i <= 31; ++i) ones += "1. ";
  EXPECT_EQ(toolkit::numbers_in(ones + "1.e2 3.e2").back(), 100.0F);
  // The routine reads so many columns and clears what it does not fill.
  int iout = -1;
  base::Array<float, 32> out{"out"};
  out(2) = 7;
  toolkit::trlch(3, "12345", iout, out);
  EXPECT_EQ(std::tuple(iout, out(1), out(2)), std::tuple(1, 123.0F, 0.0F));
}

TEST(Trlnu, WritesNumbersByFormatCode) {
  const struct {
    float value;
    const char* format;
    const char* text;
  } cases[] = {
      // A 5 never rounds up.
      {0.25F, "f8.1", "0.2"},
      {0.26F, "f8.1", "0.3"},
      {9.96F, "f8.1", "10.0"},
      {0.096F, "f8.2", "0.10"},
      {0.006F, "f8.2", "0.01"},
      {0.0009F, "f8.2", "0.00"},
      {0, "f8.2", "0.00"},
      {-0.001F, "f8.2", "-0.00"},
      {0.7F, "f8.0", "1."},
      {5, " +f8.1", "+5.0"},
      // Just below a power of ten. Only digits that are kept take from each
      // other; 0999.98 reads back as the same number.
      {999.98F, "f8.2", "0999.98"},
      {9999.99F, "f8.2", "10000.00"},
      {99.9999F, "f8.4", "100.0000"},
      {0.99999994F, "f8.2", "1.00"},
      {-0.7F, "i3", "-1"},
      {0.3F, "i3", "  0"},
      {122.5F, "I5", "122"},
      {0.0025F, "E9.2", "2.50E-3"},
      {0x1p-149F, "e9.2", "1.00e-45"},
      {9.999F, "+e9.2", "+1.00e+1"},
      {12345, "a20.2", "1.23*10@u4@n"},
  };
  for (const auto& c : cases) {
    const auto number = toolkit::formatted(c.format, c.value);
    const std::string text = c.text;
    const auto indent = static_cast<std::size_t>(number.width) - text.size();
    EXPECT_EQ(number.left, text) << c.format;
    EXPECT_EQ(number.right, std::string(indent, ' ') + text);
    EXPECT_EQ(number.length, text.size());
  }
  EXPECT_THROW(toolkit::formatted("f8.4", -1e10F), base::RangeError);
}

// The width and the length stay the number's own; above 24 columns there is no
// length, and the caller's stays. Beyond 1e10 the format is e15.5.
TEST(Trlnu, WritesStarsAroundOrInPlaceOfWhatDoesNotFit) {
  const struct {
    float value;
    const char *format, *used, *text;
    int width, length;
  } cases[] = {
      {1234567, "f8.2", "f8.2", "***1234567.00***", 8, 10},
      {2e10F, "f8.2", "e15.5", "2.00000e10", 15, 10},
      {std::numeric_limits<float>::infinity(), "f8.2", "e15.5",
       "***************", 15, 15},
      {1, "f25.2", "f25.2", "************************", 25, 77},
  };
  for (const auto& c : cases) {
    Text<7> format = c.format;
    Text<24> chr, chl;
    int width = 0, im = 77;
    toolkit::trlnu(format, c.value, chr, width, chl, im);
    EXPECT_EQ(format, c.used);
    EXPECT_EQ(chl, c.text);
    EXPECT_TRUE(chr.trimmed().ends_with(c.text));
    EXPECT_EQ(std::tuple(width, im), std::tuple(c.width, c.length)) << c.text;
  }
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
  const struct {
    const char* field;
    int number;
    const char* left;  // of the field
  } cases[] = {
      {"  -17   ", -17, "  -17"},
      {"+-5", -5, "+-5"},
      {"28Ni", 28, "28"},
      {"x 82 y", 82, "  82"},
      {"1234567", 1234567, "1234567"},
  };
  int n = -1;
  for (const auto& c : cases) {
    field = c.field;
    toolkit::c8toi(field, n);
    EXPECT_EQ(n, c.number) << c.field;
    EXPECT_EQ(field, c.left);
  }
  for (Text<8> full : {"12345678", "       5", "       -"})
    EXPECT_THROW(toolkit::c8toi(full, n), base::RangeError) << full.full();
}

TEST(Strings, AreMovedLoweredMeasuredAndTakenApart) {
  // Column 132 moves along as it was.
  base::Line text("  AFeZ \xC4");
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
  const struct {
    const char* line;
    int il, ip;
    const char* rest;
    int ia;
  } words[] = {
      {"read, write x", 4, 7, "write x", 5},
      {"read", 1, 6, "", 0},
      {"  ,read", 0, 4, "read", 4},
      {"", 131, 132, "", 0},
  };
  for (const auto& w : words) {
    int ip = 0, ia = 0;
    base::Line rest;
    toolkit::nextchar(w.line, w.il, ip, rest, ia);
    EXPECT_EQ(std::tuple(ip, ia), std::tuple(w.ip, w.ia)) << w.line;
    EXPECT_EQ(rest, w.rest);
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
