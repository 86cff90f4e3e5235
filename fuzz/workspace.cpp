#include "fuzz/workspace.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "base/fatal.h"
#include "base/unit.h"
#include "terminal/readaline.h"
#include "terminal/window.h"

// Readline drops what it holds when input ends in an incremental search.
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libreadline";
}

namespace fuzz {

void require(bool so) {
  if (!so) std::abort();
}

namespace {

// Sets the process up, once.
class Workspace {
 public:
  Workspace() {
    std::string path =
        std::filesystem::temp_directory_path() / "attenuation-fuzz-XXXXXX";
    require(mkdtemp(path.data()) != nullptr);
    std::filesystem::current_path(path);
    for (const char* file :
         {"elements.dat", "attenuation.coefficients", "dichte.dat"}) {
      std::filesystem::copy(std::string(DATA_DIR) + "/" + file, file);
    }
    // No viewer is found, and no settings of whoever runs this.
    setenv("PATH", "/nonexistent", 1);
    setenv("INPUTRC", "/dev/null", 1);
    setenv("ZOXUHEPATH", path.c_str(), 1);
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    require(dup2(nowhere, STDOUT_FILENO) >= 0);
    keys_ = memfd_create("keys", 0);
    require(dup2(keys_, STDIN_FILENO) >= 0);
  }

  void type(std::string_view keys) const {
    require(ftruncate(keys_, 0) == 0);
    require(pwrite(keys_, keys.data(), keys.size(), 0) ==
            static_cast<ssize_t>(keys.size()));
    lseek(STDIN_FILENO, 0, SEEK_SET);
    clearerr(stdin);
  }

 private:
  int keys_ = -1;
};

const Workspace& workspace() {
  static const Workspace here;
  return here;
}

}  // namespace

void provide(const char* file, std::string_view content) {
  workspace();
  std::ofstream(file, std::ios::binary) << content;
}

void run(std::string_view keys, const std::function<void()>& action) {
  workspace().type(keys);
  terminal::window(1);
  try {
    action();
  } catch (const base::FatalEnd&) {
  }
  for (const int number : {1, 2, 3}) base::unit(number).close();
  terminal::clearhist();
}

}  // namespace fuzz
