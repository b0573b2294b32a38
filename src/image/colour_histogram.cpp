// SPDX-License-Identifier: MIT
#include "image/colour_histogram.h"

#include "image/run_pixels.h"

namespace glyphmotion {

// Adds `count` times 256 pixels.
bool ColourHistogram::Carry(std::uint32_t place, std::uint32_t count) noexcept {
  std::uint32_t*& page = pages_[place / kCubeColours];
  if (!page) {
    const std::size_t block = pageCount_ / kPagesInBlock, at = pageCount_ % kPagesInBlock;
    if (at == 0) {
      blocks_[block].Reset(AllocateBlock(kPagesInBlock * kCubeColours * sizeof(std::uint32_t)));
      lastBlock_ = static_cast<std::uint32_t*>(LockBlock(blocks_[block].Handle()));
    }
    if (!lastBlock_) return false;
    ++pageCount_;
    page = lastBlock_ + at * kCubeColours;
  }
  page[place % kCubeColours] += count;
  return true;
}

bool ColourHistogram::CountRow(const std::uint8_t* row, std::size_t width) noexcept {
  for (std::size_t x = 0; x < width;) {
    const std::uint8_t* p = row + 3 * x;
    const std::size_t run = RunLength(p, width - x);
    const std::uint32_t place = kPlaces[0][p[2]] | kPlaces[1][p[1]] | kPlaces[2][p[0]];
    const std::size_t sum = low_[place] + run;
    low_[place] = static_cast<std::uint8_t>(sum);
    used_[place / kCubeColours] = true;
    if (sum > 255 && !Carry(place, static_cast<std::uint32_t>(sum >> 8))) return false;
    x += run;
  }
  return true;
}

bool ColourHistogram::Count(const FrameList& frames) noexcept {
  lowBlock_.Reset(AllocateBlock(std::size_t{kCubeCount} * kCubeColours));
  low_ = static_cast<std::uint8_t*>(LockBlock(lowBlock_.Handle()));
  bool room = low_ != nullptr;
  const bool all = room && ForEachImage(frames, [&](const DibView& image) {
                     for (int r = 0; room && r < image.Height(); ++r) {
                       if (EndRequested()) return false;
                       room = CountRow(image.StoredRow(r), static_cast<std::size_t>(image.Width()));
                     }
                     return room;
                   });
  if (!all || !room) return false;
  for (std::uint32_t cube = 0; cube < kCubeCount; ++cube)
    for (std::uint32_t i = 0; used_[cube] && i < kCubeColours; ++i) colours_ += PixelsAt(cube * kCubeColours + i) != 0;
  return true;
}

void ColourHistogram::Drop(Rgb colour) noexcept {
  const std::uint32_t place = kPlaces[0][colour.red] | kPlaces[1][colour.green] | kPlaces[2][colour.blue];
  if (!used_[place / kCubeColours] || !PixelsAt(place)) return;
  low_[place] = 0;
  if (std::uint32_t* page = pages_[place / kCubeColours]) page[place % kCubeColours] = 0;
  --colours_;
}

}  // namespace glyphmotion
