#include <algorithm>
#include <cstdlib>

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
  for (const std::string& row :
       tests::split(tests::content_of(sources + "coefficients.csv"), '\n')) {
    if (row.ends_with(",table")) {
      const std::string digits = row.substr(0, row.rfind(','));
      EXPECT_TRUE(tests::has(published, "\n" + digits + "\n"));
    }
    corrected += row.ends_with(",corrected") ? 1 : 0;
  }
  EXPECT_EQ(corrected, 80);
}

constexpr int kElsewhere = -1000;

// A change of one of the files, and the fault it makes.
struct Change {
  std::string file;
  std::string anchor;  // how a line begins
  int lines_on;        // from there to the line that is changed
  int column;
  // Overwrites the line from the column on; with a line end it is put before;
  // no text leaves the line out.
  std::string text;
  int fault_on;  // lines from the anchor to the fault
  std::string reason;
};

std::size_t start_of_line(const std::string& body, const Change& change) {
  std::size_t at = ("\n" + body).find("\n" + change.anchor);
  for (int i = 0; i < change.lines_on; ++i) at = body.find('\n', at) + 1;
  return at;
}

std::string changed(std::string body, const Change& change) {
  const std::size_t at =
      start_of_line(body, change) + static_cast<std::size_t>(change.column - 1);
  const bool before = change.text.ends_with('\n');
  const std::size_t cut =
      change.text.empty() ? body.find('\n', at) + 1 - at : change.text.size();
  return body.replace(at, before ? 0 : cut, change.text);
}

TEST(DataCheck, TellsFileLineAndReason) {
  EXPECT_EQ(std::system((CHECKDATA " " + kData).c_str()), 0);
  const std::string he = "   2    He", hydrogen = " Hydrogen", lead = " Lead";
  const std::string page = "/read/element", link = "/#preset foils";
  const std::string densities = "dichte.dat";
  const std::string point = "   1.00000E-03  1.000E+00\n";
  std::string links;
  for (int i = 0; i < 33; ++i) links += "/#read/fas\n";
  const std::string nul(1, '\0'), blank(12, ' '), gap(7, '\n');
  // clang-format off
  const Change changes[] = {
      {kList, he, 0, 9, "H ", 0, "the symbol H"},
      {kList, he, 0, 30, "4x0", 0, "weight is no plain"},
      {kList, he, 0, 17, "Praseodymium", 0, "compounds cannot look up"},
      {kList, he, 0, 17, blank, 0, "no name in columns 17-28"},
      {kList, he, 0, 17, "Hyd   ", 0, "of Hydrogen in line"},
      {kList, "  82", 0, 1, "", -1, "the file ends after 81 of 82"},
      {kBlocks, hydrogen, 1, 10, "7", 1, "has the atomic number 7"},
      {kBlocks, hydrogen, 1, 4, "12345678", 1, "no atomic number in columns"},
      {kBlocks, hydrogen, 2, 1, "", 7, "Hydrogen has fewer than 6 header"},
      {kBlocks, hydrogen, 8, 1, "\n", 8, "a blank record"},
      {kBlocks, hydrogen, 8, 10, "x", 8, "Hydrogen ends here"},
      {kBlocks, hydrogen, 8, 4, "1.0000E-02 ", 9, "the energy falls"},
      {kBlocks, hydrogen, 8, 16, "-1.00E+00 ", 8, "the numbers must"},
      {kBlocks, hydrogen, 8, 2, nul, 8, "no printable char"},
      {kBlocks, hydrogen, 9, 1, point, 9, "the same energy twice"},
      {kBlocks, lead, 8, 1, point, 8 + 64, "Lead has more than 64 points"},
      {densities, "   1", 0, 1, "", kElsewhere, "no record of dichte.dat"},
      {densities, "   1", 0, 38, "19.3", 0, "across column 39"},
      {kHelp, page, 0, 1, "/read/fas\n", kElsewhere, "already"},
      {kHelp, page, 0, 1, "/more of it\n", 0, "must not begin with more"},
      {kHelp, page, 1, 1, "/>read/element\n", 1, "from here links lead in"},
      {kHelp, page, 2, 1, "/>read/fas\n", 2, "never followed: a link"},
      {kHelp, page, 1, 1, gap, kElsewhere, "the text has more"},
      {kHelp, link, 0, 3, "x", 0, "leads to no entry: xreset foils"},
      {kHelp, link, 0, 1, "text\n", 0, "never shown"},
      {kHelp, link, 0, 1, "/#more a;b\n", 0, "the document name a;b"},
      {kHelp, link, 0, 1, links, 30, "more than 32 related entries"},
  };
  // clang-format on
  for (const Change& change : changes) {
    const tests::WorkingDirectory own;
    std::filesystem::copy(kData, ".");
    const std::string body = tests::content_of(kData + change.file);
    tests::write(change.file, changed(body, change));
    Change first = change;
    first.lines_on = 0;
    const auto begin = body.begin();
    const auto anchor = std::count(
        begin, begin + static_cast<long>(start_of_line(body, first)), '\n');
    std::string told;
    bool found = false;
    for (const auto check : {data::check_data, data::check_help}) {
      for (const auto& fault : check(".")) {
        told += fault.file + ":" + data::str(fault.line) + ": " + fault.reason +
                "\n";
        found |= tests::has(fault.reason, change.reason) &&
                 (change.fault_on == kElsewhere ||
                  fault.line == anchor + 1 + change.fault_on);
      }
    }
    EXPECT_TRUE(found) << change.reason << ", told:\n" << told;
  }
}

}  // namespace
