// SPDX-License-Identifier: MIT
// The gradient editor and the marker position through every control a person has.
// A plus before a field of a packed record makes a value of it, as the test macros bind references.
#include "controls/gradient_dialog.h"

#include <cstring>

#include "controls/fountain_control.h"
#include "controls/gradient_editor.h"
#include "controls/read_controls.h"
#include "editor_fixture.h"
#include "materials/fountain.h"
#include "materials/gradient.h"
#include "resources/strings.h"

namespace glyphmotion {
namespace {

using namespace GradientControl;

constexpr int kGradientDialog = 9995, kPositionDialog = 9996;

class GradientDialog : public EditorDialog {
 protected:
  Material material;
  void SetUp() override {
    EditorDialog::SetUp();
    DefaultMaterial(material, 0);
    SetFountainWindows({AskMarkerPosition, nullptr});
  }
  void TearDown() override {
    SetFountainWindows({});
    EditorDialog::TearDown();
  }
  bool Edit(const Script& script) {
    scripts[kGradientDialog] = script;
    bool accepted = false;
    WithOwner([&](Dialog& owner) {
      GradientSpec gradient = material.Gradient;
      FountainSpec fountain = material.Fountain;
      accepted = EditGradient(owner, gradient, fountain);
      material.Gradient = gradient;
      material.Fountain = fountain;
    });
    return accepted;
  }
  static GradientBlock Copy(Dialog& dialog) { return *LockedBlock<GradientBlock>(HandleOf(GetData(dialog, Preview))); }
  static std::optional<std::int32_t> Field(Dialog& dialog, int control) {
    return GradientNumber(Copy(dialog).gradient, control);
  }
};

TEST_F(GradientDialog, OkHandsEveryFieldBackAndCancelNone) {
  const Material before = material;
  colour = 0x123456;
  const auto change = [&](Dialog& dialog) {
    Click(dialog, Conical);
    Type(dialog, Rotation, "-90");
    Type(dialog, EdgePad, "20");
    Type(dialog, CenterX, "-50");
    Type(dialog, CenterY, "7");
    Type(dialog, Midpoint, "30");
    Click(dialog, StartColour);
    Click(dialog, EndColour);
    Click(dialog, MultiColor);
    SendToControl(dialog, Fountain, {kMessageFountainDelete, 0, 0});
    Pump(dialog);
  };
  EXPECT_FALSE(Edit([&](Dialog& dialog) {
    change(dialog);
    Click(dialog, Cancel);
  }));
  EXPECT_EQ(std::memcmp(&before, &material, sizeof material), 0);
  EXPECT_FALSE(Edit(change)) << "closed without a word";
  EXPECT_EQ(std::memcmp(&before, &material, sizeof material), 0);
  coloursAsked.clear();
  EXPECT_TRUE(Edit([&](Dialog& dialog) {
    change(dialog);
    Click(dialog, Ok);
  }));
  EXPECT_EQ(coloursAsked, (std::vector<std::uint32_t>{0x404040, 0xC0C0C0})) << "the chooser opens on the colours";
  const GradientSpec& gradient = material.Gradient;
  const GradientSpec expected{1, 0x123456, 0x123456, 20, -50, 7, 30, 0, -90, 0};
  EXPECT_EQ(std::memcmp(&gradient, &expected, sizeof gradient), 0);
  EXPECT_EQ(+material.Fountain.MarkerCount, 6u);
  EXPECT_EQ(+material.Fountain.Preview, 0u) << "the control's preview is its own";
}

TEST_F(GradientDialog, ShowsWhatItWasGiven) {
  material.Gradient = {2, 0x112233, 0x445566, 10, 20, -30, 40, 0, -50, 0};
  Edit([&](Dialog& dialog) {
    EXPECT_EQ(DialogTitle(dialog), "Gradient");
    const struct {
      int control;
      const char* text;
    } rows[] = {{StartColour, "1122867"}, {EndColour, "4478310"}, {EdgePad, "10"},       {CenterX, "20"},
                {CenterY, "-30"},         {Midpoint, "40"},       {MidpointTrack, "40"}, {Rotation, "-50"}};
    for (const auto& row : rows) EXPECT_EQ(GetText(dialog, row.control), row.text) << row.control;
    EXPECT_EQ(GetCheck(dialog, TwoColor), 0);
    EXPECT_EQ(GetCheck(dialog, MultiColor), 1);
    EXPECT_EQ(FocusOf(dialog), Elliptical);
  });
}

// A document may hold anything.
TEST_F(GradientDialog, WildRecordsAreBroughtWithinTheLimits) {
  constexpr std::int32_t kMost = 0x7FFFFFFF;
  material.Gradient = {77, 0xFF112233, 0xFF445566, kMost, kMost, -kMost, kMost, 1, -kMost, 9};
  material.Fountain.MarkerCount = 0xFFFFFFFF;
  EXPECT_TRUE(Edit([&](Dialog& dialog) {
    EXPECT_EQ(FocusOf(dialog), Linear);
    EXPECT_EQ(GetText(dialog, StartColour), "1122867");
    Click(dialog, MultiColor);
    for (const int id : {Preview, Linear, Fountain}) Paint(dialog, id);
    for (int i = 0; i < 70; ++i) PressKey(dialog, Fountain, kKeyRight);
    for (const KeyCode key : {kKeyLeft, kKeyUp, kKeyInsert, kKeyDelete}) PressKey(dialog, Fountain, key);
    Click(dialog, Ok);
  }));
  const GradientSpec& gradient = material.Gradient;
  const GradientSpec expected{77, 0xFF112233, 0xFF445566, 45, 50, -50, 99, 1, -360, 0};
  EXPECT_EQ(std::memcmp(&gradient, &expected, sizeof gradient), 0);
  EXPECT_EQ(+material.Fountain.MarkerCount, 63u);
}

TEST_F(GradientDialog, NumbersStayWithinTheirLimitsWhileTyped) {
  Edit([&](Dialog& dialog) {
    Click(dialog, Conical);  // which uses every number
    const struct {
      int control;
      const char *typed, *shown;
      std::int32_t kept;
    } rows[] = {{Rotation, "500", "360", 360}, {Rotation, "-1000", "-360", -360},
                {Rotation, "-", "-", 0},       {EdgePad, "46", "45", 45},
                {EdgePad, "", "", 0},          {EdgePad, "-3", "0", 0},
                {CenterX, "-51", "-50", -50},  {CenterX, "x", "0", 0},
                {CenterY, "100", "50", 50},    {Midpoint, "500", "99", 99},
                {Midpoint, "0", "1", 1},       {Midpoint, "77", "77", 77},
                {Midpoint, "", "", 1}};
    for (const auto& row : rows) {
      SetFocus(dialog, row.control);
      Type(dialog, row.control, row.typed);
      EXPECT_EQ(GetText(dialog, row.control), row.shown) << row.control << " " << row.typed;
      EXPECT_EQ(Field(dialog, row.control), row.kept) << row.control << " " << row.typed;
      SetFocus(dialog, Ok);
      EXPECT_EQ(GetText(dialog, row.control), std::to_string(row.kept)) << "left, it shows what is used";
    }
    // The up-downs go as far as their captions say, the fields no further than they may.
    Type(dialog, CenterX, "50");
    PressKey(dialog, CenterX, kKeyUp);
    EXPECT_EQ(GetText(dialog, CenterX), "50");
    Type(dialog, EdgePad, "45");
    PressKey(dialog, EdgePad, kKeyUp);
    EXPECT_EQ(Field(dialog, EdgePad), 45);
  });
}

TEST_F(GradientDialog, MidpointUsesItsMessageAndKeepsBothControlsInSync) {
  Edit([&](Dialog& dialog) {
    SetText(dialog, Midpoint, "20");
    EXPECT_EQ(Field(dialog, Midpoint), 50) << "the edit does not set the field itself";
    Pump(dialog);
    EXPECT_EQ(Field(dialog, Midpoint), 20);
    EXPECT_EQ(GetText(dialog, MidpointTrack), "20");
    Type(dialog, MidpointTrack, "0");
    EXPECT_EQ(GetText(dialog, Midpoint), "1");
    EXPECT_EQ(Field(dialog, Midpoint), 1);
    Post(dialog, {kMessageSetMidpoint, 0, 64});
    Pump(dialog);
    EXPECT_EQ(GetText(dialog, Midpoint), "64");
    EXPECT_EQ(GetText(dialog, MidpointTrack), "64");
    Post(dialog, {kMessageSetMidpoint, 0, -4});
    Pump(dialog);
    EXPECT_EQ(Field(dialog, Midpoint), 1);
  });
}

TEST_F(GradientDialog, ControlsThatDoNotApplyAreDisabled) {
  const struct {
    int type, colours;
    const char* edgePad;
    std::vector<int> disabled;
  } rows[] = {{Linear, TwoColor, "0", {CenterX, CenterY, Fountain}},
              {Conical, TwoColor, "0", {Fountain}},
              {Elliptical, MultiColor, "0", {Rotation, Midpoint, MidpointTrack, StartColour, EndColour}},
              {Rectangular, MultiColor, "5", {Rotation, Midpoint, MidpointTrack}}};
  Edit([&](Dialog& dialog) {
    for (const auto& row : rows) {
      Click(dialog, row.type);
      Click(dialog, row.colours);
      Type(dialog, EdgePad, row.edgePad);
      for (const int id :
           {Rotation, EdgePad, CenterX, CenterY, Midpoint, MidpointTrack, StartColour, EndColour, Fountain}) {
        const bool used = std::find(row.disabled.begin(), row.disabled.end(), id) == row.disabled.end();
        EXPECT_EQ(IsEnabled(dialog, id), used) << row.type << " " << id;
        if (HasControl(dialog, id + kUpDownOffset)) {
          EXPECT_EQ(IsEnabled(dialog, id + kUpDownOffset), used) << id;
        }
      }
    }
  });
}

TEST_F(GradientDialog, KeysGoThroughTheShapes) {
  Edit([&](Dialog& dialog) {
    const struct {
      KeyCode key;
      int reaches;
    } rows[] = {{kKeyRight, Conical},    {kKeyDown, Rectangular}, {kKeyLeft, Elliptical}, {kKeyUp, Linear},
                {kKeyLeft, Rectangular}, {kKeyRight, Linear},     {kKeySpace, Linear}};
    for (const auto& row : rows) {
      PressKey(dialog, FocusOf(dialog), row.key);
      EXPECT_EQ(FocusOf(dialog), row.reaches);
      EXPECT_EQ(TypeButtonOf(Copy(dialog).gradient), row.reaches);
    }
    const Face pressed = Paint(dialog, Linear), raised = Paint(dialog, Conical);
    Click(dialog, Conical);
    EXPECT_NE(Paint(dialog, Linear), pressed);
    EXPECT_NE(Paint(dialog, Conical), raised);
  });
}

// What a drag sets is proved by the picture: the last ring's colour, or the start's, comes to lie under the pointer.
TEST_F(GradientDialog, DraggingInThePreviewPutsTheColourUnderThePointer) {
  material.Gradient.StartColour = 0x0000FF;
  material.Gradient.EndColour = 0xFF0000;
  Edit([&](Dialog& dialog) {
    const Face first = Paint(dialog, Preview);
    const int width = first.width - 2, height = first.height - 2;
    const auto render = [&] { return RenderGradient(width, height, Copy(dialog).gradient, Copy(dialog).fountain); };
    const int x = width / 4, y = height / 3;
    for (const int type : {Elliptical, Rectangular}) {
      Click(dialog, type);
      Mouse(dialog, Preview, kMessageMouseMove, 3, 3);
      EXPECT_EQ(Field(dialog, CenterX), 0) << "only a pressed button drags";
      Mouse(dialog, Preview, kMessageLeftDown, width / 2 + 1, height / 2 + 1);
      Mouse(dialog, Preview, kMessageMouseMove, x + 1, y + 1);
      Mouse(dialog, Preview, kMessageLeftUp, x + 1, y + 1);
      Mouse(dialog, Preview, kMessageMouseMove, 3, 3);
      EXPECT_LT(DibView(render()).GetPixel(x, y) & 0xFF, 8u) << "nearly the end's colour";
      EXPECT_EQ(GetNumber(dialog, CenterX, true), Field(dialog, CenterX));
      Type(dialog, CenterX, "0");
      Type(dialog, CenterY, "0");
    }
    Click(dialog, Conical);
    Mouse(dialog, Preview, kMessageLeftDown, x + 1, y + 1);
    Mouse(dialog, Preview, kMessageLeftUp, x + 1, y + 1);
    // Around the centre the sweep runs through both colours.
    int reddest = 0, bluest = 0;
    const PackedDib cone = render();
    const DibView view(cone);
    for (int dy = -4; dy <= 4; ++dy) {
      for (int dx = -4; dx <= 4; ++dx) {
        const std::uint32_t pixel = view.GetPixel(x + dx, y + dy);
        reddest = std::max(reddest, RedOf(pixel));
        bluest = std::max(bluest, BlueOf(pixel));
      }
    }
    EXPECT_GT(reddest, 230);
    EXPECT_GT(bluest, 230);
    Click(dialog, Linear);
    Mouse(dialog, Preview, kMessageLeftDown, width - 4, height / 2 + 1);
    Mouse(dialog, Preview, kMessageLeftUp, width - 4, height / 2 + 1);
    EXPECT_EQ(Field(dialog, Rotation), 90);
    EXPECT_GT(DibView(render()).GetPixel(width - 1, height / 2) & 0xFF, 245u) << "the start's colour";
    EXPECT_NE(Paint(dialog, Preview), first);
    PressKey(dialog, Preview, kKeyLeft);
    EXPECT_EQ(Field(dialog, Rotation), 89);
    for (const auto& [type, sign] : {std::pair{Conical, 1}, std::pair{Elliptical, -1}}) {
      Click(dialog, type);
      Type(dialog, CenterY, "0");
      PressKey(dialog, Preview, kKeyUp);
      EXPECT_EQ(Field(dialog, CenterY), sign) << "the handle goes up";
    }
  });
}

TEST_F(GradientDialog, HintSaysWhatDraggingDoes) {
  Edit([&](Dialog& dialog) {
    EXPECT_EQ(GetText(dialog, Hint), LoadText(kTextDragTurns));
    Click(dialog, Rectangular);
    EXPECT_EQ(GetText(dialog, Hint), LoadText(kTextDragMovesCenter));
  });
}

TEST_F(GradientDialog, FountainShowsAtOnceAlsoWhileItIsDragged) {
  Edit([&](Dialog& dialog) {
    Click(dialog, MultiColor);
    const Face before = Paint(dialog, Preview);
    const Rect bar = FountainBar(197, 50);
    const int x = bar.left + static_cast<int>(0x80 / 255.0 * bar.Width());
    Mouse(dialog, Fountain, kMessageLeftDown, x, 6);
    Mouse(dialog, Fountain, kMessageMouseMove, x - 9, 6);
    EXPECT_NE(Paint(dialog, Preview), before) << "before the button is released";
    Mouse(dialog, Fountain, kMessageLeftUp, x - 9, 6);
    EXPECT_NE(+Copy(dialog).fountain.Markers[3], 0x8000FFFFu);
  });
}

TEST_F(GradientDialog, FountainIsEditedByKeys) {
  colour = 0x0A0B0C;
  Edit([&](Dialog& dialog) {
    Click(dialog, MultiColor);
    SetFocus(dialog, Fountain);
    const auto press = [&](std::initializer_list<KeyCode> keys) {
      for (const KeyCode key : keys) PressKey(dialog, Fountain, key);
    };
    const auto marker = [&](int index) { return +Copy(dialog).fountain.Markers[index]; };
    press({kKeyLeft, kKeySpace});
    EXPECT_EQ(+Copy(dialog).fountain.StartColour, 0x0A0B0Cu) << "the first handle is the start";
    const Face atStart = Paint(dialog, Fountain);
    press({kKeyRight, kKeyRight, kKeyUp, kKeyUp, kKeyDown});
    EXPECT_EQ(marker(1), 0x41FFFF00u) << "the second marker moved, one step in all";
    EXPECT_NE(Paint(dialog, Fountain), atStart);
    press({kKeyInsert});
    EXPECT_EQ(+Copy(dialog).fountain.MarkerCount, 8u);
    EXPECT_EQ(marker(2) & 0xFFFFFF, 0x0A0B0Cu);
    EXPECT_TRUE(MarkerPosition(marker(2)) > 0x41 && MarkerPosition(marker(2)) < 0x60) << "between the neighbours";
    press({kKeyDelete});
    EXPECT_EQ(marker(1) & 0xFFFFFF, 0x0A0B0Cu) << "the one that was chosen is gone";
    scripts[kPositionDialog] = [](Dialog& inner) {
      Type(inner, 100, "");
      SetFocus(inner, Ok);
      EXPECT_EQ(GetText(inner, 100), "80") << "an empty field that is left shows the position";
      Type(inner, 100, "70");
      Click(inner, Ok);
    };
    press({kKeyF2});
    EXPECT_EQ(marker(1), 0x460A0B0Cu) << "F2 asks for the position";
    press({kKeyMenu});
    EXPECT_EQ(menuItems.size(), 3u) << "a marker's menu";
    for (int i = 0; i < 9; ++i) press({kKeyRight});
    press({kKeyDelete, kKeyDown, kKeyMenu, kKeySpace});
    EXPECT_EQ(menuItems.size(), 2u) << "the bar's menu";
    EXPECT_EQ(+Copy(dialog).fountain.EndColour & 0xFFFFFF, 0x0A0B0Cu);
    EXPECT_EQ(+Copy(dialog).fountain.MarkerCount, 7u) << "an end cannot be deleted";
    EXPECT_TRUE(messages.empty());
  });
}

TEST_F(GradientDialog, MarkerPositionIsPreviewedAndCancelRestoresIt) {
  const auto marker = [](Dialog& dialog, int index) { return +Copy(dialog).fountain.Markers[index]; };
  const Message adjust{kMessageFountainPosition, 3, 0};
  Dialog* gradient = nullptr;
  scripts[kPositionDialog] = [&](Dialog& dialog) {
    EXPECT_EQ(GetText(dialog, 100), "128");
    EXPECT_EQ(FocusOf(dialog), 100);
    Type(dialog, 101, "200");
    EXPECT_EQ(GetText(dialog, 100), "200");
    EXPECT_EQ(marker(*gradient, 5), MakeMarker(200, 0x00FFFF)) << "sorted in before it is accepted";
    Type(dialog, 100, "300");
    EXPECT_EQ(GetText(dialog, 100), "255");
    Type(dialog, 100, "");
    Type(dialog, 100, "60");
    EXPECT_EQ(GetText(dialog, 101), "60");
    Click(dialog, Cancel);
  };
  Edit([&](Dialog& dialog) {
    gradient = &dialog;
    Click(dialog, MultiColor);
    const GradientBlock before = Copy(dialog);
    SendToControl(dialog, Fountain, adjust);
    Pump(dialog);
    EXPECT_EQ(std::memcmp(&before.fountain, &*LockFountain(dialog, Fountain), 281), 0);
    EXPECT_EQ(marker(dialog, 3), 0x8000FFFFu);
    scripts[kPositionDialog] = [](Dialog& inner) {
      Type(inner, 100, "60");
      Click(inner, Ok);
    };
    SendToControl(dialog, Fountain, adjust);
    Pump(dialog);
    EXPECT_EQ(marker(dialog, 1), 0x3C00FFFFu);
    EXPECT_EQ(marker(dialog, 3), 0x6000FF00u);
  });
}

TEST_F(GradientDialog, EveryAllocationMayFailAndNothingLeaks) {
  FailEachAllocation([&] {
    Edit([&](Dialog& dialog) {
      Click(dialog, MultiColor);
      Paint(dialog, Preview);
      Paint(dialog, Conical);
      SendToControl(dialog, Fountain, {kMessageFountainDelete, 0, 0});
      Pump(dialog);
      Click(dialog, Ok);
    });
  });
}

}  // namespace
}  // namespace glyphmotion
