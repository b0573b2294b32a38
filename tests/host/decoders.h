// SPDX-License-Identifier: MIT
// What other decoders than the program's own see in a file: giflib, libpng, libwebp. Each reports a broken file as a
// failed expectation.
#pragma once

#include <gif_lib.h>
#include <gtest/gtest.h>
#include <png.h>
#include <webp/demux.h>
#include <zlib.h>

#include <algorithm>
#include <cstring>

#include "host/host_helpers.h"

namespace glyphmotion::testing {

struct Shown {
  std::vector<Bytes> screens;  // red, green, blue, alpha
  std::vector<int> delays;     // milliseconds
};

inline std::uint32_t U32(const std::uint8_t* p) { return std::uint32_t{p[0]} << 24 | p[1] << 16 | p[2] << 8 | p[3]; }

inline Bytes DecodePng(const Bytes& file, int& width, int& height) {
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

inline bool HasFrames(const Bytes& png) {
  static constexpr std::uint8_t control[] = {'a', 'c', 'T', 'L'};
  return std::search(png.begin(), png.end(), std::begin(control), std::end(control)) != png.end();
}

// An animation's frames, each put together as a PNG of its own and laid on the screen. Frames replace and stay.
inline Shown DecodeApng(const Bytes& file) {
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

inline Shown DecodeWebp(const Bytes& file) {
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

using GifScreen = std::vector<std::uint32_t>;  // 0xFFBBGGRR, 0: nothing there

struct DecodedGif {
  int width = 0, height = 0, paletteEntries = 0;
  std::vector<GifScreen> screens;
  std::vector<int> delays;
  std::string comment;
  bool loops = false;
  std::size_t coded = 0;  // pixels in all images
  int withoutIndex = 0;   // images without a transparent index
};

struct GifSource {
  const Bytes& bytes;
  std::size_t at = 0;
};

inline void Lay(const SavedImage& image, const ColorMapObject& map, int transparent, DecodedGif& gif,
                GifScreen& screen) {
  const GifImageDesc& place = image.ImageDesc;
  gif.coded += static_cast<std::size_t>(place.Width) * static_cast<std::size_t>(place.Height);
  for (int y = 0; y < place.Height; ++y)
    for (int x = 0; x < place.Width; ++x) {
      const int index = image.RasterBits[y * place.Width + x];
      if (index == transparent) continue;
      ASSERT_LT(index, map.ColorCount);
      const GifColorType& c = map.Colors[index];
      screen.at(static_cast<std::size_t>((place.Top + y) * gif.width + place.Left + x)) =
          0xFF000000u | c.Red | std::uint32_t{c.Green} << 8 | std::uint32_t{c.Blue} << 16;
    }
}

inline DecodedGif DecodeGif(const Bytes& bytes) {
  DecodedGif gif;
  GifSource source{bytes};
  int error = 0;
  GifFileType* file = DGifOpen(
      &source,
      [](GifFileType* f, GifByteType* out, int count) {
        auto* from = static_cast<GifSource*>(f->UserData);
        const std::size_t n = std::min(static_cast<std::size_t>(count), from->bytes.size() - from->at);
        std::memcpy(out, from->bytes.data() + from->at, n);
        from->at += n;
        return static_cast<int>(n);
      },
      &error);
  if (!file) return gif;
  EXPECT_EQ(DGifSlurp(file), GIF_OK) << GifErrorString(file->Error);
  gif.width = file->SWidth;
  gif.height = file->SHeight;
  gif.paletteEntries = file->SColorMap ? file->SColorMap->ColorCount : 0;
  GifScreen screen(static_cast<std::size_t>(gif.width * gif.height), 0);
  for (int i = 0; i < file->ImageCount; ++i) {
    const SavedImage& image = file->SavedImages[i];
    GraphicsControlBlock control{0, false, 0, NO_TRANSPARENT_COLOR};
    DGifSavedExtensionToGCB(file, i, &control);
    for (int e = 0; e < image.ExtensionBlockCount; ++e)
      gif.loops |= image.ExtensionBlocks[e].Function == APPLICATION_EXT_FUNC_CODE;
    Lay(image, image.ImageDesc.ColorMap ? *image.ImageDesc.ColorMap : *file->SColorMap, control.TransparentColor, gif,
        screen);
    gif.screens.push_back(screen);
    gif.delays.push_back(control.DelayTime);
    gif.withoutIndex += control.TransparentColor == NO_TRANSPARENT_COLOR;
    if (control.DisposalMode != DISPOSE_BACKGROUND) continue;
    // Some decoders paint the box where the frame has no transparent index.
    const std::uint32_t cleared = control.TransparentColor == NO_TRANSPARENT_COLOR ? 0xFF123456 : 0;
    for (int y = 0; y < image.ImageDesc.Height; ++y)
      for (int x = 0; x < image.ImageDesc.Width; ++x)
        screen[static_cast<std::size_t>((image.ImageDesc.Top + y) * gif.width + image.ImageDesc.Left + x)] = cleared;
  }
  for (int e = 0; e < file->ExtensionBlockCount; ++e)
    if (file->ExtensionBlocks[e].Function == COMMENT_EXT_FUNC_CODE || file->ExtensionBlocks[e].Function == 0)
      gif.comment.append(reinterpret_cast<const char*>(file->ExtensionBlocks[e].Bytes),
                         static_cast<std::size_t>(file->ExtensionBlocks[e].ByteCount));
  DGifCloseFile(file, &error);
  return gif;
}

}  // namespace glyphmotion::testing
