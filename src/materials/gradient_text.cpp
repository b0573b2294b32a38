// SPDX-License-Identifier: MIT
#include "materials/gradient_text.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>

#include "materials/fountain.h"
#include "materials/text_parts.h"
#include "resources/shipped_fountains.h"

namespace glyphmotion {
namespace {

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

}  // namespace

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

std::vector<std::string> FountainNames() {
  std::vector<std::string> names;
  for (const ShippedFountain& row : ShippedFountains()) names.emplace_back(row.name);
  return names;
}

}  // namespace glyphmotion
