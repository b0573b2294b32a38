// SPDX-License-Identifier: MIT
#include "controls/read_controls.h"

#include <algorithm>

#include "platform/memory.h"

namespace glyphmotion {

int ReadNumber(const Dialog& dialog, int id) {
  const ControlRange range = RangeOf(dialog, id + kUpDownOffset);
  const std::int64_t value = GetNumber(dialog, id, range.minimum < 0);
  return static_cast<int>(std::clamp<std::int64_t>(value, range.minimum, range.maximum));
}

void ShowReadNumber(Dialog& dialog, int id) {
  const std::string used = std::to_string(ReadNumber(dialog, id));
  if (GetText(dialog, id) != used) SetText(dialog, id, used);
}

bool ReadCheck(const Dialog& dialog, int id) { return GetCheck(dialog, id); }

Colour ReadColour(const Dialog& dialog, int id) { return static_cast<Colour>(GetNumber(dialog, id, false)); }

int ReadSelection(const Dialog& dialog, int id) { return GetSelection(dialog, id); }

int ReadDirection(const Dialog& dialog, int id) {
  const LockedBlock<std::int32_t> index(HandleOf(GetData(dialog, id)));
  return index ? *index : 0;
}

std::string ReadText(const Dialog& dialog, int id) { return GetText(dialog, id); }

}  // namespace glyphmotion
