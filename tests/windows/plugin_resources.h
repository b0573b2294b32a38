// SPDX-License-Identifier: MIT
// What this process holds of the system's.
#pragma once

#include <windows.h>

namespace glyphmotion::test {

struct Resources {
  DWORD drawing = 0, windows = 0;
  SIZE_T blocks = 0;
};

Resources CountResources();
void ReportResources(int dialogs, const Resources& before, const Resources& after);

}  // namespace glyphmotion::test
