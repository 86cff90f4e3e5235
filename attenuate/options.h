// The options of the command.

#ifndef ATTENUATE_OPTIONS_H_
#define ATTENUATE_OPTIONS_H_

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "attenuate/settings.h"
#include "physics/data.h"

namespace attenuate {

enum class Told { kNothing, kHelp, kHelpAll, kVersion };

// A command line, taken apart.
struct Request {
  Settings settings;
  std::vector<std::string_view> words;  // what is no option
  std::optional<std::string> batch;     // file of questions, "-" for input
  Told told = Told::kNothing;           // instead of an answer
  std::optional<std::string> spectrum;  // file in place of energies, or "-"
  bool plot = false;                    // a figure in place of text
  std::optional<std::string> svg;       // file of a figure, or "-"
  std::vector<std::string> beside;      // questions with the same energies
  std::vector<std::string> given;       // names of the options, not its own
  // What settings.data points to, where that is not built in.
  std::unique_ptr<const physics::Data> own_data;

  bool draws() const { return plot || svg.has_value(); }
};

// An option of a subcommand, and where its value goes.
struct OwnOption {
  const char* name;  // "--edge"
  std::string* value;
};

// `arguments` outlive the request. Throws physics::InputError: an option that
// is unknown or wrong; data that cannot be read.
Request read_options(std::span<const std::string_view> arguments,
                     std::span<const OwnOption> own = {});

// Throws physics::InputError: an option is given that is not one of `used`,
// formats and what tells of the program.
// who  whom it means nothing to: "a list"
void refuse_unused(const Request& request,
                   std::span<const std::string_view> used,
                   const std::string& who);

// How many of the arguments are options, with their values, in front of the
// first word. Options that are not everybody's count as words.
std::size_t leading_options(std::span<const std::string_view> arguments);

}  // namespace attenuate

#endif  // ATTENUATE_OPTIONS_H_
