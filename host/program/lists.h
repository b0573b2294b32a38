// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "host/options/arguments.h"

namespace glyphmotion {

/// Prints one of the lists of --list to standard output. Returns an empty text, or one sentence when there is nothing
/// to list.
std::string PrintList(ListKind kind, const Catalogue& catalogue);

}  // namespace glyphmotion
