// SPDX-License-Identifier: MIT
// The calls of the public C header for hosts off Windows: blocks, and a driver that plays the user.
#include <algorithm>
#include <cstring>

#include "glyphmotion/host_contract.h"
#include "platform/dialog_driver.h"
#include "platform/memory.h"
#include "platform/run_state.h"

namespace {

using glyphmotion::Dialog;

glyphmotion::BlockHandle HandleOf(std::uint64_t value) {
  return reinterpret_cast<glyphmotion::BlockHandle>(static_cast<std::uintptr_t>(value));
}
Dialog& DialogOf(GlyphmotionDialog* dialog) { return *reinterpret_cast<Dialog*>(dialog); }

/// A user action for a C caller: exceptions are caught and count as failure.
template <typename Action>
int Done(GlyphmotionDialog* dialog, Action action) noexcept {
  if (!dialog) return 0;
  try {
    return action(DialogOf(dialog));
  } catch (...) {
    return 0;
  }
}

}  // namespace

extern "C" {

void* GlyphmotionLockBlock(uint64_t handle) { return glyphmotion::LockBlock(HandleOf(handle)); }
void GlyphmotionUnlockBlock(uint64_t handle) { glyphmotion::UnlockBlock(HandleOf(handle)); }
size_t GlyphmotionBlockSize(uint64_t handle) { return glyphmotion::BlockSize(HandleOf(handle)); }
uint64_t GlyphmotionAllocateBlock(size_t bytes) {
  return reinterpret_cast<std::uintptr_t>(glyphmotion::AllocateBlock(bytes));
}

void GlyphmotionLiveBlocks(uint64_t* blocks, uint64_t* locks) {
  const glyphmotion::BlockCounters live = glyphmotion::LiveBlocks();
  if (blocks) *blocks = live.blocks;
  if (locks) *locks = live.locks;
}

void GlyphmotionSetDriver(GlyphmotionDriver driver, void* context) {
  const glyphmotion::RunScope outsideOfRuns(glyphmotion::ThreadState());
  if (!driver) {
    glyphmotion::SetModalDriver({});
    return;
  }
  glyphmotion::SetModalDriver(
      [driver, context](Dialog& dialog, int) { driver(reinterpret_cast<GlyphmotionDialog*>(&dialog), context); });
}

int GlyphmotionSetText(GlyphmotionDialog* dialog, int id, const char* text) {
  return Done(dialog, [&](Dialog& in) { return text && glyphmotion::Type(in, id, text); });
}

int GlyphmotionSetNumber(GlyphmotionDialog* dialog, int id, int value) {
  return Done(dialog, [&](Dialog& in) { return glyphmotion::Type(in, id, std::to_string(value)); });
}

int GlyphmotionSetCheck(GlyphmotionDialog* dialog, int id, int checked) {
  return Done(dialog, [&](Dialog& in) {
    if (!glyphmotion::HasControl(in, id) || !glyphmotion::IsEnabled(in, id)) return false;
    const bool is = glyphmotion::GetCheck(in, id);
    return is == (checked != 0) || glyphmotion::Click(in, id);
  });
}

int GlyphmotionSelect(GlyphmotionDialog* dialog, int id, int index) {
  return Done(dialog, [&](Dialog& in) { return glyphmotion::Choose(in, id, index); });
}

int GlyphmotionPress(GlyphmotionDialog* dialog, int id) {
  return Done(dialog, [&](Dialog& in) { return glyphmotion::Click(in, id); });
}

int GlyphmotionGetText(GlyphmotionDialog* dialog, int id, char* buffer, size_t size) {
  return Done(dialog, [&](Dialog& in) {
    if (!buffer || !size || !glyphmotion::HasControl(in, id)) return false;
    const std::string text = glyphmotion::GetText(in, id);
    const size_t count = std::min(text.size(), size - 1);
    std::memcpy(buffer, text.data(), count);
    buffer[count] = 0;
    return true;
  });
}
}
