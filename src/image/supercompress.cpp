// SPDX-License-Identifier: MIT
#include "image/supercompress.h"

#include <algorithm>
#include <cstring>

#include "platform/run_state.h"

namespace glyphmotion {
namespace {

// For any depths and sizes: positions outside the frame read as an impossible pixel.
void CompareRow(const DibView& shown, const DibView& image, const DibView& mask, int y) {
  for (int x = 0; x < shown.Width(); ++x) {
    const std::uint32_t before = shown.GetPixel(x, y), now = image.GetPixel(x, y);
    if (before == now) {
      mask.SetPixel(x, y, 1);
    } else {
      shown.SetPixel(x, y, now);
    }
  }
}

// Rows of 24 bits of which the frame has every pixel.
void Compare24(std::uint8_t* shown, const std::uint8_t* image, std::uint8_t* mask, int width) {
  for (int x = 0; x < width; x += 8) {
    const int pixels = std::min(8, width - x);
    const std::uint8_t *a = shown + 3 * x, *b = image + 3 * x;
    unsigned changed = 0;
    if (std::memcmp(a, b, static_cast<std::size_t>(3 * pixels)) != 0) {
      for (int i = 0; i < pixels; ++i, a += 3, b += 3) {
        changed |= static_cast<unsigned>(a[0] != b[0] || a[1] != b[1] || a[2] != b[2]) << (7 - i);
      }
    }
    const unsigned inside = 0xFF00u >> pixels & 0xFF;
    mask[x >> 3] = static_cast<std::uint8_t>(inside & ~changed);
  }
  std::memcpy(shown, image, static_cast<std::size_t>(width) * 3);
}

// The mask of one frame, or nothing on failure; `previous` is updated with the changed pixels.
PackedDib MaskUnchanged(const PackedDib& previous, BlockHandle frame) {
  static const Palette kMaskColours = [] {
    Palette palette{};
    palette[1] = {255, 255, 255};
    return palette;
  }();
  const DibView shown(previous), image(frame);
  if (!shown || !image) return {};
  PackedDib made = BlankDib(shown.Width(), shown.Height(), &kMaskColours, 1);
  const DibView mask(made);
  if (!mask) return {};
  const bool plain = shown.Bits() == 24 && image.Bits() == 24 && image.Width() >= shown.Width();
  for (int y = 0; y < shown.Height(); ++y) {
    if (EndRequested()) return {};
    if (plain && y < image.Height()) {
      Compare24(shown.Row(y), image.Row(y), mask.Row(y), shown.Width());
    } else {
      CompareRow(shown, image, mask, y);
    }
  }
  return made;
}

}  // namespace

bool SupercompressFrames(FrameList& frames, Colour superColour, PackedDib& previous,
                         const std::function<void(int, int)>& progress) {
  for (int i = 0; i < frames.count; ++i) {
    if (progress) progress(i, frames.count);
    const LockedFrame frame(frames, i);
    if (!frame) return false;
    if (i == 0) {
      previous = PackedDib(DuplicateBlock(frame->image));
      if (!previous) return false;
      continue;
    }
    PackedDib mask = MaskUnchanged(previous, frame->image);
    if (!mask) return false;
    FreeBlock(frame->mask);
    frame->mask = mask.Release();
    frame->transparentIndex = static_cast<std::int32_t>(superColour);
  }
  return true;
}

}  // namespace glyphmotion
