// SPDX-License-Identifier: MIT
#include "platform/text_run.h"

#include <mutex>

#include "platform/run_state.h"

namespace glyphmotion {

TextRun& CurrentTextRun() { return CurrentRun().Member<TextRun>(); }

void NoteMissing(char32_t character) {
  static std::mutex mutex;
  const std::lock_guard<std::mutex> lock(mutex);
  CurrentTextRun().missing.insert(character);
}

}  // namespace glyphmotion
