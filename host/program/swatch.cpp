// SPDX-License-Identifier: MIT
#include "host/program/swatch.h"

#include <filesystem>

#include "host/encoders/encoders.h"
#include "host/options/option_table.h"
#include "host/options/values.h"
#include "host/program/command_line.h"
#include "materials/material_text.h"
#include "materials/texture_library.h"
#include "materials/tile.h"

namespace glyphmotion {
namespace {

constexpr OptionRow kRows[] = {
    {"-o,--output", "FILE", "", "The file to write: .png or .webp"},
    {"--width", "N", "", "Width in pixels", nullptr, 1, 8192},
    {"--height", "N", "", "Height in pixels", nullptr, 1, 8192},
};
constexpr const char* kUsage = "write swatch MATERIAL -o FILE.png [--width N] [--height N]";

struct Request {
  std::string material, output;
  int width = 256, height = 256;
};

// Throws UsageError.
Request Read(const std::vector<std::string>& words) {
  const TypedWords typed = SortWords({words.begin() + 1, words.end()}, kRows, kUsage);
  if (typed.text.value_or("").empty()) Refuse(std::string("swatch needs a material; ") + kUsage);
  if (!typed.Has("--output")) Refuse(std::string("swatch needs an output; ") + kUsage);
  Request request{*typed.text, typed.Value("--output")};
  for (const OptionRow& row : kRows) {
    for (const std::string& value : typed.Values(LongName(row))) CheckValue(row, value);
  }
  if (typed.Has("--width")) request.width = static_cast<int>(*WholeNumber(typed.Value("--width")));
  if (typed.Has("--height")) request.height = static_cast<int>(*WholeNumber(typed.Value("--height")));
  return request;
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
  return words.size() == 1 || !words[1].starts_with('-');
}

std::string WriteSwatch(const std::vector<std::string>& words, bool& badUsage) {
  badUsage = true;
  Request request;
  try {
    request = Read(words);
  } catch (const UsageError& error) {
    return error.sentence;
  }
  std::string error;
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
