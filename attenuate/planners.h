// The planners: how much of a sample, in which capillary.

#ifndef ATTENUATE_PLANNERS_H_
#define ATTENUATE_PLANNERS_H_

#include <span>
#include <string_view>

#include "attenuate/output.h"

namespace attenuate {

// Each takes the arguments behind its name and returns the exit status.
int plan_absorber(std::span<const std::string_view> arguments, Output& output);
int plan_xafs(std::span<const std::string_view> arguments, Output& output);
int plan_capillary(std::span<const std::string_view> arguments, Output& output);

}  // namespace attenuate

#endif  // ATTENUATE_PLANNERS_H_
