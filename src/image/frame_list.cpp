// SPDX-License-Identifier: MIT
#include "image/frame_list.h"

namespace glyphmotion {

bool AppendFrame(FrameList& list, const FrameRecord& record) noexcept {
  const auto size = [](std::int32_t count) { return static_cast<std::size_t>(count) * sizeof(FrameRecord); };
  if (list.count == 0) {
    list.records = AllocateBlock(sizeof(FrameRecord));
    if (!list.records) return false;
  } else if (!ResizeBlock(list.records, size(list.count + 1))) {
    return false;
  }
  ++list.count;
  {
    const LockedFrame place(list, list.count - 1);
    if (place) {
      *place = record;
      return true;
    }
  }
  if (--list.count == 0) {
    FreeBlock(list.records);
    list.records = nullptr;
  }
  return false;
}

void FreeFrames(FrameList& list) noexcept {
  for (int i = 0; i < list.count; ++i) {
    const LockedFrame frame(list, i);
    if (!frame) continue;
    FreeBlock(frame->image);
    FreeBlock(frame->mask);
  }
  FreeBlock(list.records);
  list = {};
}

}  // namespace glyphmotion
