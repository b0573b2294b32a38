// SPDX-License-Identifier: MIT
#include "host/encoders/avif.h"

#include <avif/avif.h>

#include <algorithm>
#include <span>
#include <string_view>

#include "host/encoders/out_of_memory.h"
#include "host/encoders/picture_encoder.h"
#include "host/encoders/screen.h"

namespace glyphmotion {

const char* const kAvifLacks = nullptr;

namespace {

// Sets the times at which the file was made to zero: libavif takes them from the clock, and the same job gives the same
// bytes. They lie in boxes within boxes (ISO/IEC 14496-12): moov, trak and mdia hold mvhd, tkhd and mdhd.
void ClearTimes(std::span<std::uint8_t> boxes) {
  constexpr std::size_t kHead = 8, kFullHead = 12;
  while (boxes.size() >= kHead) {
    const std::size_t size = std::size_t{boxes[0]} << 24 | boxes[1] << 16 | boxes[2] << 8 | boxes[3];
    if (size < kHead || size > boxes.size()) return;
    const std::string_view type(reinterpret_cast<const char*>(&boxes[4]), 4);
    if (type == "moov" || type == "trak" || type == "mdia") {
      ClearTimes(boxes.subspan(kHead, size - kHead));
    } else if ((type == "mvhd" || type == "tkhd" || type == "mdhd") && size > kFullHead) {
      const std::size_t bytes = boxes[kHead] == 1 ? 16 : 8;  // by the box's version
      if (size >= kFullHead + bytes) std::fill_n(&boxes[kFullHead], bytes, std::uint8_t{0});
    }
    boxes = boxes.subspan(size);
  }
}

struct AvifState {
  Output& output;
  EncoderSettings settings;
  Screen screen;
  avifEncoder* encoder = avifEncoderCreate();

  AvifState(Output& out, const EncoderSettings& wanted)
      : output(out), settings(wanted), screen(wanted.width, wanted.height) {
    if (!encoder) return;
    const bool lossless = settings.lossyQuality < 0;
    const int quantizer =
        lossless ? 0 : static_cast<int>((100 - settings.lossyQuality) * AVIF_QUANTIZER_WORST_QUALITY / 100);
    encoder->minQuantizer = encoder->minQuantizerAlpha = std::max(0, quantizer - 4) * !lossless;
    encoder->maxQuantizer = encoder->maxQuantizerAlpha = quantizer;
    encoder->speed = AVIF_SPEED_FASTEST - settings.effort;
    encoder->timescale = 1000;
  }
  AvifState(const AvifState&) = delete;
  AvifState& operator=(const AvifState&) = delete;
  ~AvifState() {
    if (encoder) avifEncoderDestroy(encoder);
  }

  static std::string Failure(avifResult result) {
    if (result == AVIF_RESULT_OUT_OF_MEMORY) return kOutOfMemory;
    return std::string("the .avif could not be made: ") + avifResultToString(result);
  }

  // Lossless: the matrix is the identity, so that red, green and blue are coded as they are.
  std::string Add(const DibPixels& dib, const Image& image) {
    if (!encoder) return kOutOfMemory;
    screen.Show(dib, image.transparentIndex, image.standAlone);
    avifImage* picture = avifImageCreate(settings.width, settings.height, 8, AVIF_PIXEL_FORMAT_YUV444);
    if (!picture) return kOutOfMemory;
    picture->yuvRange = AVIF_RANGE_FULL;
    picture->colorPrimaries = AVIF_COLOR_PRIMARIES_BT709;
    picture->transferCharacteristics = AVIF_TRANSFER_CHARACTERISTICS_SRGB;
    picture->matrixCoefficients =
        settings.lossyQuality < 0 ? AVIF_MATRIX_COEFFICIENTS_IDENTITY : AVIF_MATRIX_COEFFICIENTS_BT601;
    avifRGBImage pixels;
    avifRGBImageSetDefaults(&pixels, picture);
    pixels.pixels = screen.pixels.data();
    pixels.rowBytes = static_cast<std::uint32_t>(settings.width) * 4;
    avifResult result = avifImageRGBToYUV(picture, &pixels);
    if (result == AVIF_RESULT_OK) {
      const auto time = static_cast<std::uint64_t>(std::max(1, image.delay * settings.delayUnit));
      result = avifEncoderAddImage(encoder, picture, time,
                                   settings.imageCount == 1 ? AVIF_ADD_IMAGE_FLAG_SINGLE : AVIF_ADD_IMAGE_FLAG_NONE);
    }
    avifImageDestroy(picture);
    return result == AVIF_RESULT_OK ? "" : Failure(result);
  }

  std::string Finish() {
    if (!encoder) return kOutOfMemory;
    avifRWData data = AVIF_DATA_EMPTY;
    const avifResult result = avifEncoderFinish(encoder, &data);
    std::string error = result == AVIF_RESULT_OK ? "" : Failure(result);
    ClearTimes({data.data, data.size});
    if (error.empty() && !output.Write({data.data, data.size})) error = output.Refusal();
    avifRWDataFree(&data);
    return error;
  }
};

}  // namespace

Encoder OpenAvif(Output& output, const EncoderSettings& settings) {
  return EncoderOf(std::make_shared<AvifState>(output, settings));
}

}  // namespace glyphmotion
