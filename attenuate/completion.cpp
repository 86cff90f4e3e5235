#include "attenuate/completion.h"

#include <string>

#include "attenuate/help.h"
#include "attenuate/subcommands.h"
#include "physics/data.h"
#include "physics/errors.h"

namespace attenuate {
namespace {

// Options, subcommands, materials and sources, separated by blanks. Names with
// blanks in them are known with hyphens as well.
std::string words() {
  std::string list;
  const auto add = [&list](std::string word) {
    for (char& c : word) {
      if (c == ' ') c = '-';
    }
    if (word.find_first_of("'\"()$`\\,/") == std::string::npos) {
      list += (list.empty() ? "" : " ") + word;
    }
  };
  for (const auto option : option_names()) add(std::string(option));
  for (const auto& entry : subcommands()) add(std::string(entry.name));
  for (const auto& source : physics::sources()) add(std::string(source.name));
  for (const auto& entry : physics::materials()) add(std::string(entry.name));
  return list;
}

// A branch of a case for each subcommand that has options.
std::string branches() {
  std::string text;
  for (const auto& entry : subcommands()) {
    if (entry.options.empty()) continue;
    text += "    " + std::string(entry.name) + ") own='" +
            std::string(entry.options) + "' ;;\n";
  }
  return text;
}

std::string bash() {
  return "_attenuate() {\n"
         "  local word=${COMP_WORDS[COMP_CWORD]} own=\n"
         "  local before=${COMP_WORDS[COMP_CWORD-1]}\n"
         "  case $before in\n"
         "    --batch|--spectrum|--svg)\n"
         "      COMPREPLY=($(compgen -f -- \"$word\")); return ;;\n"
         "    --data) COMPREPLY=($(compgen -d -- \"$word\")); return ;;\n"
         "    --rule) COMPREPLY=($(compgen -W 'pchip parabola' -- \"$word\"))\n"
         "      return ;;\n"
         "    --weight) COMPREPLY=($(compgen -W 'photons energy' -- "
         "\"$word\"))\n"
         "      return ;;\n"
         "  esac\n"
         "  case ${COMP_WORDS[1]} in\n" +
         branches() +
         "  esac\n"
         "  COMPREPLY=($(compgen -W '" +
         words() +
         " '\"$own\" -- \"$word\"))\n"
         "}\n"
         "complete -F _attenuate attenuate\n";
}

std::string zsh() {
  return "#compdef attenuate\n"
         "_attenuate() {\n"
         "  local own=\n"
         "  case ${words[CURRENT-1]} in\n"
         "    --batch|--spectrum|--svg) _files; return ;;\n"
         "    --data) _files -/; return ;;\n"
         "    --rule) compadd pchip parabola; return ;;\n"
         "    --weight) compadd photons energy; return ;;\n"
         "  esac\n"
         "  case ${words[2]} in\n" +
         branches() +
         "  esac\n"
         "  compadd -- " +
         words() +
         " ${=own}\n"
         "}\n"
         "compdef _attenuate attenuate\n";
}

std::string fish() {
  std::string own;
  for (const auto& entry : subcommands()) {
    if (entry.options.empty()) continue;
    own += "complete -c attenuate -n '__fish_seen_subcommand_from " +
           std::string(entry.name) + "' -a '" + std::string(entry.options) +
           "'\n";
  }
  return "complete -c attenuate -f -a '" + words() + "'\n" + own +
         "complete -c attenuate -l batch -r -F\n"
         "complete -c attenuate -l spectrum -r -F\n"
         "complete -c attenuate -l svg -r -F\n"
         "complete -c attenuate -l data -r -a '(__fish_complete_directories)'\n"
         "complete -c attenuate -l rule -x -a 'pchip parabola'\n"
         "complete -c attenuate -l weight -x -a 'photons energy'\n";
}

}  // namespace

int print_completion(std::span<const std::string_view> arguments,
                     Output& output) {
  const std::string_view shell =
      arguments.size() == 1 ? arguments[0] : std::string_view();
  if (shell == "bash") {
    output.text(bash());
  } else if (shell == "zsh") {
    output.text(zsh());
  } else if (shell == "fish") {
    output.text(fish());
  } else {
    throw physics::InputError("completion is for bash, zsh or fish", 1,
                              "attenuate completion bash");
  }
  return 0;
}

}  // namespace attenuate
