#include "attenuate/help.h"

#include <array>

#include "attenuate/subcommands.h"

namespace attenuate {
namespace {

constexpr std::array<std::string_view, 19> kOptions = {
    "--tsv",      "--csv",   "--json",    "--jsonl",    "--batch",
    "--digits",   "--mu-en", "--explain", "--strict",   "--rule",
    "--weight",   "--data",  "--help",    "--help-all", "--version",
    "--spectrum", "--plot",  "--svg",     "--beside"};

constexpr char kHelp[] =
    R"(attenuate: how much of a photon beam passes, in one line

  attenuate Fe 25um 14.41                    one energy, in keV
  attenuate Fe 25um 57Co                     every line of a source, and the sum
  attenuate Pb 661.7                         coefficients, half and tenth value
  attenuate kapton 50um + air 10cm + Fe 25um 5:30:0.5      layers, a range
  attenuate kapton 50um + Fe T=0.3 14.41     how thick for a transmission
  attenuate 'Fe2O3@5.24' 30mg/d13mm 14.41    density; mass on a disc
  attenuate '10% Fe2O3 // sucrose' mux=2 14.41             a mixture by weight

material    formula, name in small letters, mixture with //; @density in g/cm3
thickness   nm um mm cm m mil in, ug/cm2 mg/cm2 g/cm2 kg/m2, 30mg/1.33cm2
energy      keV, eV, MeV; 5,6,7  5:30:0.5  5:30:100log  57Co  Fe:K+50eV

--tsv --csv --json --jsonl    for programs      --batch FILE   a question a line
--explain   the sum by hand                     --mu-en        mu_en/rho too
--digits N  significant digits (6)              --strict       notes are errors
--plot  --svg FILE  figures            --spectrum FILE  in place of energies

attenuate absorber|xafs|capillary --help              how much of a sample
attenuate materials|sources|edges|elements [TEXT]     what is known
attenuate --help-all                                  everything else
)";

constexpr char kMore[] = R"(
More options
  --batch FILE         answer every line of FILE ("-": standard input) as it
                       would be typed; a line that is refused is named, the
                       others are answered, and the status is 1
  --rule pchip         monotone cubic on logarithms (default)
  --rule parabola      the rule of the dialogue, in single precision
  --weight photons     a source sums its lines by photons (default)
  --weight energy      by photons times energy, as the answer then says
  --data DIR           tables and densities of a directory of one's own
  --strict             refuse what is answered with a note
  --explain            mass fractions, coefficients, mu and exponent (text only)
  --digits N           1 to 17 significant digits
  --spectrum FILE      two columns, keV and photons, in place of energies
  --plot               a figure in the terminal: mu/rho or transmission over the
                       energy, transmission over the thickness for single ones
  --svg FILE           the same as a file ("-": standard output)
  --beside 'Pb 10um'   another material in the figure; again for more
  --version            version of program and tables

Words
  + between layers, in the order of the beam
  T=0.3, T=30%, mux=2  in place of one thickness: it is the answer
  60% Fe // Ni         by weight; the rest without its percentage
  at% vol% mg g mL     other parts of mixtures
  30mg/d13mm           30 mg on a disc of 13 mm; 30mg/1.33cm2 on an area
  5:30:100log          100 energies, evenly on the logarithm
  57Co, CuKa           all lines of a source, and their weighted sum
  Fe:K+50eV            50 eV above the K edge of iron

Status: 0 answered; 1 some lines of a batch refused; 2 usage, input or output.
NO_COLOR in the environment keeps messages plain.
)";

}  // namespace

std::string help() { return kHelp; }

std::string help_all() {
  std::string text = kHelp;
  text += kMore;
  text += "\nInstead of a question\n";
  for (const auto& entry : subcommands()) {
    std::string usage =
        "  " + std::string(entry.name) + " " + std::string(entry.usage);
    usage.resize(usage.size() < 23 ? 23 : usage.size() + 1, ' ');
    text += usage + std::string(entry.summary) + "\n";
  }
  return text;
}

std::string version(const Settings& settings) {
  return std::string(kProgram) + "\n" + std::string(settings.data->version()) +
         "\n";
}

std::span<const std::string_view> option_names() { return kOptions; }

}  // namespace attenuate
