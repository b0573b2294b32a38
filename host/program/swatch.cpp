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
  const std::string usage = "write swatch MATERIAL -o FILE.png [--width N] [--height N]";
  if (words.size() == 1) return "swatch needs a material; " + usage;
  CLI::App app;
  app.add_option("material", request.material)->required();
  app.add_option("-o,--output", request.output)->required();
  app.add_option("--width", request.width)->check(CLI::Range(1, kMaxSide));
  app.add_option("--height", request.height)->check(CLI::Range(1, kMaxSide));
  std::vector<std::string> reversed(words.rbegin(), words.rend() - 1);
  try {
    app.parse(reversed);
  } catch (const CLI::ParseError& error) {
    return std::string(error.what()) + "; " + usage;
  }
  return {};
}

const EncoderFormat* FormatOf(const std::string& path) {
  const EncoderFormat* format = FindFormat(std::filesystem::path(path).extension().string());
  return format && !format->paletteFormat ? format : nullptr;
}

std::string Write(const PackedDib& picture, const std::string& path) {
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
  Encoder encoder = FormatOf(path)->open(output, {image.width, image.height, 1, 1, -1});
  error = encoder.add(image);
  if (error.empty()) error = encoder.finish();
  return error.empty() ? output.Keep() : error;
}

}  // namespace

bool IsSwatch(const std::vector<std::string>& words) {
  if (words.empty() || words[0] != "swatch") return false;
  return words.size() == 1 || words[1].starts_with('#') || words[1].find(':') != std::string::npos;
}

std::string WriteSwatch(const std::vector<std::string>& words, bool& badUsage) {
  badUsage = true;
  Request request;
  std::string error = Parse(words, request);
  if (!error.empty()) return error;
  if (!FormatOf(request.output))
    return "'" + request.output + "' has an unknown file type for a swatch; use a name that ends in .png or .webp";
  Material material;
  DefaultMaterial(material, 0);
  if (!ParseMaterial(request.material, material, error)) return error;
  badUsage = false;
  if (!material.Tile.TileBitmap) LoadTileOf(material.Tile);
  const PackedDib tile(HandleOf(material.Tile.TileBitmap));
  const PackedDib picture = MaterialToBitmap(material, request.width, request.height);
  // Any other fill of an allowed size fails only when out of memory.
  if (!picture && (material.Kind != kTexture || material.Texture.TextureType < kTextureTypes)) throw std::bad_alloc();
  if (!picture) return "the material '" + request.material + "' cannot be drawn at this size; try a smaller one";
  return Write(picture, request.output);
}

}  // namespace glyphmotion
