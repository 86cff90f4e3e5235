#include <iostream>

#include "attenuation/dialogue.h"
#include "base/fatal.h"
#include "terminal/show.h"

int main(int argc, char** /*argv*/) {
  if (argc > 1) {
    std::cerr << "attenuation takes no arguments: it asks for what it needs\n";
    return base::kFatalStatus;
  }
  return base::run(attenuation::dialogue, terminal::begin_report);
}
