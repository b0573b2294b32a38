// SPDX-License-Identifier: MIT
// The frames of a run as a page plays them: complete pictures, as palette indices where the run has one palette.
#pragma once

#include <cstdint>
#include <vector>

#include "glyphmotion/render.h"
#include "host/encoders/screen.h"

namespace glyphmotion {

/// Collects the images of one run. Not for several threads at once.
class FrameCollector {
 public:
  /// `unit`: milliseconds in one unit of Image::delay. `most`: of more frames every second one is dropped, and so on,
  /// their time added to the frame before; 0: all are kept.
  explicit FrameCollector(int unit, int most = 0) : unit_(unit), most_(most) {}

  void Begin(int width, int height);
  /// False when the image is not a picture.
  bool Add(const Image& image);

  int Width() const { return width_; }
  int Height() const { return height_; }
  bool IsIndexed() const { return indexed_; }
  const std::vector<int>& Delays() const { return delays_; }  ///< milliseconds
  /// Red, green, blue, alpha of 256 colours and the indices of all frames; or red, green, blue, alpha of all pixels.
  std::vector<std::uint8_t> Take();

 private:
  void AddIndexed(const DibPixels& dib, const Image& image);
  void AddColours(const DibPixels& dib, const Image& image);
  void TurnToColours();
  void DropEverySecond();
  std::size_t FrameSize() const;

  int unit_, most_, keep_ = 1, seen_ = 0;
  int width_ = 0, height_ = 0;
  bool indexed_ = false;
  std::vector<std::uint8_t> table_, indices_, screenIndices_, frames_;
  Screen screen_{0, 0};
  std::vector<int> delays_;
};

}  // namespace glyphmotion
