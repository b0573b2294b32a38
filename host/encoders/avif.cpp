// SPDX-License-Identifier: MIT
#include "host/encoders/avif.h"

#include <avif/avif.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
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

// libaom has two modes. The good mode looks up to 35 pictures ahead: it holds them in buffers with wide borders, and
// compresses most of them in one last call that nothing can end. The real-time mode compresses each picture as it
// comes. Lossless files are 7 % smaller by it, in the sum of six effects and in half the time, and they are exact: the
// good mode changes a few pixels by one, rarely (libaom 3.6). Lossy files are up to a third larger.
constexpr int kHeldPictures = 36;
constexpr std::int64_t kBufferedPixels = 3'000'000;  // of a picture with its borders: 56 buffers of them are 500 MB
constexpr int kBorder = 288;
// Nanoseconds for a pixel in the good mode, by speed, where all of the picture changes; and what a last call may take.
constexpr std::array<std::int64_t, 7> kPixelTime = {60'000, 30'000, 10'000, 4'000, 2'500, 2'000, 1'500};
constexpr std::int64_t kLongestCall = 10'000'000'000;

bool FitsGoodMode(const EncoderSettings& settings, int speed) {
  if (settings.lossyQuality < 0 || speed >= std::ssize(kPixelTime)) return false;
  const std::int64_t width = settings.width, height = settings.height;
  const std::int64_t held = std::clamp<std::int64_t>(settings.imageCount, 1, kHeldPictures);
  return (width + 2 * kBorder) * (height + 2 * kBorder) <= kBufferedPixels &&
         width * height * held * kPixelTime[speed] <= kLongestCall;
}

// Speeds of the real-time mode from 7 up change pixels of lossless pictures, and 7 ends the process. So does its usual
// rate control, for a constant bit rate, where the bounds of quality are narrow.
void SetRealTimeMode(avifEncoder* encoder, int speed) {
  constexpr int kFastestExact = 6;
  if (encoder->maxQuantizer == 0 || speed == kFastestExact + 1) speed = std::min(speed, kFastestExact);
  encoder->speed = AVIF_SPEED_FASTEST;
  avifEncoderSetCodecSpecificOption(encoder, "cpu-used", std::to_string(std::min(speed, 9)).c_str());
  avifEncoderSetCodecSpecificOption(encoder, "end-usage", "q");
}

using AvifEncoder = std::unique_ptr<avifEncoder, decltype(&avifEncoderDestroy)>;

AvifEncoder NewEncoder(const EncoderSettings& settings) {
  AvifEncoder encoder(avifEncoderCreate(), avifEncoderDestroy);
  if (!encoder) return encoder;
  const int quantizer = settings.lossyQuality < 0
                            ? 0
                            : static_cast<int>((100 - settings.lossyQuality) * AVIF_QUANTIZER_WORST_QUALITY / 100);
  encoder->minQuantizer = encoder->minQuantizerAlpha = std::max(0, quantizer - 4);
  encoder->maxQuantizer = encoder->maxQuantizerAlpha = quantizer;
  encoder->timescale = 1000;
  const int speed = AVIF_SPEED_FASTEST - settings.effort;
  if (FitsGoodMode(settings, speed))
    encoder->speed = speed;
  else
    SetRealTimeMode(encoder.get(), speed);
  return encoder;
}

struct AvifState {
  Output& output;
  EncoderSettings settings;
  Screen screen;
  AvifEncoder encoder;

  AvifState(Output& out, const EncoderSettings& wanted)
      : output(out), settings(wanted), screen(wanted.width, wanted.height), encoder(NewEncoder(wanted)) {}

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
      result = avifEncoderAddImage(encoder.get(), picture, time,
                                   settings.imageCount == 1 ? AVIF_ADD_IMAGE_FLAG_SINGLE : AVIF_ADD_IMAGE_FLAG_NONE);
    }
    avifImageDestroy(picture);
    return result == AVIF_RESULT_OK ? "" : Failure(result);
  }

  std::string Finish() {
    if (!encoder) return kOutOfMemory;
    avifRWData data = AVIF_DATA_EMPTY;
    const avifResult result = avifEncoderFinish(encoder.get(), &data);
    std::string error = result == AVIF_RESULT_OK ? "" : Failure(result);
    ClearTimes({data.data, data.size});
    if (error.empty()) error = KeepWriting(output, {data.data, data.size});
    avifRWDataFree(&data);
    return error;
  }
};

}  // namespace

Encoder OpenAvif(Output& output, const EncoderSettings& settings) {
  return EncoderOf(std::make_shared<AvifState>(output, settings));
}

}  // namespace glyphmotion
