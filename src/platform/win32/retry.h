// SPDX-License-Identifier: MIT
// For resources that other programs hold for a moment: scanners and indexers open a new file, clipboard histories the
// clipboard.
#pragma once

#include "platform/win32/windows_headers.h"

namespace glyphmotion {

/// Calls `attempt` until it returns true, for at most half a second. False when it never did.
template <typename Attempt>
bool RetryBriefly(const Attempt& attempt) {
  constexpr int kTries = 50;
  constexpr DWORD kPause = 10;  // milliseconds
  for (int i = 0; i < kTries; ++i, Sleep(kPause)) {
    if (attempt()) return true;
  }
  return false;
}

}  // namespace glyphmotion
