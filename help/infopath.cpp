#include "help/infopath.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>

namespace help {
namespace {

template <int N>
void clear(base::Text<N>& member) {
  member = std::string(N, '\0');
}

template <int N>
void read_variable(const char* name, base::Text<N>& member) {
  const char* const set = std::getenv(name);
  if (set == nullptr) return;
  std::string_view value = set;
  if (value.empty()) value = {"\0", 1};
  member.put(1, static_cast<int>(std::min<std::size_t>(value.size(), N)), value,
             name);
}

}  // namespace

Path path;

Path::Path() {
  clear(hepath);
  clear(utpath);
  clear(term);
  clear(editor);
  clear(shell);
  clear(colfile);
  clear(workdir);
}

void infopath() {
  read_variable("ZOXUHEPATH", path.hepath);
  read_variable("ZOXUUTPATH", path.utpath);
  read_variable("TERM", path.term);
  read_variable("EDITOR", path.editor);
  read_variable("SHELL", path.shell);
  read_variable("COLORFILE", path.colfile);
  read_variable("PWD", path.workdir);
}

}  // namespace help
