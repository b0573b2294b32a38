// SPDX-License-Identifier: MIT
#include "host/program/edit.h"

namespace glyphmotion {

// main() has passed this command on.
bool IsEdit(const std::vector<std::string>&) { return false; }
std::string Edit(const std::vector<std::string>&, const std::function<bool()>&, bool&) { return {}; }

}  // namespace glyphmotion
