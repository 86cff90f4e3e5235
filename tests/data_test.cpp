// The shipped data, and the checker of one's own.

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "attenuation/coefficientfile.h"
#include "attenuation/elementlist.h"
#include "data/tools/datacheck.h"
#include "tests/support.h"
#include "toolkit/text/itoc8.h"
#include "toolkit/text/trlch.h"

namespace {

using base::Text;
using tests::content_of;

const std::string kData = DATA_DIR "/";
const std::string kList = "elements.dat";
const std::string kBlocks = "attenuation.coefficients";
const std::string kDensities = "dichte.dat";

std::vector<std::string> lines_of(const std::string& file) {
  std::istringstream in(content_of(file));
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

TEST(Data, IsWhatTheGeneratorWritesFromUndamagedSources) {
  const tests::TemporaryDirectory made;
  const std::string to_made = " " + made.path(".") + " 2> " + made.path("told");
  ASSERT_EQ(std::system((MAKEDATA " " + kData + "sources" + to_made).c_str()),
            0);
  for (const auto& file : {kList, kBlocks, kDensities}) {
    EXPECT_EQ(content_of(kData + file), content_of(made.path(file)));
  }
  made.write("elements.csv", "z,symbol,name,weight\n1,H,Hydrogen,\"1.0\n");
  EXPECT_NE(std::system((MAKEDATA " " + made.path(".") + to_made).c_str()), 0);
  EXPECT_NE(content_of(made.path("told")).find("elements.csv:2: a quote is"),
            std::string::npos);
}

// Between published points stand only points marked "+"; corrected ones are
// marked "*".
TEST(Data, HoldsEveryPublishedPointInItsPlace) {
  const auto records = lines_of(kData + kBlocks);
  std::size_t at = 0;
  int corrected = 0;
  std::string element;
  for (const auto& row : lines_of(kData + "sources/attenuation.csv")) {
    if (row.find_first_of("0123456789") != 0) continue;
    std::istringstream in(row);
    std::string z, edge, energy, mu, mu_en;
    for (std::string* field : {&z, &edge, &energy, &mu, &mu_en}) {
      std::getline(in, *field, ',');
    }
    if (z != element) {
      const std::string number = std::string(10 - z.size(), ' ') + z + "  ";
      while (!records.at(at).starts_with(number)) ++at;
      at += 7;
      element = z;
    }
    while (records.at(at).find('+') < 3) ++at;
    const std::string& record = records.at(at++);
    const bool marked = record.find('*') < 3;
    corrected += marked ? 1 : 0;
    EXPECT_EQ(Text<3>(record), Text<3>(edge + (marked ? "*" : ""))) << row;
    const std::string published = energy + "  " + mu + "  " + mu_en;
    EXPECT_EQ(record.substr(3, 11), energy) << row;
    EXPECT_EQ(record.substr(3) != published, marked) << row;
  }
  EXPECT_EQ(element, "82");
  EXPECT_EQ(corrected, 20);
}

TEST(Data, EveryElementWorksAloneAndInCompounds) {
  const tests::WorkingDirectory directory(kData);
  attenuation::ElementList list;
  attenuation::read_element_list(list);
  for (int z = 1; z <= attenuation::kElements; ++z) {
    for (const float energy : {1.6F, 14.4F, 122.0F, 1332.0F, 20000.0F}) {
      float alone = 0.0F;
      Text<16> record;
      attenuation::find_element(list.ename(z), record);
      attenuation::attenuation_of(list.ename(z), energy, alone);
      float in_compound = 0.0F;
      Text<12> short_record;
      attenuation::find_element(list.ename(z), short_record);
      attenuation::attenuation_of(list.ename(z), energy, in_compound);
      EXPECT_GT(alone, 0.0F) << z << " at " << energy;
      EXPECT_EQ(alone, in_compound) << z << " at " << energy;
    }
  }
}

TEST(Data, EveryElementHasADensity) {
  std::set<int> elements;
  for (const auto& line : lines_of(kData + kDensities)) {
    const Text<80> record = line;
    Text<8> code = record.columns<1, 8>();
    int z = 0;
    toolkit::c8toi(code, z);
    int iout = 0;
    base::Array<float, 32> out{"out"};
    toolkit::trlch(60, record.columns<39, 80>(), iout, out);
    EXPECT_TRUE(z == 0 || (0.05F < out(1) && out(1) < 23.0F)) << line;
    elements.insert(z);
  }
  EXPECT_EQ(elements.size(), 83U);  // and the titles
  EXPECT_EQ(*elements.rbegin(), 82);
}

// All faults of the shipped data after `count` lines of `file` from `line` on
// were replaced by `text`.
std::string faults_of(const std::string& file, std::size_t line,
                      std::size_t count, const std::string& text) {
  const tests::TemporaryDirectory own;
  for (const auto& name : {kList, kBlocks, kDensities}) {
    auto lines = lines_of(kData + name);
    if (name == file) {
      const auto from = lines.begin() + static_cast<std::ptrdiff_t>(line - 1);
      lines.erase(from, from + static_cast<std::ptrdiff_t>(count));
      if (!text.empty()) {
        lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(line - 1),
                     text);
      }
    }
    std::string content;
    for (const auto& each : lines) content += each + "\n";
    own.write(name, content);
  }
  std::string told;
  for (const auto& fault : data::check_data(own.path("."))) {
    told += fault.file.substr(fault.file.rfind('/') + 1) + ":" +
            std::to_string(fault.line) + ": " + fault.reason + "\n";
  }
  return told;
}

TEST(DataCheck, TellsFileLineAndReason) {
  EXPECT_EQ(faults_of("", 0, 0, ""), "");
  const std::string one = "   1.00000E-03  1.000E+00";
  const std::string edge =
      "   1.00000E-03  9.000E+00\n"
      "   1.10000E-03  1.000E+00\n   1.10000E-03  2.000E+00";
  const std::string blank(34, ' ');
  const struct {
    const std::string& file;
    std::size_t line, count;
    std::string text;
    const char* fault;
  } cases[] = {
      {kList, 1, 82, "", "dat:0: the file is empty"},
      {kList, 82, 1, "", "dat:81: the file ends after 81 of 82"},
      {kList, 2, 1, "   2            Helium       4.00", "dat:2: no symbol"},
      {kList, 2, 1, "   2    H       Helium       4.00", "dat:2: the symbol H"},
      {kList, 2, 1, "   2    He      Helium", "dat:2: no molar weight"},
      {kList, 2, 1, "   2    He      Helium       0.0", "weight is not posi"},
      {kList, 2, 1, "   2    He      Helium       4x0", "weight is no plain"},
      {kList, 2, 1, "   2    He                   4.00", "dat:2: no name"},
      {kList, 59, 1, "  59    Pr      Praseodymium 140.9", "dat:59: compounds"},
      {kList, 2, 1, "   2    He      Hellium      4.00", "no block for Helli"},
      {kList, 2, 1, "   2    He      Hyd          4.00", "of Hydrogen in line"},
      {kList, 2, 1, "   2    He      Helium\t      4.00", "in column 23"},
      {kBlocks, 2, 1, "        1.5", ":2: no atomic number"},
      {kBlocks, 2, 1, "         7", ":2: Hydrogen has the atomic number 7"},
      {kBlocks, 3, 1, "", ":8: Hydrogen has fewer than 6 header records"},
      {kBlocks, 5, 46, "", ":5: Hydrogen has fewer than 6 header records"},
      {kBlocks, 9, 39, "", ":12: Hydrogen has only 3 points"},
      {kBlocks, 9, 1, std::string(81, 'x'), ":9: longer than 80 columns"},
      {kBlocks, 9, 1, std::string(1, '\0'), ":9: no printable character"},
      {kBlocks, 9, 1, " ", ":9: a blank record"},
      {kBlocks, 9, 1, "   1.0000xE-03  1.000E+00", ":9: Hydrogen ends here"},
      {kBlocks, 10, 1, "    x\n    x", ":12: Hydrogen ended in line 10"},
      {kBlocks, 10, 1, "   0.90000E-03  1.000E+00", ":10: the energy falls"},
      {kBlocks, 9, 1, "   0.00000E-03  1.000E+00", ":9: the energy is not"},
      {kBlocks, 9, 1, "   1.00000E-03  -1.00E+00", ":9: mu/rho is not"},
      {kBlocks, 9, 1, "   1.00000E-03 -1.00E+00", ":9: the numbers must"},
      {kBlocks, 9, 1, one + "\n" + one, ":10: the same energy twice"},
      {kBlocks, 9, 0, one + "\n" + one, ":11: a third point"},
      {kBlocks, 10, 0, edge, ":12: two edges"},
      {kBlocks, 5792, 0, one, ":5856: Lead has more than 64 points"},
      {kBlocks, 5855, 2, "", ":5854: Lead is cut off"},
      {kBlocks, 5856, 1, " Hydrogen", ":5856: a second block"},
      {kDensities, 3, 1, "", "elements.dat:1: no record of dichte.dat"},
      {kDensities, 3, 1, "       1", "dat:3: what begins in columns 1-8"},
      {kDensities, 1, 1, "1. Edition", "dat:1: no plain number"},
      {kDensities, 3, 1, "   1    Hydrogen", "dat:3: no density"},
      {kDensities, 3, 1, "   1" + blank + "0", "dat:3: the density is not"},
      {kDensities, 3, 1, "   1" + blank + "5.7.2", "density is no plain"},
      {kDensities, 3, 1, "   1" + blank.substr(1) + "19.3", "across column 39"},
      {kDensities, 5, 0, "   1" + blank + "1", "dat:5: apart from"},
      {kDensities, 129, 1, "", "dat:128: element 82 is cut off"},
  };
  for (const auto& c : cases) {
    const std::string told = faults_of(c.file, c.line, c.count, c.text);
    EXPECT_NE(told.find(c.fault), std::string::npos) << c.fault << "\n" << told;
  }
}

}  // namespace
