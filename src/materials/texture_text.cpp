// SPDX-License-Identifier: MIT
#include "materials/texture_text.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "materials/fractal_texture.h"
#include "materials/shipped.h"
#include "materials/text_parts.h"
#include "materials/texture_library.h"
#include "platform/nearest_name.h"

namespace glyphmotion {
namespace {

// A texture's fields by their public names. A name without a number sets all `count` fields, with a number from 1 a
// single one.
struct FieldName {
  const char* name;
  std::size_t offset;
  int count;
  enum { Whole, Float, Colours, Curve, Shape, Seeds } kind;
  double least, most;
};
constexpr FieldName kFields[] = {
    {"seed", offsetof(TextureSpec, SeedValue), 5, FieldName::Seeds, 0, 4294967295.0},
    {"size", offsetof(TextureSpec, MatrixSize), 1, FieldName::Whole, 1, 1024},
    {"back", offsetof(TextureSpec, BackColour), 1, FieldName::Colours, 0, 0},
    {"fore", offsetof(TextureSpec, ForeColour), 5, FieldName::Colours, 0, 0},
    {"power", offsetof(TextureSpec, Power), 5, FieldName::Float, 0, 100},
    {"density", offsetof(TextureSpec, Dimension), 5, FieldName::Float, 0, 10},
    {"craters", offsetof(TextureSpec, CreaterCount), 1, FieldName::Whole, 0, 100000},
    {"depth", offsetof(TextureSpec, CreaterDepth), 1, FieldName::Float, 0, 10},
    {"red", offsetof(TextureSpec, ColorRed), 4, FieldName::Curve, 0, 1},
    {"green", offsetof(TextureSpec, ColorGreen), 4, FieldName::Curve, 0, 1},
    {"blue", offsetof(TextureSpec, ColorBlue), 4, FieldName::Curve, 0, 1},
    {"bubbles", offsetof(TextureSpec, BubbleCount), 1, FieldName::Whole, 0, 1024},
    {"bubblesize", offsetof(TextureSpec, BubbleSize), 1, FieldName::Whole, 1, 1000},
    {"bubblepower", offsetof(TextureSpec, BubblePower), 1, FieldName::Float, -100, 100},
    {"shape", offsetof(TextureSpec, BubbleShape), 1, FieldName::Shape, 0, 3},
    {"noise", offsetof(TextureSpec, PerturbationPower), 1, FieldName::Float, 0, 100},
};

template <typename T>
void Put(TextureSpec& parameters, std::size_t offset, int i, T value) {
  static_assert(sizeof(T) == 4);
  std::memcpy(reinterpret_cast<char*>(&parameters) + offset + 4 * static_cast<std::size_t>(i), &value, sizeof(value));
}

bool TakeValue(const FieldName& field, int first, int end, const std::string& key, const std::string& text,
               TextureSpec& parameters, std::string& error) {
  double value = 0;
  Colour colour = 0;
  switch (field.kind) {
    case FieldName::Colours:
      if (!ColourPart(text, colour, error)) return false;
      for (int i = first; i < end; ++i) Put(parameters, field.offset, i, colour);
      return true;
    case FieldName::Curve: {
      const auto parts = Split(text, "/");
      if (parts.size() != 4)
        return Fail(error,
                    Quote(text) + " is not a value for " + key + "; write four numbers, for example 0/0.3/0.7/1");
      for (int i = 0; i < 4; ++i) {
        if (!NumberWithin(key, parts[static_cast<std::size_t>(i)], field.least, field.most, false, value, error))
          return false;
        Put(parameters, field.offset, i, static_cast<float>(value));
      }
      return true;
    }
    case FieldName::Shape: {
      static constexpr const char* shapes[] = {"ellipse", "fuzzy", "luminous", "sphere"};
      const auto found = std::find(std::begin(shapes), std::end(shapes), Plain(text));
      if (found == std::end(shapes))
        return Fail(error, Quote(text) + " is not a shape; write ellipse, fuzzy, luminous or sphere");
      Put(parameters, field.offset, 0, static_cast<std::uint32_t>(found - shapes));
      return true;
    }
    default:
      if (!NumberWithin(key, text, field.least, field.most, field.kind != FieldName::Float, value, error)) return false;
      for (int i = first; i < end; ++i) {
        if (field.kind == FieldName::Float) {
          Put(parameters, field.offset, i, static_cast<float>(value));
        } else {
          Put(parameters, field.offset, i, static_cast<std::uint32_t>(static_cast<std::int64_t>(value) + (i - first)));
        }
      }
      return true;
  }
}

// "fore2=#fff", "seed=7"
bool TakeField(const std::string& part, TextureSpec& parameters, std::string& error) {
  const std::size_t equals = part.find('=');
  const std::string key = part.substr(0, equals), text = equals == std::string::npos ? "" : part.substr(equals + 1);
  for (const FieldName& field : kFields) {
    if (key == field.name) return TakeValue(field, 0, field.count, key, text, parameters, error);
    const std::string_view name = field.name;
    if (field.count != 5 || key.size() != name.size() + 1 || !key.starts_with(name)) continue;
    const int i = key.back() - '1';
    if (i >= 0 && i < 5) return TakeValue(field, i, i + 1, key, text, parameters, error);
  }
  std::string names;
  for (const FieldName& field : kFields) names += std::string(names.empty() ? "" : ", ") + field.name;
  return Fail(error, Quote(part) + " is not a field of a texture; write NAME=VALUE, where NAME is one of " + names);
}

bool TakeTexture(const std::string& name, TextureSpec& parameters, std::string& error) {
  static constexpr const char* types[kTextureTypes] = {"fractal2", "fractal3", "fractal4",
                                                       "fractal5", "craters",  "perturbation"};
  const auto found = std::find(std::begin(types), std::end(types), Plain(name));
  if (found != std::end(types)) {
    parameters.TextureType = static_cast<std::uint32_t>(found - types);
    return true;
  }
  std::vector<std::string> names;
  for (const std::string& path : LibraryPathsOf(kTextureLibraryName)) {
    TextureLibrary library;
    ReadTextureLibrary(path, library);
    for (const NamedTexture& texture : library.textures) {
      names.push_back(texture.name);
      if (Plain(texture.name) != Plain(name)) continue;
      parameters = texture.parameters;
      return true;
    }
  }
  if (ShippedLibraryPath(kTextureLibraryName).empty()) {
    return Fail(error, NoShippedLibrary(kTextureLibraryName) + ", or write texture:fractal2,...");
  }
  return Fail(
      error,
      "there is no texture " + Quote(name) +
          "; write the name of a shipped texture or of your own, or fractal2 to fractal5, craters or perturbation" +
          Suggestion(name, names));
}

}  // namespace

bool ParseTexture(const std::string& text, Material& material, std::string& error) {
  TextureSpec parameters = material.Texture;
  const auto parts = Split(text, ",;");
  if (!TakeTexture(parts[0], parameters, error)) return false;
  for (std::size_t i = 1; i < parts.size(); ++i) {
    if (!TakeField(parts[i], parameters, error)) return false;
  }
  material.Texture = parameters;
  material.Kind = kTexture;
  return true;
}

std::vector<std::string> TextureNames() {
  std::vector<std::string> names, known;
  for (const std::string& path : LibraryPathsOf(kTextureLibraryName)) {
    TextureLibrary library;
    ReadTextureLibrary(path, library);
    for (const NamedTexture& texture : library.textures) {
      if (std::find(known.begin(), known.end(), Plain(texture.name)) != known.end()) continue;
      names.push_back(texture.name);
      known.push_back(Plain(texture.name));
    }
  }
  return names;
}

}  // namespace glyphmotion
