// SPDX-License-Identifier: MIT
// The pixels of all frames of a run, for passes that look at each of them once.
#pragma once

#include <cstdint>
#include <cstring>

#include "image/frame_list.h"
#include "image/packed_dib.h"
#include "platform/run_state.h"

namespace glyphmotion {

/// The number of bytes from p on that equal the byte three positions later, at most `bytes`.
inline std::size_t RepeatedBytes(const std::uint8_t* p, std::size_t bytes) {
  std::size_t i = 0;
  for (std::uint64_t a, b; i + 8 <= bytes; i += 8) {
    std::memcpy(&a, p + i, 8);
    std::memcpy(&b, p + i + 3, 8);
    if (a != b) break;
  }
  while (i < bytes && p[i] == p[i + 3]) ++i;
  return i;
}

/// Length of the run of equal 24-bit pixels that starts at p, of `left` pixels up to the end of the row.
inline std::size_t RunLength(const std::uint8_t* p, std::size_t left) {
  if (left < 2) return 1;
  std::uint32_t here, next;
  std::memcpy(&here, p, 4);
  std::memcpy(&next, p + 2, 4);
  if ((here ^ next >> 8) & 0xFFFFFF) return 1;
  return 1 + RepeatedBytes(p, 3 * (left - 1)) / 3;
}

/// Calls `work` with each frame's image until it returns false; false when an image is malformed or not of 24 bits,
/// when there is none, and when the run was asked to end.
template <typename Work>
bool ForEachImage(const FrameList& frames, Work work) {
  for (int i = 0; i < frames.count; ++i) {
    const LockedFrame frame(frames, i);
    if (!frame) return false;
    const DibView image(frame->image);
    if (!image || image.Bits() != 24) return false;
    if (!work(image)) break;
  }
  return frames.count > 0 && !EndRequested();
}

}  // namespace glyphmotion
