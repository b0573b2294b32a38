// SPDX-License-Identifier: MIT
// From the main dialog into the editors behind its material buttons, and back with what was chosen there.
#include <cstring>
#include <map>

#include "controls/boxes.h"
#include "controls/gradient_editor.h"
#include "controls/material_control.h"
#include "effects/effect_table.h"
#include "main_dialog_fixture.h"
#include "materials/tile.h"
#include "resources/box_templates.h"
#include "resources/texture_controls.h"
#include "resources/tile_controls.h"

namespace glyphmotion {
namespace {

class EditorsOfTheMainDialog : public MainDialogTest {
 protected:
  int kind = 0;  ///< what the kind menu answers
  std::string helpAsked;

  /// A host whose only picture is 20 by 10 pixels of one colour.
  std::uint64_t Answer(std::uint32_t operation, std::uint64_t a, std::uint64_t b) {
    switch (operation) {
      case HostOpChooseImageFile:
        EXPECT_NE(a, 0u) << "the chooser has an owner window";
        std::strcpy(At<char>(b), "picture.png");
        return 1;
      case HostOpLoadImage:
        EXPECT_STREQ(At<char>(b), "picture.png");
        return WordOf(SolidDib(20, 10, 0x2040FF).Release());
      case HostOpShowHelp:
        helpAsked = At<char>(b);
        return 1;
      case HostOpIsRegistered:
        return 1;
      default:
        return 0;
    }
  }
  void SetUp() override {
    SetFolderOverrides({Path("settings.ini"), "", Path("data")});
    host.answer = [this](std::uint32_t operation, std::uint64_t a, std::uint64_t b) { return Answer(operation, a, b); };
    responder_.menu = [this](Dialog*, std::span<const MenuItem>) { return kCommandFirstKind + kind; };
    responder_.name = [](Dialog*, const std::string&, const std::string&) {
      return std::optional<std::string>("Mine");
    };
  }

  /// Runs the main dialog; `editor` uses every dialog that opens over it.
  void Run(const std::function<void(Dialog&, int fill)>& body, const std::function<void(Dialog&, int)>& editor) {
    inner_ = editor;
    RunDialog(kBothHost, [&](Dialog& dialog) {
      body(dialog, EffectRow(std::max(GetSelection(dialog, ControlId::Effect), 0)).panel->roles.fill);
    });
  }
  void HoldShift(bool down) {
    responder_.shiftDown = down;
    SetUiResponder(responder_);
  }
  /// Chooses the kind by the keyboard and presses the face.
  void Edit(Dialog& dialog, int fill, MaterialKind wanted) {
    kind = static_cast<int>(wanted);
    ASSERT_TRUE(PressKey(dialog, fill, kKeyDown));
    ASSERT_TRUE(Click(dialog, fill));
  }
};

TEST_F(EditorsOfTheMainDialog, ATextureIsEditedAndTaken) {
  Run(
      [&](Dialog& dialog, int fill) {
        Edit(dialog, fill, kTexture);
        EXPECT_EQ(+LockMaterial(dialog, fill)->Texture.TextureType, 4u);
        EXPECT_EQ(+LockMaterial(dialog, fill)->Texture.CreaterCount, 77u);
      },
      [&](Dialog& dialog, int id) {
        ASSERT_EQ(id, 9998);
        Choose(dialog, TextureControl::Types, 4);
        Type(dialog, TextureControl::Craters, "77");
        Click(dialog, TextureControl::Ok);
      });
}

TEST_F(EditorsOfTheMainDialog, ThePictureOfTheHostBecomesATile) {
  bool accept = false;
  Run(
      [&](Dialog& dialog, int fill) {
        Edit(dialog, fill, kTile);
        EXPECT_EQ(+LockMaterial(dialog, fill)->Tile.TileIndex, 0u) << "cancelled";
        EXPECT_FALSE(std::filesystem::exists(Path("data/Mine.MTX.bak")));
        accept = true;
        Edit(dialog, fill, kTile);
        const auto material = LockMaterial(dialog, fill);
        EXPECT_EQ(+material->Tile.TileIndex, 20u);
        EXPECT_EQ(PathOfTile(material->Tile), Path("data/Mine.MTX"));
        const DibView preview(HandleOf(material->Preview));
        EXPECT_EQ(preview.GetPixel(3, 3), 0x2040FFu) << "the face shows it";
      },
      [&](Dialog& dialog, int id) {
        ASSERT_EQ(id, 9981);
        HoldShift(true);
        if (!accept) Click(dialog, TileControl::Add);
        HoldShift(false);
        EXPECT_EQ(GetText(dialog, TileControl::Group), "Mine") << "which stays current";
        Click(dialog, TileControl::Add);
        EXPECT_EQ(GetText(dialog, TileControl::Size), "20 x 10");
        Click(dialog, accept ? TileControl::Ok : TileControl::Cancel);
      });
}

// F1 in each control of each dialog over the main one, and Help. The gradient's fountain has a topic of its own.
TEST_F(EditorsOfTheMainDialog, F1OpensTheTopicOfTheFocusedPartInEveryDialog) {
  constexpr int kBarMenuFirst = 103, kManageLibrary = 104, kHelp = 9;
  const std::string page =
      ReadWholeFile(GLYPHMOTION_SOURCE_DIR "/share/glyphmotion/TLMPLGM4.HTML").value_or(std::string());
  const DialogTemplate* const dialogs[] = {&kTextureDialogTemplate,
                                           &kTexturePreviewTemplate,
                                           &kTileDialogTemplate,
                                           &kGradientDialogTemplate,
                                           &kFountainLibraryDialogTemplate,
                                           &kMarkerPositionDialogTemplate,
                                           &kRegistrationDialog,
                                           &kAboutBox,
                                           &kMessageBox,
                                           &kNamePrompt};
  const char* const topics[] = {"TEXTURE",  "TEXTURE", "TILE",    "GRADIENT", "FOUNTAIN",
                                "FOUNTAIN", "PREFACE", "PREFACE", "TROUBLE",  "MATERIALS"};
  std::map<int, std::string> left;
  for (std::size_t i = 0; i < std::size(dialogs); ++i) left[dialogs[i]->id] = topics[i];
  responder_.menu = [this](Dialog*, std::span<const MenuItem> items) {
    return items[0].id == kBarMenuFirst ? kManageLibrary : kCommandFirstKind + kind;
  };
  Run(
      [&](Dialog& dialog, int fill) {
        for (const MaterialKind wanted : {kGradient, kTexture, kTile}) Edit(dialog, fill, wanted);
        for (const int button : {MainControl::Register, MainControl::About}) Click(dialog, button);
        RunMessageBox(&dialog, nullptr, {"T", "So."});
        RunNamePrompt(&dialog, "T", "");
      },
      [&](Dialog& dialog, int id) {
        const std::string topic = left[id];
        EXPECT_NE(page.find(" id=\"" + topic + "\""), std::string::npos) << id << ": " << topic;
        if (id == kGradientDialogTemplate.id) Click(dialog, GradientControl::MultiColor);
        for (const int control : Children(dialog)) {
          helpAsked.clear();
          if (!PressKey(dialog, control, kKeyF1) || (control == kHelp && !Click(dialog, control))) continue;
          const bool fountain = KindOf(dialog, control) == ControlKind::FountainButton;
          EXPECT_EQ(helpAsked, "TLMPLGM4.HTML#" + (fountain ? "FOUNTAIN" : topic)) << id << ": " << control;
          left.erase(id);
        }
        if (id == kTextureDialogTemplate.id) Click(dialog, TextureControl::ShowPreview);
        if (id != kGradientDialogTemplate.id) return;
        for (const KeyCode key : {kKeyMenu, kKeyRight, kKeyF2}) PressKey(dialog, GradientControl::Fountain, key);
      });
  EXPECT_TRUE(left.empty()) << "not opened: " << left.begin()->first;
}

}  // namespace
}  // namespace glyphmotion
