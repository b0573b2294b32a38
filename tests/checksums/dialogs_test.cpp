// SPDX-License-Identifier: MIT
// What every dialog shows at its start: places and texts of its controls, and the faces that are drawn, in each state.
// dialogs.txt keeps a checksum of both for each dialog and for the panel of each effect.
#include <functional>
#include <map>
#include <set>
#include <utility>

#include "checksums/checksum_list.h"
#include "controls/boxes.h"
#include "controls/gradient_editor.h"
#include "controls/material_control.h"
#include "effects/effect_table.h"
#include "resources/box_templates.h"
#include "resources/texture_controls.h"
#include "shell/main_dialog_fixture.h"
#include "text/compositing.h"

namespace glyphmotion {
namespace {

class DialogSums : public MainDialogTest {
 protected:
  std::vector<std::string> rows;
  std::set<std::string> taken;

  static void Add(testing::Hash& hash, const std::string& text) {
    hash.Add({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
  }
  static void AddFace(testing::Hash& hash, Dialog& dialog, int id, DrawRequest request, const ControlRectangle& place) {
    request.width = place.right - place.left;
    request.height = place.bottom - place.top;
    if (request.width < 1 || request.height < 1) return;
    request.stride = std::ptrdiff_t{3} * request.width;
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(request.stride * request.height), 0x55);
    std::vector<FaceText> texts;
    request.pixels = pixels.data();
    request.texts = &texts;  // whose letters are the system's
    if (!PaintControl(dialog, id, request)) return;
    hash.Add(pixels);
    for (const FaceText& text : texts) {
      Add(hash, text.text);
      hash.Add({text.place.left, text.place.top, text.place.right, text.place.bottom, text.colour, text.centred});
    }
  }
  static void AddFaces(testing::Hash& hash, Dialog& dialog, const ControlView& control) {
    DrawRequest plain, pressed, hot;
    pressed.pressed = hot.hot = hot.isDefault = true;
    for (const DrawRequest& request : {plain, pressed, hot}) AddFace(hash, dialog, control.id, request, control.place);
    const int focus = FocusOf(dialog);
    plain.focused = true;
    SetFocus(dialog, control.id);
    AddFace(hash, dialog, control.id, plain, control.place);
    SetFocus(dialog, focus);
    Enable(dialog, control.id, false);
    AddFace(hash, dialog, control.id, {}, control.place);
    Enable(dialog, control.id, control.enabled);
    plain.item = 1;
    if (control.kind == ControlKind::List) AddFace(hash, dialog, control.id, plain, {0, 0, 90, 40});
  }
  void ExpectChangesAreAnnounced(Dialog& dialog);
  /// A row for the visible controls; each name is taken once.
  void Take(Dialog& dialog, const std::string& name) {
    if (!taken.insert(name).second) return;
    testing::Hash places, faces;
    for (int i = 0; i < ControlCount(dialog); ++i) {
      const ControlView control = ControlAt(dialog, i);
      if (!control.visible) continue;
      places.Add({static_cast<int>(control.kind), control.id, control.enabled, control.check, control.limit});
      places.Add({control.place.left, control.place.top, control.place.right, control.place.bottom});
      if (control.kind != ControlKind::SortedCombo) Add(places, control.text);  // a font of the system's
      if (control.id >= 0 && control.id != MainControl::Sample && control.id != MainControl::SizeText) {
        AddFaces(faces, dialog, control);
      }
    }
    rows.push_back(name + "," + places.Text() + "," + faces.Text());
  }
};

// What a person does with one control.
std::vector<std::function<void(Dialog&)>> ActionsOn(const ControlView& control) {
  const int id = control.id, width = control.place.right - control.place.left,
            height = control.place.bottom - control.place.top;
  std::vector<std::function<void(Dialog&)>> actions;
  for (const KeyCode key : {kKeyRight, kKeyUp, kKeyDown, kKeyDelete}) {
    actions.push_back([=](Dialog& dialog) { PressKey(dialog, id, key); });
  }
  for (const auto& [x, y] : {std::pair{width / 3, height / 4}, {width / 2, height / 2}, {width - 9, height - 5}}) {
    for (const MessageNumber what : {kMessageLeftDown, kMessageMouseMove, kMessageLeftUp, kMessageDoubleClick}) {
      actions.push_back([=](Dialog& dialog) { Mouse(dialog, id, what, what == kMessageMouseMove ? x + 4 : x, y); });
    }
  }
  if (control.kind == ControlKind::Check) actions.push_back([=](Dialog& dialog) { Click(dialog, id); });
  for (const int item : {0, 2, control.selection}) {
    actions.push_back([=](Dialog& dialog) { Choose(dialog, id, item); });
  }
  if (control.kind == ControlKind::NumberEdit) actions.push_back([=](Dialog& dialog) { Type(dialog, id, "7"); });
  return actions;
}

// A view paints only what is announced, so no face may change in silence.
void DialogSums::ExpectChangesAreAnnounced(Dialog& dialog) {
  std::set<int> announced;
  SetDialogObserver([&](Dialog& changed, const DialogChange& change) {
    if (&changed == &dialog) announced.insert(change.id);
  });
  const auto faces = [&] {
    std::map<int, std::string> seen;
    for (int i = 0; i < ControlCount(dialog); ++i) {
      const ControlView control = ControlAt(dialog, i);
      if (!control.visible || control.id < 0 || control.id == MainControl::Sample) continue;
      testing::Hash hash;
      AddFace(hash, dialog, control.id, {}, control.place);
      seen[control.id] = hash.Text();
    }
    return seen;
  };
  std::map<int, std::string> shown = faces();
  const auto use = [&](const ControlView& control) {
    int number = 0;
    for (const auto& action : ActionsOn(control)) {
      announced = {FocusOf(dialog)};  // which a view knows to paint when the focus moves
      action(dialog);
      ++number;
      std::map<int, std::string> now = faces();
      for (const auto& [id, face] : now) {
        const auto before = shown.find(id);
        const bool changed = before != shown.end() && before->second != face;
        EXPECT_TRUE(!changed || announced.contains(id) || announced.contains(0))
            << id << " after " << number << " on " << control.id;
      }
      shown = std::move(now);
    }
  };
  for (const bool lists : {false, true}) {  // last, since an item of a library replaces what is edited
    for (int i = 0; i < ControlCount(dialog); ++i) {
      const ControlView control = ControlAt(dialog, i);
      const bool button = control.kind == ControlKind::Button || control.kind == ControlKind::DefaultButton;
      if (control.visible && !button && (control.kind == ControlKind::List) == lists) use(control);
    }
  }
  SetDialogObserver({});
}

TEST_F(DialogSums, AreThoseOfTheListAndChangesAreAnnounced) {
  SetFolderOverrides({Path("settings.ini"), "", Path("data")});
  skinned_ = true;
  int kind = 0, depth = 0;
  responder_.menu = [&](Dialog*, std::span<const MenuItem> items) {
    if (depth) return 0;
    constexpr int kBarMenuFirst = 103, kManageLibrary = 104;
    return items[0].id == kBarMenuFirst ? kManageLibrary : kCommandFirstKind + kind;
  };
  const auto use = [&](Dialog& dialog) {
    ++depth;
    ExpectChangesAreAnnounced(dialog);
    --depth;
  };
  inner_ = [&](Dialog& dialog, int id) {
    if (depth) return;
    Take(dialog, "dialog " + std::to_string(id));
    if (id == kTextureDialogTemplate.id) {
      for (int type = 0; Choose(dialog, TextureControl::Types, type); ++type) {
        Take(dialog, "texture " + GetText(dialog, TextureControl::Types) + std::to_string(type));
      }
      Choose(dialog, TextureControl::Types, 0);
      Click(dialog, TextureControl::ShowPreview);
      for (const int type : {0, 5}) {
        Choose(dialog, TextureControl::Types, type);
        use(dialog);
      }
    }
    if (id == kGradientDialogTemplate.id) {
      Click(dialog, GradientControl::MultiColor);
      Take(dialog, "multicolour gradient");
      for (const KeyCode key : {kKeyMenu, kKeyRight, kKeyF2}) PressKey(dialog, GradientControl::Fountain, key);
    }
    if (id != kTextureDialogTemplate.id) use(dialog);
  };
  RunDialog(kBothHost, [&](Dialog& dialog) {
    for (int i = 0; Choose(dialog, ControlId::Effect, i); ++i) Take(dialog, "effect " + std::to_string(i));
    const int fill = EffectRow(GetSelection(dialog, ControlId::Effect)).panel->roles.fill;
    for (const MaterialKind wanted : {kGradient, kTexture, kTile}) {
      kind = static_cast<int>(wanted);
      EXPECT_TRUE(PressKey(dialog, fill, kKeyDown) && Click(dialog, fill));
    }
    for (const int button : {MainControl::Register, MainControl::About}) Click(dialog, button);
    RunMessageBox(&dialog, nullptr, {"T", "So."});
    RunNamePrompt(&dialog, "T", "");
    use(dialog);
  });
  testing::ExpectList("dialogs.txt", rows);
}

}  // namespace
}  // namespace glyphmotion
