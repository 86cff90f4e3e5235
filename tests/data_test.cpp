#include <cstdlib>
#include <tuple>

#include "data/tools/datacheck.h"
#include "data/tools/helpcheck.h"
#include "tests/support.h"

namespace {

const std::string kData = DATA_DIR "/";
const std::string kList = "elements.dat";
const std::string kBlocks = "attenuation.coefficients";
const std::string kHelp = "attenuation.help";

TEST(Data, IsWhatTheGeneratorWrites) {
  const tests::WorkingDirectory made;
  const std::string run = MAKEDATA " " + kData + "sources .";
  ASSERT_EQ(std::system(run.c_str()), 0);
  for (const auto& file : {kList, kBlocks, std::string("dichte.dat")})
    EXPECT_EQ(tests::content_of(kData + file), tests::content_of(file));
}

// Not all published rows are needed, but none is changed unless marked.
TEST(Data, RowsFromTheTablesAreAsPublished) {
  const std::string sources = kData + "sources/";
  const std::string published = tests::content_of(sources + "attenuation.csv");
  int corrected = 0;
  for (const std::string& row : tests::split(
           tests::content_of(sources + "coefficients.csv"), '\n')) {
    if (row.ends_with(",table")) {
      const std::string digits = row.substr(0, row.rfind(','));
      EXPECT_TRUE(tests::has(published, "\n" + digits + "\n"));
    }
    corrected += row.ends_with(",corrected") ? 1 : 0;
  }
  EXPECT_EQ(corrected, 80);
}

TEST(DataCheck, TellsFileLineAndReason) {
  EXPECT_EQ(std::system((CHECKDATA " " + kData).c_str()), 0);
  const std::string one = "   1.00000E-03  1.000E+00\n";
  std::string many;
  for (int i = 0; i < 33; ++i) many += "/#read/fas\n";
  // Text overwrites a line from a column on; with a line end it is put before;
  // no text leaves the line out.
  const std::tuple<std::string, int, int, std::string, const char*> cases[] = {
      {kList, 2, 9, "H ", "dat:2: the symbol H"},
      {kList, 2, 30, "4x0", "weight is no plain"},
      {kList, 2, 17, "Praseodymium", "dat:2: compounds"},
      {kList, 2, 17, "Hyd   ", "of Hydrogen in line"},
      {kList, 82, 1, "", "dat:81: the file ends after 81 of 82"},
      {kBlocks, 2, 10, "7", "Hydrogen has the atomic number 7"},
      {kBlocks, 3, 1, "", ":8: Hydrogen has fewer than 6 header"},
      {kBlocks, 9, 1, "\n", ":9: a blank record"},
      {kBlocks, 9, 10, "x", ":9: Hydrogen ends here"},
      {kBlocks, 9, 4, "1.0000E-02 ", ":10: the energy falls"},
      {kBlocks, 9, 16, "-1.00E+00 ", ":9: the numbers must"},
      {kBlocks, 9, 2, std::string(1, '\0'), ":9: no printable char"},
      {kBlocks, 10, 1, one, ":10: the same energy twice"},
      {kBlocks, 5841, 1, one, ":5905: Lead has more than 64 points"},
      {"dichte.dat", 3, 1, "", "elements.dat:1: no record of dichte.dat"},
      {"dichte.dat", 3, 38, "19.3", "across column 39"},
      {kHelp, 6, 1, "/read/fas\n", "stands in line 6 already"},
      {kHelp, 6, 1, "/more of it\n", ":6: a key must not begin with more"},
      {kHelp, 7, 1, "/>read/element\n", ":7: from here links lead in"},
      {kHelp, 8, 1, "/>read/fas\n", ":8: never followed: a link"},
      {kHelp, 25, 3, "x", ":25: leads to no entry: xreset foils"},
      {kHelp, 25, 1, "text\n", ":25: never shown"},
      {kHelp, 25, 1, "/#more a;b\n", ":25: the document name a;b"},
      {kHelp, 25, 1, many, ":55: more than 32 related entries"},
      {kHelp, 7, 1, std::string(7, '\n'), ":29: the text has more"}};
  for (const auto& [file, line, column, text, reason] : cases) {
    const tests::WorkingDirectory own;
    std::filesystem::copy(kData, ".");
    std::string body = tests::content_of(kData + file);
    std::size_t at = 0;
    for (int i = 1; i < line; ++i) at = body.find('\n', at) + 1;
    at += static_cast<std::size_t>(column - 1);
    const auto cut = text.empty() ? body.find('\n', at) + 1 - at : text.size();
    tests::write(file, body.replace(at, text.ends_with('\n') ? 0 : cut, text));
    std::string told;
    for (const auto check : {data::check_data, data::check_help}) {
      for (const auto& fault : check("."))
        told += fault.file + ":" + data::str(fault.line) + ": " + fault.reason;
    }
    EXPECT_TRUE(tests::has(told, reason)) << told;
  }
}

}  // namespace
