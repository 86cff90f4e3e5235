#include "base/unit.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "base/descriptor.h"
#include "base/fatal.h"
#include "base/writer.h"

namespace base {
namespace {

std::string working_directory() {
  std::array<char, 4096> path{};
  return getcwd(path.data(), path.size()) != nullptr ? path.data() : ".";
}

std::string where_looked(const std::string& file) {
  if (file.starts_with('/')) return {};
  return "looked in " + working_directory() +
         ": start the program in the directory that holds its data files";
}

}  // namespace

Unit::Unit(int number, int fd) : number_(number), fd_(fd), byte_reader_(fd) {}

Unit::~Unit() { close(); }

void Unit::open(std::string_view file, SourcePosition at) {
  if (try_open(file)) return;
  const int error = errno;
  throw FatalEnd("Cannot open file '" + file_ + "': " + std::strerror(error),
                 where_looked(file_), at);
}

bool Unit::try_open(std::string_view file) {
  close();
  file_ = trimmed(file);
  fd_ = open_regular(file_);
  file_reader_.start(fd_, file_);
  return fd_ >= 0;
}

void Unit::create(std::string_view file, SourcePosition at) {
  close();
  file_ = trimmed(file);
  fd_ = ::open(file_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  if (fd_ < 0) {
    throw FatalEnd("Cannot write file '" + file_ + "': " + std::strerror(errno),
                   {}, at);
  }
}

void Unit::rewind() {
  lseek(fd_, 0, SEEK_SET);
  file_reader_.start(fd_, file_);
}

void Unit::close() {
  if (permanent() || fd_ < 0) return;
  ::close(fd_);
  fd_ = -1;
  file_reader_.start(fd_, {});
}

std::optional<std::string_view> Unit::next() {
  return number_ == kTerminalInput ? byte_reader_.next() : file_reader_.next();
}

ByteReader& Unit::bytes() {
  if (number_ != kTerminalInput) {
    throw RangeError("Single bytes of unit " + std::to_string(number_));
  }
  return byte_reader_;
}

void Unit::write(std::string_view record) {
  Writer(fd_, number_ == kTerminalOutput ? "standard output"
                                         : "file '" + file_ + "'")
      .write(record);
}

void Unit::end_of_file(SourcePosition at) const {
  if (permanent()) throw EndOfFile("end of input", {}, at);
  std::string advice = "the file is shorter than it should be";
  if (const std::string where = where_looked(file_); !where.empty()) {
    advice += " (" + where + ")";
  }
  throw EndOfFile("End of file in '" + file_ + "'", std::move(advice), at);
}

Unit& unit(int number) {
  static std::array<Unit, 6> units{Unit(1),
                                   Unit(2),
                                   Unit(3),
                                   Unit(kTerminalInput, STDIN_FILENO),
                                   Unit(kTerminalOutput, STDOUT_FILENO),
                                   Unit(kScriptUnit)};
  switch (number) {
    case 1:
    case 2:
    case 3:
      return units[static_cast<std::size_t>(number - 1)];
    case kTerminalInput:
      return units[3];
    case kTerminalOutput:
      return units[4];
    case kScriptUnit:
      return units[5];
    default:
      throw RangeError("No file unit has the number " + std::to_string(number));
  }
}

}  // namespace base
