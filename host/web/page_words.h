// SPDX-License-Identifier: MIT
// Words of the command line for a page, which writes them itself: no abbreviations, no values after "=".
#pragma once

#include <string>
#include <vector>

#include "host/page/page_services.h"

namespace glyphmotion {

PageServices ServicesOfWords();

}  // namespace glyphmotion
