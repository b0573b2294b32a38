// SPDX-License-Identifier: MIT
#include "host/program/swatch.h"

#include <CLI/CLI.hpp>
#include <filesystem>

#include "host/encoders/encoders.h"
#include "materials/material_text.h"
#include "materials/texture_library.h"
#include "materials/tile.h"

namespace glyphmotion {
namespace {

constexpr int kMaxSide = 8192;

struct Request {
  std::string material, output;
  int width = 256, height = 256;
};

std::string Parse(const std::vector<std::string>& words, Request& request) {
  CLI::App app;
  app.add_option("material", request.material)->required();
  app.add_option("-o,--output", request.output)->required();
  app.add_option("--width", request.width)->check(CLI::Range(1, kMaxSide));
  app.add_option("--height", request.height)->check(CLI::Range(1, kMaxSide));
  std::vector<std::string> reversed(words.rbegin(), words.rend() - 1);
  try {
    app.parse(reversed);
  } catch (const CLI::ParseError& error) {
    return std::string(error.what()) + "; write swatch MATERIAL -o FILE.png [--width N] [--height N]";
  }
  return {};
}

std::string Write(const PackedDib& picture, const std::string& path) {
  const std::string extension = std::filesystem::path(path).extension().string();
  const EncoderFormat* format = FindFormat(extension);
  if (!format || format->paletteFormat) return "'" + path + "' has no file type for a swatch; use .png or .webp";
  std::string error;
  Output output = Output::File(path, error);
  if (!error.empty()) return error;
  const DibView view(picture);
  const LockedBlock<DibHeader> bytes(picture.Handle());
  Image image;
  image.dib = {reinterpret_cast<const std::uint8_t*>(bytes.get()), BlockSize(picture.Handle())};
  image.width = view.Width();
  image.height = view.Height();
  image.bits = view.Bits();
  Encoder encoder = format->open(output, {image.width, image.height, 1, 1, -1});
  error = encoder.add(image);
  if (error.empty()) error = encoder.finish();
  return error.empty() ? output.Keep() : error;
}

}  // namespace

bool IsSwatch(const std::vector<std::string>& words) {
  return words.size() >= 2 && words[0] == "swatch" && (words[1][0] == '#' || words[1].find(':') != std::string::npos);
}

std::string WriteSwatch(const std::vector<std::string>& words) {
  Request request;
  std::string error = Parse(words, request);
  if (!error.empty()) return error;
  Material material;
  DefaultMaterial(material, 0);
  if (!ParseMaterial(request.material, material, error)) return error;
  if (!material.Tile.TileBitmap) LoadTileOf(material.Tile);
  const PackedDib tile(HandleOf(material.Tile.TileBitmap));
  const PackedDib picture = MaterialToBitmap(material, request.width, request.height);
  // Any other fill of a size that is allowed fails for lack of memory alone.
  if (!picture && (material.Kind != kTexture || material.Texture.TextureType < kTextureTypes)) throw std::bad_alloc();
  if (!picture) return "the material '" + request.material + "' cannot be drawn at this size; try a smaller one";
  return Write(picture, request.output);
}

}  // namespace glyphmotion
