// Tells the owner of data and help files every fault in them:
// checkdata [DIRECTORY].
// Exit status 0 if there is none, 1 if there are any, 2 for a wrong call.

#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "base/harmless.h"
#include "data/tools/datacheck.h"
#include "data/tools/helpcheck.h"

namespace {

constexpr const char* kUsage =
    "Usage: attenuation-checkdata [--help | --version | DIRECTORY]\n"
    "Tells every fault in the data files of DIRECTORY (default: the current\n"
    "one): elements.dat, attenuation.coefficients, dichte.dat and, if it is\n"
    "there, attenuation.help. Silence means that there is none.\n";

int check(const std::string& directory) {
  std::vector<data::Fault> faults = data::check_data(directory);
  const std::vector<data::Fault> in_help = data::check_help(directory);
  faults.insert(faults.end(), in_help.begin(), in_help.end());
  for (const data::Fault& fault : faults) {
    // Names in the files are shown, and may hold what steers a terminal.
    std::cout << base::harmless(fault.file + ":" + std::to_string(fault.line) +
                                ": " + fault.reason)
              << '\n';
  }
  return faults.empty() ? 0 : 1;
}

}  // namespace

int main(int argc, char* argv[]) {
  const std::string word = argc > 1 ? argv[1] : ".";
  if (argc == 2 && word == "--help") {
    std::cout << kUsage;
    return 0;
  }
  if (argc == 2 && word == "--version") {
    std::cout << "attenuation-checkdata " VERSION "\n";
    return 0;
  }
  if (argc > 2 || word.empty() || word.front() == '-') {
    std::cerr << kUsage;
    return 2;
  }
  try {
    return check(word);
  } catch (const std::exception& problem) {
    std::cerr << "attenuation-checkdata: " << problem.what() << '\n';
    return 2;
  }
}
