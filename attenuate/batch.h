// Lists of questions.

#ifndef ATTENUATE_BATCH_H_
#define ATTENUATE_BATCH_H_

#include <string>

#include "attenuate/output.h"
#include "attenuate/settings.h"

namespace attenuate {

// Answers every line of `file` ("-": standard input) as it would be typed;
// blank lines and those that begin with "#" are passed over. A line that is
// refused is named on standard error, the others are answered. Returns the exit
// status. The memory does not grow with the list.
// Throws physics::InputError: the file cannot be read.
int answer_batch(const std::string& file, const Settings& settings,
                 Output& output);

}  // namespace attenuate

#endif  // ATTENUATE_BATCH_H_
