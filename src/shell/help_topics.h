// SPDX-License-Identifier: MIT
// Which part of the help page explains a control of the main dialog.
#pragma once

#include <string>

#include "platform/dialog.h"

namespace glyphmotion {

/// The anchor of the control's part in the help page; that of its beginning for 0.
std::string HelpTopicOf(const Dialog& dialog, int id);

}  // namespace glyphmotion
