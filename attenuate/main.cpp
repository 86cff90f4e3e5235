// attenuate: the question in one line, the answer in one line. It never asks
// anything.

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <exception>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "attenuate/answer.h"
#include "attenuate/batch.h"
#include "attenuate/complaint.h"
#include "attenuate/figures.h"
#include "attenuate/help.h"
#include "attenuate/options.h"
#include "attenuate/output.h"
#include "attenuate/spectrum.h"
#include "attenuate/subcommands.h"
#include "attenuate/words.h"
#include "attenuate/writers.h"
#include "base/fatal.h"

namespace attenuate {
namespace {

using Arguments = std::span<const std::string_view>;

std::string joined(Arguments words) {
  std::string text;
  for (const auto word : words) {
    if (!text.empty()) text += ' ';
    text += word;
  }
  return text;
}

int refused(const physics::InputError& error, std::string_view typed) {
  complain(complaint(error, typed));
  return kRefused;
}

int answer_question(const Request& request, Output& output) {
  Question question;
  try {
    if (request.draws()) {
      const bool drawn = draw_question(request, question, output);
      // A figure does without energies, an answer does not.
      if (drawn || question.beams.empty()) return 0;
    }
    Reader(*request.settings.data).read(request.words, question);
    const auto writer = writer_for(output, request.settings, Shape::kSingle);
    Answerer(request.settings).answer(question, *writer);
    writer->finish();
    return 0;
  } catch (const physics::InputError& error) {
    return refused(error, question.typed);
  }
}

std::string told(const Request& request) {
  switch (request.told) {
    case Told::kHelp:
      return help();
    case Told::kHelpAll:
      return help_all();
    default:
      return version(request.settings);
  }
}

constexpr std::array<std::string_view, 8> kOfSpectrum = {
    "--spectrum", "--plot", "--svg",    "--digits",
    "--strict",   "--rule", "--weight", "--data"};

int answer_request(Arguments arguments, Output& output) {
  const Request request = read_options(arguments);
  if (request.told != Told::kNothing) {
    output.text(told(request));
    return 0;
  }
  if (request.batch && (request.draws() || request.spectrum)) {
    throw physics::InputError("--batch draws nothing and takes no spectrum", 0);
  }
  if (!request.beside.empty() && !request.draws()) {
    throw physics::InputError("--beside adds to a figure", 0,
                              "with --plot or --svg FILE");
  }
  if (request.spectrum) {
    refuse_unused(request, kOfSpectrum, "--spectrum");
    return answer_spectrum(request, output);
  }
  if (!request.batch) return answer_question(request, output);
  if (request.words.empty()) {
    return answer_batch(*request.batch, request.settings, output);
  }
  throw physics::InputError("--batch takes its questions from the file alone",
                            0);
}

// Options in front of a subcommand are its options.
void put_subcommand_first(std::vector<std::string_view>& arguments) {
  const std::size_t i = leading_options(arguments);
  if (i == arguments.size() || subcommand(arguments[i]) == nullptr) return;
  const auto at = arguments.begin() + static_cast<std::ptrdiff_t>(i);
  std::rotate(arguments.begin(), at, at + 1);
}

int run(std::vector<std::string_view> words) {
  Output output(STDOUT_FILENO);
  put_subcommand_first(words);
  const Arguments arguments(words);
  try {
    const Subcommand* entry =
        arguments.empty() ? nullptr : subcommand(arguments[0]);
    const int status = entry == nullptr
                           ? answer_request(arguments, output)
                           : entry->run(arguments.subspan(1), output);
    output.flush();
    return status;
  } catch (const physics::InputError& error) {
    return refused(error, error.column() > 0 ? joined(arguments) : "");
  } catch (const WriteError& error) {
    complain(std::string("error: ") + error.what() + "\n");
  } catch (const base::FatalEnd& end) {
    complain(end.report());
  } catch (const std::exception& error) {
    complain(std::string("error: ") + error.what() + "\n");
  }
  return kRefused;
}

}  // namespace
}  // namespace attenuate

int main(int argc, char** argv) {
  return attenuate::run({argv + 1, argv + argc});
}
