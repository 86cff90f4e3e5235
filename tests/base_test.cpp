#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <tuple>
#include <vector>

#include "base/array.h"
#include "base/edit.h"
#include "base/text.h"
#include "base/unit.h"
#include "tests/support.h"

namespace {

using base::Text;

TEST(Text, CutsPadsAndIgnoresTrailingBlanks) {
  Text<4> text = "abcdef";
  EXPECT_EQ(text.full(), "abcd");
  text = std::string("a");
  EXPECT_EQ(text, "a  ");
  EXPECT_FALSE(text == " a");
  text.put(2, 3, "xyz", "text");
  EXPECT_EQ(text.full(), "axy ");
}

TEST(RangeError, NamesWhatWasIndexedAndTheCaller) {
  base::Array<int, 65, 0> lpart{"lpart"};
  lpart(0) = lpart(64) = 7;
  EXPECT_CAUSE(Text<12>().at(0, "element"),
               "Substring out of bounds: lower bound (0) of 'element' is less "
               "than one");
  const auto here = "tests/base_test.cpp:" + std::to_string(__LINE__ + 1);
  const auto end = tests::fatal_end_of([&] { lpart(-1); });
  EXPECT_TRUE(tests::has(end.report(), here));
}

// As printed by a Fortran runtime (gfortran 12, "f" edit descriptors).
TEST(Edit, WritesFixedFields) {
  using Case = std::tuple<float, int, int, const char*>;
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  const Case cases[] = {
      // Ties to even; 99.9995F is below the tie in single precision.
      Case(-0.00049F, 7, 3, " -0.000"), Case(0.125F, 7, 2, "   0.12"),
      Case(0.375F, 7, 2, "   0.38"), Case(99.9995F, 6, 3, "99.999"),
      Case(-9.9996F, 6, 3, "******"), Case(-9.9996F, 7, 3, "-10.000"),
      // The leading zero goes when the width forces it, the sign never.
      Case(0.5F, 4, 3, ".500"), Case(-0.5F, 5, 3, "-.500"),
      Case(-0.5F, 4, 3, "****"), Case(-0.5F, 3, 0, "-0."),
      Case(kInfinity, 8, 2, "Infinity"), Case(-kInfinity, 8, 2, "    -Inf"),
      Case(kInfinity, 2, 1, "**"), Case(-std::nanf(""), 6, 3, "   NaN")};
  for (const auto& [value, width, decimals, text] : cases) {
    EXPECT_EQ(base::f(value, width, decimals), text) << value;
  }
}

// As read by a Fortran runtime (gfortran 12, "e11.5").
TEST(Edit, ReadsCoefficientFields) {
  const std::pair<const char*, double> numbers[] = {
      {"1.00000E-03", 1e-3},  {"           ", 0.0},  {"12345      ", 0.12345},
      {"12345e5    ", 12345}, {"1 . 5 e+ 3 ", 1500}, {"1.5-3      ", 1.5e-3},
      {"15d2       ", 0.015}, {"1.5q2      ", 150},  {"-.5        ", -0.5},
      {"+          ", 0},     {".E5        ", 0},    {"1E-999     ", 0}};
  for (const auto& [field, value] : numbers) {
    EXPECT_EQ(base::read_e(field, 5), value) << field;
  }
  for (const char* field : {"1.5E       ", "1.5e+-3    ", "1..5       ",
                            "1,5        ", "0x10       ", "\t1.5       ", "--1",
                            "1.5E999    ", "1E9999999999", "NaN"}) {
    EXPECT_FALSE(base::read_e(field, 5)) << field;
  }
}

TEST(Unit, RecordsEndInLfOrCrLfAndAreCutAtTheirField) {
  const auto records_of = [](const std::string& content) {
    const tests::TemporaryDirectory directory;
    base::Unit unit(1);
    unit.open(directory.write("records", content) + "   ");
    std::string records;
    for (Text<8> record; unit.try_read(record);) {
      records += std::string(record.trimmed()) + "|";
    }
    return records;
  };
  EXPECT_EQ(records_of("one\r\n\n123456789\r\n\r\r\nlast"),
            "one||12345678|\r|last|");
  // Longer than the buffer, with the line end on either side of its edge.
  for (const std::size_t length : {65534U, 65535U, 65536U, 65537U, 200000U}) {
    const std::string line(length, 'x');
    EXPECT_EQ(records_of(line + "\r\nnext\nx"), "xxxxxxxx|next|x|") << length;
  }
}

TEST(Unit, SaysWhichFileCannotBeUsed) {
  const tests::TemporaryDirectory directory;
  const std::string no = directory.path("no/such"), own = directory.path("");
  base::Unit unit(1);
  EXPECT_CAUSE(unit.create(no),
               "Cannot write file '" + no + "': No such file or directory");
  EXPECT_CAUSE(unit.open(own),
               "Cannot open file '" + own + "': Is a directory");
}

}  // namespace
