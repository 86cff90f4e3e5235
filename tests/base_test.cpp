#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

#include "base/array.h"
#include "base/edit.h"
#include "base/fatal.h"
#include "base/text.h"
#include "base/unit.h"
#include "tests/support.h"

namespace {

using base::f;
using base::Text;
using tests::cause_of;

constexpr float kInfinity = std::numeric_limits<float>::infinity();

TEST(Text, CutsPadsAndIgnoresTrailingBlanks) {
  Text<4> text = "abcdef";
  EXPECT_EQ(text.full(), "abcd");
  text = std::string("a");
  EXPECT_EQ(text.full(), "a   ");
  EXPECT_EQ(text, "a  ");
  EXPECT_EQ(Text<2>(text), "a");
  EXPECT_FALSE(text == " a");
  text.put(2, 3, "xyz", "text");
  EXPECT_EQ(text.full(), "axy ");
  EXPECT_EQ(text.columns(3, 2, "text"), "");
}

TEST(Text, RangeErrorNamesTextBoundAndLength) {
  Text<12> element;
  EXPECT_EQ(cause_of([&] { element.columns(2, 13, "element"); }),
            "Substring out of bounds: upper bound (13) of 'element' exceeds "
            "string length (12)");
  EXPECT_EQ(cause_of([&] { element.at(0, "element"); }),
            "Substring out of bounds: lower bound (0) of 'element' is less "
            "than one");
}

TEST(Array, RangeErrorNamesArrayIndexBoundAndCaller) {
  base::Array<int, 82> es{"es"};
  base::Array<int, 65, 0> lpart{"lpart"};
  es(82) = lpart(0) = lpart(64) = 7;
  EXPECT_EQ(cause_of([&] { es(83); }),
            "Index '83' of dimension 1 of array 'es' above upper bound of 82");
  EXPECT_EQ(
      cause_of([&] { lpart(-1); }),
      "Index '-1' of dimension 1 of array 'lpart' below lower bound of 0");
  int line = 0;
  try {
    line = __LINE__ + 1;
    es(0);
  } catch (const base::FatalEnd& end) {
    const auto here = "tests/base_test.cpp:" + std::to_string(line);
    EXPECT_NE(end.report().find(here), std::string::npos) << end.report();
  }
}

// As printed by a Fortran runtime (gfortran 12, "f" edit descriptors).
TEST(Edit, WritesFixedFields) {
  const struct {
    float value;
    int width, decimals;
    const char* text;
  } cases[] = {
      {0.0F, 6, 3, " 0.000"},
      {-0.0F, 6, 3, "-0.000"},
      {-0.00049F, 7, 3, " -0.000"},
      {0.125F, 10, 2, "      0.12"},  // ties to even
      {0.375F, 10, 2, "      0.38"},
      {99.9995F, 6, 3, "99.999"},  // below the tie in single precision
      {-9.9996F, 6, 3, "******"},
      {-9.9996F, 7, 3, "-10.000"},
      {1e10F, 12, 4, "************"},
      // The leading zero goes when the width forces it, the sign never.
      {0.5F, 4, 3, ".500"},
      {-0.5F, 5, 3, "-.500"},
      {-0.5F, 4, 3, "****"},
      {0.0F, 3, 0, " 0."},
      {-0.5F, 3, 0, "-0."},
      {kInfinity, 7, 3, "    Inf"},
      {kInfinity, 8, 2, "Infinity"},
      {-kInfinity, 8, 2, "    -Inf"},
      {-kInfinity, 9, 1, "-Infinity"},
      {-kInfinity, 3, 1, "***"},
      {kInfinity, 2, 1, "**"},
      {-std::nanf(""), 6, 3, "   NaN"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(f(c.value, c.width, c.decimals), c.text) << c.value;
  }
}

// As read by a Fortran runtime (gfortran 12, "e11.5").
TEST(Edit, ReadsCoefficientFields) {
  const struct {
    const char* field;
    double value;
  } numbers[] = {
      {"1.00000E-03", 1e-3},  {"           ", 0.0},   {"12345      ", 0.12345},
      {"12345e5    ", 12345}, {"1 . 5 e+ 3 ", 1500},  {"1.5-3      ", 1.5e-3},
      {"1.5+3      ", 1500},  {"15d2       ", 0.015}, {"1.5D2      ", 150},
      {"1.5q2      ", 150},   {"-.5        ", -0.5},  {"5.         ", 5},
      {"+          ", 0},     {".          ", 0},     {".E5        ", 0},
      {"1.5 5      ", 1.55},  {"1E-999     ", 0},
  };
  for (const auto& c : numbers) {
    ASSERT_TRUE(base::read_e(c.field, 5)) << c.field;
    EXPECT_EQ(*base::read_e(c.field, 5), c.value) << c.field;
  }
  for (const char* field :
       {"1.5E       ", "1.5E+      ", "1.5e+-3    ", "1..5       ",
        "1,5        ", "0x10       ", "ium        ", "\t1.5       ", "--1",
        "1.5E999    ", "1E9999999999", "1.5E-      ", "NaN"}) {
    EXPECT_FALSE(base::read_e(field, 5)) << field;
  }
}

std::vector<std::string> records_of(const std::string& content) {
  const tests::TemporaryDirectory directory;
  directory.write("records", content);
  base::Unit unit(1);
  unit.open(directory.path("records") + "   ");
  std::vector<std::string> records;
  for (Text<8> record; unit.try_read(record);) {
    records.emplace_back(record.trimmed());
  }
  return records;
}

TEST(Unit, RecordsEndInLfOrCrLfAndAreCutAtTheirField) {
  using Records = std::vector<std::string>;
  EXPECT_EQ(records_of(""), Records{});
  EXPECT_EQ(records_of("one\r\n\ntwo\nlast"),
            (Records{"one", "", "two", "last"}));
  EXPECT_EQ(records_of("123456789\r\n\r\r\n"), (Records{"12345678", "\r"}));
  // Longer than the buffer, with the line end on either side of its edge.
  for (const std::size_t length : {65534U, 65535U, 65536U, 65537U, 200000U}) {
    const std::string line(length, 'x');
    EXPECT_EQ(records_of(line + "\nnext\n" + line),
              (Records{"xxxxxxxx", "next", "xxxxxxxx"}))
        << length;
  }
}

TEST(Unit, SaysWhichFileCannotBeUsed) {
  const tests::TemporaryDirectory directory;
  base::Unit unit(1);
  const std::string missing = directory.path("none");
  EXPECT_EQ(cause_of([&] { unit.open(missing); }),
            "Cannot open file '" + missing + "': No such file or directory");
  EXPECT_EQ(cause_of([&] { unit.open(directory.path("")); }),
            "Cannot open file '" + directory.path("") + "': Is a directory");
  directory.write("short", "one\n");
  unit.open(directory.path("short"));
  Text<8> record;
  unit.read(record);
  EXPECT_EQ(cause_of([&] { unit.read(record); }),
            "End of file in '" + directory.path("short") + "'");
  unit.rewind();
  unit.read(record);
  EXPECT_EQ(record, "one");
  EXPECT_EQ(cause_of([] { base::unit(4); }), "No file unit has the number 4");
}

}  // namespace
