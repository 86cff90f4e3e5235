#include "data/tools/datafile.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "base/fatal.h"
#include "base/harmless.h"
#include "base/unit.h"

namespace data {

namespace fs = std::filesystem;

DataFile::DataFile(const fs::path& file, int longest)
    : path_(file.lexically_normal()), longest_(longest) {
  std::error_code error;
  const fs::file_status status = fs::status(path_, error);
  if (!fs::exists(status)) {
    fault(0, "no such file");
  } else if (!fs::is_regular_file(status)) {
    fault(0, "is no regular file");
  } else {
    read();
  }
}

void DataFile::fault(int line, std::string reason) {
  faults_.push_back({path_.string(), line, std::move(reason)});
}

void DataFile::append_faults_to(std::vector<Fault>& all) {
  std::stable_sort(
      faults_.begin(), faults_.end(),
      [](const Fault& a, const Fault& b) { return a.line < b.line; });
  all.insert(all.end(), faults_.begin(), faults_.end());
}

void DataFile::read() {
  try {
    base::Unit file(1);
    file.open(path_.string());
    base::Text<base::kLongestLine> line;
    while (file.try_read(line)) {
      lines_.emplace_back(line.trimmed());
      check_line(last());
    }
    readable_ = true;
  } catch (const base::FatalEnd& end) {
    fault(0, end.cause());
  }
  if (readable_ && lines_.empty()) fault(0, "the file is empty");
}

void DataFile::check_line(int number) {
  const std::string& line = lines_.back();
  const std::string shown = base::harmless(line);
  const auto [bad, same] =
      std::mismatch(line.begin(), line.end(), shown.begin(), shown.end());
  if (bad != line.end()) {
    fault(number, "no printable character in column " +
                      str(static_cast<int>(bad - line.begin()) + 1));
  }
  if (line.size() > static_cast<std::size_t>(longest_)) {
    fault(number, "longer than " + str(longest_) + " columns: the rest is cut");
  }
}

}  // namespace data
