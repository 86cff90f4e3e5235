// Finds the faults in a help file before its readers do.

#ifndef DATA_TOOLS_HELPCHECK_H_
#define DATA_TOOLS_HELPCHECK_H_

#include <filesystem>
#include <vector>

#include "data/tools/datafile.h"

namespace data {

// Reads "attenuation.help" in `directory` as the help browser does
// (help/helpfile.h). Returns, in the order of lines, what leads nowhere, is
// never shown, means something else than a key, or does not fit a screen of 24
// rows and 80 columns. No fault if there is no such file: data files of one's
// own need none beside them.
//
// What stands before the first header is checked only for its length and
// characters. An entry that nothing in the file leads to is no fault: questions
// open entries too.
std::vector<Fault> check_help(const std::filesystem::path& directory);

}  // namespace data

#endif  // DATA_TOOLS_HELPCHECK_H_
