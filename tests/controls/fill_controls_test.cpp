// SPDX-License-Identifier: MIT
// The drawn controls that hold fills, and the editors behind them, driven in memory.
// A plus before a field of a packed record makes a value of it, as the test macros bind references.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include "controls/fountain_control.h"
#include "controls/gradient_editor.h"
#include "controls/library_editor.h"
#include "controls/material_control.h"
#include "editor_fixture.h"
#include "materials/shipped.h"
#include "platform/dialog_driver.h"
#include "platform/encoding.h"
#include "platform/folders.h"
#include "platform/shell_ui.h"

namespace glyphmotion {
namespace {

constexpr int kMaterialId = 104, kFountainId = 120;
constexpr ControlTemplate kControls[] = {{ControlKind::MaterialButton, kMaterialId, "Fill", 0, 0, 60, 20},
                                         {ControlKind::FountainButton, kFountainId, "", 0, 30, 100, 30}};
constexpr DialogTemplate kTemplate{1, "", 200, 100, kControls};

std::vector<Message> changes;
std::int64_t Procedure(Dialog&, const Message& message) {
  if (message.number == kMessageFillChanged) changes.push_back(message);
  return 0;
}

/// A dialog with both controls.
class FillControls : public EditorDialog {
 protected:
  void SetUp() override {
    EditorDialog::SetUp();
    changes.clear();
  }
  void WithDialog(const std::function<void(Dialog&)>& body) {
    const ModalDriver before = SetModalDriver([&](Dialog& dialog, int) {
      InstallFamily(dialog, kMaterialId, kMaterialFamily, nullptr);
      InstallFamily(dialog, kFountainId, kFountainFamily, nullptr);
      InitialiseMaterial(dialog, kMaterialId, 0x112233);
      InitialiseFountain(dialog, kFountainId, true, nullptr);
      body(dialog);
    });
    RunModal(kTemplate, nullptr, Procedure, nullptr);
    SetModalDriver(before);
  }
  static std::string LineOf(Dialog& dialog, int id) {
    std::string line;
    SendToControl(dialog, id, {kMessageSaveControl, 0, PointerArgument(&line)});
    return line;
  }
  static bool Load(Dialog& dialog, int id, std::string line) {
    while (!line.empty() && line.back() == '\n') line.pop_back();
    return SendToControl(dialog, id, {kMessageLoadControl, 0, PointerArgument(&line)}) != 0;
  }
};

TEST_F(FillControls, MaterialLinesKeepEverythingButTheState) {
  WithDialog([&](Dialog& dialog) {
    const std::string line = LineOf(dialog, kMaterialId);
    ASSERT_EQ(line.size(), std::string("MATLBT104=\n").size() + 2 * sizeof(Material));
    LockMaterial(dialog, kMaterialId)->Kind = kGradient;
    const std::string gradient = LineOf(dialog, kMaterialId);
    EXPECT_TRUE(Load(dialog, kMaterialId, line));
    EXPECT_EQ(+LockMaterial(dialog, kMaterialId)->Kind, kSolid);
    EXPECT_TRUE(Load(dialog, kMaterialId, gradient));
    EXPECT_EQ(+LockMaterial(dialog, kMaterialId)->Kind, kGradient);
    std::string bad = line;
    bad[200] = 'x';
    Load(dialog, kMaterialId, bad);
    EXPECT_EQ(+LockMaterial(dialog, kMaterialId)->Kind, kGradient) << "one bad character changes nothing";
    Load(dialog, kMaterialId, line.substr(0, 11 + 2 * 30));
    EXPECT_EQ(+LockMaterial(dialog, kMaterialId)->Colour, 0x112233u) << "a short line has a tail of zeros";
    EXPECT_EQ(+LockMaterial(dialog, kMaterialId)->Fountain.MarkerCount, 0u);
  });
}

TEST_F(FillControls, MaterialIsRememberedUnlessShiftIsDown) {
  WithDialog([&](Dialog& dialog) { LockMaterial(dialog, kMaterialId)->Colour = 0x445566; });
  EXPECT_EQ(std::filesystem::file_size(home / "kept/Material00104.mtrl"), 1270u);
  EXPECT_EQ(std::filesystem::file_size(home / "kept/Fountain00120.mtrl"), 585u);
  WithDialog([&](Dialog& dialog) { EXPECT_EQ(+LockMaterial(dialog, kMaterialId)->Colour, 0x445566u); });
  responder.shiftDown = true;
  SetUiResponder(responder);
  WithDialog([&](Dialog& dialog) { EXPECT_EQ(+LockMaterial(dialog, kMaterialId)->Colour, 0x112233u); });
}

TEST_F(FillControls, ArrowOpensTheMenuWhereverThePointerIsReleased) {
  menuChoice = 101;
  WithDialog([&](Dialog& dialog) {
    const ControlRectangle place = RectangleOf(dialog, kMaterialId);
    const int width = place.right - place.left;
    const Colour average = LockMaterial(dialog, kMaterialId)->AverageColour;
    Mouse(dialog, kMaterialId, kMessageLeftDown, width - 3, 4);
    EXPECT_EQ(+LockMaterial(dialog, kMaterialId)->ButtonState, 2u);
    Mouse(dialog, kMaterialId, kMessageLeftUp, 5, 4);
    EXPECT_EQ(menus, 1);
    EXPECT_EQ(+LockMaterial(dialog, kMaterialId)->Kind, kGradient);
    EXPECT_EQ(+LockMaterial(dialog, kMaterialId)->ButtonState, 0u);
    EXPECT_EQ(+LockMaterial(dialog, kMaterialId)->AverageColour, average) << "the caption keeps its colour";
    ASSERT_EQ(changes.size(), 1u);
    EXPECT_EQ(changes[0].a, 1u);
    EXPECT_EQ(changes[0].b, kMaterialId);
  });
}

TEST_F(FillControls, AStolenMouseEndsAPressAndADragWithoutAChoice) {
  menuChoice = 101;
  WithDialog([&](Dialog& dialog) {
    const ControlRectangle place = RectangleOf(dialog, kMaterialId);
    Mouse(dialog, kMaterialId, kMessageLeftDown, place.right - place.left - 3, 4);
    StealMouse(dialog);
    EXPECT_EQ(+LockMaterial(dialog, kMaterialId)->ButtonState, 0u);
    Mouse(dialog, kMaterialId, kMessageLeftUp, 5, 4);
    EXPECT_EQ(menus, 0);
    EXPECT_TRUE(changes.empty());
    colour = 0x0000FF;
    const Rect bar = FountainBar(197, 50);
    Mouse(dialog, kFountainId, kMessageDoubleClick, bar.left + 40, bar.top + 5);
    ASSERT_EQ(+LockFountain(dialog, kFountainId)->MarkerCount, 8u);
    changes.clear();
    Mouse(dialog, kFountainId, kMessageLeftDown, bar.left + 40, 7);
    Mouse(dialog, kFountainId, kMessageMouseMove, bar.left + 90, 7);
    for (const KeyCode key : {kKeyUp, kKeyLeft, kKeyDelete}) PressKey(dialog, kFountainId, key);
    Mouse(dialog, kFountainId, kMessageRightUp, bar.left + 90, 7);
    EXPECT_EQ(menus, 0) << "nothing takes the marker from under the pointer";
    StealMouse(dialog);
    EXPECT_EQ(changes.size(), 1u) << "the marker stays where it was dragged to";
    std::string dragged, later;
    SendToControl(dialog, kFountainId, {kMessageSaveControl, 0, PointerArgument(&dragged)});
    Mouse(dialog, kFountainId, kMessageMouseMove, bar.left + 120, 7);
    Mouse(dialog, kFountainId, kMessageLeftUp, bar.left + 120, 200);
    SendToControl(dialog, kFountainId, {kMessageSaveControl, 0, PointerArgument(&later)});
    EXPECT_EQ(later, dragged);
    const MovableBlock stored = HexDecode(later.substr(later.find('=') + 1), sizeof(FountainSpec));
    EXPECT_EQ(+LockedBlock<FountainSpec>(stored.Handle())->Preview, 0u) << "a handle is meaningless in a file";
  });
}

// The caption reads on the mean colour, is there only while the button is enabled, and the machine may draw it.
TEST_F(FillControls, AMaterialShowsItsCaptionAndItsFocus) {
  WithDialog([&](Dialog& dialog) {
    const ControlRectangle place = RectangleOf(dialog, kMaterialId);
    const int width = place.right - place.left, height = place.bottom - place.top;
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(3 * width * height));
    std::vector<FaceText> texts;
    DrawRequest request{pixels.data(), width, height, std::ptrdiff_t{3} * width};
    request.texts = &texts;
    const auto paint = [&] {
      texts.clear();
      PaintControl(dialog, kMaterialId, request);
      return pixels;
    };
    SetText(dialog, kMaterialId, "");
    const auto plain = paint();
    EXPECT_TRUE(texts.empty());
    SetText(dialog, kMaterialId, std::string(300, 'a'));
    EXPECT_EQ(paint(), plain);
    ASSERT_EQ(texts.size(), 1u);
    EXPECT_EQ(texts[0].text.size(), 260u);
    EXPECT_TRUE(texts[0].centred);
    EXPECT_EQ(texts[0].colour, 0xFFFFFFu);
    EXPECT_TRUE(texts[0].place.left == 2 && texts[0].place.right == width - 18);
    Material light = *LockMaterial(dialog, kMaterialId);
    light.Colour = 0xF0F0F0;
    light.Preview = light.Tile.TileBitmap = 0;
    SetMaterial(dialog, kMaterialId, light);
    paint();
    EXPECT_EQ(texts[0].colour, 0u);
    SetFocus(dialog, kFountainId);
    const auto unfocused = paint();
    SetFocus(dialog, kMaterialId);
    EXPECT_NE(paint(), unfocused);
    Enable(dialog, kMaterialId, false);
    paint();
    EXPECT_TRUE(texts.empty());
  });
}

TEST_F(FillControls, FaceEditsAndNotifiesEvenWhenCancelled) {
  WithDialog([&](Dialog& dialog) {
    Mouse(dialog, kMaterialId, kMessageLeftDown, 5, 5);
    Mouse(dialog, kMaterialId, kMessageLeftUp, 500, 500);
    EXPECT_EQ(+LockMaterial(dialog, kMaterialId)->Colour, 0x112233u);
    EXPECT_EQ(changes.size(), 1u);
    colour = 0x0000FF;
    Mouse(dialog, kMaterialId, kMessageLeftDown, 5, 5);
    Mouse(dialog, kMaterialId, kMessageLeftUp, 5, 5);
    EXPECT_EQ(+LockMaterial(dialog, kMaterialId)->AverageColour, 0x0000FFu);
    EXPECT_EQ(changes.size(), 2u);
    std::vector<std::uint8_t> pixels(90 * 40 * 3);
    const ControlRectangle place = RectangleOf(dialog, kMaterialId);
    const DrawRequest request{pixels.data(), std::min(90, place.right - place.left),
                              std::min(40, place.bottom - place.top), 270};
    ASSERT_TRUE(PaintControl(dialog, kMaterialId, request));
    EXPECT_EQ(pixels[270 * 10 + 30 + 2], 0xFF);
    EXPECT_EQ(pixels[270 * 10 + 30], 0x00);
  });
  EXPECT_EQ(CaptionColour(0x808080), 0xFFFFFFu);
  EXPECT_EQ(CaptionColour(0xFFFFFF), 0u);
}

TEST_F(FillControls, MaterialsCanBeTakenOverAndCopied) {
  WithDialog([&](Dialog& dialog) {
    Material material;
    DefaultMaterial(material, 0);
    material.Kind = kTile;
    material.Tile.TileBitmap = WordOf(SolidDib(3, 3, 0x00FF00).Release());
    ASSERT_TRUE(SetMaterial(dialog, kMaterialId, material));
    EXPECT_EQ(+LockMaterial(dialog, kMaterialId)->AverageColour, 0x00FF00u);
    const MovableBlock copy = DuplicateMaterial(dialog, kMaterialId);
    const LockedBlock<Material> record(copy.Handle());
    EXPECT_NE(+record->Tile.TileBitmap, +material.Tile.TileBitmap);
    EXPECT_EQ(+record->Preview, 0u);
    FreeBlock(HandleOf(record->Tile.TileBitmap));
    FailAllocation(2);
    EXPECT_FALSE(DuplicateMaterial(dialog, kMaterialId)) << "a copy without its tile would be another fill";
    FailAllocation(0);
  });
}

// What a program outside may send them.
TEST_F(FillControls, NumberedMessagesInitialiseAndCopy) {
  WithDialog([&](Dialog& dialog) {
    const auto blocks = LiveBlocks().blocks;
    EXPECT_NE(SendToControl(dialog, kMaterialId, {0x590, 0, 0x445566}), 0);
    EXPECT_EQ(+LockMaterial(dialog, kMaterialId)->Colour, 0x445566u);
    const MovableBlock copy(HandleOf(static_cast<std::uint64_t>(SendToControl(dialog, kMaterialId, {0x591, 0, 0}))));
    const LockedBlock<Material> record(copy.Handle());
    ASSERT_TRUE(record);
    EXPECT_EQ(+record->Colour, 0x445566u);
    EXPECT_EQ(+record->Preview, 0u);
    FreeBlock(HandleOf(record->Tile.TileBitmap));
    FailAllocation(1);
    EXPECT_EQ(SendToControl(dialog, kMaterialId, {0x591, 0, 0}), 0);
    FailAllocation(0);

    FountainSpec initial;
    DefaultFountain(initial, 1);
    for (const std::uint64_t own : {0, 0x1000}) {
      SendToControl(dialog, kFountainId, {0x52C, own, PointerArgument(&initial)});
      EXPECT_EQ(+LockFountain(dialog, kFountainId)->MarkerCount, 1u);
      EXPECT_EQ(+LockFountain(dialog, kFountainId)->Flags, own ? kFountainKeepsFile : 0u);
    }
    SendToControl(dialog, kFountainId, {0x52C, 0, 0});
    EXPECT_EQ(+LockFountain(dialog, kFountainId)->MarkerCount, 7u) << "the spectrum";
    EXPECT_EQ(LiveBlocks().blocks, blocks + 1) << "nothing but the copy has come";
  });
}

TEST_F(FillControls, FountainMarkersComeAndGo) {
  colour = 0x123456;
  WithDialog([&](Dialog& dialog) {
    EXPECT_EQ(RectangleOf(dialog, kFountainId).right - RectangleOf(dialog, kFountainId).left, 197);
    const auto count = [&] { return LockFountain(dialog, kFountainId)->MarkerCount; };
    const Rect bar = FountainBar(197, 50);
    EXPECT_EQ(bar.Width(), 181);
    Mouse(dialog, kFountainId, kMessageDoubleClick, bar.left + 100, 30);
    ASSERT_EQ(count(), 8u);
    const int position = 100 * 255 / 181;
    const FountainHit hit = HitFountain(*LockFountain(dialog, kFountainId), 197, 50, bar.left + 99, 6);
    ASSERT_EQ(hit.part, FountainHit::Handle);
    EXPECT_EQ(+LockFountain(dialog, kFountainId)->Markers[hit.index], MakeMarker(position, 0x123456));
    SendToControl(dialog, kFountainId, {kMessageFountainDelete, static_cast<std::uint64_t>(hit.index), 0});
    EXPECT_EQ(count(), 7u);
    SendToControl(dialog, kFountainId, {kMessageFountainDelete, 7, 0});
    SendToControl(dialog, kFountainId, {kMessageFountainColour, 9, 0});
    EXPECT_EQ(messages, (std::vector<std::string>{"Internal error", "Internal error"}));
    SendToControl(dialog, kFountainId, {kMessageFountainColour, static_cast<std::uint64_t>(kEndHandle), 0});
    EXPECT_EQ(+LockFountain(dialog, kFountainId)->EndColour, 0xFF123456u) << "the top byte is kept";
    LockFountain(dialog, kFountainId)->MarkerCount = 64;
    SendToControl(dialog, kFountainId, {kMessageFountainAdd, 100, 0});
    EXPECT_EQ(messages.back(), "No more marker space is available. Delete an existing marker.");
    LockFountain(dialog, kFountainId)->MarkerCount = 0;
    SendToControl(dialog, kFountainId, {kMessageFountainDelete, 0, 0});
    EXPECT_EQ(messages.back(), "That marker cannot be deleted");
    menuChoice = 103;
    std::vector<FountainSpec> library;
    ReadFountainLibrary(FountainLibraryPath(), library);
    const std::size_t before = library.size();
    EXPECT_FALSE(std::filesystem::exists(home / "data/FountainLibrary.fll")) << "reading never writes";
    SendToControl(dialog, kFountainId, {kMessageBarMenu, 0, 0});
    ASSERT_TRUE(ReadFountainLibrary(Data("FountainLibrary.fll"), library)) << "the first edit makes the user's own";
    EXPECT_EQ(library.size(), before + 1);
  });
}

// The questions' owner may take the windows below away before the answer comes.
TEST_F(FillControls, AFountainIsNotHeldDuringAQuestion) {
  const std::uint32_t numbers[] = {kMessageFountainColour, kMessageFountainAdd, kMessageFountainPosition,
                                   kMessageFountainDelete, kMessageKeyDown,     kMessageBarMenu};
  for (const std::uint32_t number : numbers) {
    WithDialog([&](Dialog& dialog) {
      const auto vanish = [&] {
        EXPECT_EQ(LiveBlocks().locks, 0u) << number;
        DestroyFountain(dialog, kFountainId);
      };
      responder.colour = [&](Dialog*, std::uint32_t) { return vanish(), std::optional<std::uint32_t>(0x123456); };
      responder.name = [&](Dialog*, const std::string&, const std::string&) { return vanish(), std::optional("9"); };
      responder.message = [&](Dialog*, const std::string&, MessageButtons) { return vanish(), true; };
      responder.menu = [&](Dialog*, std::span<const MenuItem>) { return vanish(), 103; };
      SetUiResponder(responder);
      const std::uint64_t argument = number == kMessageKeyDown ? kKeySpace : number == kMessageFountainDelete ? 9 : 1;
      SendToControl(dialog, kFountainId, {number, argument, 0});
      EXPECT_FALSE(LockFountain(dialog, kFountainId)) << number << " asks, and changes what is gone no more";
    });
    EXPECT_TRUE(changes.empty()) << number;
  }
}

TEST_F(FillControls, DraggedMarkersFollowAndComeOff) {
  WithDialog([&](Dialog& dialog) {
    const Rect bar = FountainBar(197, 50);
    const auto markers = [&] { return LockFountain(dialog, kFountainId)->MarkerCount; };
    const int x = bar.left + static_cast<int>(0x80 / 255.0 * bar.Width());
    Mouse(dialog, kFountainId, kMessageLeftDown, x, 6);
    Mouse(dialog, kFountainId, kMessageLeftUp, x, 6);
    EXPECT_TRUE(changes.empty()) << "a click changes nothing";
    Mouse(dialog, kFountainId, kMessageLeftDown, x, 6);
    Mouse(dialog, kFountainId, kMessageMouseMove, bar.left + 5, 6);
    Mouse(dialog, kFountainId, kMessageLeftUp, bar.left + 5, 6);
    EXPECT_EQ(+LockFountain(dialog, kFountainId)->Markers[0], MakeMarker(5 * 255 / 181, 0x00FFFF));
    EXPECT_EQ(markers(), 7u);
    Mouse(dialog, kFountainId, kMessageLeftDown, bar.left + 5, 6);
    Mouse(dialog, kFountainId, kMessageLeftUp, bar.left + 5, 200);
    EXPECT_EQ(markers(), 6u);
  });
}

}  // namespace
}  // namespace glyphmotion
