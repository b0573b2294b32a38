// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "host/encoders/dib_reader.h"
#include "host/encoders/encoders.h"

namespace glyphmotion {

/// The encoder of a state with `Add(const DibPixels&, const Image&)` and `Finish()`, which return what an Encoder's
/// functions do. Images that are not packed bitmaps never get there.
template <typename State>
Encoder EncoderOf(std::shared_ptr<State> state) {
  Encoder encoder;
  encoder.add = [state](const Image& image) -> std::string {
    const DibPixels dib = ReadDib(image.dib);
    return dib ? state->Add(dib, image) : std::string(kBadImage);
  };
  encoder.finish = [state] { return state->Finish(); };
  return encoder;
}

}  // namespace glyphmotion
