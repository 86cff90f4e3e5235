// The main dialogue.

#ifndef ATTENUATION_DIALOGUE_H_
#define ATTENUATION_DIALOGUE_H_

namespace attenuation {

// One run of the program: banner, element list, sample menu, set-up of the
// sample, thickness loop. Reads its data files from the current directory.
// Fatal: a data file is missing or faulty; end of input.
void dialogue();

}  // namespace attenuation

#endif  // ATTENUATION_DIALOGUE_H_
