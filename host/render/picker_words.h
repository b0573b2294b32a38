// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "resources/templates.h"

namespace glyphmotion {

/// What people call a picker's cells, in the order of their indices; empty for other kinds of controls.
std::vector<std::string> PickerWords(ControlKind kind);

}  // namespace glyphmotion
