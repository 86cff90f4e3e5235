#include "data/tools/helpcheck.h"

#include <map>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "base/text.h"
#include "help/helpfile.h"

namespace data {
namespace {

namespace fs = std::filesystem;
using Record = base::Text<132>;

constexpr int kWidest = 76;
constexpr int kMostLines = 22;

// A help file, gone through once from top to bottom.
class HelpFile {
 public:
  explicit HelpFile(const fs::path& directory)
      : directory_(directory), file_(directory / "attenuation.help", 132) {}

  std::vector<Fault> check() {
    if (file_.readable()) {
      for (int line = 1; line <= file_.last(); ++line) check_record(line);
      for (const auto& [line, key] : targets_) {
        if (!entries_.contains(key)) fault(line, "leads to no entry: " + key);
      }
      check_links();
    }
    std::vector<Fault> faults;
    file_.append_faults_to(faults);
    return faults;
  }

 private:
  // What the record before belongs to.
  enum class Place {
    kHeader,
    kText,
    kRelated,
    kEnd,      // an entry is over, and no other has begun
    kOutside,  // the same where a text is meant so, or was told of
  };

  void check_record(int line) {
    const Record record = file_.text(line);
    const Record header = help::left_justified(record);
    const bool is_header = help::is_header(header) && header != "/";
    const bool in_text = place_ == Place::kHeader || place_ == Place::kText;
    const bool is_text = record.columns<1, 1>() != "/";
    if (is_header) check_header(line, header);
    // A header off column 1 is found all the same, but ends no text.
    if (is_header && (!is_text || !in_text)) {
      place_ = Place::kHeader;
      lines_ = related_ = 0;
    } else if (is_text) {
      check_text(line);
    } else if (record.columns<1, 2>() == "/>") {
      check_link(line, record);
    } else if (record.columns<1, 2>() == "/#") {
      check_related(line, record);
    } else if (place_ != Place::kOutside) {
      place_ = Place::kEnd;
    }
  }

  void check_header(int line, const Record& header) {
    const std::string key(base::trimmed(header.columns<2, 132>()));
    const auto [known, fresh] = entries_.emplace(key, line);
    if (!fresh) {
      fault(line, "the entry stands in line " + str(known->second) +
                      " already: this one is never found");
    }
    if (key.ends_with('*')) {
      fault(line, "a key that ends in * asks for a list of headers");
    }
    for (const std::string_view meaning : {"q", "more", "details"}) {
      if (!key.starts_with(meaning)) continue;
      fault(line, "a key must not begin with " + std::string(meaning) +
                      ": menus take it for their own");
    }
  }

  void check_text(int line) {
    const std::string_view text = file_.text(line);
    if (place_ == Place::kRelated) place_ = Place::kEnd;
    if (place_ == Place::kEnd && !text.empty()) {
      fault(line, "never shown: no entry goes on to here");
      place_ = Place::kOutside;
    }
    if (place_ != Place::kHeader && place_ != Place::kText) return;
    place_ = Place::kText;
    if (static_cast<int>(text.size()) > kWidest) {
      fault(line, "the text is longer than " + str(kWidest) +
                      " columns: it may not fit");
    }
    if (++lines_ == kMostLines + 1) {
      fault(line, "the text has more than " + str(kMostLines) +
                      " lines: more than a screen");
    }
  }

  void check_link(int line, const Record& record) {
    const std::string key(base::trimmed(record.columns<3, 132>()));
    targets_.emplace(line, key);
    if (place_ == Place::kHeader) {
      links_.emplace(line, key);
      place_ = Place::kEnd;
    } else {
      fault(line, "never followed: a link must come first in its entry");
      place_ = Place::kOutside;
    }
  }

  // Where the browser would give up on its way from a link on.
  void check_links() {
    for (auto from = links_.begin(); from != links_.end(); ++from) {
      int links = 0;
      for (auto link = from; link != links_.end() && links <= help::kMostLinks;
           ++links) {
        const auto entry = entries_.find(link->second);
        link = entry == entries_.end() ? links_.end()
                                       : links_.find(entry->second + 1);
      }
      if (links <= help::kMostLinks) continue;
      fault(from->first, "from here links lead in a circle, or more than " +
                             str(help::kMostLinks) + " in a row");
    }
  }

  void check_related(int line, const Record& record) {
    const auto [entry, name] = help::related_entry(record);
    if (place_ == Place::kEnd || place_ == Place::kOutside) {
      fault(line, "never offered: no entry goes on to here");
    } else {
      place_ = Place::kRelated;
      if (++related_ == help::kMostRelated + 1) {
        fault(line, "more than " + str(help::kMostRelated) +
                        " related entries: showing them ends the run");
      }
    }
    if (entry == "more") {
      check_document(line, name);
    } else if (entry == "details") {
      check_file(line, 11, name, name);
    } else {
      targets_.emplace(line, entry.trimmed());
    }
  }

  void check_document(int line, const std::string& name) {
    if (!name.empty() && !help::safe_for_shell(name)) {
      fault(line, "the document name " + name +
                      R"( may hold letters, digits, ".", "_", "-" only)");
    } else {
      check_file(line, 8, name, "dvifiles/" + name + "/" + name + ".dvi");
    }
  }

  void check_file(int line, int column, const std::string& name,
                  const std::string& file) {
    std::error_code error;
    if (name.empty()) {
      fault(line, "no name from column " + str(column) + " on");
    } else if (!fs::is_regular_file(directory_ / file, error)) {
      fault(line, "no such file: " + file);
    }
  }

  void fault(int line, std::string reason) {
    file_.fault(line, std::move(reason));
  }

  const fs::path directory_;
  DataFile file_;
  Place place_ = Place::kOutside;
  int lines_ = 0;    // of the text, so far
  int related_ = 0;  // entries, so far
  // Headers: their lines by their keys.
  std::map<std::string, int> entries_;
  // The other way round: what lines lead to, and the links that are followed.
  std::map<int, std::string> targets_;
  std::map<int, std::string> links_;
};

}  // namespace

std::vector<Fault> check_help(const fs::path& directory) {
  std::error_code error;
  if (!fs::exists(directory / "attenuation.help", error)) return {};
  return HelpFile(directory).check();
}

}  // namespace data
