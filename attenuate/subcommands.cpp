#include "attenuate/subcommands.h"

#include <algorithm>
#include <array>

#include "attenuate/completion.h"
#include "attenuate/lists.h"
#include "attenuate/planners.h"

namespace attenuate {
namespace {

constexpr std::array kSubcommands = {
    Subcommand{"absorber", "MATERIAL", "best thickness for Moessbauer lines",
               plan_absorber,
               "--isotope --f --lines --background --enriched --alpha --disc"},
    Subcommand{"xafs", "MATERIAL", "how much powder shows an edge best",
               plan_xafs, "--edge --mux --diluent --disc"},
    Subcommand{"capillary", "MATERIAL", "mu R of a powder, and what passes",
               plan_capillary, "--diameter --packing"},
    Subcommand{"materials", "[TEXT]", "named materials that contain TEXT",
               list_materials},
    Subcommand{"sources", "[TEXT]", "line sources, and their lines",
               list_sources},
    Subcommand{"edges", "[ELEMENT]", "absorption edges", list_edges},
    Subcommand{"elements", "[TEXT]", "elements with weight and density",
               list_elements},
    Subcommand{"completion", "SHELL", "words for bash, zsh or fish to complete",
               print_completion},
};

}  // namespace

std::span<const Subcommand> subcommands() { return kSubcommands; }

const Subcommand* subcommand(std::string_view word) {
  const auto* found =
      std::find_if(kSubcommands.begin(), kSubcommands.end(),
                   [word](const auto& entry) { return entry.name == word; });
  return found == kSubcommands.end() ? nullptr : found;
}

}  // namespace attenuate
