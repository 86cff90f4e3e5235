// Finds the faults in a set of data files before the program does.

#ifndef DATA_TOOLS_DATACHECK_H_
#define DATA_TOOLS_DATACHECK_H_

#include <filesystem>
#include <vector>

#include "data/tools/datafile.h"

namespace data {

// Reads "elements.dat", "attenuation.coefficients" and "dichte.dat" in
// `directory` by the program's own rules. Returns all that would end a run,
// give a wrong number, or never be read though it was meant to; file by file
// in the order of lines.
//
// Lines of a file that the program passes over (titles, blocks and densities
// of further elements, what follows the 82nd element) are checked only for
// their length and characters.
std::vector<Fault> check_data(const std::filesystem::path& directory);

}  // namespace data

#endif  // DATA_TOOLS_DATACHECK_H_
