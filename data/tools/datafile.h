// A file in memory that is checked, and the faults found in it.

#ifndef DATA_TOOLS_DATAFILE_H_
#define DATA_TOOLS_DATAFILE_H_

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "base/text.h"

namespace data {

struct Fault {
  std::string file;  // with its directory
  int line;          // from 1; 0 for the file as a whole
  std::string reason;
};

inline std::string str(int number) { return std::to_string(number); }

// Lines count from 1.
class DataFile {
 public:
  // Reads `file`. A file that cannot be read or is empty, lines of more than
  // `longest` columns and characters that do not print are faults.
  DataFile(const std::filesystem::path& file, int longest);

  // Whether there is anything to check beyond the file itself.
  bool readable() const { return readable_; }
  int last() const { return static_cast<int>(lines_.size()); }
  // Without trailing blanks. Lines past the end are blank.
  std::string_view text(int line) const {
    if (line > last()) return {};
    return lines_[static_cast<std::size_t>(line - 1)];
  }
  // As the program reads it from a data file: cut or padded.
  base::Text<80> record(int line) const { return text(line); }

  void fault(int line, std::string reason);
  // In the order of lines; those of one line as they were found.
  void append_faults_to(std::vector<Fault>& all);

 private:
  void read();
  void check_line(int number);

  const std::filesystem::path path_;
  const int longest_;
  bool readable_ = false;
  std::vector<std::string> lines_;
  std::vector<Fault> faults_;
};

}  // namespace data

#endif  // DATA_TOOLS_DATAFILE_H_
