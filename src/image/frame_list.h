// SPDX-License-Identifier: MIT
// The finished frames of a run, in order.
#pragma once

#include <cstdint>

#include "platform/memory.h"

namespace glyphmotion {

/// One finished frame. Both handles are owned by the record's list.
struct FrameRecord {
  BlockHandle image = nullptr;         ///< packed DIB
  BlockHandle mask = nullptr;          ///< one-bit mask of unchanged pixels, made by Supercompress; null when appended
  std::int32_t delay = 0;              ///< in the units of the Delay control
  std::int32_t transparentIndex = -1;  ///< -1 when appended; set by the build driver
  std::uint8_t reserved[32] = {};
};

/// A movable block of exactly `count` records; the null handle and 0 when empty. Frees nothing by itself: see
/// FreeFrames.
struct FrameList {
  BlockHandle records = nullptr;
  std::int32_t count = 0;
};

/// Appends a copy of `record`; its handles belong to the list afterwards. False when out of memory: the caller still
/// owns them.
bool AppendFrame(FrameList& list, const FrameRecord& record) noexcept;

/// Frees all frames and the list, which is empty afterwards. Calling it twice is harmless.
void FreeFrames(FrameList& list) noexcept;

/// A list that frees its frames when destroyed.
struct OwnedFrames {
  FrameList list;
  OwnedFrames() = default;
  OwnedFrames(const OwnedFrames&) = delete;
  OwnedFrames& operator=(const OwnedFrames&) = delete;
  ~OwnedFrames() { FreeFrames(list); }
};

/// Record i, locked while the object lives; empty when i is not in the list.
class LockedFrame {
 public:
  LockedFrame(const FrameList& list, int i) noexcept
      : block_(i >= 0 && i < list.count ? list.records : nullptr), i_(i) {}
  explicit operator bool() const noexcept { return static_cast<bool>(block_); }
  FrameRecord* operator->() const noexcept { return block_.get() + i_; }
  FrameRecord& operator*() const noexcept { return block_.get()[i_]; }

 private:
  LockedBlock<FrameRecord> block_;
  int i_;
};

}  // namespace glyphmotion
