// The menu is drawn once and then redrawn in place.

#include "menu/query.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "base/fatal.h"
#include "base/unit.h"
#include "terminal/ansi.h"
#include "terminal/key.h"
#include "terminal/window.h"
#include "text/stringlength.h"

namespace menu {

using base::Text;
using terminal::kNormal;
using terminal::kRed;
using terminal::kUp1;
using terminal::kUp2;
using terminal::kUp3;
using terminal::term;

Scrd scrd;
ShowHelp show_help = nullptr;

namespace {

constexpr int kShownEntries = 63;
constexpr std::string_view kCursorStep = "shift";

std::string repeated(int count, char c) {
  return std::string(static_cast<std::size_t>(std::max(count, 0)), c);
}

// The first `width` characters, padded with blanks.
std::string field(std::string_view text, int width) {
  const auto room = static_cast<std::size_t>(std::max(width, 0));
  std::string cut(text.substr(0, room));
  cut.resize(room, ' ');
  return cut;
}

class Menu {
 public:
  Menu(int& lq, int& lk, Text<132>& cheader, Text<80>& chdf)
      : lq_(lq), lk_(lk), cheader_(cheader), chdf_(chdf) {}

  void run() {
    entries_ = lq_;
    const Text<80> caller_default = chdf_;
    window_mode_ = cheader_.at(132, "cheader");
    cheader_.at(132, "cheader") = ' ';
    go_ = cheader_.at(131, "cheader") == 'g';
    related_entries_ = contains(cheader_.full(), "further related");
    while (show_and_choose() == Outcome::kHelpShown) {
      jq_ = 0;
      lk_ = entries_;
      chdf_ = caller_default;
    }
  }

 private:
  enum class Outcome { kDone, kHelpShown };

  // One round: the whole menu, and answers until one leaves it.
  Outcome show_and_choose() {
    npx_ = std::min((windowed() ? term.ncol(1) : term.npl) - 3, 130);
    npl_i_ = std::min(term.ncol(1) - 3, 129);
    const bool block = chdf_.at(80, "chdf") == '#';
    chdf_.at(80, "chdf") = ' ';
    le_ = chdf_.length();
    if (le_ == 0) lk_ = entries_;

    write_header();
    prepare_entries();
    if (!block || !block_layout()) flowing_layout();

    for (;;) {
      highlight(entry_to_highlight());
      write_rows();
      if (le_ == 0) {
        // Display only, or RET with nothing highlighted.
        return Outcome::kDone;
      }
      if (window_mode_ == 'r') {
        take_choice_from_script();
        break;
      }
      const Text<132> answer = ask();
      clear_input_lines();
      le_ = std::min(answer.length(), 80);
      chdf_ = answer;

      if (answer.columns<1, 2>() == "he") {
        write(
            " select by typing a substring, RET"
            " or by repeatedly using left/right shift keys");
      }
      Text<132> lowered = answer;
      toolkit::lc_character(lowered);
      if (lowered.columns<1, 2>() == "he" && !related_entries_) {
        if (jq_ != 0 && show_help != nullptr) show_help(scrd.helpar(jq_));
        return Outcome::kHelpShown;
      }
      const char first = answer.columns<1, 1>().front();
      if (first == '*' || (first == 'q' && !iquit_)) {
        lq_ = lk_ = 0;
        break;
      }
      if (le_ > 0) {
        go_back_over_rows();
        jq_ = 0;
        continue;
      }
      lk_ = 0;
      lq_ = jq_;
      if (jq_ != 0) {
        if (window_mode_ == 'w') write_choice_to_script();
        break;
      }
    }
    chdf_.at(80, "chdf") = static_cast<char>('0' + iwrl_);
    write(std::string(" ") + kNormal + kUp1);
    return Outcome::kDone;
  }

  bool windowed() const {
    return window_mode_ == 'w' || window_mode_ == 'r' || window_mode_ == 'l';
  }

  static bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != text.npos;
  }

  // Without the flags in its last two columns.
  std::string_view header() const {
    return base::trimmed(go_ ? cheader_.columns<1, 130>() : cheader_.full());
  }

  void write(std::string_view record) {
    base::unit(base::kTerminalOutput).write(record);
  }

  // --- header and layout ---------------------------------------------------

  void write_header() {
    if (term.ncol(1) < 131) {
      cheader_.put(std::max(term.ncol(1), 0) + 1, 132, "", "cheader");
    }
    std::string title(header());
    if (!title.empty() && !contains(title, "information")) {
      title += " (help:he)";
    }
    const int l = static_cast<int>(title.size());
    const int before = title.empty() ? npx_ : (npx_ - l) / 2;
    std::string line = std::string(kNormal) + repeated(before, '-') + title;
    line += repeated(npx_ - l - std::max(before, 0), '-');
    write(line);
    iwrl_ = 1;
    if (window_mode_ == 'w') base::unit(base::kScriptUnit).write(line);
    if (window_mode_ == 'r') {
      Text<256> discarded;
      static_cast<void>(base::unit(base::kScriptUnit).try_read(discarded));
    }
  }

  void prepare_entries() {
    iquit_ = false;
    widest_ = 0;
    for (int i = 1; i <= entries_; ++i) {
      Text<132>& text = scrd.queryar(i);
      if (term.ncol(1) < 132) {
        text.put(std::max(term.ncol(1), 0) + 1, 132, "", "queryar");
      }
      scrd.ld(i) = scrd.ext(i).length();
      scrd.lw(i) = text.length();
      if (text.columns<1, 1>() == "q") iquit_ = true;
      widest_ = std::max(widest_, scrd.lw(i) + scrd.ld(i) + 3);
    }
    scrd.lpart(0) = 0;
  }

  // Columns of equal width, balanced so that the last row is not much shorter
  // than the others. False where that leaves no column.
  bool block_layout() {
    const int width = widest_ + 2;
    int c = std::max(npx_, 0) / width;
    if (c == 0) return false;
    const int r = (entries_ + c - 1) / c;
    int e = 0;
    for (; c > 0; --c) {
      e = c * r - entries_;
      if (e >= r - 1) continue;
      if (e < 0) {
        ++c;
        e = c * r - entries_;
      }
      break;
    }
    if (c == 0) return false;
    for (int i = 1; i <= entries_; ++i) scrd.laenge(i) = width + 5;
    for (int row = 1; row < r; ++row) scrd.lpart(row) = c;
    scrd.lpart(r) = c - e;
    rows_ = r;
    return true;
  }

  // Fields whose widths step in tens, as many to a row as fit.
  void flowing_layout() {
    int r = 1;
    int w = 0;
    scrd.lpart(1) = 0;
    for (int i = 1; i <= entries_; ++i) {
      const int width = ((scrd.lw(i) + 5) / 10 + 1) * 10 + scrd.ld(i);
      scrd.laenge(i) = width;
      if (width >= npx_) {
        scrd.lpart(r + 1) = 1;
        scrd.laenge(r + 1) = width;
        ++r;
        continue;
      }
      w += width + 6;
      scrd.lpart(r) += 1;
      if (w == npx_) {
        w = 0;
        scrd.lpart(r + 1) = 0;
        ++r;
      } else if (w > npx_) {
        w = width + 4;
        scrd.lpart(r) -= 1;
        scrd.lpart(r + 1) = 1;
        ++r;
      }
    }
    rows_ = r;
  }

  // --- highlight and rows --------------------------------------------------

  int entry_to_highlight() const {
    const int n = entries_;
    if (key_ == terminal::kDownKey || key_ == terminal::kRightKey) {
      return jjq_ == n ? 1 : jjq_ + 1;
    }
    if (key_ == terminal::kUpKey || key_ == terminal::kLeftKey) {
      // With nothing highlighted yet there is no entry to step back from.
      if (jjq_ == 0) return n + 1;
      return jjq_ == 1 ? n : jjq_ - 1;
    }
    if (le_ == 0) return n + 1;
    const std::string_view wanted = chdf_.columns(1, le_, "chdf");
    for (int step = 1; step <= n; ++step) {
      const int i = (jjq_ + step - 1) % n + 1;
      if (contains(scrd.queryar(i).full(), wanted)) return i;
    }
    return n + 1;
  }

  void highlight(int j) {
    for (int i = 1; i <= entries_; ++i) {
      std::string shown(scrd.queryar(i).columns(1, scrd.lw(i), "queryar"));
      if (scrd.ld(i) > 0) shown += " " + std::string(scrd.ext(i).trimmed());
      scrd.type(i) = i == j ? std::string(kRed) + "[" + shown + "]"
                            : std::string(kNormal) + " " + shown;
    }
    if (j > entries_) return;
    jjq_ = jq_ = j;
    chdf_ = scrd.queryar(j);
  }

  bool two_lines(int row, int before) const {
    return scrd.lpart(row) == 1 && scrd.laenge(before + 1) > npl_i_;
  }

  void write_rows() {
    int before = 0;  // entries in the rows above
    for (int row = 1; row <= rows_; before += scrd.lpart(row), ++row) {
      // Meant: the row that holds a 64th entry is not shown.
      if (before + scrd.lpart(row) > kShownEntries) continue;
      write_row(row, before, [this](std::string_view line) {
        write(line);
        ++iwrl_;
      });
    }
    write(std::string(kNormal) + kUp1);
    write_footer();
  }

  template <typename Write>
  void write_row(int row, int before, Write write_line) {
    if (two_lines(row, before)) {
      const std::string shown =
          field(scrd.type(before + 1).full(), scrd.laenge(before + 1));
      const auto first = static_cast<std::size_t>(std::max(npl_i_ - 3, 0));
      write_line(shown.substr(0, first));
      write_line(" " + shown.substr(first));
      return;
    }
    std::string line;
    for (int i = before + 1; i <= before + scrd.lpart(row); ++i) {
      line += field(scrd.type(i).full(), scrd.laenge(i));
    }
    write_line(line);
  }

  void write_footer() {
    write(std::string(kNormal) + repeated(npx_, '-'));
    ++iwrl_;
  }

  // --- answers -------------------------------------------------------------

  Text<132> ask() {
    if (entries_ < 2) {
      write_footer();
      return take_return();
    }
    if (go_) return take_return();
    key_ = terminal::key();
    switch (key_) {
      case terminal::kUpKey:
      case terminal::kDownKey:
      case terminal::kRightKey:
      case terminal::kLeftKey:
        write(" ");
        return kCursorStep;
      case terminal::kReturnKey:
        return take_return();
      default:
        // End of input comes here too: reading on then ends the run.
        return rest_of_line(static_cast<char>(key_ & 0xFF));
    }
  }

  Text<132> take_return() {
    key_ = terminal::kReturnKey;
    write(" ");
    return "";
  }

  Text<132> rest_of_line(char first) {
    Text<131> rest;
    base::unit(base::kTerminalInput).read(rest);
    Text<132> line;
    line.at(1, "line") = first;
    line.put(2, 132, rest.full(), "line");
    return line;
  }

  void clear_input_lines() {
    write(std::string(" ") + kUp2);
    write(repeated(npx_, ' '));
    write(std::string(" ") + kUp2);
  }

  // --- redrawing in place --------------------------------------------------

  // Calls `visit` with the number of lines of every row, first to last. The
  // row of a 64th entry, though not shown, counts where it begins before.
  template <typename Visit>
  void for_rows(Visit visit) {
    int before = 0;
    for (int row = 1; row <= rows_; before += scrd.lpart(row), ++row) {
      if (before < kShownEntries) visit(two_lines(row, before) ? 2 : 1);
    }
  }

  // Erases the rows and leaves the cursor on the first of them.
  void go_back_over_rows() {
    write(std::string(" ") + kUp2);
    --iwrl_;
    go_up();
    for_rows([this](int lines) {
      for (int i = 0; i < lines; ++i) write(repeated(npl_i_, ' '));
      iwrl_ += lines;
    });
    go_up();
  }

  void go_up() {
    for_rows([this](int lines) {
      write(std::string(" ") + (lines == 2 ? kUp3 : kUp2));
      iwrl_ -= lines;
    });
  }

  // --- another process drives the menu --------------------------------------

  // Written when the choice is made, so that what one process writes in mode
  // "w" is what another takes its choice from in mode "r".
  void write_choice_to_script() {
    base::Unit& script = base::unit(base::kScriptUnit);
    int before = 0;
    for (int row = 1; row <= rows_; before += scrd.lpart(row), ++row) {
      write_row(row, before,
                [&script](std::string_view line) { script.write(line); });
    }
    const std::string number = std::to_string(jq_);
    script.write(number +
                 repeated(npx_ - static_cast<int>(number.size()), '-'));
  }

  void take_choice_from_script() {
    for (;;) {
      Text<256> line;
      base::unit(base::kScriptUnit).read(line);
      write(std::string(kNormal) +
            field(line.full(), std::min(term.ncol(1), 132)));
      if (line.columns<3, 5>() != "---") continue;
      lq_ = line.columns<1, 1>().front() - '0';
      const char second = line.columns<2, 2>().front();
      if (second != '-') lq_ = 10 * lq_ + (second - '0');
      lk_ = 0;
      return;
    }
  }

  int& lq_;
  int& lk_;
  Text<132>& cheader_;
  Text<80>& chdf_;

  int entries_ = 0;
  char window_mode_ = ' ';
  bool go_ = false;
  bool related_entries_ = false;  // a menu of the help browser: "he" is text
  int npx_ = 0;                   // usable width of a line
  int npl_i_ = 0;  // the same for a row that needs a line of its own
  int le_ = 0;     // length of the default or the answer
  int widest_ = 0;
  int rows_ = 0;
  int iwrl_ = 0;        // lines written
  int key_ = 0;         // the last key
  int jq_ = 0;          // highlighted entry, 0 for none
  int jjq_ = 0;         // entry highlighted last: searches go on from it
  bool iquit_ = false;  // some entry begins with "q"
};

}  // namespace

void query(int& lq, int& lk, Text<132>& cheader, Text<80>& chdf) {
  Menu(lq, lk, cheader, chdf).run();
}

}  // namespace menu
