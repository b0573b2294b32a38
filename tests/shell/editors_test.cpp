// SPDX-License-Identifier: MIT
// From the main dialog into the editors behind its material buttons, and back with what was chosen there.
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>

#include "controls/material_control.h"
#include "effects/effect_table.h"
#include "materials/tile.h"
#include "platform/dialog_driver.h"
#include "platform/folders.h"
#include "platform/shell_ui.h"
#include "platform/text_engine.h"
#include "resources/templates.h"
#include "resources/texture_controls.h"
#include "resources/tile_controls.h"
#include "shell/main_dialog.h"

namespace glyphmotion {
namespace {

std::string helpAsked;

/// A host whose only picture is 20 by 10 pixels of one colour.
std::uint64_t HostCall(void*, std::uint32_t operation, std::uint64_t a, std::uint64_t b) {
  const auto text = [](std::uint64_t address) { return reinterpret_cast<char*>(static_cast<std::uintptr_t>(address)); };
  switch (operation) {
    case HostOpChooseImageFile:
      EXPECT_NE(a, 0u) << "the chooser has an owner window";
      std::strcpy(text(b), "picture.png");
      return 1;
    case HostOpLoadImage:
      EXPECT_STREQ(text(b), "picture.png");
      return WordOf(SolidDib(20, 10, 0x2040FF).Release());
    case HostOpShowHelp:
      helpAsked = text(b);
      return 1;
    default:
      return 0;
  }
}

class EditorsOfTheMainDialog : public testing::Test {
 protected:
  std::filesystem::path folder = std::filesystem::temp_directory_path() / "glyphmotion_editors_test";
  UiResponder responder;
  int kind = 0;  ///< what the kind menu answers

  void SetUp() override {
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder / "data");
    SetFolderOverrides({(folder / "settings.ini").string(), "", (folder / "data").string()});
    StartTextEngine();
    responder.menu = [this](Dialog*, std::span<const MenuItem>) { return kCommandFirstKind + kind; };
    responder.name = [](Dialog*, const std::string&, const std::string&) { return std::optional<std::string>("Mine"); };
    SetUiResponder(responder);
  }
  void TearDown() override {
    SetUiResponder({});
    StopTextEngine();
    SetFolderOverrides({});
    std::filesystem::remove_all(folder);
    EXPECT_EQ(LiveBlocks().blocks, 0u);
    EXPECT_EQ(LiveBlocks().locks, 0u);
  }

  /// Runs the main dialog; `editor` uses every dialog that opens over it.
  void Run(const std::function<void(Dialog&, int fill)>& body, const std::function<void(Dialog&, int)>& editor) {
    HostCallTable table{};
    table.version = HostInterfaceVersion;
    table.HostCall = HostCall;
    table.hostFlags = HostFlagPaletteFormat | HostFlagTrueColorFormat;
    const ModalDriver before = SetModalDriver([&](Dialog& dialog, int id) {
      if (id != kMainDialogTemplate.id) return editor(dialog, id);
      body(dialog, EffectRow(std::max(GetSelection(dialog, ControlId::Effect), 0)).panel->roles.fill);
    });
    RunModal(kMainDialogTemplate, nullptr, MainDialogProcedure, &table);
    SetModalDriver(before);
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
        Click(dialog, TextureControl::Help);
        EXPECT_EQ(helpAsked, "TLMPLGM4.HTML#TEXTURE");
        Click(dialog, TextureControl::Ok);
      });
}

TEST_F(EditorsOfTheMainDialog, ThePictureOfTheHostBecomesATile) {
  bool accept = false;
  Run(
      [&](Dialog& dialog, int fill) {
        Edit(dialog, fill, kTile);
        EXPECT_EQ(+LockMaterial(dialog, fill)->Tile.TileIndex, 0u) << "cancelled";
        EXPECT_FALSE(std::filesystem::exists(folder / "data" / "Mine.MTX.bak"));
        accept = true;
        Edit(dialog, fill, kTile);
        const auto material = LockMaterial(dialog, fill);
        EXPECT_EQ(+material->Tile.TileIndex, 20u);
        EXPECT_EQ(PathOfTile(material->Tile), (folder / "data" / "Mine.MTX").string());
        const DibView preview(HandleOf(material->Preview));
        EXPECT_EQ(preview.GetPixel(3, 3), 0x2040FFu) << "the face shows it";
      },
      [&](Dialog& dialog, int id) {
        ASSERT_EQ(id, 9981);
        responder.shiftDown = true;
        SetUiResponder(responder);
        if (!accept) Click(dialog, TileControl::Add);
        responder.shiftDown = false;
        SetUiResponder(responder);
        EXPECT_EQ(GetText(dialog, TileControl::Group), "Mine") << "which stays current";
        Click(dialog, TileControl::Add);
        EXPECT_EQ(GetText(dialog, TileControl::Size), "20 x 10");
        Click(dialog, TileControl::Help);
        EXPECT_EQ(helpAsked, "TLMPLGM4.HTML#TILE");
        Click(dialog, accept ? TileControl::Ok : TileControl::Cancel);
      });
}

}  // namespace
}  // namespace glyphmotion
