// SPDX-License-Identifier: MIT
// What every dialog shows at its start: places and texts of its controls, and the faces that are drawn, in each state.
// dialogs.txt keeps a checksum of both for each dialog and for the panel of each effect.
#include <set>

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

TEST_F(DialogSums, AreThoseOfTheList) {
  SetFolderOverrides({Path("settings.ini"), "", Path("data")});
  skinned_ = true;
  int kind = 0;
  responder_.menu = [&](Dialog*, std::span<const MenuItem> items) {
    constexpr int kBarMenuFirst = 103, kManageLibrary = 104;
    return items[0].id == kBarMenuFirst ? kManageLibrary : kCommandFirstKind + kind;
  };

  inner_ = [&](Dialog& dialog, int id) {
    Take(dialog, "dialog " + std::to_string(id));
    if (id == kTextureDialogTemplate.id) {
      for (int type = 0; Choose(dialog, TextureControl::Types, type); ++type) {
        Take(dialog, "texture " + GetText(dialog, TextureControl::Types) + std::to_string(type));
      }
      Choose(dialog, TextureControl::Types, 0);
      Click(dialog, TextureControl::ShowPreview);
    }
    if (id == kGradientDialogTemplate.id) {
      Click(dialog, GradientControl::MultiColor);
      Take(dialog, "multicolour gradient");
      for (const KeyCode key : {kKeyMenu, kKeyRight, kKeyF2}) PressKey(dialog, GradientControl::Fountain, key);
    }
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
  });
  testing::ExpectList("dialogs.txt", rows);
}

}  // namespace
}  // namespace glyphmotion
