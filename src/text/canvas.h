// SPDX-License-Identifier: MIT
// A frame of a size of its own. Without a canvas the frame is as large as the text and its margins. With one, the
// background fills the canvas and the text has its usual picture, with the effect in it, somewhere on it.
#pragma once

#include <atomic>

#include "image/packed_dib.h"

namespace glyphmotion {

enum class VerticalAlign { Top, Middle, Bottom };

/// A member of the run; the host sets it before the dialog opens. Across, the text lies where the alignment of its
/// lines says, in the middle if that says nothing.
struct Canvas {
  static constexpr int kLargestSide = 16383;  ///< pixels

  int width = 0, height = 0;  ///< pixels; 0: as large as the text
  bool shrink = true;         ///< a text that is too large gets a smaller font; otherwise its edges are cut off
  VerticalAlign verticalAlign = VerticalAlign::Middle;

  // What the frames found out; any thread of the run.
  std::atomic<int> fittedSize{0};     ///< the font size that fits, where it is not the requested one
  std::atomic<bool> tooSmall{false};  ///< not even the smallest font fits
  std::atomic<bool> cropped{false};   ///< the text reaches beyond an edge

  explicit operator bool() const { return width > 0 || height > 0; }
};

/// The canvas of the run that this thread works for.
Canvas& CurrentCanvas();

/// `picture` (24 bits) continued in mirror images to width x height, with its own corner at (left, top).
PackedDib ContinueMirrored(const PackedDib& picture, int left, int top, int width, int height);

}  // namespace glyphmotion
