#include "help/helproutine.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/array.h"
#include "base/fatal.h"
#include "base/harmless.h"
#include "base/unit.h"
#include "help/help.h"
#include "help/helpfile.h"
#include "help/viewdvi.h"
#include "menu/choose.h"
#include "menu/scrd.h"
#include "terminal/ansi.h"
#include "terminal/show.h"
#include "terminal/window.h"

namespace help {
namespace {

using base::Text;
using Record = Text<132>;
using menu::scrd;
using terminal::kNormal;

constexpr int kLevels = 4;

void show(std::string_view line) { terminal::show(line, cmpa.nwrwin); }

// The same between two texts of the program's own, which may steer.
void show(std::string_view before, std::string_view line,
          std::string_view after) {
  base::unit(cmpa.nwrwin)
      .write(std::string(before) + base::harmless(line) + std::string(after));
}

// Waits for an answer line below a page; true if the text shall end.
bool answered_quit() {
  Text<80> answer;
  base::unit(base::kTerminalInput).read(answer);
  show(" ", "", terminal::kUp2);
  const char first = answer.columns<1, 1>().front();
  return first == 'q' || first == '*';
}

void show_record(const Record& record) {
  const std::string_view mark = record.columns<1, 3>();
  // Right-justified in five columns.
  std::string attribute;
  if (mark == "\\bf") attribute = std::string(" ") + terminal::kBold;
  if (mark == "\\ul") attribute = std::string(" ") + terminal::kUnderlined;
  if (mark == "\\bc") attribute = terminal::kBlue;
  if (attribute.empty()) {
    show(record.trimmed());
  } else {
    show(attribute, record.trimmed().substr(mark.size()), kNormal);
  }
}

// The related entries of one entry.
struct Level {
  int count = 0;
  base::Array<Text<80>, kMostRelated> que{"que"};
  std::string document;  // of the last "more"
  std::string details;   // of the last "details"
};

// The menus of the browser overwrite the entries of the menu that help was
// asked from.
class KeptQueryTables {
 public:
  KeptQueryTables() : queryar_(scrd.queryar), ext_(scrd.ext) {}
  ~KeptQueryTables() {
    scrd.queryar = queryar_;
    scrd.ext = ext_;
  }
  KeptQueryTables(const KeptQueryTables&) = delete;
  KeptQueryTables& operator=(const KeptQueryTables&) = delete;

 private:
  const base::Array<Text<132>, 64> queryar_;
  const base::Array<Text<16>, 64> ext_;
};

class Browser {
 public:
  explicit Browser(const Record& helpfile) : helpfile_(helpfile) {}

  void run(const Record& chcom) {
    cmpa.nwrwin = base::kTerminalOutput;
    terminal::window(1);
    page_rows_ = std::max(terminal::term.nrows(1), 1);
    if (!helpfile_.blank() && file_.try_open(helpfile_.trimmed())) {
      const base::UnitCloser closer(file_);
      const KeptQueryTables kept;
      browse(chcom);
    }
    show(terminal::kRed, " ", terminal::kUp1);
    // The name in its 64 columns, the attribute right-justified in five.
    show("   from help-file:", helpfile_.columns<1, 64>(),
         std::string(" ") + kNormal);
  }

 private:
  void browse(const Record& chcom) {
    Record key = left_justified(chcom);
    if (key.trimmed().ends_with('*')) {
      key = key.trimmed().substr(0, key.trimmed().size() - 1);
      list_headers(key);
      return;
    }
    for (std::optional<Record> next = key; next;) {
      if (!find(*next) || !show_text(*next)) return;
      const Level related = related_entries();
      if (related.count > 0) {
        if (level_ == kLevels) {
          show(" there was no way back to the preceeding level");
          return;
        }
        levels_(++level_) = related;
      }
      next = chosen_entry();
    }
  }

  bool read() {
    if (file_.try_read(record_)) return true;
    record_ = "/";  // the end of the file ends a text
    return false;
  }

  // Leaves the file behind the header of `key`.
  bool find(const Record& key) {
    file_.rewind();
    while (read()) {
      if (left_justified(record_) == key) return true;
    }
    not_found(key);
    return false;
  }

  void not_found(const Record& key) {
    show("no entry found for " + std::string(key.trimmed()) + " in helpfile:");
    show(helpfile_.trimmed());
  }

  void list_headers(const Record& key) {
    int shown = 0;
    while (read()) {
      const Record header = left_justified(record_);
      if (!is_header(header) || !header.trimmed().starts_with(key.trimmed())) {
        continue;
      }
      show(header.trimmed());
      if (++shown % page_rows_ == 0 && answered_quit()) return;
    }
    if (shown == 0) {
      not_found(key);
    } else if (shown % page_rows_ != 0) {
      static_cast<void>(answered_quit());
    }
  }

  // Shows the text of the entry `key`, behind whose header the file stands,
  // following links. Leaves in `record_` the record that ended it, or where
  // the user had enough of it. False when a link leads nowhere.
  bool show_text(Record key) {
    for (int links = 0;;) {
      int shown = 0;
      while (shown < page_rows_ && read() && !ends_text()) {
        show_record(record_);
        ++shown;
      }
      if (shown == 0 && record_.columns<1, 2>() == "/>") {
        if (++links > kMostLinks) {
          show(" the links of the entry " + std::string(key.trimmed()) +
               " lead in a circle");
          return false;
        }
        key = "/" + std::string(record_.columns<3, 132>());
        if (!find(key)) return false;
        continue;
      }
      if (shown == 0) return true;
      links = 0;
      if (answered_quit() || shown < page_rows_) return true;
    }
  }

  bool ends_text() const { return record_.columns<1, 1>() == "/"; }

  Level related_entries() {
    Level level;
    for (; record_.columns<1, 2>() == "/#"; read()) {
      const Related related = related_entry(record_);
      if (related.entry == "more") level.document = related.name;
      if (related.entry == "details") level.details = related.name;
      try {
        level.que(level.count + 1) = related.entry;
      } catch (base::RangeError& error) {
        error.advise("the help file " + std::string(helpfile_.trimmed()) +
                     " has an entry with more than 32 related entries: split"
                     " the entry");
        throw;
      }
      ++level.count;
    }
    return level;
  }

  // The entry to go on with; nothing when the user is done.
  std::optional<Record> chosen_entry() {
    while (level_ > 0) {
      const Level& level = levels_(level_);
      const int choice = choice_from(level);
      if (choice == 0) {
        --level_;
        continue;
      }
      const Text<80>& entry = level.que(choice);
      if (entry == "more") {
        view_document(level.document);
        return std::nullopt;
      }
      if (entry == "details") {
        show_details(level.details);
        return std::nullopt;
      }
      show("");
      return "/" + std::string(entry.trimmed());
    }
    return std::nullopt;
  }

  // The related entry the user picks, 1..count; 0 for going back.
  int choice_from(const Level& level) {
    std::vector<menu::Entry> entries = {{"return"}};
    for (int i = 1; i <= level.count; ++i) {
      entries.push_back({level.que(i).trimmed()});
    }
    const auto chosen =
        menu::choose("further related information", "return", entries);
    return static_cast<int>(chosen.value_or(0));
  }

  void view_document(const std::string& name) {
    if (!safe_for_shell(name)) {
      show(" the document name " + name +
           " has characters other than letters, digits, \".\", \"_\", \"-\"");
      return;
    }
    viewdvi(("$ZOXUHEPATH/dvifiles/" + name + "/" + name + ".dvi &").c_str());
    if (!can_view()) {
      base::note("no viewer xdvi or no display for it; to read elsewhere: " +
                 std::string(cmpa.zoxuhepath.trimmed()) + "/dvifiles/" + name +
                 "/" + name + ".pdf");
    }
  }

  void show_details(const std::string& name) {
    const std::string file =
        std::string(cmpa.zoxuhepath.trimmed()) + "/" + name;
    base::Unit& details = base::unit(2);
    if (!details.try_open(file)) {
      show(" file " + file + " for details not found");
      show("");
      return;
    }
    const base::UnitCloser closer(details);
    for (Text<80> line; details.try_read(line);) show(line.full());
  }

  const Record& helpfile_;
  base::Unit& file_ = base::unit(3);
  Record record_;  // the record read last
  int page_rows_ = 1;
  int level_ = 0;
  base::Array<Level, kLevels> levels_{"levels"};
};

}  // namespace

void helproutine(const base::Text<132>& chcom,
                 const base::Text<132>& helpfile) {
  Browser(helpfile).run(chcom);
}

}  // namespace help
