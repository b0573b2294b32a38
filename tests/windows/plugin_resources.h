// SPDX-License-Identifier: MIT
// The system resources that this process holds.
#pragma once

#include <windows.h>

namespace glyphmotion::test {

/// Counts of what is alive, and of the Statics that were ever made.
struct Resources {
  SIZE_T drawing = 0, windows = 0, menus = 0, handles = 0;
  SIZE_T blocks = 0;         ///< of all heaps, but for those as large as what a Static of Wine's loses
  SIZE_T staticsBlocks = 0;  ///< of that size
  SIZE_T staticsMade = 0;    ///< during the lifetime of a StaticsCount
};

/// Counts the Statics that this thread creates during its lifetime.
class StaticsCount {
 public:
  StaticsCount();
  StaticsCount(const StaticsCount&) = delete;
  StaticsCount& operator=(const StaticsCount&) = delete;
  ~StaticsCount();

 private:
  HHOOK hook_;
};

/// What the host has received is let go first, so that it does not count.
Resources CountResources();
void ReportResources(int dialogs, const Resources& before, const Resources& after);
/// Nothing but blocks of Statics, one for each that was made, may have come.
void ExpectNothingLeft(const Resources& before, const Resources& after);

}  // namespace glyphmotion::test
