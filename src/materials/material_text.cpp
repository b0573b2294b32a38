// SPDX-License-Identifier: MIT
#include "materials/material_text.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string_view>

#include "materials/fountain.h"
#include "materials/fractal_texture.h"
#include "materials/shipped.h"
#include "materials/texture_library.h"
#include "materials/tile.h"
#include "platform/ascii.h"
#include "platform/nearest_name.h"
#include "platform/number_text.h"
#include "platform/run_state.h"
#include "resources/shipped_fountains.h"
#include "resources/shipped_tiles.h"

namespace glyphmotion {
namespace {

constexpr char kForms[] =
    "write #RRGGBB, the name of a colour, gradient:..., fountain:..., texture:NAME, tile:NAME, tile:FILE#N, mtrl:FILE "
    "or image:FILE";

ImageLoader& Loader() { return CurrentRun().Member<ImageLoader>(); }

std::string Quote(std::string_view text) { return "'" + std::string(text) + "'"; }

bool Fail(std::string& error, std::string sentence) {
  error = std::move(sentence);
  return false;
}

// A name reduced for comparison: lower case, without blanks, dashes and underscores.
std::string Plain(std::string_view name) {
  std::string plain;
  for (const char c : name) {
    if (c != ' ' && c != '-' && c != '_') plain += ToLower(c);
  }
  return plain;
}

// The text between separators, with blanks trimmed from each part.
std::vector<std::string> Split(std::string_view text, std::string_view separators) {
  std::vector<std::string> parts;
  for (std::size_t at = 0; at <= text.size();) {
    const std::size_t end = std::min(text.find_first_of(separators, at), text.size());
    std::string_view part = text.substr(at, end - at);
    while (!part.empty() && part.front() == ' ') part.remove_prefix(1);
    while (!part.empty() && part.back() == ' ') part.remove_suffix(1);
    parts.emplace_back(part);
    at = end + 1;
  }
  return parts;
}

std::optional<double> NumberOf(std::string_view text) {
  double value = 0;
  if (!text.empty() && text[0] == '+') text.remove_prefix(1);
  const std::size_t read = ReadNumber(text, value);
  if (!read || read != text.size() || !(value > -1e12 && value < 1e12)) return std::nullopt;
  return value;
}

// Reads a number within a range; a whole number if `whole`.
bool NumberWithin(const std::string& key, const std::string& text, double least, double most, bool whole, double& value,
                  std::string& error) {
  const auto number = NumberOf(text);
  if (number && *number >= least && *number <= most &&
      (!whole || *number == static_cast<double>(static_cast<std::int64_t>(*number)))) {
    value = *number;
    return true;
  }
  const auto shown = [](double v) {
    std::string digits = std::to_string(v);
    digits.erase(digits.find_last_not_of('0') + 1);
    if (digits.back() == '.') digits.pop_back();
    return digits;
  };
  return Fail(error, Quote(text) + " is not a value for " + key + "; write " + (whole ? "a whole number" : "a number") +
                         " from " + shown(least) + " to " + shown(most));
}

bool ColourPart(const std::string& text, Colour& colour, std::string& error) {
  int alpha = 0;
  if (!ParseColourAndAlpha(text, colour, alpha))
    return Fail(error, Quote(text) + " is not a colour; write #RRGGBB or a name such as red" + ColourSuggestion(text));
  return alpha == 255 || Fail(error, Quote(text) + " has an alpha value, which is not possible here; write #RRGGBB");
}

// A part that must be a colour, if it is anything: #..., a name, either with a position.
bool LooksLikeColour(const std::string& part) {
  Colour colour = 0;
  int alpha = 0;
  return part.starts_with('#') || ParseColourAndAlpha(part.substr(0, part.find_first_of("-@")), colour, alpha);
}

// Gradients and fountains -----------------------------------------------------------------------------------------

bool TakeShape(const std::string& part, GradientSpec& gradient) {
  static constexpr const char* shapes[] = {"linear", "conical", "elliptical", "rectangular"};
  const auto found = std::find(std::begin(shapes), std::end(shapes), Plain(part));
  if (found == std::end(shapes)) return false;
  gradient.GradientType = static_cast<std::uint32_t>(found - shapes);
  return true;
}

// rotation=, pad=, mid=, cx=, cy=
bool TakeOption(const std::string& part, GradientSpec& gradient, std::string& error) {
  const std::size_t equals = part.find('=');
  const std::string key = part.substr(0, equals), text = equals == std::string::npos ? "" : part.substr(equals + 1);
  const struct {
    const char* key;
    int least, most;
    std::size_t offset;
  } options[] = {{"rotation", -360, 360, offsetof(GradientSpec, Rotation)},
                 {"pad", 0, 45, offsetof(GradientSpec, EdgePad)},
                 {"mid", 1, 99, offsetof(GradientSpec, Midpoint)},
                 {"cx", -50, 50, offsetof(GradientSpec, CenterX)},
                 {"cy", -50, 50, offsetof(GradientSpec, CenterY)}};
  for (const auto& option : options) {
    if (key != option.key) continue;
    double value = 0;
    if (!NumberWithin(key, text, option.least, option.most, true, value, error)) return false;
    const auto number = static_cast<std::int32_t>(value);
    std::memcpy(reinterpret_cast<char*>(&gradient) + option.offset, &number, sizeof(number));
    return true;
  }
  return Fail(error,
              Quote(part) +
                  " is not part of a gradient; write a shape (linear, conical, elliptical, rectangular), colours, "
                  "rotation=, pad=, mid=, cx= or cy=");
}

struct Stop {
  Colour colour;
  int position;  // -1: not given
};

bool ParseStop(const std::string& part, Stop& stop, std::string& error) {
  const std::size_t at = part.find('@');
  stop.position = -1;
  double value = 0;
  if (at != std::string::npos) {
    if (!NumberWithin("a position", part.substr(at + 1), 0, 255, true, value, error)) return false;
    stop.position = static_cast<int>(value);
  }
  return ColourPart(part.substr(0, at), stop.colour, error);
}

// The first and the last colour are the ends; one with a position also gets a marker there. Markers at 0 would sort
// last and paint over the others, so the first stop at 0 becomes the start and any other moves to 1.
bool TakeStops(std::vector<Stop> stops, FountainSpec& fountain, std::string& error) {
  if (stops.size() < 2)
    return Fail(error, "a fountain needs at least two colours; write #first,#colour@position,...,#last");
  const std::uint32_t flags = fountain.Flags;
  DefaultFountain(fountain, 0);
  fountain.Flags = flags;
  fountain.StartColour = stops.front().colour;
  fountain.EndColour = stops.back().colour;
  bool started = stops.front().position < 0;
  const auto steps = static_cast<int>(stops.size()) - 1;
  for (int i = 0; i <= steps; ++i) {
    Stop& stop = stops[static_cast<std::size_t>(i)];
    if ((i == 0 || i == steps) && stop.position < 0) continue;
    if (stop.position < 0) stop.position = 255 * i / steps;
    if (stop.position == 0 && !started) {
      started = true;
      fountain.StartColour = stop.colour;
      continue;
    }
    stop.position = std::max(stop.position, 1);
    if (fountain.MarkerCount == kMaxMarkers) return Fail(error, "a fountain has at most 64 colours between its ends");
    fountain.Markers[fountain.MarkerCount++] = MakeMarker(stop.position, stop.colour);
  }
  SortMarkers(fountain);
  return true;
}

// Two colours are a plain gradient; more are a fountain that spreads them evenly.
bool ParseGradient(const std::string& text, Material& material, std::string& error) {
  GradientSpec gradient = material.Gradient;
  FountainSpec fountain = material.Fountain;
  gradient.TwoColor = 1;
  for (const std::string& part : Split(text, ",;")) {
    if (TakeShape(part, gradient)) continue;
    if (!LooksLikeColour(part)) {
      if (!TakeOption(part, gradient, error)) return false;
      continue;
    }
    std::vector<Stop> stops;
    for (const std::string& colour : Split(part, "-")) {
      if (!ColourPart(colour, stops.emplace_back(Stop{0, -1}).colour, error)) return false;
    }
    if (stops.size() < 2)
      return Fail(error, Quote(part) + " is one colour, and a gradient needs two or more: write #RRGGBB-#RRGGBB");
    gradient.TwoColor = stops.size() == 2;
    if (gradient.TwoColor) {
      gradient.StartColour = stops.front().colour;
      gradient.EndColour = stops.back().colour;
    } else {
      fountain.Preview = 0;
      if (!TakeStops(std::move(stops), fountain, error)) return false;
    }
  }
  if (!gradient.TwoColor) material.Fountain = fountain;
  material.Gradient = gradient;
  material.Kind = kGradient;
  return true;
}

bool IsFountain(const std::string& name) {
  const auto rows = ShippedFountains();
  return std::any_of(rows.begin(), rows.end(), [&](const auto& row) { return Plain(row.name) == Plain(name); });
}

bool TakeNamedFountain(const std::string& name, FountainSpec& fountain, std::string& error) {
  for (const ShippedFountain& row : ShippedFountains()) {
    if (Plain(row.name) != Plain(name)) continue;
    std::vector<Stop> stops;
    for (const std::string& part : Split(row.colours, ",")) {
      if (!ParseStop(part, stops.emplace_back(), error)) return false;
    }
    return TakeStops(std::move(stops), fountain, error);
  }
  std::string names;
  for (const std::string& known : FountainNames()) names += (names.empty() ? "" : ", ") + known;
  return Fail(error, "there is no fountain " + Quote(name) + "; write colours, or one of " + names);
}

bool ParseFountain(const std::string& text, Material& material, std::string& error) {
  GradientSpec gradient = material.Gradient;
  FountainSpec fountain = material.Fountain;
  fountain.Preview = 0;
  fountain.Flags &= ~kFountainLooped;
  std::vector<Stop> stops;
  bool named = false;
  const auto parts = Split(text, ",;");
  // A name of both kinds, such as gold, is a colour where another colour follows.
  const bool coloured = parts.size() > 1 && std::any_of(parts.begin() + 1, parts.end(), LooksLikeColour);
  for (const std::string& part : parts) {
    const bool isName = IsFountain(part) && !coloured;
    if (LooksLikeColour(part) && !isName) {
      if (!ParseStop(part, stops.emplace_back(), error)) return false;
    } else if (part.starts_with("loop=")) {
      double loop = 0;
      if (!NumberWithin("loop", part.substr(5), 0, 1, true, loop, error)) return false;
      if (loop != 0) fountain.Flags |= kFountainLooped;
    } else if (TakeShape(part, gradient)) {
    } else if (!named && stops.empty() && part.find('=') == std::string::npos) {
      if (!TakeNamedFountain(part, fountain, error)) return false;
      named = true;
    } else if (!TakeOption(part, gradient, error)) {
      return false;
    }
  }
  if (named && !stops.empty()) return Fail(error, "a fountain has either a name or colours; leave one of them out");
  if (!named && !TakeStops(std::move(stops), fountain, error)) return false;
  gradient.TwoColor = 0;
  material.Gradient = gradient;
  material.Fountain = fountain;
  material.Kind = kGradient;
  return true;
}

// Textures ------------------------------------------------------------------------------------------------------------

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

// Where a name is looked up: first the shipped library, so that its names mean the same everywhere, then the user's
// own.
std::vector<std::string> PathsOf(const char* library) {
  std::vector<std::string> paths = {ShippedLibraryPath(library), OwnLibraryPath(library)};
  std::erase(paths, "");
  return paths;
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
  for (const std::string& path : PathsOf(kTextureLibraryName)) {
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

// Tiles and files -----------------------------------------------------------------------------------------------------

// The index of a shipped tile; -1 for none of that name.
int FindTileName(const std::string& name) {
  const auto* found = std::find_if(std::begin(kShippedTileNames), std::end(kShippedTileNames),
                                   [&](const char* known) { return Plain(known) == Plain(name); });
  return found == std::end(kShippedTileNames) ? -1 : static_cast<int>(found - kShippedTileNames);
}

bool ParseTile(const std::string& text, Material& material, std::string& error) {
  const std::size_t hash = text.rfind('#');
  std::string path = text.substr(0, hash);
  double number = 1;
  if (const int named = hash == std::string::npos ? FindTileName(text) : -1; named >= 0) {
    number = named + 1;
    path.clear();
  }
  if (hash != std::string::npos && !NumberWithin("a tile's number", text.substr(hash + 1), 1, 1e6, true, number, error))
    return false;
  const auto index = static_cast<std::uint32_t>(number) - 1;
  const bool shipped = path.empty() || path == kTileLibraryName;
  const std::vector<std::string> paths = shipped ? PathsOf(kTileLibraryName) : std::vector{path};
  const auto found = std::find_if(paths.begin(), paths.end(),
                                  [&](const std::string& library) { return bool(LoadMatrixTile(library, index)); });
  if (found != paths.end()) {
    path = *found;
  } else if (shipped && ShippedLibraryPath(kTileLibraryName).empty()) {
    return Fail(error, NoShippedLibrary(kTileLibraryName));
  } else {
    if (shipped) path = kTileLibraryName;
    const std::string suggestion = Suggestion(path, {std::begin(kShippedTileNames), std::end(kShippedTileNames)});
    if (hash == std::string::npos && path.find('.') == std::string::npos) {
      return Fail(error, "there is no tile " + Quote(path) +
                             "; write the name of a shipped tile, or a library and a number, such as FILE.mtx#2" +
                             suggestion);
    }
    return Fail(error, "cannot read tile " + std::to_string(index + 1) + " of " + Quote(path) +
                           "; name an .mtx library with at least that many tiles" + suggestion);
  }
  if (path.size() >= sizeof(material.Tile.TilePath))
    return Fail(error, "the path " + Quote(path) + " is longer than 260 bytes; use a shorter one");
  SetTilePath(material.Tile, path);
  material.Tile.TileIndex = index;
  material.Tile.TileBitmap = 0;
  material.Kind = kTile;
  return true;
}

bool ParseMaterialFile(const std::string& path, Material& material, std::string& error) {
  return ReadMaterialFile(path, material) ||
         Fail(error, "cannot read the material file " + Quote(path) + "; name a .mtrl file of 1270 bytes");
}

bool ParseImage(const std::string& path, Material& material, std::string& error) {
  if (!Loader())
    return Fail(error, "pictures cannot be read here; write tile:FILE#N instead of " + Quote("image:" + path));
  PackedDib picture = Loader()(path, error);
  if (!picture) {
    if (error.empty()) error = "cannot read the picture " + Quote(path);
    return false;
  }
  PackedDib tile = TileTo24Bit(picture);
  if (!tile) return Fail(error, "the picture " + Quote(path) + " is too large for a tile; use a smaller one");
  material.Tile.TileBitmap = WordOf(tile.Release());
  SetTilePath(material.Tile, "");
  material.Tile.TileIndex = 0;
  material.Kind = kTile;
  return true;
}

}  // namespace

bool ParseMaterial(const std::string& text, Material& material, std::string& error) {
  static constexpr struct {
    std::string_view prefix;
    bool (*parse)(const std::string&, Material&, std::string&);
  } forms[] = {{"gradient:", ParseGradient}, {"fountain:", ParseFountain}, {"texture:", ParseTexture},
               {"tile:", ParseTile},         {"mtrl:", ParseMaterialFile}, {"image:", ParseImage}};
  error.clear();
  Colour colour = 0;
  if (LooksLikeColour(text)) {
    if (!ColourPart(text, colour, error)) return false;
    material.Kind = kSolid;
    material.Colour = colour;
    return true;
  }
  for (const auto& form : forms) {
    if (text.starts_with(form.prefix)) return form.parse(text.substr(form.prefix.size()), material, error);
  }
  return Fail(error, Quote(text) + " is not a fill; " + kForms + ColourSuggestion(text));
}

void SetImageLoader(ImageLoader loader) { Loader() = std::move(loader); }

std::vector<std::string> TextureNames() {
  std::vector<std::string> names, known;
  for (const std::string& path : PathsOf(kTextureLibraryName)) {
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

std::vector<std::string> FountainNames() {
  std::vector<std::string> names;
  for (const ShippedFountain& row : ShippedFountains()) names.emplace_back(row.name);
  return names;
}

std::vector<std::string> TileNames() {
  std::vector<std::string> names;
  for (const std::string& path : PathsOf(kTileLibraryName)) {
    TileLibrary library;
    ReadTileLibrary(path, library);
    for (std::size_t i = names.size(); i < library.tiles.size(); ++i) {
      const DibView view(library.tiles[i]);
      const bool named = path == ShippedLibraryPath(kTileLibraryName) && i < std::size(kShippedTileNames);
      names.push_back("#" + std::to_string(i + 1) + " " + std::to_string(view.Width()) + " x " +
                      std::to_string(view.Height()) + (named ? std::string(" ") + kShippedTileNames[i] : ""));
    }
  }
  return names;
}

}  // namespace glyphmotion
