// SPDX-License-Identifier: MIT
// The encoders against libpng's and libwebp's decoders, on bitmaps made by hand.
#include "host/encoders/encoders.h"

#include <gtest/gtest.h>
#include <png.h>
#include <webp/demux.h>
#include <zlib.h>

#include <cstring>

#include "host/host_helpers.h"

namespace glyphmotion {
namespace {

using testing::Bytes;

struct Shown {
  std::vector<Bytes> screens;  // red, green, blue, alpha
  std::vector<int> delays;     // milliseconds
};

std::uint32_t U32(const std::uint8_t* p) { return std::uint32_t{p[0]} << 24 | p[1] << 16 | p[2] << 8 | p[3]; }

Bytes DecodePng(const Bytes& file, int& width, int& height) {
  png_image image;
  std::memset(&image, 0, sizeof image);
  image.version = PNG_IMAGE_VERSION;
  EXPECT_TRUE(png_image_begin_read_from_memory(&image, file.data(), file.size())) << image.message;
  image.format = PNG_FORMAT_RGBA;
  Bytes pixels(PNG_IMAGE_SIZE(image));
  EXPECT_TRUE(png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr)) << image.message;
  width = static_cast<int>(image.width);
  height = static_cast<int>(image.height);
  return pixels;
}

// An animation's frames, each put together as a PNG of its own and laid on the screen. Frames replace and stay.
Shown DecodeApng(const Bytes& file) {
  Shown shown;
  Bytes head(file.begin(), file.begin() + 8), screen, frame;
  Bytes ihdr;
  int width = 0, left = 0, top = 0;
  std::uint32_t sequence = 0, frames = 0;
  const auto chunk = [](Bytes& out, const char* type, const std::uint8_t* data, std::size_t size) {
    const std::size_t start = out.size();
    out.resize(start + size + 12);
    const auto put = [&](std::size_t at, std::uint32_t v) {
      for (int i = 0; i < 4; ++i) out[at + static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(v >> (24 - 8 * i));
    };
    put(start, static_cast<std::uint32_t>(size));
    std::memcpy(&out[start + 4], type, 4);
    if (size) std::memcpy(&out[start + 8], data, size);
    put(start + 8 + size, static_cast<std::uint32_t>(crc32(0, &out[start + 4], static_cast<uInt>(size + 4))));
  };
  const auto close = [&] {
    if (frame.empty()) return;
    chunk(frame, "IEND", nullptr, 0);
    int w = 0, h = 0;
    const Bytes pixels = DecodePng(frame, w, h);
    if (screen.empty()) screen.resize(pixels.size()), width = w;
    for (int y = 0; y < h; ++y)
      std::memcpy(&screen[static_cast<std::size_t>((top + y) * width + left) * 4],
                  &pixels[static_cast<std::size_t>(y * w) * 4], static_cast<std::size_t>(w) * 4);
    shown.screens.push_back(screen);
    frame.clear();
  };
  for (std::size_t i = 8; i + 12 <= file.size(); i += U32(&file[i]) + 12) {
    const std::size_t size = U32(&file[i]);
    const std::uint8_t* data = &file[i + 8];
    const std::string type(reinterpret_cast<const char*>(&file[i + 4]), 4);
    EXPECT_EQ(U32(data + size), crc32(0, &file[i + 4], static_cast<uInt>(size + 4))) << type;
    if (type == "IHDR") ihdr.assign(data, data + size);
    if (type == "acTL") frames = U32(data);
    if (type == "PLTE" || type == "tRNS") chunk(head, type.c_str(), data, size);
    if (type == "fcTL") {
      close();
      EXPECT_EQ(U32(data), sequence++);
      left = static_cast<int>(U32(data + 12)), top = static_cast<int>(U32(data + 16));
      shown.delays.push_back((data[20] << 8 | data[21]) * 1000 / (data[22] << 8 | data[23]));
      std::memcpy(ihdr.data(), data + 4, 8);
      frame.assign(head.begin(), head.begin() + 8);
      chunk(frame, "IHDR", ihdr.data(), ihdr.size());
      frame.insert(frame.end(), head.begin() + 8, head.end());
    }
    if (type == "IDAT") chunk(frame, "IDAT", data, size);
    if (type == "fdAT") {
      EXPECT_EQ(U32(data), sequence++);
      chunk(frame, "IDAT", data + 4, size - 4);
    }
  }
  close();
  EXPECT_EQ(frames, shown.screens.size());
  return shown;
}

Shown DecodeWebp(const Bytes& file) {
  Shown shown;
  const WebPData data{file.data(), file.size()};
  WebPAnimDecoder* decoder = WebPAnimDecoderNew(&data, nullptr);
  if (!decoder) return shown;
  WebPAnimInfo info;
  WebPAnimDecoderGetInfo(decoder, &info);
  std::uint8_t* pixels;
  int time = 0, last = 0;
  while (WebPAnimDecoderGetNext(decoder, &pixels, &time)) {
    shown.screens.emplace_back(pixels, pixels + std::size_t{4} * info.canvas_width * info.canvas_height);
    shown.delays.push_back(time - last);
    last = time;
  }
  WebPAnimDecoderDelete(decoder);
  return shown;
}

struct Frame {
  Bytes dib;
  int bits, delay, transparentIndex = -1;
  bool standAlone = false;
};

Bytes Encode(const char* extension, const std::vector<Frame>& frames, int width, int height, int unit) {
  const testing::TemporaryFolder folder;
  std::string error;
  Output output = Output::File(folder / "out", error);
  Encoder encoder = FindFormat(extension)->open(output, {width, height, static_cast<int>(frames.size()), unit, -1});
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

// A picture with a moving dot; `alpha` of the place around it.
std::uint32_t Value(int x, int y, int f, std::uint32_t alpha) {
  return x == f * 3 && y == f ? 0xFF2040E0u : alpha << 24 | (alpha ? static_cast<std::uint32_t>(x * 11 | y << 12) : 0u);
}

TEST(Encoders, TrueColourAnimationsKeepEveryPixelAndDelay) {
  for (const int bits : {24, 32}) {
    for (const char* extension : {".png", ".webp"}) {
      SCOPED_TRACE(std::string(extension) + " " + std::to_string(bits));
      const std::uint32_t alpha = bits == 24 ? 255 : 128;
      std::vector<Frame> frames;
      for (int f = 0; f < 5; ++f)
        frames.push_back(
            {testing::MakeDib(kWidth, kHeight, bits, {}, [&](int x, int y) { return Value(x, y, f, alpha); }), bits,
             40 + f, bits == 32 ? 0 : -1, bits == 32});
      const Bytes file = Encode(extension, frames, kWidth, kHeight, 1);
      const Shown shown = std::string(extension) == ".png" ? DecodeApng(file) : DecodeWebp(file);
      ASSERT_EQ(shown.screens.size(), 5u);
      for (int f = 0; f < 5; ++f) {
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
                .find("--true-color"),
            std::string::npos);
}

TEST(Encoders, AFolderGetsNumberedPictures) {
  const testing::TemporaryFolder folder;
  std::string error;
  Output output = Output::Folder(folder / "frames", error);
  Encoder encoder = FindFormat(kFolderExtension)->open(output, {4, 4, 2, 1, -1});
  for (int f = 0; f < 2; ++f)
    EXPECT_EQ(
        encoder.add(testing::ImageOf(testing::MakeDib(4, 4, 24, {}, [f](int, int) { return f * 77; }), 4, 4, 24, f, 1)),
        "");
  EXPECT_EQ(encoder.finish() + output.Keep(), "");
  int width = 0, height = 0;
  EXPECT_EQ(DecodePng(testing::ReadBytes(folder / "frames/0001.png"), width, height)[0], 77);
}

}  // namespace
}  // namespace glyphmotion
