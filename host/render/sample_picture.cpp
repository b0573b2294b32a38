// SPDX-License-Identifier: MIT
#include "host/render/sample_picture.h"

#include <algorithm>

#include "image/quantise.h"
#include "image/remap.h"

namespace glyphmotion {
namespace {

int DepthFor(int colours) {
  int depth = 1;
  while (depth < 8 && 1 << depth < colours) ++depth;
  return depth;
}

struct OneFrame {
  FrameList list;
  ~OneFrame() { FreeFrames(list); }
};

}  // namespace

PackedDib ReduceToPalette(std::span<const std::uint8_t> dib) {
  PackedDib copy(AllocateBlock(dib.size()));
  {
    const LockedBlock<DibHeader> bytes(copy.Handle());
    if (!bytes) return {};
    std::copy(dib.begin(), dib.end(), reinterpret_cast<std::uint8_t*>(bytes.get()));
  }
  OneFrame frame;
  FrameRecord record;
  record.image = copy.Handle();
  if (!AppendFrame(frame.list, record)) return {};
  copy.Release();  // the list owns it from here on
  Palette palette{};
  int count = 256;
  if (!QuantiseFrames(frame.list, count, palette)) return {};
  SortPaletteByBrightness(palette, count);
  ColourMatcher matcher(palette, DepthFor(count), count, {});
  const LockedFrame locked(frame.list, 0);
  PackedDib source(locked->image);
  PackedDib reduced = RemapImage(source, matcher);
  source.Release();  // the list still owns it
  return reduced;
}

}  // namespace glyphmotion
