// What the options say.

#ifndef ATTENUATE_SETTINGS_H_
#define ATTENUATE_SETTINGS_H_

#include "physics/data.h"
#include "physics/layers.h"
#include "physics/material.h"

namespace attenuate {

inline constexpr char kProgram[] = "attenuate " ATTENUATE_VERSION;

enum class Format { kText, kTsv, kCsv, kJson, kJsonLines };

struct Settings {
  Format format = Format::kText;
  physics::Rule rule = physics::Rule::kPchip;
  physics::Weighting weighting = physics::Weighting::kPhotons;
  int digits = 6;
  bool own_digits = false;         // --digits is given
  bool energy_absorption = false;  // mu_en/rho too
  bool strict = false;             // notes are errors
  bool explain = false;
  const physics::Data* data = &physics::builtin();

  // What a person reads of a number that is a plan, not a measurement, unless
  // more or fewer digits are wanted.
  int plan_digits(int usual = 4) const { return own_digits ? digits : usual; }
  bool by_energy() const { return weighting == physics::Weighting::kEnergy; }
};

}  // namespace attenuate

#endif  // ATTENUATE_SETTINGS_H_
