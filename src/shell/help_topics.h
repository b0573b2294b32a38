// SPDX-License-Identifier: MIT
// Maps controls of the main dialog to sections of the help page.
#pragma once

#include <string>

#include "platform/dialog.h"

namespace glyphmotion {

/// The anchor of the control's section in the help page; for 0, that of its start.
std::string HelpTopicOf(const Dialog& dialog, int id);

}  // namespace glyphmotion
