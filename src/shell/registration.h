// SPDX-License-Identifier: MIT
// Who this copy belongs to: a name and a code. Any name with any code is a registration; half of one is none.
#pragma once

#include <string>

#include "platform/dialog.h"

namespace glyphmotion {

struct Registration {
  std::string name, code;
};

/// Asks for both, starting from those given; OK is there once both have something. False, with nothing changed, when
/// cancelled.
bool AskRegistration(Dialog& owner, Registration& registration);

}  // namespace glyphmotion
