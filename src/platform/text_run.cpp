// SPDX-License-Identifier: MIT
#include "platform/text_run.h"

#include <mutex>

namespace glyphmotion {

TextRun& CurrentTextRun() noexcept {
  static TextRun run;
  return run;
}

void NoteMissing(char32_t character) {
  static std::mutex mutex;
  const std::lock_guard<std::mutex> lock(mutex);
  CurrentTextRun().missing.insert(character);
}

}  // namespace glyphmotion
