// SPDX-License-Identifier: MIT
#include "host/encoders/frame_order.h"

#include <algorithm>

#include "host/encoders/dib_reader.h"

namespace glyphmotion {
namespace {

bool LooksThrough(const Image& image) { return image.bits <= 8 && image.transparentIndex >= 0 && !image.standAlone; }

// Writes palette indices, a byte each and rows top down, over the pixels of a packed DIB.
void PackIndices(const std::vector<std::uint8_t>& indices, const DibPixels& dib, std::vector<std::uint8_t>& bytes) {
  const auto width = static_cast<std::size_t>(dib.width), bits = static_cast<std::size_t>(dib.bits);
  for (int y = 0; y < dib.height; ++y) {
    const std::uint8_t* from = indices.data() + width * static_cast<std::size_t>(y);
    std::uint8_t* row = bytes.data() + (dib.Row(y) - bytes.data());
    std::fill_n(row, (width * bits + 7) / 8, std::uint8_t{0});
    for (std::size_t x = 0; x < width; ++x) {
      const std::size_t shift = 8 - bits - x * bits % 8;
      row[x * bits / 8] = static_cast<std::uint8_t>(row[x * bits / 8] | from[x] << shift);
    }
  }
}

}  // namespace

std::string FrameOrder::Add(const Image& image) {
  images_.push_back({{image.dib.begin(), image.dib.end()}, image});
  images_.back().about.dib = {};
  return {};
}

// Lays the images up to the first one on each other. False when their sizes, depths or palettes differ.
bool FrameOrder::Complete(std::size_t first) {
  std::size_t begin = first;
  while (begin > 0 && LooksThrough(images_[begin].about)) --begin;
  std::vector<std::uint8_t> sum, indices;
  for (std::size_t i = begin; i <= first; ++i) {
    const DibPixels dib = ReadDib(images_[i].dib), last = ReadDib(images_[first].dib);
    if (!dib || dib.bits != last.bits || dib.width != last.width || dib.height != last.height ||
        UnpackPalette(dib) != UnpackPalette(last))
      return false;
    UnpackIndices(dib, indices);
    if (i == begin) sum = indices;
    const int clear = images_[i].about.transparentIndex;
    for (std::size_t p = 0; p < sum.size(); ++p) {
      if (indices[p] != clear) sum[p] = indices[p];
    }
  }
  PackIndices(sum, ReadDib(images_[first].dib), images_[first].dib);
  return true;
}

std::string FrameOrder::Finish() {
  if (images_.empty()) return {};
  const auto longer = [](const Kept& a, const Kept& b) { return a.about.delay < b.about.delay; };
  const auto rest = std::max_element(images_.begin(), images_.end(), longer) - images_.begin();
  const std::size_t count = images_.size(), first = static_cast<std::size_t>(start_ == kRest ? rest : start_);
  if (first >= count)
    return "there is no such frame to start with; the animation has " + std::to_string(count) + " frames";
  if (first > 0 && LooksThrough(images_[first].about) && !Complete(first))
    return "the animation cannot start with another frame: its frames have different sizes or palettes";
  if (first > 0) images_[first].about.standAlone = images_[0].about.standAlone = true;
  for (std::size_t i = 0; i < count; ++i) {
    Kept& kept = images_[(first + i) % count];
    Image image = kept.about;
    image.dib = kept.dib;
    image.number = static_cast<int>(i);
    if (std::string error = next_(image); !error.empty()) return error;
    kept.dib = {};
  }
  return {};
}

}  // namespace glyphmotion
