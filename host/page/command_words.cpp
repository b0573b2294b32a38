// SPDX-License-Identifier: MIT
#include "host/page/command_words.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <map>
#include <string_view>

#include "effects/effect_table.h"
#include "host/page/control_facts.h"
#include "host/render/file_values.h"
#include "materials/colour_text.h"
#include "materials/material.h"
#include "materials/shipped.h"
#include "materials/tile.h"
#include "platform/ascii.h"
#include "platform/number_text.h"
#include "resources/templates.h"
#include "text/compositing.h"

namespace glyphmotion {
namespace {

constexpr std::size_t kStem = 6;

// The values of a document's lines by control.
std::map<int, std::string> ValuesOf(const std::string& document) {
  std::map<int, std::string> values;
  std::string_view rest = document;
  while (!rest.empty()) {
    std::string_view line = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    const std::size_t equals = line.find('=');
    if (line.starts_with(';') || equals == std::string_view::npos || equals <= kStem) continue;
    int id = 0;
    std::from_chars(line.data() + kStem, line.data() + equals, id);
    values[id] = line.substr(equals + 1);
  }
  return values;
}

// --- Materials ---

std::string GradientTail(const GradientSpec& gradient, const GradientSpec& plain) {
  static constexpr const char* shapes[] = {"linear", "conical", "elliptical", "rectangular"};
  std::string tail;
  if (gradient.GradientType && gradient.GradientType < 4) tail += std::string(",") + shapes[gradient.GradientType];
  const auto add = [&](const char* key, std::int32_t value, std::int32_t usual) {
    if (value != usual) tail += std::string(",") + key + "=" + std::to_string(value);
  };
  add("rotation", gradient.Rotation, plain.Rotation);
  add("pad", gradient.EdgePad, plain.EdgePad);
  if (gradient.TwoColor) add("mid", gradient.Midpoint, plain.Midpoint);
  add("cx", gradient.CenterX, plain.CenterX);
  add("cy", gradient.CenterY, plain.CenterY);
  return tail;
}

std::string GradientWord(const Material& material, const Material& plain) {
  const GradientSpec& gradient = material.Gradient;
  if (gradient.TwoColor) {
    return "gradient:" + HexColour(gradient.StartColour) + "-" + HexColour(gradient.EndColour) +
           GradientTail(gradient, plain.Gradient);
  }
  const FountainSpec& fountain = material.Fountain;
  std::string word = "fountain:" + HexColour(fountain.StartColour);
  for (std::uint32_t i = 0; i < std::min<std::uint32_t>(+fountain.MarkerCount, 64); ++i) {
    word += "," + HexColour(fountain.Markers[i]) + "@" + std::to_string(fountain.Markers[i] >> 24);
  }
  word += "," + HexColour(fountain.EndColour);
  if (fountain.Flags & 2u) word += ",loop=1";
  return word + GradientTail(gradient, plain.Gradient);
}

std::string TextureWord(const TextureSpec& given, const TextureSpec& usual) {
  // A material's own lie at odd addresses, which a reference to a field may not have.
  alignas(std::uint32_t) const TextureSpec texture = given, plain = usual;
  static constexpr const char* types[] = {"fractal2", "fractal3", "fractal4", "fractal5", "craters", "perturbation"};
  static constexpr const char* shapes[] = {"ellipse", "fuzzy", "luminous", "sphere"};
  std::string word = std::string("texture:") + types[std::min<std::uint32_t>(texture.TextureType, 5)];
  const auto add = [&](const std::string& key, const auto& value, const auto& standard, const auto& shown) {
    if (value != standard) word += "," + key + "=" + shown(value);
  };
  const auto whole = [](std::uint32_t value) { return std::to_string(value); };
  for (std::size_t i = 0; i < 5; ++i) {
    const std::string number = std::to_string(i + 1);
    add("seed" + number, texture.SeedValue[i], plain.SeedValue[i], whole);
    add("fore" + number, texture.ForeColour[i], plain.ForeColour[i], HexColour);
    add("power" + number, texture.Power[i], plain.Power[i], ShortestText);
    add("density" + number, texture.Dimension[i], plain.Dimension[i], ShortestText);
  }
  add("size", texture.MatrixSize, plain.MatrixSize, whole);
  add("back", texture.BackColour, plain.BackColour, HexColour);
  add("craters", texture.CreaterCount, plain.CreaterCount, whole);
  add("depth", texture.CreaterDepth, plain.CreaterDepth, ShortestText);
  add("bubbles", texture.BubbleCount, plain.BubbleCount, whole);
  add("bubblesize", texture.BubbleSize, plain.BubbleSize, whole);
  add("bubblepower", texture.BubblePower, plain.BubblePower, ShortestText);
  add("shape", texture.BubbleShape, plain.BubbleShape,
      [](std::uint32_t i) { return std::string(shapes[std::min(i, 3u)]); });
  add("noise", texture.PerturbationPower, plain.PerturbationPower, ShortestText);
  const auto curve = [&](const char* key, const float(&values)[4], const float(&standard)[4]) {
    if (std::equal(values, values + 4, standard)) return;
    word += std::string(",") + key + "=";
    for (int i = 0; i < 4; ++i) word += (i ? "/" : "") + ShortestText(values[i]);
  };
  curve("red", texture.ColorRed, plain.ColorRed);
  curve("green", texture.ColorGreen, plain.ColorGreen);
  curve("blue", texture.ColorBlue, plain.ColorBlue);
  return word;
}

std::string MaterialWord(const std::string& hexadecimal) {
  const MovableBlock block = HexDecode(hexadecimal, sizeof(Material));
  const LockedBlock<Material> material(block.Handle());
  if (!material) return {};
  Material plain;
  DefaultMaterial(plain, 0);
  switch (material->Kind) {
    case kGradient:
      return GradientWord(*material, plain);
    case kTexture:
      return TextureWord(material->Texture, plain.Texture);
    case kTile: {
      std::string file = PathOfTile(material->Tile);
      std::error_code error;
      // The user's own copy of the shipped library comes about when it is edited.
      if (file == OwnLibraryPath(kTileLibraryName) && !std::filesystem::exists(file, error)) file.clear();
      return "tile:" + file + "#" + std::to_string(material->Tile.TileIndex + 1);
    }
    default:
      return HexColour(material->Colour);
  }
}

// --- Options ---

struct Option {
  const char* name;
  bool isSwitch;
};
const Option* OptionOf(int id) {
  static const std::map<int, Option> options = {
      {ControlId::Font, {"-f", false}},           {ControlId::Size, {"-s", false}},
      {ControlId::Pad, {"--pad", false}},         {ControlId::CharacterSpace, {"--space", false}},
      {ControlId::Delay, {"--delay", false}},     {ControlId::Pause, {"--pause", false}},
      {ControlId::Bold, {"bold", true}},          {ControlId::Italic, {"italic", true}},
      {ControlId::Antialias, {"antialias", true}}};
  const auto found = options.find(id);
  return found == options.end() ? nullptr : &found->second;
}

std::string WordsOf(const ControlTemplate& control, const PanelRoles& roles, const std::string& value) {
  const int id = control.id;
  if (control.kind == ControlKind::MaterialButton) {
    const std::string word = ShellWord(MaterialWord(value));
    if (id == roles.fill) return " --fill " + word;
    if (id == roles.shadow) return " --shadow " + word;
    if (id == roles.background) return " --background " + word;
    return " --set " + ShellWord(std::to_string(id) + "=" + MaterialWord(value));
  }
  if (const Option* option = OptionOf(id)) {
    if (option->isSwitch) return std::string(value == "1" ? " --" : " --no-") + option->name;
    return std::string(" ") + option->name + " " + ShellWord(value);
  }
  return " --set " + ShellWord((control.key ? std::string(control.key) : std::to_string(id)) + "=" + value);
}

}  // namespace

std::string ShellWord(const std::string& text) {
  constexpr std::string_view plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_./:=,@%+";
  if (!text.empty() && text.find_first_not_of(plain) == std::string::npos) return text;
  std::string word = "'";
  for (const char c : text) word += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return word + "'";
}

std::string CommandFor(const Dialog& dialog, const std::string& blank, const std::string& document,
                       const std::vector<std::string>& options, const std::string& name) {
  const auto before = ValuesOf(blank), now = ValuesOf(document);
  const EffectDescriptor& effect = EffectRow(GetSelection(dialog, ControlId::Effect));
  std::string option = effect.name;
  for (char& c : option) c = c == ' ' ? '-' : ToLower(c);
  const std::string text = UnguardedText(GetText(dialog, ControlId::Text));
  std::string command = "glyphmotion " + std::string(text.starts_with('-') ? "-- " : "");
  std::string words = " -e " + option;
  const bool hasFontFile = std::find(options.begin(), options.end(), "--font-file") != options.end();
  const auto add = [&](const ControlTemplate& control) {
    const auto value = now.find(control.id);
    const auto old = before.find(control.id);
    const bool same = value == now.end() || (old != before.end() && old->second == value->second);
    if (same || control.id == ControlId::Text || control.id == ControlId::Effect) return;
    const bool ofFont =
        control.id == ControlId::Font || control.id == ControlId::Bold || control.id == ControlId::Italic;
    if (hasFontFile && ofFont) return;
    words += WordsOf(control, effect.panel->roles, value->second);
  };
  for (const ControlTemplate& control : kMainDialogTemplate.controls) add(control);
  for (const ControlTemplate& control : effect.panel->controls) add(control);
  for (const std::string& word : options) words += " " + ShellWord(word);
  const std::string stem = name.substr(0, name.rfind('.'));
  words += " -o " + ShellWord(stem + ".gif");
  return text.starts_with('-') ? "glyphmotion" + words + " -- " + ShellWord(text) : command + ShellWord(text) + words;
}

}  // namespace glyphmotion
