// SPDX-License-Identifier: MIT
#include "host/program/lists.h"

#include <algorithm>
#include <cstdio>

#include "effects/effect_table.h"
#include "host/options/names.h"
#include "host/program/looks.h"
#include "materials/material_text.h"

namespace glyphmotion {
namespace {

void PrintRow(const std::vector<std::string>& cells, const std::vector<int>& widths) {
  std::string line;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    line += cells[i];
    const auto width = static_cast<std::size_t>(i < widths.size() ? widths[i] : 0);
    if (i + 1 < cells.size()) line.append(cells[i].size() < width ? width - cells[i].size() : 1, ' ');
  }
  line.erase(line.find_last_not_of(' ') + 1);
  std::printf("%s\n", line.c_str());
}

std::string PrintNames(const std::vector<std::string>& names, const char* what) {
  for (const std::string& name : names) PrintRow({name}, {});
  if (!names.empty()) return {};
  return std::string("no library of ") + what + " is installed; install the program together with its share folder";
}

void PrintPalettes(const Catalogue& catalogue) {
  const std::vector<int> widths = {16, 4};
  PrintRow({"custom", "-", "made for the picture"}, widths);
  for (std::size_t i = 0; i < std::min(PaletteOptionNames().size(), catalogue.palettes.size()); ++i) {
    PrintRow({PaletteOptionNames()[i], std::to_string(i), catalogue.palettes[i]}, widths);
  }
}

// "wght 100..900 (400)"
std::string AxesOf(const FontInfo& font) {
  std::string text;
  for (const FontInfo::Axis& axis : font.axes) {
    char range[96];
    std::snprintf(range, sizeof range, "%s %g..%g (%g)", axis.tag.c_str(), axis.minimum, axis.maximum, axis.standard);
    text += (text.empty() ? "" : ", ") + std::string(range);
  }
  return text;
}

std::string PrintFonts() {
  const std::vector<FontInfo> fonts = Fonts();
  if (fonts.empty()) return "no font is installed; install one, for example the package fonts-liberation";
  for (const FontInfo& font : fonts) {
    const std::string file = font.file + (font.index ? '#' + std::to_string(font.index) : "");
    PrintRow({font.family, font.style, file, AxesOf(font)}, {32, 24, 60});
  }
  return {};
}

std::string PrintLooks() {
  const auto looks = Looks();
  for (const auto& [name, summary] : looks) PrintRow({name, summary}, {16});
  return looks.empty() ? "no look is installed; install the program together with its share folder" : std::string();
}

}  // namespace

std::string PrintList(ListKind kind, const Catalogue& catalogue) {
  switch (kind) {
    case ListKind::None:
      return {};
    case ListKind::Effects:
      for (const std::string& name : catalogue.effects)
        PrintRow({OptionForm(name), EffectRow(FindEffect(name)).summary}, {24});
      return {};
    case ListKind::Fonts:
      return PrintFonts();
    case ListKind::Palettes:
      PrintPalettes(catalogue);
      return {};
    case ListKind::Keys:
      for (const KeyInfo& row : catalogue.keys) {
        PrintRow({row.key, row.kind, row.control ? std::to_string(row.control) : "-", row.defaultValue}, {32, 8, 6});
      }
      return {};
    case ListKind::Controls:
      for (const ControlInfo& row : catalogue.controls) {
        PrintRow({std::to_string(row.id), row.kind, row.range, row.key, row.panel, row.caption}, {6, 18, 16, 28, 24});
      }
      return {};
    case ListKind::Textures:
      return PrintNames(TextureNames(), "textures");
    case ListKind::Fountains:
      return PrintNames(FountainNames(), "fountains");
    case ListKind::Tiles:
      return PrintNames(TileNames(), "tiles");
    case ListKind::Looks:
      return PrintLooks();
  }
  return {};
}

}  // namespace glyphmotion
