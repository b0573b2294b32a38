// SPDX-License-Identifier: MIT
#include "text/canvas.h"

#include <cstring>
#include <vector>

#include "platform/run_state.h"

namespace glyphmotion {
namespace {

// The column or row of a side that a place outside shows: 0 1 2 | 2 1 0 | 0 1 2.
int Mirrored(int at, int side) {
  const int period = 2 * side, in = (at % period + period) % period;
  return in < side ? in : period - 1 - in;
}

}  // namespace

Canvas& CurrentCanvas() { return CurrentRun().Member<Canvas>(); }

PackedDib ContinueMirrored(const PackedDib& picture, int left, int top, int width, int height) {
  const DibView from(picture);
  PackedDib result = BlankDib(width, height, nullptr, 24);
  {
    const DibView to(result);
    if (!from || !to) return {};
    std::vector<std::size_t> columns(static_cast<std::size_t>(width));
    for (int x = 0; x < width; ++x)
      columns[static_cast<std::size_t>(x)] = 3 * static_cast<std::size_t>(Mirrored(x - left, from.Width()));
    for (int y = 0; y < height && !EndRequested(); ++y) {
      const std::uint8_t* source = from.Row(Mirrored(y - top, from.Height()));
      std::uint8_t* target = to.Row(y);
      for (const std::size_t column : columns) {
        std::memcpy(target, source + column, 3);
        target += 3;
      }
    }
  }
  return result;
}

}  // namespace glyphmotion
