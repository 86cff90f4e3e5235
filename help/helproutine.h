// The help file browser.

#ifndef HELP_HELPROUTINE_H_
#define HELP_HELPROUTINE_H_

#include "base/text.h"

namespace help {

// Shows the entry for `chcom` (a key with its leading "/") of the file
// `helpfile` page by page, then its related entries as a menu, up to four
// levels deep. A key that ends in "*" lists the headers that begin with it.
// The caller's query tables are as before on return. A file that cannot be
// opened shows nothing but the closing line.
// Fatal: end of input; more than 32 related entries.
void helproutine(const base::Text<132>& chcom, const base::Text<132>& helpfile);

}  // namespace help

#endif  // HELP_HELPROUTINE_H_
