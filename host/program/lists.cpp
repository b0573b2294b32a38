// SPDX-License-Identifier: MIT
#include "host/program/lists.h"

#include <algorithm>
#include <cstdio>

#include "effects/effect_table.h"
#include "host/options/looks.h"
#include "host/options/names.h"
#include "materials/gradient_text.h"
#include "materials/material_text.h"
#include "materials/texture_text.h"

namespace glyphmotion {
namespace {

ListTable Names(const std::vector<std::string>& names, const char* what, std::string& trouble) {
  ListTable table{{{"name"}}, {}};
  for (const std::string& name : names) table.rows.push_back({name});
  if (names.empty())
    trouble =
        std::string("no library of ") + what + " is installed; install the program together with its share folder";
  return table;
}

ListTable Palettes(const Catalogue& catalogue) {
  ListTable table{{{"name", 16}, {"number", 4, true}, {"title"}},
                  {{"custom", "", "made for the picture"},
                   {"best", "", "the highest quality, in larger files"},
                   {"auto", "", "best where custom is below 45 dB"}}};
  for (std::size_t i = 0; i < std::min(PaletteOptionNames().size(), catalogue.palettes.size()); ++i)
    table.rows.push_back({PaletteOptionNames()[i], std::to_string(i), catalogue.palettes[i]});
  return table;
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

ListTable FontTable(std::string& trouble) {
  ListTable table{{{"family", 32}, {"style", 24}, {"file", 60}, {"axes"}}, {}};
  for (const FontInfo& font : Fonts()) {
    const std::string file = font.file + (font.index ? '#' + std::to_string(font.index) : "");
    table.rows.push_back({font.family, font.style, file, AxesOf(font)});
  }
  if (table.rows.empty()) trouble = "no font is installed; install one, for example the package fonts-liberation";
  return table;
}

ListTable EffectTable(const Catalogue& catalogue) {
  ListTable table{{{"name", 24}, {"summary"}}, {}};
  for (const std::string& name : catalogue.effects)
    table.rows.push_back({OptionForm(name), EffectRow(FindEffect(name)).summary});
  return table;
}

ListTable KeyTable(const Catalogue& catalogue) {
  ListTable table{{{"key", 32}, {"kind", 8}, {"control", 6, true}, {"default"}}, {}};
  for (const KeyInfo& row : catalogue.keys)
    table.rows.push_back({row.key, row.kind, row.control ? std::to_string(row.control) : "", row.defaultValue});
  return table;
}

ListTable ControlTable(const Catalogue& catalogue) {
  ListTable table{{{"id", 6, true}, {"kind", 18}, {"range", 16}, {"key", 28}, {"panel", 24}, {"caption"}}, {}};
  for (const ControlInfo& row : catalogue.controls)
    table.rows.push_back({std::to_string(row.id), row.kind, row.range, row.key, row.panel, row.caption});
  return table;
}

ListTable LookTable(std::string& trouble) {
  ListTable table{{{"name", 16}, {"summary"}}, {}};
  for (const auto& [name, summary] : Looks()) table.rows.push_back({name, summary});
  if (table.rows.empty())
    trouble =
        "no look is installed; install the program together with its share folder, or name that in GLYPHMOTION_DATA";
  return table;
}

}  // namespace

ListTable TableOf(ListKind kind, const Catalogue& catalogue, std::string& trouble) {
  switch (kind) {
    case ListKind::None:
      return {};
    case ListKind::Effects:
      return EffectTable(catalogue);
    case ListKind::Fonts:
      return FontTable(trouble);
    case ListKind::Palettes:
      return Palettes(catalogue);
    case ListKind::Keys:
      return KeyTable(catalogue);
    case ListKind::Controls:
      return ControlTable(catalogue);
    case ListKind::Textures:
      return Names(TextureNames(), "textures", trouble);
    case ListKind::Fountains:
      return Names(FountainNames(), "fountains", trouble);
    case ListKind::Tiles:
      return Names(TileNames(), "tiles", trouble);
    case ListKind::Looks:
      return LookTable(trouble);
  }
  return {};
}

std::string WordsOf(const ListTable& table) {
  std::string text;
  for (const auto& row : table.rows) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      const std::string cell = row[i].empty() && table.columns[i].isNumber ? "-" : row[i];
      const auto width = static_cast<std::size_t>(table.columns[i].width);
      line += cell;
      // Two blanks at least, since a name may have single ones.
      if (i + 1 < row.size()) line.append(std::max<std::size_t>(cell.size() < width ? width - cell.size() : 0, 2), ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    text += line + "\n";
  }
  return text;
}

}  // namespace glyphmotion
