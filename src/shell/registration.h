// SPDX-License-Identifier: MIT
// The registration of this copy: a name and a code. Any name with any code is a registration; one without the other is
// not.
#pragma once

#include <string>

#include "platform/dialog.h"

namespace glyphmotion {

struct Registration {
  std::string name, code;
};

/// Prompts for both, starting from those given; OK is enabled once neither is empty. False, with nothing changed, when
/// cancelled.
bool AskRegistration(Dialog& owner, Registration& registration);

}  // namespace glyphmotion
