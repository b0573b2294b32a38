// SPDX-License-Identifier: MIT
// The screen without a screen: dialog 1000 with each panel shown, and what ties its controls to keys and effects.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "controls/library_editor.h"
#include "controls/read_controls.h"
#include "effects/effect_table.h"
#include "resources/box_templates.h"
#include "resources/settings_table.h"
#include "resources/templates.h"
#include "resources/texture_controls.h"

namespace glyphmotion {
namespace {

using Kind = ControlKind;
using Controls = std::vector<ControlTemplate>;

constexpr int kMargin = 7;

Controls ControlsOf(const DialogTemplate& dialogTemplate) {
  return {dialogTemplate.controls.begin(), dialogTemplate.controls.end()};
}

std::string NameOf(const ControlTemplate& control) { return std::to_string(control.id) + " " + control.caption; }

// Widths of the dialog font's characters in pixels, at 6 by 13 base units.
int CharacterWidth(char c) {
  static const std::map<std::string, int> kWidths = {{"ijl", 2},      {"ft :.,-/I", 3}, {"r", 4},
                                                     {"JLscvxyz", 6}, {"m", 8},         {"ABCDFEKPSTVXYZ", 7},
                                                     {"GHNOQRUw", 8}, {"M", 9},         {"W", 11}};
  for (const auto& [characters, width] : kWidths) {
    if (characters.find(c) != std::string::npos) return width;
  }
  return 6;
}

int WidthInUnits(const std::string& caption) {
  int pixels = 0;
  for (const char c : caption) pixels += c == '&' ? 0 : CharacterWidth(c);
  return (pixels * 4 + 5) / 6;
}

// The widest line of a text that wraps at blanks, and how many lines it takes.
int WrappedWidth(const std::string& caption, int width, int& lines) {
  std::istringstream words(caption);
  std::string line, word;
  int widest = 0;
  lines = 0;
  while (words >> word) {
    const std::string longer = line.empty() ? word : line + " " + word;
    if (!line.empty() && WidthInUnits(longer) > width) {
      ++lines;
      line = word;
    } else {
      line = longer;
    }
    widest = std::max(widest, WidthInUnits(line));
  }
  ++lines;
  return widest;
}

// What a control has for its caption.
int RoomForText(const ControlTemplate& control) {
  switch (control.kind) {
    case Kind::Check:
    case Kind::Radio:
      return control.width - 12;
    case Kind::Button:
    case Kind::DefaultButton:
      return control.width - 6;
    default:
      return control.width;
  }
}

bool HasOwnCaption(Kind kind) {
  return kind == Kind::Check || kind == Kind::Radio || kind == Kind::Button || kind == Kind::DefaultButton;
}
bool WantsLabel(Kind kind) {
  return !HasOwnCaption(kind) && kind != Kind::Label && kind != Kind::Paragraph && kind != Kind::Group &&
         kind != Kind::UpDown && kind != Kind::OwnerDrawn;
}

/// The letter that goes with Alt, or 0.
char MnemonicOf(const ControlTemplate& control) {
  if (control.kind != Kind::Label && !HasOwnCaption(control.kind)) return 0;
  const char* mark = std::strchr(control.caption, '&');
  return mark ? static_cast<char>(std::tolower(static_cast<unsigned char>(mark[1]))) : '\0';
}

/// Controls that are visible together; every button that says something has a letter, and OK has Enter.
void ExpectMnemonics(const std::string& dialog, const Controls& shown) {
  std::map<char, std::string> taken;
  for (const ControlTemplate& control : shown) {
    const char letter = MnemonicOf(control);
    const bool says = std::any_of(control.caption, control.caption + std::strlen(control.caption),
                                  [](unsigned char c) { return std::isalpha(c); });
    EXPECT_TRUE(letter || control.kind != Kind::Button || !says) << dialog << ": " << control.caption;
    if (!letter) continue;
    const auto [at, isNew] = taken.emplace(letter, control.caption);
    EXPECT_TRUE(isNew) << dialog << ": " << at->second << " and " << control.caption;
  }
}

std::vector<const DialogTemplate*> Panels() {
  std::vector<const DialogTemplate*> panels;
  for (const EffectDescriptor* effect : Effects()) panels.push_back(effect->panel);
  return panels;
}

// A label comes directly before the control it names: that is how a mnemonic and a screen reader find it.
TEST(Layout, EveryControlOfAPersonHasALabelAndItsPlaceInTheTabOrder) {
  std::vector<const DialogTemplate*> all = Panels();
  all.push_back(&kMainDialogTemplate);
  for (const DialogTemplate* dialogTemplate : all) {
    const ControlTemplate* before = nullptr;
    for (const ControlTemplate& control : dialogTemplate->controls) {
      const std::string name = std::string(dialogTemplate->title) + ": " + NameOf(control);
      if (WantsLabel(control.kind)) {
        ASSERT_TRUE(before && before->kind == Kind::Label && *before->caption) << name;
        const bool leftOf = before->x + before->width <= control.x && std::abs(before->y - control.y) <= 3;
        const bool above = before->x == control.x && before->y + before->height <= control.y;
        EXPECT_TRUE(leftOf || above) << name;
      }
      EXPECT_TRUE(!HasOwnCaption(control.kind) || *control.caption) << name;
      EXPECT_FALSE(before && before->kind == Kind::Label && !WantsLabel(control.kind))
          << name << ": a label of nothing";
      EXPECT_EQ(before && before->kind == Kind::NumberEdit, control.kind == Kind::UpDown) << name;
      if (control.kind == Kind::UpDown) {
        EXPECT_EQ(control.id, before->id + kUpDownOffset) << name;
        EXPECT_EQ(control.x, before->x + before->width) << name;
        EXPECT_EQ(control.y, before->y) << name;
        EXPECT_EQ(control.height, before->height) << name;
      }
      before = &control;
    }
  }
}

bool ShowsForTexture(const ControlTemplate& control, int type) {
  int id = control.id;
  for (const int offset : {kUpDownOffset, TextureControl::LabelOffset}) {
    if (id >= TextureControl::FirstParameter + offset) id -= offset;
  }
  if (id < TextureControl::FirstParameter) return true;
  const auto shown = TextureControls(static_cast<std::uint32_t>(type));
  return std::find(shown.begin(), shown.end(), id) != shown.end();
}
/// Controls that are visible together in a dialog of that size; those from `added` on are added to it.
struct View {
  std::string title;
  Controls controls;
  std::size_t added;
  int width, height;
};

/// The main dialog with each panel, and the editors, that of textures with each type.
std::vector<View> Views() {
  std::vector<View> views;
  const auto add = [&](const DialogTemplate& dialog) -> View& {
    return views.emplace_back(
        View{dialog.title, ControlsOf(dialog), dialog.controls.size(), dialog.width, dialog.height});
  };
  for (const DialogTemplate* panel : Panels()) {
    View& view = add(kMainDialogTemplate);
    view.title = panel->title;
    view.controls.insert(view.controls.end(), panel->controls.begin(), panel->controls.end());
  }
  for (int type = 0; type < 6; ++type) {
    std::erase_if(add(kTextureDialogTemplate).controls,
                  [&](const ControlTemplate& control) { return !ShowsForTexture(control, type); });
    views.back().added = views.back().controls.size();
  }
  for (const DialogTemplate* editor :
       {&kTexturePreviewTemplate, &kTileDialogTemplate, &kGradientDialogTemplate, &kMarkerPositionDialogTemplate,
        &kFountainLibraryDialogTemplate, &kNamePrompt, &kRegistrationDialog})
    add(*editor);
  return views;
}

// A label or an explanation before it, or a caption of its own; a number and its trackbar share one.
bool IsNamed(const Controls& shown, std::size_t i) {
  const Kind kind = shown[i].kind;
  if (kind == Kind::Drawn && *shown[i].caption) return true;
  if (kind == Kind::NumberEdit && i && shown[i - 1].kind == Kind::Trackbar) i -= 1;
  if (kind == Kind::Trackbar && i > 1 && shown[i - 1].kind == Kind::UpDown) i -= 2;
  return i && (shown[i - 1].kind == Kind::Label || shown[i - 1].kind == Kind::Paragraph) && *shown[i - 1].caption;
}

TEST(Layout, CaptionsFitButtonsHaveTheirOwnLettersAndMarginsAreKept) {
  for (const View& view : Views()) {
    ExpectMnemonics(view.title, view.controls);
    for (std::size_t i = 0; i < view.controls.size(); ++i) {
      const ControlTemplate& control = view.controls[i];
      const std::string name = view.title + ": " + NameOf(control);
      EXPECT_TRUE(control.x >= kMargin && control.y >= kMargin && control.width > 0 && control.height > 0 &&
                  control.x + control.width <= view.width - kMargin &&
                  control.y + control.height <= view.height - kMargin)
          << name;
      EXPECT_TRUE(!WantsLabel(control.kind) || IsNamed(view.controls, i)) << name;
      if (control.kind != Kind::Label && control.kind != Kind::Paragraph && !HasOwnCaption(control.kind)) continue;
      int lines = 0;
      EXPECT_LE(WrappedWidth(control.caption, RoomForText(control), lines), RoomForText(control)) << name;
      EXPECT_LE(lines * 8, control.height) << name;
    }
  }
}

// --- Pixels ---

/// A resolution, and the average character of the dialogs' font there: four units across, eight down.
struct Screen {
  int dots, width, height;
};
constexpr Screen kScreens[] = {{96, 6, 13},  {120, 7, 16}, {120, 8, 16},  {144, 8, 19}, {144, 9, 19},
                               {144, 9, 20}, {144, 9, 21}, {192, 11, 25}, {192, 12, 26}};

int Pixels(int units, int base, int divisor) { return (2 * units * base + divisor) / (2 * divisor); }

struct PixelPlace {
  int left, top, right, bottom;
};

/// The system rounds a place and a size; what is added to a dialog has both its corners rounded. Drawn controls with
/// cells or a bar of a fixed size take that.
PixelPlace PixelsOf(const ControlTemplate& control, const Screen& screen, bool isAdded) {
  const int left = Pixels(control.x, screen.width, 4), top = Pixels(control.y, screen.height, 8);
  int width = Pixels(control.width, screen.width, 4), height = Pixels(control.height, screen.height, 8);
  if (isAdded) {
    width = Pixels(control.x + control.width, screen.width, 4) - left;
    height = Pixels(control.y + control.height, screen.height, 8) - top;
  }
  const auto fix = [&](int across, int down) {
    width = (across * screen.dots + 48) / 96;
    height = (down * screen.dots + 48) / 96;
  };
  if (control.kind == Kind::ShadowDirection || control.kind == Kind::ScrollFour) fix(75, 75);
  if (control.kind == Kind::ScrollTwo || control.kind == Kind::ScrollAxis) fix(50, 25);
  if (control.kind == Kind::FountainButton) fix(197, 50);
  return {left, top, left + width, top + height};
}

void ExpectNoSharedPixel(const std::string& name, const Controls& shown, std::size_t firstAdded) {
  for (const Screen& screen : kScreens) {
    for (std::size_t i = 0; i < shown.size(); ++i) {
      if (shown[i].kind == Kind::Group) continue;  // it lies around others
      const PixelPlace a = PixelsOf(shown[i], screen, i >= firstAdded);
      for (std::size_t j = i + 1; j < shown.size(); ++j) {
        const PixelPlace b = PixelsOf(shown[j], screen, j >= firstAdded);
        const bool overlap = a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
        EXPECT_FALSE(overlap && shown[j].kind != Kind::Group)
            << name << " at " << screen.dots << " (" << screen.width << " x " << screen.height
            << "): " << NameOf(shown[i]) << " / " << NameOf(shown[j]);
      }
    }
  }
}

TEST(Layout, NoPixelBelongsToTwoControlsOnAnyScreen) {
  for (const View& view : Views()) ExpectNoSharedPixel(view.title, view.controls, view.added);
  for (const DialogTemplate* box : {&kMessageBox, &kQuestionBox, &kAboutBox}) {
    ExpectNoSharedPixel(box->title, ControlsOf(*box), box->controls.size());
  }
}

struct RoleKind {
  int PanelRoles::*control;
  Kind kind;
};
constexpr RoleKind kRoles[] = {{&PanelRoles::fill, Kind::MaterialButton},
                               {&PanelRoles::shadow, Kind::MaterialButton},
                               {&PanelRoles::background, Kind::MaterialButton},
                               {&PanelRoles::outline, Kind::ColourButton},
                               {&PanelRoles::fillOpacity, Kind::NumberEdit},
                               {&PanelRoles::shadowOpacity, Kind::NumberEdit},
                               {&PanelRoles::softness, Kind::NumberEdit},
                               {&PanelRoles::shadowOffset, Kind::NumberEdit},
                               {&PanelRoles::shadowDirection, Kind::ShadowDirection},
                               {&PanelRoles::shadowEnable, Kind::Check},
                               {&PanelRoles::outlineEnable, Kind::Check}};

// A role has one place in all panels and is of one kind; no effect is without a fill, a background and an outline.
TEST(Panels, RolesAreInOnePlace) {
  for (const RoleKind& role : kRoles) {
    const ControlTemplate* first = nullptr;
    for (const EffectDescriptor* effect : Effects()) {
      const int id = effect->panel->roles.*role.control;
      if (!id) continue;
      const ControlTemplate* control = FindControlOfId(id);
      EXPECT_EQ(control->kind, role.kind) << effect->name << " " << id;
      if (!first) first = control;
      EXPECT_TRUE(control->x == first->x && control->y == first->y) << effect->name << " " << id;
    }
  }
  for (const EffectDescriptor* effect : Effects()) {
    const PanelRoles& roles = effect->panel->roles;
    EXPECT_TRUE(roles.fill && roles.background && roles.outline && roles.outlineEnable) << effect->name;
  }
}

TEST(Panels, IdsAreUniqueAndInTheRangeThatIsShownAndHidden) {
  std::set<int> ids;
  for (const ControlTemplate& control : kMainDialogTemplate.controls) {
    EXPECT_TRUE(control.id == -1 || ids.insert(control.id).second) << control.id;
  }
  for (const DialogTemplate* panel : Panels()) {
    for (const ControlTemplate& control : panel->controls) {
      EXPECT_TRUE(ids.insert(control.id).second) << panel->title << " " << control.id;
      const int base = control.kind == Kind::UpDown ? control.id - kUpDownOffset : control.id;
      EXPECT_TRUE(base >= 100 && base <= 1198) << panel->title << " " << control.id;
    }
  }
}

std::uint32_t SettingKindOf(Kind kind) {
  if (kind == Kind::Check) return kSettingSwitch;
  return kind == Kind::Edit || kind == Kind::SortedCombo ? kSettingText : kSettingNumber;
}

// Everything that a person sets is remembered, under a key of its own kind, and a new installation starts in range.
TEST(Panels, KeysAndControlsAnswerEachOther) {
  std::map<std::string, const SettingsRow*> rows;
  for (const SettingsRow& row : SettingsTable()) rows[row.key] = &row;
  std::set<std::string> bound;
  std::vector<const DialogTemplate*> all = Panels();
  all.push_back(&kMainDialogTemplate);
  for (const DialogTemplate* dialogTemplate : all) {
    std::string stem;
    for (const ControlTemplate& control : dialogTemplate->controls) {
      const std::string name = std::string(dialogTemplate->title) + ": " + NameOf(control);
      if (!control.key) continue;
      ASSERT_TRUE(rows.contains(control.key)) << name << " " << control.key;
      EXPECT_TRUE(bound.insert(control.key).second) << name << " " << control.key;
      const SettingsRow& row = *rows[control.key];
      const std::string key = row.key;
      // Two old keys have a kind that is not their control's; both kinds are stored alike.
      const bool oldKind = key == "MainPadding" || key == "MainTransparent";
      EXPECT_TRUE(oldKind || row.flags & SettingKindOf(control.kind)) << key;
      if (dialogTemplate != &kMainDialogTemplate) {
        if (stem.empty()) stem = key.substr(0, 8);
        EXPECT_EQ(key.substr(0, 8), stem) << name;
      }
      const ControlTemplate* upDown = FindControlOfId(control.id + kUpDownOffset);
      EXPECT_EQ(upDown != nullptr, control.kind == Kind::NumberEdit) << name;
      if (!upDown) continue;
      int minimum = 0, maximum = 0, initial = 0;
      ASSERT_EQ(std::sscanf(upDown->caption, "%d,%d,%d", &minimum, &maximum, &initial), 3) << name;
      const int value = static_cast<int>(row.defaultNumber);
      EXPECT_TRUE(minimum < maximum && initial >= minimum && initial <= maximum) << name;
      EXPECT_TRUE(value >= minimum && value <= maximum) << name;
      EXPECT_STREQ(FindControlOfKey(control.key)->key, control.key);
    }
  }
  // Old keys that are read and written with the rest and that no control has ever shown.
  std::set<std::string> unbound;
  for (const auto& [key, row] : rows) {
    if (key.starts_with("Style") && !bound.contains(key)) unbound.insert(key);
  }
  std::set<std::string> expected = {"Style006Track", "Style015Track"};
  for (const auto& [key, row] : rows) {
    if (key.ends_with("ShadowColor") && key != "Style000ShadowColor") expected.insert(key);
  }
  EXPECT_EQ(unbound, expected);
}

// The combos' items are what a document's numbers mean.
TEST(Panels, ListsHaveTheItemsThatTheirNumbersMean) {
  const auto items = [](int id) {
    std::istringstream caption(FindControlOfId(id)->caption);
    std::vector<std::string> list;
    for (std::string item; std::getline(caption, item, ';');) list.push_back(item);
    return list;
  };
  const std::vector<std::string> increments = items(562);
  ASSERT_EQ(increments.size(), 34u);
  EXPECT_EQ(increments[21], "5");
  for (const std::string& increment : increments) EXPECT_EQ(360 % std::atoi(increment.c_str()), 0);
  for (int id : {191, 195, 199, 203, 207, 642, 646, 650, 654, 658}) {
    EXPECT_EQ(items(id).size(), 9u) << id;
    EXPECT_EQ(items(id)[5], "Diag. left") << id;
  }
  EXPECT_STREQ(FindControlOfId(527)->caption, "Random dela&y:") << "the one check that has always had a colon";
}

}  // namespace
}  // namespace glyphmotion
