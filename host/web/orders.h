// SPDX-License-Identifier: MIT
// Orders of a page's work as messages from the worker of the dialog to that of the work.
#pragma once

#include "host/page/page_work.h"

namespace glyphmotion {

Json JsonOf(const BuildOrder& order);
Json JsonOf(const PictureWish& wish);
Json JsonOf(const ExportOrder& order);

/// Does what JsonOf has written, once; anything else is ignored.
void Perform(const WorkPlace& place, const Json& order);

}  // namespace glyphmotion
