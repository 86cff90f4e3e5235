// What the environment says about paths and tools.

#ifndef HELP_INFOPATH_H_
#define HELP_INFOPATH_H_

#include "base/text.h"

namespace help {

// The help path block. The members are filled with zero bytes at the start of
// a run, and a value read into one is not padded: its first zero byte ends it.
// A value as wide as its member has no end at all.
struct Path {
  Path();

  base::Text<80> hepath;    // ZOXUHEPATH, directory of help files, documents
  base::Text<80> utpath;    // ZOXUUTPATH, directory of utility data files
  base::Text<80> term;      // TERM
  base::Text<80> editor;    // EDITOR
  base::Text<80> shell;     // SHELL
  base::Text<80> colfile;   // COLORFILE
  base::Text<132> workdir;  // PWD
};

extern Path path;

// Reads the environment into `path`. Values are cut at the width of their
// member; an empty value writes one zero byte; an unset variable leaves its
// member as it was.
void infopath();

}  // namespace help

#endif  // HELP_INFOPATH_H_
