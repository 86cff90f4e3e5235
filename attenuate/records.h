// Lists of records in the formats of the command.

#ifndef ATTENUATE_RECORDS_H_
#define ATTENUATE_RECORDS_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "attenuate/output.h"
#include "attenuate/settings.h"

namespace attenuate {

// How a column shows in text.
enum class Show {
  kAlways,
  kNumber,        // aligned to the right; a number in JSON
  kDetail,        // below the record, where details are wanted
  kNumberDetail,  // the same, a number in JSON
};

struct RecordColumn {
  std::string_view name;
  std::size_t width;  // in text; 0 for the last of a line
  Show show;
};

struct Records {
  std::vector<RecordColumn> columns;
  std::vector<std::vector<std::string>> rows;  // blank: not known
};

// With `details` text tells all that is known of each record.
void write_records(const Records& records, Format format, bool details,
                   Output& output);

}  // namespace attenuate

#endif  // ATTENUATE_RECORDS_H_
