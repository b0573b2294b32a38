// SPDX-License-Identifier: MIT
// The encoders against libpng's and libwebp's decoders, on bitmaps made by hand.
#include "host/encoders/encoders.h"

#include <gtest/gtest.h>

#include <cstring>

#include "host/decoders.h"
#include "host/encoders/png_chunks.h"
#include "host/host_helpers.h"

namespace glyphmotion {
namespace {

using testing::Bytes;
using testing::DecodeApng;
using testing::DecodePng;
using testing::DecodeWebp;
using testing::Shown;
using testing::U32;

struct Frame {
  Bytes dib;
  int bits, delay, transparentIndex = -1;
  bool standAlone = false;
};

Bytes Encode(const char* extension, const std::vector<Frame>& frames, int width, int height, int unit,
             int threads = 1) {
  const testing::TemporaryFolder folder;
  std::string error;
  Output output = Output::File(folder / "out", error);
  Encoder encoder = FindFormat(extension)->open(output, {.width = width,
                                                         .height = height,
                                                         .imageCount = static_cast<int>(frames.size()),
                                                         .delayUnit = unit,
                                                         .threads = threads});
  for (std::size_t i = 0; i < frames.size(); ++i) {
    Image image = testing::ImageOf(frames[i].dib, width, height, frames[i].bits, static_cast<int>(i), frames[i].delay);
    image.transparentIndex = frames[i].transparentIndex;
    image.standAlone = frames[i].standAlone;
    EXPECT_EQ(encoder.add(image), "");
  }
  EXPECT_EQ(encoder.finish(), "");
  EXPECT_EQ(output.Keep(), "");
  return testing::ReadBytes(folder / "out");
}

constexpr int kWidth = 21, kHeight = 9;
constexpr int kCount = 9;  // more than two threads take at once

// A picture with a moving dot; `alpha` of the place around it.
std::uint32_t Value(int x, int y, int f, std::uint32_t alpha) {
  return x == f * 3 % kWidth && y == f ? 0xFF2040E0u
                                       : alpha << 24 | (alpha ? static_cast<std::uint32_t>(x * 11 | y << 12) : 0u);
}

TEST(Encoders, TrueColourAnimationsKeepEveryPixelAndDelay) {
  for (const int bits : {24, 32}) {
    for (const char* extension : {".png", ".webp"}) {
      SCOPED_TRACE(std::string(extension) + " " + std::to_string(bits));
      const std::uint32_t alpha = bits == 24 ? 255 : 128;
      std::vector<Frame> frames;
      for (int f = 0; f < kCount; ++f)
        frames.push_back(
            {testing::MakeDib(kWidth, kHeight, bits, {}, [&](int x, int y) { return Value(x, y, f, alpha); }), bits,
             40 + f, bits == 32 ? 0 : -1, bits == 32});
      const Bytes file = Encode(extension, frames, kWidth, kHeight, 1);
      const Shown shown = std::string(extension) == ".png" ? DecodeApng(file) : DecodeWebp(file);
      EXPECT_EQ(Encode(extension, frames, kWidth, kHeight, 1, 2), file) << "two threads";
      ASSERT_EQ(shown.screens.size(), std::size_t{kCount});
      for (int f = 0; f < kCount; ++f) {
        EXPECT_EQ(shown.delays[static_cast<std::size_t>(f)], 40 + f);
        for (int y = 0; y < kHeight; ++y)
          for (int x = 0; x < kWidth; ++x) {
            std::uint32_t pixel;
            std::memcpy(&pixel,
                        &shown.screens[static_cast<std::size_t>(f)][static_cast<std::size_t>(y * kWidth + x) * 4], 4);
            ASSERT_EQ(pixel, Value(x, y, f, alpha)) << "frame " << f << " at " << x << ", " << y;
          }
      }
    }
  }
}

// Noise of which two corners change, and a gradient that appears from behind noise: the second picture costs little if
// it is laid over the first in the one case and opaque in the other.
TEST(Encoders, APictureOfALosslessWebpIsOpaqueOrLaidOverWhicheverIsSmaller) {
  constexpr int kSide = 64;
  const auto noise = [](int x, int y) { return (static_cast<std::uint32_t>(x * 73 + y * 3541) * 0x9E3779B1u) >> 8; };
  const auto gradient = [](int x, int y) { return static_cast<std::uint32_t>(x * 2 | y << 9); };
  const auto corners = [&](int x, int y) { return noise(x, y) ^ ((x == y && x % (kSide - 1) == 0) ? 0xFFFFFFu : 0u); };
  const auto veiled = [&](int x, int y) { return gradient(x, y) ^ (noise(x, y) & 4 ? 0x404040u : 0u); };
  const auto sizeOf = [](const auto&... values) {
    return Encode(".webp", {{testing::MakeDib(kSide, kSide, 24, {}, values), 24, 40}...}, kSide, kSide, 1).size();
  };
  EXPECT_LT(sizeOf(noise, corners) * 2, sizeOf(noise) * 3);
  EXPECT_LT(sizeOf(veiled, gradient) * 2, sizeOf(veiled) * 3);
}

// Palette images of each depth, alone and animated, with and without a transparent index, shared palette or not.
TEST(Encoders, PaletteImagesBecomePngs) {
  const Bytes palette = {0, 0, 0, 250, 10, 20, 30, 240, 50, 60, 70, 230};
  for (const int bits : {1, 4, 8}) {
    for (const int variant : {0, 1, 2}) {  // solid, stand-alone, see-through
      SCOPED_TRACE(std::to_string(bits) + " bits, variant " + std::to_string(variant));
      std::vector<Frame> frames;
      for (int f = 0; f < 3; ++f) {
        frames.push_back(
            {testing::MakeDib(kWidth, kHeight, bits, palette, [f](int x, int y) { return (x + y + f) % 2; }), bits, 5,
             variant ? 0 : -1, variant == 1});
      }
      const Shown shown = DecodeApng(Encode(".png", frames, kWidth, kHeight, 10));
      ASSERT_EQ(shown.screens.size(), 3u);
      EXPECT_EQ(shown.delays[2], 50);
      int width = 0, height = 0;
      const Bytes alone = DecodePng(Encode(".png", {frames[0]}, kWidth, kHeight, 10), width, height);
      EXPECT_EQ(shown.screens[0], alone);
      const auto pixel = [&](std::size_t f, int x) { return U32(&shown.screens[f][static_cast<std::size_t>(x) * 4]); };
      EXPECT_EQ(pixel(0, 1), 0xFA0A14FFu);
      EXPECT_EQ(pixel(0, 0), variant ? 0u : 0xFFu);
      EXPECT_EQ(pixel(1, 1), variant == 0 ? 0xFFu : variant == 1 ? 0u : 0xFA0A14FFu);
    }
  }
}

TEST(Encoders, APngIsGivenUpBetweenItsRows) {
  std::atomic<bool> stop = false;
  const Bytes pixels(16);
  const PngPicture picture{2, 2, PngKind::Rgba, pixels, {}, -1, 6, &stop};
  EXPECT_FALSE(WritePng(picture).empty());
  stop = true;
  EXPECT_TRUE(WritePng(picture).empty());
}

TEST(Encoders, AGifRefusesTrueColourAndAnyEncoderRefusesRubbish) {
  const testing::TemporaryFolder folder;
  for (const char* extension : {".gif", ".png", ".webp", kFolderExtension}) {
    std::string error;
    Output output = Output::File(folder / "out", error);
    Encoder encoder = FindFormat(extension)->open(output, {4, 4, 2, 1, -1});
    EXPECT_NE(encoder.add(testing::ImageOf({1, 2, 3}, 4, 4, 8, 0, 1)), "") << extension;
  }
  std::string error;
  Output output = Output::File(folder / "out", error);
  Encoder gif = FindFormat(".gif")->open(output, {4, 4, 1, 1, -1});
  EXPECT_NE(gif.add(testing::ImageOf(testing::MakeDib(4, 4, 24, {}, [](int, int) { return 0; }), 4, 4, 24, 0, 1))
                .find("true colour"),
            std::string::npos);
}

}  // namespace
}  // namespace glyphmotion
