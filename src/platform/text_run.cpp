// SPDX-License-Identifier: MIT
#include "platform/text_run.h"

#include <mutex>

#include "platform/run_state.h"

namespace glyphmotion {
namespace {

// Guards the missing characters, which any thread of the run may note.
struct MissingLock {
  std::mutex mutex;
};

}  // namespace

TextRun& CurrentTextRun() { return CurrentRun().Member<TextRun>(); }

void NoteMissing(char32_t character) {
  const std::lock_guard lock(CurrentRun().Member<MissingLock>().mutex);
  CurrentTextRun().missing.insert(character);
}

}  // namespace glyphmotion
