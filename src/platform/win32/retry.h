// SPDX-License-Identifier: MIT
// What another program holds for a moment: scanners and indexers a file that was just written, histories the clipboard.
#pragma once

#include "platform/win32/windows_headers.h"

namespace glyphmotion {

/// Tries until `attempt` gives true, for half a second at most. False when it never did.
template <typename Attempt>
bool InTime(const Attempt& attempt) {
  constexpr int kTries = 50;
  constexpr DWORD kPause = 10;  // milliseconds
  for (int i = 0; i < kTries; ++i, Sleep(kPause)) {
    if (attempt()) return true;
  }
  return false;
}

}  // namespace glyphmotion
