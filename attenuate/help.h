// What the command says of itself.

#ifndef ATTENUATE_HELP_H_
#define ATTENUATE_HELP_H_

#include <span>
#include <string>
#include <string_view>

#include "attenuate/settings.h"

namespace attenuate {

std::string help();                             // fits a screen of 24 lines
std::string help_all();                         // everything
std::string version(const Settings& settings);  // of program and tables

// "--csv", ...
std::span<const std::string_view> option_names();

}  // namespace attenuate

#endif  // ATTENUATE_HELP_H_
