// SPDX-License-Identifier: MIT
// A frame of a GIF between its crop and its compression: it waits until the common palette is known.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "host/encoders/gif_file.h"
#include "host/encoders/gif_frame.h"
#include "host/encoders/gif_lossy.h"
#include "host/encoders/gif_palette.h"

namespace glyphmotion {

/// The number of a colour of the animation.
using GifColourId = std::uint16_t;

/// A cropped frame.
struct GifHeldFrame {
  GifBox crop;
  GifDisposal disposal = GifDisposal::Keep;
  int delay = 0;
  GifPixels pixels;              ///< symbols are frame-local numbers
  std::vector<GifColourId> ids;  ///< by that number; empty: the numbers are ids
  GifColourId IdOf(std::size_t symbol) const { return ids.empty() ? static_cast<GifColourId>(symbol) : ids[symbol]; }
};

/// Frees an index in frames that need a transparent one and have 256 colours. A colour that only unchanged pixels have
/// is replaced by the wildcard. If all colours are new, the frame is split and the second part adds the rarest colour.
/// It follows after 20 ms if there is time, the shortest delay that viewers honour: most show a frame without a delay
/// for 100 ms.
void SpareIndices(std::vector<GifHeldFrame>& held);

/// The frame as it is in the file. `common`: the palette, or null if the frame needs one of its own. `colours`: of all
/// ids. `index`: it has to declare a transparent index, used or not. `lossy`: instead of `compressor`, or null; takes
/// the frames in order, and does not use `search`. Consumes `frame`; threads share const data only.
GifFileFrame EncodeHeldFrame(GifHeldFrame& frame, const GifPalette* common, std::span<const std::uint32_t> colours,
                             bool index, GifFrameCompressor& compressor, GifSearch& search, GifLossyCompressor* lossy);

}  // namespace glyphmotion
