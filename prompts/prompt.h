// What the three prompts have in common.
//
// A prompt writes its question on one line and reads the answer on the next. It
// then goes up again, so that the next prompt overwrites the answer.

#ifndef PROMPTS_PROMPT_H_
#define PROMPTS_PROMPT_H_

#include <optional>
#include <string_view>

#include "base/text.h"

namespace toolkit {

// How a prompt gets and keeps its answers. The flag stands in column 132 of
// the question.
enum class Mode {
  kInteractive,
  kReplay,  // "r": answers come from the script on unit 10
  kRecord,  // "w": answers also go to the script on unit 10
};

// Takes the flag out of the question.
Mode take_mode(base::Line& querytype);

// Moves the cursor from below the answer to the answer's line.
void go_to_answer(int nwr);

// Erases question and answer, each with `width` blanks, with the cursor on the
// answer's line, and leaves it on the question's.
void erase_prompt(int width, int nwr);

// What a replayed prompt shows where the script ends. Whoever watches for these
// lines knows them so, "sript" and the "1" of a yes/no prompt included.
inline constexpr std::string_view kEndOfScript =
    " end of sript file: switch to interactive mode";
inline constexpr std::string_view kEndOfScriptAtYesNo =
    "1end of sript file: switch to interactive mode";

// The script's next record. At its end writes `message` on unit `nwr`; nothing.
std::optional<base::Line> replayed(std::string_view message, int nwr);

// Shows that there is no script to go back in, and the page about it.
// `question`, the text that was shown, comes back into its columns. Behind it
// the tail of the page's key stays, as the key was looked up in the question's
// own field; it is not shown.
void refuse_back(base::Line& querytype, std::string_view question, int nwr);

// Shows the page of the key `chcom`, and in record mode the page about scripts
// too, with the same effect on the question.
void show_help(base::Line& querytype, std::string_view question,
               const base::Line& chcom, Mode mode);

}  // namespace toolkit

#endif  // PROMPTS_PROMPT_H_
