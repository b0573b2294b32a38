// SPDX-License-Identifier: MIT
#include "host/program/help_topics.h"

#include <algorithm>
#include <cstdlib>

#include "effects/effect_table.h"
#include "host/options/names.h"
#include "host/program/effect_manual.h"
#include "host/program/help.h"
#include "materials/colour_text.h"
#include "platform/ascii.h"
#include "platform/nearest_name.h"

namespace glyphmotion {
namespace {

constexpr const char* kMaterials =
    "A material M fills letters, shadow or background. Colours are #RGB, #RRGGBB or a CSS name (red, steelblue); a\n"
    "fill or shadow of one colour may also have an alpha value, #RRGGBBAA.\n\n"
    "  red   #cc2200   #cc220080            one colour\n"
    "  none                                 no shadow (--shadow), no outline (--outline)\n"
    "  gradient:red-gold                    two colours or more, spread evenly\n"
    "  gradient:conical,#fff-#08f-#004      a shape first: linear, conical, elliptical or rectangular\n"
    "      then, after commas: rotation=-360..360, pad=0..45, mid=1..99, cx=-50..50, cy=-50..50\n"
    "  fountain:Sunrise                     a shipped one: see --list fountains\n"
    "  fountain:navy,#f80@90,gold@200,white colours at positions from 0 to 255\n"
    "      with a shape and options as above, and loop=1\n"
    "  texture:Marble                       see --list textures\n"
    "  texture:fractal2,back=navy,fore1=#fff  fractal2 to fractal5, craters or perturbation, then, after commas,\n"
    "      seed=, seed1= to seed5=, size=, back=, fore=, fore1= to fore5=, power=, power1= to power5=, density=,\n"
    "      density1= to density5=, craters=, depth=, red=, green=, blue= (0/0.3/0.7/1), bubbles=, bubblesize=,\n"
    "      bubblepower=, shape= (ellipse, fuzzy, luminous, sphere), noise=\n"
    "  tile:Bricks   tile:#3   tile:FILE#N  a tile by name or number: see --list tiles\n"
    "  mtrl:FILE                            a material file\n"
    "  image:FILE                           a .png or .webp picture, repeated\n\n"
    "Examples:\n"
    "  glyphmotion Sale --fill gradient:red-gold --outline none -o sale.gif\n"
    "  glyphmotion Night --fill white --shadow '#00000080' --background texture:Water -o night.webp\n"
    "  glyphmotion swatch fountain:Sunrise -o sunrise.png        a look at a material alone\n";

constexpr std::size_t kStem = 8;  // "Style008"

// A stored value as a person would type it: "#333333", "down-right", "360".
std::string Typed(const ControlInfo& control, const std::string& value) {
  const long number = std::strtol(value.c_str(), nullptr, 10);
  if (control.kind == "colour") return HexColour(static_cast<Colour>(number));
  if (number >= 0 && number < std::ssize(control.words)) return control.words[static_cast<std::size_t>(number)];
  return value;
}

// "0 to 720, default 360."
std::string RangeOf(const ControlInfo& control, const Catalogue& catalogue) {
  const auto row = std::find_if(catalogue.keys.begin(), catalogue.keys.end(),
                                [&](const KeyInfo& key) { return key.key == control.key; });
  std::string text = Join(control.words);
  if (const std::size_t comma = control.range.find(','); comma != std::string::npos) {
    const std::size_t end = std::min(control.range.find(',', comma + 1), control.range.size());
    text = control.range.substr(0, comma) + " to " + control.range.substr(comma + 1, end - comma - 1);
  } else if (control.kind == "check") {
    text = "0 or 1";
  } else if (control.kind == "colour") {
    text = "A colour";
  }
  if (row != catalogue.keys.end())
    text += (text.empty() ? "Default " : ", default ") + Typed(control, row->defaultValue);
  return text.empty() ? text : " " + text + ".";
}

std::string EffectText(const std::string& effect, const Catalogue& catalogue) {
  const EffectManual manual = EffectManual::Shipped();
  const std::string& about = manual.About(effect);
  std::string own, shared;
  for (const ControlInfo& control : catalogue.controls) {
    if (control.panel != effect || control.key.size() <= kStem) continue;
    std::string caption = control.caption;
    if (caption.ends_with(':')) caption.pop_back();
    const std::string& does = manual.OwnOption(effect, caption);
    const std::string& common = manual.SharedOption(caption);
    const std::string what = !does.empty() ? does : !common.empty() ? common : caption + ".";
    (does.empty() ? shared : own) +=
        HelpEntry("@" + Lowered(control.key.substr(kStem)), what + RangeOf(control, catalogue));
  }
  return Paragraph(effect + ": " + (about.empty() ? EffectRow(FindEffect(effect)).summary : about)) +
         (own.empty() ? "" : "\nIts own options, as in --set @frames=30:\n" + own) +
         "\nOptions that most effects have:\n" + shared +
         "\nFills: --fill, --shadow, --background, --outline. All other options: glyphmotion --help\n";
}

}  // namespace

std::optional<std::string> HelpTopic(const std::string& topic, const Catalogue& catalogue) {
  if (topic == "hosts") return HelpOfGroup(kHostGroup);
  if (topic == "batch") return BatchHelp();
  if (topic == "materials") return std::string(kMaterials);
  for (const std::string& effect : catalogue.effects) {
    if (OptionForm(effect) == OptionForm(topic)) return EffectText(effect, catalogue);
  }
  return std::nullopt;
}

std::string NoSuchTopic(const std::string& topic, const Catalogue& catalogue) {
  std::vector<std::string> names = {"hosts", "materials", "batch"};
  for (const std::string& effect : catalogue.effects) names.push_back(OptionForm(effect));
  return "there is no help about '" + topic + "'" + Suggestion(topic, names) +
         " (help takes materials, batch, hosts or the name of an effect)";
}

}  // namespace glyphmotion
