// SPDX-License-Identifier: MIT
#include "host/page/frames.h"

#include <algorithm>

namespace glyphmotion {
namespace {

std::vector<std::uint8_t> TableOf(const DibPixels& dib, int transparentIndex) {
  const auto palette = UnpackPalette(dib);
  std::vector<std::uint8_t> table(1024);
  for (std::size_t i = 0; i < 256; ++i) {
    std::copy_n(&palette[3 * i], 3, &table[4 * i]);
    table[4 * i + 3] = static_cast<int>(i) == transparentIndex ? 0 : 255;
  }
  return table;
}

}  // namespace

std::size_t FrameCollector::FrameSize() const {
  return static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_) * (indexed_ ? 1 : 4);
}

void FrameCollector::Begin(int width, int height) {
  width_ = width;
  height_ = height;
  screen_ = Screen(width, height);
}

bool FrameCollector::Add(const Image& image) {
  const DibPixels dib = ReadDib(image.dib);
  if (!dib || width_ < 1 || height_ < 1) return false;
  if (seen_ == 0 && dib.bits <= 8) {
    indexed_ = true;
    table_ = TableOf(dib, image.transparentIndex);
    screenIndices_.assign(FrameSize(), static_cast<std::uint8_t>(std::max(image.transparentIndex, 0)));
  }
  if (indexed_ && (dib.bits > 8 || TableOf(dib, image.transparentIndex) != table_)) TurnToColours();
  indexed_ ? AddIndexed(dib, image) : AddColours(dib, image);
  const int delay = image.delay * unit_;
  if (seen_++ % keep_ == 0) {
    const std::vector<std::uint8_t>& now = indexed_ ? screenIndices_ : screen_.pixels;
    frames_.insert(frames_.end(), now.begin(), now.end());
    delays_.push_back(delay);
    if (most_ && static_cast<int>(delays_.size()) > most_) DropEverySecond();
  } else {
    delays_.back() += delay;
  }
  return true;
}

// A screen as indices: what is transparent leaves what was there, unless the image stands alone.
void FrameCollector::AddIndexed(const DibPixels& dib, const Image& image) {
  UnpackIndices(dib, indices_);
  const int columns = std::min(width_, dib.width);
  for (int y = 0; y < std::min(height_, dib.height); ++y) {
    const std::uint8_t* from = indices_.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(dib.width);
    std::uint8_t* to = screenIndices_.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width_);
    for (int x = 0; x < columns; ++x) {
      if (image.standAlone || from[x] != image.transparentIndex) to[x] = from[x];
    }
  }
}

void FrameCollector::AddColours(const DibPixels& dib, const Image& image) {
  screen_.Show(dib, image.transparentIndex, image.standAlone);
}

// The palettes differ after all.
void FrameCollector::TurnToColours() {
  const auto colours = [&](const std::vector<std::uint8_t>& indices) {
    std::vector<std::uint8_t> pixels(indices.size() * 4);
    for (std::size_t i = 0; i < indices.size(); ++i)
      std::copy_n(&table_[std::size_t{4} * indices[i]], 4, &pixels[4 * i]);
    return pixels;
  };
  frames_ = colours(frames_);
  screen_.pixels = colours(screenIndices_);
  indexed_ = false;
}

void FrameCollector::DropEverySecond() {
  keep_ *= 2;
  std::size_t kept = 0;
  for (std::size_t i = 0; i < delays_.size(); i += 2, ++kept) {
    const int both = delays_[i] + (i + 1 < delays_.size() ? delays_[i + 1] : 0);
    const auto from = frames_.begin() + static_cast<std::ptrdiff_t>(i * FrameSize());
    std::copy_n(from, FrameSize(), frames_.begin() + static_cast<std::ptrdiff_t>(kept * FrameSize()));
    delays_[kept] = both;
  }
  delays_.resize(kept);
  frames_.resize(kept * FrameSize());
}

std::vector<std::uint8_t> FrameCollector::Take() {
  if (!indexed_) return std::move(frames_);
  std::vector<std::uint8_t> payload = std::move(table_);
  payload.insert(payload.end(), frames_.begin(), frames_.end());
  return payload;
}

}  // namespace glyphmotion
