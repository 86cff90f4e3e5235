#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <tuple>

#include "attenuation/coefficientfile.h"
#include "attenuation/elementlist.h"
#include "data/tools/datacheck.h"
#include "data/tools/helpcheck.h"
#include "tests/support.h"

namespace {

using base::Text;

const std::string kData = DATA_DIR "/";
const std::string kList = "elements.dat";
const std::string kBlocks = "attenuation.coefficients";
const std::string kDensities = "dichte.dat";
const std::string kHelp = "attenuation.help";

TEST(Data, IsWhatTheGeneratorWrites) {
  const tests::TemporaryDirectory made;
  const std::string run = MAKEDATA " " + kData + "sources " + made.path(".");
  ASSERT_EQ(std::system(run.c_str()), 0);
  for (const auto& file : {kList, kBlocks, kDensities}) {
    EXPECT_EQ(tests::content_of(kData + file),
              tests::content_of(made.path(file)));
  }
}

// Between published points stand only points marked "+"; corrected ones are
// marked "*".
TEST(Data, HoldsEveryPublishedPointInItsPlace) {
  std::ifstream rows(kData + "sources/attenuation.csv");
  std::ifstream records(kData + kBlocks);
  int corrected = 0;
  std::string element, record;
  for (std::string row; std::getline(rows, row);) {
    if (row.find_first_of("0123456789") != 0) continue;
    std::istringstream in(row);
    std::string z, edge, energy, mu, mu_en;
    for (std::string* field : {&z, &edge, &energy, &mu, &mu_en}) {
      std::getline(in, *field, ',');
    }
    if (z != element) {
      const std::string number = std::string(10 - z.size(), ' ') + z + "  ";
      while (std::getline(records, record) && !record.starts_with(number))
        continue;
      for (int i = 0; i < 6; ++i) std::getline(records, record);
      element = z;
    }
    while (std::getline(records, record) && record.find('+') < 3) continue;
    const bool marked = record.find('*') < 3;
    corrected += marked ? 1 : 0;
    EXPECT_EQ(Text<3>(record), Text<3>(edge + (marked ? "*" : ""))) << row;
    EXPECT_EQ(record.substr(3, 11), energy) << row;
    EXPECT_TRUE(marked || record.substr(14) == "  " + mu + "  " + mu_en) << row;
  }
  EXPECT_EQ(element, "82");
  EXPECT_EQ(corrected, 20);
}

TEST(Data, EveryElementWorksAloneAndInCompounds) {
  const tests::WorkingDirectory directory(kData);
  attenuation::ElementList list;
  attenuation::read_element_list(list);
  const auto coefficient = [&list](int z, float energy, auto record) {
    float atc = 0.0F;
    attenuation::find_element(list.ename(z), record);
    attenuation::attenuation_of(list.ename(z), energy, atc);
    return atc;
  };
  for (int z = 1; z <= attenuation::kElements; ++z) {
    for (const float energy : {1.6F, 14.4F, 122.0F, 1332.0F, 20000.0F}) {
      const float alone = coefficient(z, energy, Text<16>());
      EXPECT_GT(alone, 0.0F) << z << " at " << energy;
      EXPECT_EQ(alone, coefficient(z, energy, Text<12>())) << z;
    }
  }
}

TEST(DataCheck, TellsFileLineAndReason) {
  EXPECT_TRUE(data::check_data(kData).empty());
  const std::string one = "   1.00000E-03  1.000E+00\n";
  using Case = std::tuple<std::string, int, int, std::string, const char*>;
  // Text overwrites a line from a column on; with a line end it is put before;
  // no text leaves the line out.
  const Case cases[] = {
      Case(kList, 2, 9, "H ", "dat:2: the symbol H"),
      Case(kList, 2, 30, "4x0", "weight is no plain"),
      Case(kList, 2, 17, "Praseodymium", "dat:2: compounds"),
      Case(kList, 2, 17, "Hyd   ", "of Hydrogen in line"),
      Case(kList, 82, 1, "", "dat:81: the file ends after 81 of 82"),
      Case(kBlocks, 2, 10, "7", "Hydrogen has the atomic number 7"),
      Case(kBlocks, 3, 1, "", ":8: Hydrogen has fewer than 6 header"),
      Case(kBlocks, 9, 1, "\n", ":9: a blank record"),
      Case(kBlocks, 9, 10, "x", ":9: Hydrogen ends here"),
      Case(kBlocks, 9, 4, "1.0000E-02 ", ":10: the energy falls"),
      Case(kBlocks, 9, 16, "-1.00E+00 ", ":9: the numbers must"),
      Case(kBlocks, 9, 2, std::string(1, '\0'), ":9: no printable char"),
      Case(kBlocks, 10, 1, one, ":10: the same energy twice"),
      Case(kBlocks, 5792, 1, one, ":5856: Lead has more than 64 points"),
      Case(kDensities, 3, 1, "", "elements.dat:1: no record of dichte.dat"),
      Case(kDensities, 3, 38, "19.3", "across column 39"),
      Case(kHelp, 6, 1, "/read/fas\n", "stands in line 6 already"),
      Case(kHelp, 6, 1, "/more of it\n", ":6: a key must not begin with more"),
      Case(kHelp, 7, 1, "/>read/element\n", ":7: from here links lead in"),
      Case(kHelp, 8, 1, "/>read/fas\n", ":8: never followed: a link"),
      Case(kHelp, 25, 3, "x", ":25: leads to no entry: xreset foils"),
      Case(kHelp, 25, 1, "text\n", ":25: never shown"),
      Case(kHelp, 25, 1, "/#more a;b\n", ":25: the document name a;b"),
      Case(kHelp, 7, 1, std::string(7, '\n'), ":29: the text has more")};
  for (const auto& [file, line, column, text, reason] : cases) {
    const tests::TemporaryDirectory own;
    std::filesystem::copy(kData, own.path(""));
    std::string body = tests::content_of(kData + file);
    std::size_t at = 0;
    for (int i = 1; i < line; ++i) at = body.find('\n', at) + 1;
    at += static_cast<std::size_t>(column - 1);
    const auto cut = text.empty() ? body.find('\n', at) + 1 - at : text.size();
    own.write(file, body.replace(at, text.ends_with('\n') ? 0 : cut, text));
    std::string told;
    for (const auto check : {data::check_data, data::check_help}) {
      for (const auto& fault : check(own.path(""))) {
        told += fault.file + ":" + data::str(fault.line) + ": " + fault.reason;
      }
    }
    EXPECT_TRUE(tests::has(told, reason)) << told;
  }
}

}  // namespace
