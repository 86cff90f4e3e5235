#include "help/helpfile.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "text/nextchar.h"
#include "text/stringlength.h"

namespace help {
namespace {

using Record = base::Text<132>;

std::string first_word(const Record& record, int column) {
  Record word;
  int first = 0;
  int length = 0;
  toolkit::nextchar(record.columns(column, 132, "record"), 0, first, word,
                    length);
  return std::string(word.columns(1, length, "word"));
}

}  // namespace

Record left_justified(Record record) {
  int length = 0;
  toolkit::stringlength(record, length);
  return record;
}

bool is_header(const Record& record) {
  const std::string_view begin = record.columns<1, 2>();
  return begin.front() == '/' && begin != "/#" && begin != "/>";
}

Related related_entry(const Record& record) {
  if (record.columns<3, 6>() == "more") return {"more", first_word(record, 8)};
  if (record.columns<3, 9>() == "details") {
    return {"details", first_word(record, 11)};
  }
  return {record.columns<3, 132>(), ""};
}

bool safe_for_shell(const std::string& name) {
  return !name.empty() && std::all_of(name.begin(), name.end(), [](char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '.' ||
           c == '_' || c == '-';
  });
}

}  // namespace help
