// SPDX-License-Identifier: MIT
#include "random/avif_decoder.h"

#include <avif/avif.h>

namespace glyphmotion::testing {

Shown DecodeAvif(const Bytes& file) {
  Shown shown;
  avifDecoder* decoder = avifDecoderCreate();
  bool good = decoder && avifDecoderSetIOMemory(decoder, file.data(), file.size()) == AVIF_RESULT_OK &&
              avifDecoderParse(decoder) == AVIF_RESULT_OK;
  while (good && avifDecoderNextImage(decoder) == AVIF_RESULT_OK) {
    avifRGBImage pixels;
    avifRGBImageSetDefaults(&pixels, decoder->image);
    Bytes screen(std::size_t{4} * pixels.width * pixels.height);
    pixels.pixels = screen.data();
    pixels.rowBytes = 4 * pixels.width;
    good = avifImageYUVToRGB(decoder->image, &pixels) == AVIF_RESULT_OK;
    shown.screens.push_back(std::move(screen));
    shown.delays.push_back(static_cast<int>(decoder->imageTiming.duration * 1000 + 0.5));
  }
  if (decoder) avifDecoderDestroy(decoder);
  return shown;
}

}  // namespace glyphmotion::testing
