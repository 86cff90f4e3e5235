// Tells the owner of data and help files every fault in them:
// checkdata [DIRECTORY].
// Exit status 0 if there is none, 1 if there are any, 2 for a wrong call.

#include <exception>
#include <iostream>
#include <string>

#include "base/harmless.h"
#include "data/tools/datacheck.h"
#include "data/tools/helpcheck.h"

int main(int argc, char* argv[]) {
  const std::string directory = argc > 1 ? argv[1] : ".";
  if (argc > 2 || directory.empty() || directory.front() == '-') {
    std::cerr << "usage: checkdata [DIRECTORY]\nChecks elements.dat,"
                 " attenuation.coefficients, dichte.dat and, if it exists,"
                 " attenuation.help there.\n";
    return 2;
  }
  try {
    auto faults = data::check_data(directory);
    const auto in_help = data::check_help(directory);
    faults.insert(faults.end(), in_help.begin(), in_help.end());
    for (const data::Fault& fault : faults) {
      // Names in the files are shown, and may hold what steers a terminal.
      const std::string line = base::harmless(
          fault.file + ":" + std::to_string(fault.line) + ": " + fault.reason);
      std::cout << line << '\n';
    }
    return faults.empty() ? 0 : 1;
  } catch (const std::exception& problem) {
    std::cerr << "checkdata: " << problem.what() << '\n';
    return 2;
  }
}
