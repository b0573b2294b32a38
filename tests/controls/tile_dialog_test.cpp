// SPDX-License-Identifier: MIT
// The tile dialog, used in memory as a person would.
#include "controls/tile_dialog.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "controls/editor_services.h"
#include "editor_fixture.h"
#include "materials/shipped.h"
#include "materials/tile.h"
#include "resources/strings.h"
#include "resources/tile_controls.h"

namespace glyphmotion {
namespace {

using namespace TileControl;

struct Picture {
  int width, height, depth;
  Colour colour;
};
Picture offered{};  // what the host's chooser gives; width 0: cancelled

PackedDib OfferPicture(Dialog&) {
  if (!offered.width) return {};
  if (offered.depth == 24) return SolidDib(offered.width, offered.height, offered.colour);
  PackedDib picture = BlankDib(offered.width, offered.height, &GreyRamp(), offered.depth);
  if (const DibView view(picture); view) view.SetPixel(0, 0, offered.colour);
  return picture;
}

class TileWindow : public EditorDialog {
 protected:
  TileSpec tile{};
  bool accepted = false;

  void SetUp() override {
    EditorDialog::SetUp();
    SetEditorServices({nullptr, OfferPicture});
    SetTilePath(tile, LibraryReference(kTileLibraryName));
    LoadTileOf(tile);
    offered = {16, 16, 24, 0x00FF00};
  }
  void TearDown() override {
    FreeBlock(HandleOf(tile.TileBitmap));
    EditorDialog::TearDown();
  }
  /// Opens the dialog on `tile` as a material button does.
  void Use(const Script& person) {
    scripts[9981] = person;
    WithOwner([&](Dialog& owner) {
      TileSpec chosen = tile;
      accepted = RunTileDialog(owner, chosen);
      if (!accepted) return;
      FreeBlock(HandleOf(tile.TileBitmap));
      tile = chosen;
    });
  }
  TileLibrary FileOf(const std::string& name) const {
    TileLibrary group;
    EXPECT_TRUE(ReadTileLibrary(LibraryPath(name), group)) << name;
    return group;
  }
};

TEST_F(TileWindow, TheGroupAndTheMaterialsTileShowAtOnce) {
  tile.TileIndex = 3;
  Use([&](Dialog& dialog) {
    EXPECT_EQ(DialogTitle(dialog), "Matrix");
    EXPECT_EQ(Items(dialog, Group), std::vector<std::string>{"tlmplgm4"});
    EXPECT_EQ(ItemCount(dialog, List), 20);
    EXPECT_EQ(GetSelection(dialog, List), 3);
    EXPECT_TRUE(IsEnabled(dialog, Delete));
    const ControlRectangle list = RectangleOf(dialog, List);
    EXPECT_EQ(list.bottom - list.top, 240 + 2 * GetSystemSize(dialog, SystemSize::DialogFrame) +
                                          GetSystemSize(dialog, SystemSize::HorizontalScrollBar));
    EXPECT_EQ(FocusOf(dialog), List);
  });
  SetTilePath(tile, "elsewhere.mtx");
  Use([&](Dialog& dialog) {
    EXPECT_EQ(GetSelection(dialog, List), -1);
    EXPECT_FALSE(IsEnabled(dialog, Delete));
  });
}

TEST_F(TileWindow, SelectingTakesTheTileAndOnlyOkKeepsIt) {
  const TileLibrary group = FileOf("tlmplgm4.mtx");
  const DibView seventh(group.tiles[7]);
  Use([&](Dialog& dialog) {
    const Face before = Paint(dialog, Preview);
    Choose(dialog, List, 7);
    EXPECT_EQ(GetText(dialog, Size), std::to_string(seventh.Width()) + " x " + std::to_string(seventh.Height()));
    const Face preview = Paint(dialog, Preview);
    EXPECT_NE(preview, before);
    EXPECT_EQ(preview.At(2, 2), seventh.GetPixel(0, 0)) << "from the corner inside the edge";
    EXPECT_EQ(preview.At(2 + seventh.Width(), 2 + 5), seventh.GetPixel(0, 5)) << "repeated";
    EXPECT_EQ(preview.At(0, 0), GetSystemColour(SystemColour::DarkShadow)) << "sunken";
    Click(dialog, Cancel);
  });
  EXPECT_FALSE(accepted);
  EXPECT_EQ(+tile.TileIndex, 0u);
  Use([&](Dialog& dialog) { DoubleClick(dialog, List, 7); });
  EXPECT_TRUE(accepted) << "a double click is OK";
  EXPECT_EQ(+tile.TileIndex, 7u);
  EXPECT_EQ(DibView(HandleOf(tile.TileBitmap)).GetPixel(1, 1), seventh.GetPixel(1, 1));
  EXPECT_TRUE(std::filesystem::is_empty(home / "data")) << "nothing changed, nothing written";
}

TEST_F(TileWindow, ItemsAreThumbnailsInTheirCell) {
  TileLibrary group;
  group.writeable = true;
  group.tiles.push_back(SolidDib(80, 20, 0x0000FF));  // 50 percent: 40 by 10
  group.tiles.push_back(SolidDib(8, 8, 0x0000FF));    // 500 percent
  group.tiles.push_back(SolidDib(5000, 3, 0x0000FF));
  ASSERT_TRUE(WriteTileLibrary(Data("Sizes.mtx"), group, {}));
  Use([&](Dialog& dialog) {
    ASSERT_TRUE(Choose(dialog, Group, 1));
    ASSERT_EQ(ItemCount(dialog, List), 3);
    const auto item = [&](int index, bool selected) { return Paint(dialog, List, Cell, Cell, index, selected); };
    const Face wide = item(0, false), chosen = item(0, true);
    EXPECT_EQ(wide.At(4, 19), 0x0000FFu);
    EXPECT_EQ(wide.At(43, 28), 0x0000FFu);
    EXPECT_EQ(wide.At(3, 19), 0xFFFFFFu);
    EXPECT_EQ(wide.At(4, 18), 0xFFFFFFu);
    EXPECT_EQ(wide.At(4, 29), 0xFFFFFFu);
    EXPECT_EQ(chosen.At(4, 19), 0xFFFFFFu) << "one pixel right and down";
    EXPECT_EQ(chosen.At(5, 20), 0x0000FFu);
    EXPECT_EQ(chosen.At(44, 29), 0x0000FFu);
    EXPECT_EQ(wide.At(0, 0), GetSystemColour(SystemColour::Highlight)) << "raised";
    EXPECT_EQ(chosen.At(0, 0), GetSystemColour(SystemColour::DarkShadow)) << "sunken";
    EXPECT_EQ(chosen.At(2, 24), 0u) << "framed";
    EXPECT_EQ(wide.At(2, 24), 0xFFFFFFu);
    EXPECT_EQ(item(1, false).At(4, 4), 0x0000FFu);
    EXPECT_EQ(item(1, false).At(43, 43), 0x0000FFu);
    item(2, false);
  });
}

TEST_F(TileWindow, ThePrimaryGroupIsProtected) {
  const std::string refusal =
      "This file cannot be edited or overwritten.\n\nThe default matix set cannot be modified. To edit this file, save "
      "it to a new name. Hold down the Shift key and click on the + button.";
  Use([&](Dialog& dialog) {
    Choose(dialog, List, 1);
    Click(dialog, Add);
    EXPECT_EQ(LastMessage(), refusal);
    Click(dialog, Delete);
    PressKey(dialog, List, kKeyDelete);
    EXPECT_EQ(messages, (std::vector<std::string>{refusal, refusal, refusal}));
    ShiftClick(dialog, Delete);
    EXPECT_EQ(LastMessage(), "The primary matrix group cannot be deleted.");
    EXPECT_EQ(ItemCount(dialog, List), 20);
  });
}

TEST_F(TileWindow, TilesOfTheRightSizeComeIn) {
  Use([&](Dialog& dialog) {
    ASSERT_TRUE(ShiftClick(dialog, Add));
    EXPECT_EQ(Items(dialog, Group), (std::vector<std::string>{"tlmplgm4", "Mine"}));
    EXPECT_EQ(GetText(dialog, Group), "Mine");
    const struct {
      Picture picture;
      int count;
      const char* message;
    } rows[] = {{{600, 100, 24, 0xFF}, 21, ""},
                {{600, 600, 24, 0xFF}, 21, "The selected image is too large to be a matrix tile."},
                {{512, 512, 24, 0xFF}, 22, ""},
                {{0, 0, 0, 0}, 22, ""},
                {{3, 2, 1, 1}, 23, ""},
                {{3, 2, 8, 200}, 24, ""},
                {{3, 2, 32, 0x80123456}, 25, ""}};
    for (const auto& row : rows) {
      offered = row.picture;
      messages.clear();
      Click(dialog, Add);
      EXPECT_EQ(ItemCount(dialog, List), row.count) << row.picture.width << " " << row.picture.depth;
      EXPECT_EQ(LastMessage(), row.message);
    }
    EXPECT_EQ(GetSelection(dialog, List), 24) << "a new tile is the chosen one";
    EXPECT_EQ(GetText(dialog, Size), "3 x 2");
    EXPECT_EQ(FileOf("Mine.MTX").tiles.size(), 20u) << "nothing is written before OK";
    Click(dialog, Ok);
  });
  const TileLibrary group = FileOf("Mine.MTX");
  ASSERT_EQ(group.tiles.size(), 25u);
  EXPECT_TRUE(group.writeable);
  const Colour corners[] = {0xFFFFFF, 0xC8C8C8, 0x123456};
  for (std::size_t i = 0; i < 3; ++i) {
    const DibView view(group.tiles[22 + i]);
    EXPECT_EQ(view.Bits(), 24);
    EXPECT_EQ(view.GetPixel(0, 0), corners[i]);
  }
  EXPECT_EQ(PathOfTile(tile), Data("Mine.MTX"));
  EXPECT_EQ(+tile.TileIndex, 24u);
  Use([&](Dialog& dialog) { EXPECT_EQ(GetSelection(dialog, List), 24) << "the group is still current"; });
}

TEST_F(TileWindow, DeletedTilesGoAndTheSelectionStaysInPlace) {
  menuChoice = Delete;
  Use([&](Dialog& dialog) {
    ShiftClick(dialog, Add);
    Choose(dialog, List, 18);
    const std::string next = ItemText(dialog, List, 19);
    Click(dialog, Delete);
    EXPECT_EQ(GetSelection(dialog, List), 18);
    PressKey(dialog, List, kKeyMenu);
    EXPECT_EQ(menuItems, std::vector<std::string>{"&Delete"});
    EXPECT_EQ(ItemCount(dialog, List), 18);
    EXPECT_EQ(GetSelection(dialog, List), 17) << "falls to the last";
    while (GetSelection(dialog, List) >= 0) PressKey(dialog, List, kKeyDelete);
    EXPECT_EQ(ItemCount(dialog, List), 0);
    EXPECT_FALSE(IsEnabled(dialog, Delete));
    Click(dialog, Ok);
  });
  EXPECT_TRUE(messages.empty()) << LastMessage();
  const TileLibrary group = FileOf("Mine.MTX");
  EXPECT_TRUE(group.tiles.empty() && group.writeable) << "an empty library loads";
  EXPECT_EQ(std::filesystem::file_size(Data("Mine.MTX")), 1082u);
  EXPECT_TRUE(std::filesystem::exists(Data("Mine.MTX.bak")));
}

TEST_F(TileWindow, GroupsAreChosenAndDeleted) {
  Use([&](Dialog& dialog) {
    ShiftClick(dialog, Add);
    Click(dialog, Add);
    Choose(dialog, Group, 0);
    EXPECT_EQ(ItemCount(dialog, List), 20);
    EXPECT_EQ(GetSelection(dialog, List), -1) << "the tile is of the other group";
    Choose(dialog, Group, 1);
    EXPECT_EQ(ItemCount(dialog, List), 21) << "what was added waits for OK";
    EXPECT_EQ(GetSelection(dialog, List), 20);
    yes = false;
    ShiftClick(dialog, Delete);
    EXPECT_EQ(LastMessage(),
              "Do you want to delete the Mine matrix group?\n\nClick on Yes to delete this file, or No to abort.");
    EXPECT_TRUE(std::filesystem::exists(Data("Mine.MTX")));
    yes = true;
    ShiftClick(dialog, Delete);
    EXPECT_FALSE(std::filesystem::exists(Data("Mine.MTX")));
    EXPECT_EQ(Items(dialog, Group), std::vector<std::string>{"tlmplgm4"});
    EXPECT_EQ(GetText(dialog, Group), "tlmplgm4");
    EXPECT_EQ(ItemCount(dialog, List), 21) << "the list stays until a group is chosen";
    Choose(dialog, Group, 0);
    EXPECT_EQ(ItemCount(dialog, List), 20);
    Click(dialog, Ok);
  });
  EXPECT_FALSE(std::filesystem::exists(Data("Mine.MTX")));
}

TEST_F(TileWindow, DamagedGroupsAreReportedAndShowWhatIsReadable) {
  const std::string damaged = "There has been an error loading the matrix element file.";
  std::filesystem::copy_file(OwnCopy("tlmplgm4.mtx"), Data("Short.mtx"));
  std::filesystem::resize_file(Data("Short.mtx"), 100000);
  std::filesystem::resize_file(Data("tlmplgm4.mtx"), 10);
  Use([&](Dialog& dialog) {
    EXPECT_EQ(messages, std::vector<std::string>{damaged});
    EXPECT_EQ(ItemCount(dialog, List), 0);
    Choose(dialog, Group, 1);
    EXPECT_EQ(messages.size(), 2u);
    EXPECT_GT(ItemCount(dialog, List), 0);
    Choose(dialog, List, 0);
    Click(dialog, Ok);
  });
  EXPECT_TRUE(accepted);
}

TEST_F(TileWindow, EveryAllocationMayFail) {
  const auto session = [&](Dialog& dialog) {
    Choose(dialog, List, 3);
    ShiftClick(dialog, Add);
    offered = {20, 20, 8, 100};
    Click(dialog, Add);
    Paint(dialog, Preview);
    if (ItemCount(dialog, List) > 3) Paint(dialog, List, Cell, Cell, 3);
    Click(dialog, Delete);
    Choose(dialog, Group, 0);
    Click(dialog, Ok);
  };
  FailAllocation(0);
  Use(session);
  const std::uint64_t asked = AllocationsAsked();
  ASSERT_GT(asked, 20u);
  const std::uint64_t blocks = LiveBlocks().blocks;
  for (std::uint64_t n = 1; n <= asked; ++n) {
    FailAllocation(n);
    Use(session);
    FailAllocation(0);
    EXPECT_LE(LiveBlocks().blocks, blocks) << n;
    EXPECT_EQ(LiveBlocks().locks, 0u) << n;
  }
}

TEST_F(TileWindow, ATileThatCannotBeCopiedIsReportedAndNothingOpens) {
  bool opened = false;
  FailAllocation(1);
  Use([&](Dialog&) { opened = true; });
  EXPECT_FALSE(opened || accepted);
  EXPECT_EQ(LastMessage(), "Memory error");
}

}  // namespace
}  // namespace glyphmotion
