// The external document viewer.

#ifndef HELP_VIEWDVI_H_
#define HELP_VIEWDVI_H_

namespace help {

// Starts the viewer "xdvi" through the system shell. `command` is the zero-
// terminated rest of its command line; it is shown to the user first. What the
// viewer says is between the user and the viewer. A command line of more than
// 143 characters is refused with a message.
void viewdvi(const char* command);

// Whether there are the viewer and a display for it.
bool can_view();

}  // namespace help

#endif  // HELP_VIEWDVI_H_
