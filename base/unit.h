// File units: numbered channels that read and write records.
//
// Records are read into fixed-length fields: longer lines are cut, shorter ones
// padded with blanks.
//
//   1   element list, coefficient file       5   standard input
//   2   density file, details files          6   standard output
//   3   help file                            10  script of the prompts

#ifndef BASE_UNIT_H_
#define BASE_UNIT_H_

#include <optional>
#include <string>
#include <string_view>

#include "base/reader.h"
#include "base/source_position.h"
#include "base/text.h"

namespace base {

inline constexpr int kTerminalInput = 5;
inline constexpr int kTerminalOutput = 6;
inline constexpr int kScriptUnit = 10;

class Unit {
 public:
  // number  the unit's number, for messages
  // fd      descriptor of a channel that is open for the whole run, or -1
  explicit Unit(int number, int fd = -1);
  ~Unit();
  Unit(const Unit&) = delete;
  Unit& operator=(const Unit&) = delete;

  // Opens `file` for reading from its start. Trailing blanks are no part of
  // the name. Fatal: no such regular file, or no permission.
  void open(std::string_view file,
            SourcePosition at = SourcePosition::current());
  // The same, but tells instead of ending the run when it cannot be opened.
  [[nodiscard]] bool try_open(std::string_view file);
  // Creates or empties `file` for writing. Fatal: it cannot be written.
  void create(std::string_view file,
              SourcePosition at = SourcePosition::current());
  // Goes back to the start of a file that is read.
  void rewind();
  // Does nothing to a closed unit, nor to 5 and 6.
  void close();

  // Reads the next record; false at the end of the file.
  template <int N>
  [[nodiscard]] bool try_read(Text<N>& record) {
    const std::optional<std::string_view> line = next();
    if (!line) return false;
    record = *line;
    return true;
  }
  // Reads a record that must be there. Fatal (EndOfFile): the file ends first.
  template <int N>
  void read(Text<N>& record, SourcePosition at = SourcePosition::current()) {
    if (!try_read(record)) end_of_file(at);
  }

  // Reads to the first record that has `text`, which ends in no blank, from
  // column `column` on, into `record`; the same as reading one record after the
  // other, but fast. Fatal (EndOfFile): there is none.
  template <int N>
  void read_to(int column, std::string_view text, Text<N>& record,
               SourcePosition at = SourcePosition::current()) {
    do {
      file_reader_.skip_to(column, text);
      read(record, at);
    } while (!std::string_view(record.full())
                  .substr(static_cast<std::size_t>(column - 1))
                  .starts_with(text));
  }

  // The bytes of standard input. Of unit 5 only: of a file it would skip what
  // was read ahead.
  ByteReader& bytes();

  // Writes one record, its line end included, in a single call. Fatal: it
  // cannot be written.
  void write(std::string_view record);

  // Fatal (EndOfFile), always: "end of input", or the file and where it was
  // looked for.
  [[noreturn]] void end_of_file(
      SourcePosition at = SourcePosition::current()) const;

 private:
  // The next line without its end, valid until the next read; nothing at the
  // end of the file.
  std::optional<std::string_view> next();
  bool permanent() const {
    return number_ == kTerminalInput || number_ == kTerminalOutput;
  }

  int number_;
  int fd_;
  std::string file_;
  FileReader file_reader_;
  ByteReader byte_reader_;
};

// The unit of that number: 1, 2, 3, 5, 6 or 10. A range error for any other.
Unit& unit(int number);

// Closes a unit at the end of a scope, however the scope is left.
class UnitCloser {
 public:
  explicit UnitCloser(Unit& unit) : unit_(unit) {}
  ~UnitCloser() { unit_.close(); }
  UnitCloser(const UnitCloser&) = delete;
  UnitCloser& operator=(const UnitCloser&) = delete;

 private:
  Unit& unit_;
};

}  // namespace base

#endif  // BASE_UNIT_H_
