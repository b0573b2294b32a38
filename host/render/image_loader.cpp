// SPDX-License-Identifier: MIT
#include "host/render/image_loader.h"

#include <png.h>
#include <webp/decode.h>

#include <cstring>
#include <optional>
#include <vector>

#include "platform/files.h"

namespace glyphmotion {
namespace {

constexpr int kMaxSide = 8192;
constexpr std::size_t kMaxFileBytes = std::size_t{256} << 20;

// Rows of blue, green, red, alpha from the top, composed on white.
PackedDib FromBgra(const std::uint8_t* pixels, int width, int height) {
  PackedDib dib = BlankDib(width, height, nullptr, 24);
  const DibView view(dib);
  if (!view) return {};
  for (int y = 0; y < height; ++y) {
    std::uint8_t* to = view.Row(y);
    for (int x = 0; x < width; ++x, pixels += 4, to += 3) {
      for (int channel = 0; channel < 3; ++channel) to[channel] = BlendChannel(255, pixels[channel], pixels[3]);
    }
  }
  return dib;
}

PackedDib DecodePng(const std::string& bytes) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  PackedDib dib;
  if (png_image_begin_read_from_memory(&image, bytes.data(), bytes.size()) && image.width <= kMaxSide &&
      image.height <= kMaxSide) {
    image.format = PNG_FORMAT_BGRA;
    std::vector<std::uint8_t> pixels(PNG_IMAGE_SIZE(image));
    if (png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr)) {
      dib = FromBgra(pixels.data(), static_cast<int>(image.width), static_cast<int>(image.height));
    }
  }
  png_image_free(&image);
  return dib;
}

PackedDib DecodeWebp(const std::string& bytes) {
  const auto* data = reinterpret_cast<const std::uint8_t*>(bytes.data());
  int width = 0, height = 0;
  if (!WebPGetInfo(data, bytes.size(), &width, &height) || width > kMaxSide || height > kMaxSide) return {};
  std::vector<std::uint8_t> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
  if (!WebPDecodeBGRAInto(data, bytes.size(), pixels.data(), pixels.size(), width * 4)) return {};
  return FromBgra(pixels.data(), width, height);
}

}  // namespace

PackedDib LoadPicture(const std::string& path, std::string& error) {
  std::string why;
  const std::optional<std::string> bytes = ReadWholeFile(path, kMaxFileBytes, &why);
  if (!bytes) {
    error = "the picture '" + path + "' cannot be read: " + why;
    return {};
  }
  PackedDib dib = bytes->compare(0, 4, "RIFF") == 0 ? DecodeWebp(*bytes) : DecodePng(*bytes);
  if (!dib) error = "'" + path + "' is not a readable picture; use a PNG or WebP of at most 8192 x 8192 pixels";
  return dib;
}

}  // namespace glyphmotion
