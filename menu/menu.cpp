#include "menu/menu.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "base/harmless.h"
#include "base/unit.h"
#include "menu/layout.h"
#include "terminal/ansi.h"
#include "terminal/key.h"
#include "terminal/window.h"
#include "text/stringlength.h"

namespace menu {
namespace {

using base::Text;
using terminal::kNormal;
using terminal::kRed;
using terminal::kUp1;
using terminal::kUp2;
using terminal::kUp3;
using terminal::term;

// A 64th entry can be highlighted and chosen, but is not shown: a row of its
// own would be one that the redraw does not go back over.
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

bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != text.npos;
}

void write(std::string_view record) {
  base::unit(base::kTerminalOutput).write(record);
}

// A line of a script, harmless but for the attributes that menus write there.
std::string echoed(std::string_view line) {
  const std::size_t begin = line.find('\x1b');
  std::string shown = base::harmless(line.substr(0, begin));
  if (begin == line.npos) return shown;
  line.remove_prefix(begin);
  for (const std::string_view attribute : {kNormal, kRed}) {
    if (!line.starts_with(attribute)) continue;
    line.remove_prefix(attribute.size());
    return shown.append(attribute) + echoed(line);
  }
  return shown + "?" + echoed(line.substr(1));
}

// The upper edge of a menu `width` columns wide.
std::string upper_edge(const Text<132>& header, int width) {
  std::string title(header.trimmed());
  if (!title.empty() && !contains(title, "information")) title += " (help:he)";
  const int length = static_cast<int>(title.size());
  const int before = title.empty() ? width : (width - length) / 2;
  return repeated(before, '-') + title +
         repeated(width - length - std::max(before, 0), '-');
}

class Menu {
 public:
  Menu(const Question& question, Scrd& tables, const ShowHelp& show_help)
      : question_(question),
        scrd_(tables),
        show_help_(show_help),
        related_entries_(contains(question.header.full(), "further related")) {
    cut_at_window(question_.header);
  }

  Answer run() {
    for (;;) {
      if (const std::optional<Answer> answer = show_and_choose()) {
        return *answer;
      }
      jq_ = 0;
    }
  }

 private:
  // One round: the whole menu, and answers until one leaves it. Nothing when
  // help was shown, behind which the menu comes anew.
  std::optional<Answer> show_and_choose() {
    npx_ = std::min((windowed() ? term.ncol(1) : term.npl) - 3, 130);
    npl_i_ = std::min(term.ncol(1) - 3, 129);
    chdf_ = question_.wanted;
    le_ = chdf_.length();
    draw();
    if (le_ == 0) return Answer{{}, chdf_, {}};
    for (;;) {
      if (question_.window_mode == 'r') return left(choice_from_script());
      const Text<132> answer = asked();
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
        if (jq_ != 0 && show_help_) show_help_(scrd_.helpar(jq_));
        return std::nullopt;
      }
      const char first = answer.columns<1, 1>().front();
      if (first == '*' || (first == 'q' && !iquit_)) return left(0);
      if (le_ == 0 && jq_ != 0) {
        if (question_.window_mode == 'w') write_choice_to_script();
        return left(jq_);
      }
      if (le_ > 0) {
        go_back_over_rows();
        jq_ = 0;
      }
      draw_rows();
      // RET with nothing highlighted.
      if (le_ == 0) return Answer{0, chdf_, {}};
    }
  }

  Answer left(int entry) {
    write(std::string(" ") + kNormal + kUp1);
    return {entry, chdf_, iwrl_};
  }

  bool windowed() const {
    const char mode = question_.window_mode;
    return mode == 'w' || mode == 'r' || mode == 'l';
  }

  // --- drawing ---------------------------------------------------------------

  void draw() {
    draw_header();
    prepare_entries();
    lay_out();
    draw_rows();
  }

  void draw_header() {
    const std::string line = kNormal + upper_edge(question_.header, npx_);
    write(line);
    iwrl_ = 1;
    if (question_.window_mode == 'w') base::unit(base::kScriptUnit).write(line);
    if (question_.window_mode == 'r') {
      Text<256> discarded;
      static_cast<void>(base::unit(base::kScriptUnit).try_read(discarded));
    }
  }

  void prepare_entries() {
    iquit_ = false;
    for (int i = 1; i <= question_.entries; ++i) {
      Text<132>& text = scrd_.queryar(i);
      cut_at_window(text);
      scrd_.ld(i) = scrd_.ext(i).length();
      scrd_.lw(i) = text.length();
      if (text.columns<1, 1>() == "q") iquit_ = true;
    }
  }

  void lay_out() {
    std::vector<Widths> widths;
    for (int i = 1; i <= question_.entries; ++i) {
      widths.push_back({scrd_.lw(i), scrd_.ld(i)});
    }
    std::optional<Layout> layout;
    if (question_.block) layout = block_layout(widths, npx_);
    if (!layout) layout = flowing_layout(widths, npx_);

    rows_ = 0;
    scrd_.lpart(0) = 0;
    for (const int entries : layout->rows) scrd_.lpart(++rows_) = entries;
    int i = 0;
    for (const int width : layout->fields) scrd_.laenge(++i) = width;
  }

  // --- highlight and rows --------------------------------------------------

  void draw_rows() {
    highlight(entry_to_highlight());
    write_rows();
  }

  // One behind the last for none.
  int entry_to_highlight() const {
    const int n = question_.entries;
    switch (key_) {
      case terminal::kDownKey:
      case terminal::kRightKey:
        return jjq_ % n + 1;
      case terminal::kUpKey:
      case terminal::kLeftKey:
        // With nothing highlighted yet there is no entry to step back from.
        return jjq_ == 0 ? n + 1 : (jjq_ + n - 2) % n + 1;
      default:
        return le_ == 0 ? n + 1 : next_match();
    }
  }

  // The next entry, in a circle from the one highlighted last, that has what
  // was typed in it.
  int next_match() const {
    const int n = question_.entries;
    const std::string_view wanted = chdf_.columns(1, le_, "chdf");
    for (int step = 1; step <= n; ++step) {
      const int i = (jjq_ + step - 1) % n + 1;
      if (contains(scrd_.queryar(i).full(), wanted)) return i;
    }
    return n + 1;
  }

  void highlight(int j) {
    for (int i = 1; i <= question_.entries; ++i) {
      std::string shown(scrd_.queryar(i).columns(1, scrd_.lw(i), "queryar"));
      if (scrd_.ld(i) > 0) shown += " " + std::string(scrd_.ext(i).trimmed());
      scrd_.type(i) = i == j ? std::string(kRed) + "[" + shown + "]"
                             : std::string(kNormal) + " " + shown;
    }
    if (j > question_.entries) return;
    jjq_ = jq_ = j;
    chdf_ = scrd_.queryar(j);
  }

  bool two_lines(int row, int before) const {
    return scrd_.lpart(row) == 1 && scrd_.laenge(before + 1) > npl_i_;
  }

  void write_rows() {
    int before = 0;  // entries in the rows above
    for (int row = 1; row <= rows_; before += scrd_.lpart(row), ++row) {
      if (before + scrd_.lpart(row) > kShownEntries) continue;
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
          field(scrd_.type(before + 1).full(), scrd_.laenge(before + 1));
      const auto first = static_cast<std::size_t>(std::max(npl_i_ - 3, 0));
      write_line(shown.substr(0, first));
      write_line(" " + shown.substr(first));
      return;
    }
    std::string line;
    for (int i = before + 1; i <= before + scrd_.lpart(row); ++i) {
      line += field(scrd_.type(i).full(), scrd_.laenge(i));
    }
    write_line(line);
  }

  void write_footer() {
    write(std::string(kNormal) + repeated(npx_, '-'));
    ++iwrl_;
  }

  // --- answers -------------------------------------------------------------

  Text<132> asked() {
    if (question_.entries < 2) {
      write_footer();
      return take_return();
    }
    if (question_.go) return take_return();
    key_ = answering_key();
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

  // The next key that means something to a menu. Home, End, Page Down and the
  // like, ESC [ and a letter, or digits and a final character, would else begin
  // a line with what no entry has in it.
  static int answering_key() {
    for (;;) {
      int key = terminal::key();
      if (key == terminal::kHomeKey || key == terminal::kEndKey) continue;
      if (key > -'0' || key < -'9') return key;
      do {
        key = terminal::key();
      } while (('0' <= key && key <= '9') || key == ';');
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
    for (int row = 1; row <= rows_; before += scrd_.lpart(row), ++row) {
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
    for (int row = 1; row <= rows_; before += scrd_.lpart(row), ++row) {
      write_row(row, before,
                [&script](std::string_view line) { script.write(line); });
    }
    const std::string number = std::to_string(jq_);
    script.write(number +
                 repeated(npx_ - static_cast<int>(number.size()), '-'));
  }

  int choice_from_script() {
    for (;;) {
      Text<256> line;
      base::unit(base::kScriptUnit).read(line);
      write(kNormal + echoed(field(line.full(), std::min(term.ncol(1), 132))));
      if (line.columns<3, 5>() != "---") continue;
      const int choice = line.columns<1, 1>().front() - '0';
      const char second = line.columns<2, 2>().front();
      return second == '-' ? choice : 10 * choice + (second - '0');
    }
  }

  Question question_;
  Scrd& scrd_;
  const ShowHelp& show_help_;
  const bool related_entries_;  // a menu of the help browser: "he" is text
  int npx_ = 0;                 // usable width of a line
  int npl_i_ = 0;               // the same for a row that has its own line
  Text<80> chdf_;               // the default or the answer
  int le_ = 0;                  // its length
  int rows_ = 0;
  int iwrl_ = 0;        // lines written
  int key_ = 0;         // the last key
  int jq_ = 0;          // highlighted entry, 0 for none
  int jjq_ = 0;         // entry highlighted last: searches go on from it
  bool iquit_ = false;  // some entry begins with "q"
};

}  // namespace

void cut_at_window(Text<132>& text) {
  if (term.ncol(1) < 132) {
    text.put(std::max(term.ncol(1), 0) + 1, 132, "", "text");
  }
}

Answer ask(const Question& question, Scrd& tables, const ShowHelp& show_help) {
  return Menu(question, tables, show_help).run();
}

}  // namespace menu
