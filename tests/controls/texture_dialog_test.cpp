// SPDX-License-Identifier: MIT
// The texture dialog, used in memory as a person would.
#include "controls/texture_dialog.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "controls/editor_services.h"
#include "controls/library_editor.h"
#include "controls/read_controls.h"
#include "controls/skin.h"
#include "editor_fixture.h"
#include "materials/library_file.h"
#include "materials/shipped.h"
#include "platform/text_engine.h"
#include "resources/strings.h"
#include "resources/texture_controls.h"

namespace glyphmotion {
namespace {

using namespace TextureControl;

class TextureWindow : public EditorDialog {
 protected:
  TextureSpec texture;
  bool accepted = false;

  void SetUp() override {
    EditorDialog::SetUp();
    DefaultTextureSpec(texture);
  }
  /// Opens the dialog on `texture` and lets `person` use it.
  void Use(const Script& person) {
    scripts[9998] = person;
    WithOwner([&](Dialog& owner) { accepted = EditTexture(owner, texture); });
  }
  /// A group of the shipped textures that may be changed, current.
  static void StartGroup(TextureWindow& test, Dialog& dialog) { ASSERT_TRUE(test.ShiftClick(dialog, Add)); }
  TextureLibrary FileOf(const std::string& name) const {
    TextureLibrary group;
    EXPECT_TRUE(ReadTextureLibrary(LibraryPath(name), group)) << name;
    return group;
  }
};

std::set<int> ShownParameters(const Dialog& dialog) {
  std::set<int> shown;
  for (int id = FirstParameter; id <= LastParameter; ++id) {
    EXPECT_EQ(IsVisible(dialog, id), IsVisible(dialog, id + LabelOffset)) << id;
    EXPECT_TRUE(HasControl(dialog, id + LabelOffset)) << id;
    if (HasControl(dialog, id + kUpDownOffset)) {
      EXPECT_EQ(IsVisible(dialog, id), IsVisible(dialog, id + kUpDownOffset)) << id;
    }
    if (IsVisible(dialog, id)) shown.insert(id);
  }
  return shown;
}

TEST_F(TextureWindow, EachTypeShowsItsOwnParametersAndTheirLabels) {
  const std::set<int> wanted[] = {
      {501, 502, 507, 512, 517, 518},
      {501, 502, 507, 512, 517, 518, 503, 508, 513, 519},
      {501, 502, 507, 512, 517, 518, 503, 508, 513, 519, 504, 509, 514, 520},
      {501, 502, 507, 512, 517, 518, 503, 508, 513, 519, 504, 509, 514, 520, 505, 510, 515, 521},
      {501, 502, 512, 523, 524},
      {512, 517, 525, 526, 527, 528, 529, 530, 531, 532}};
  Use([&](Dialog& dialog) {
    EXPECT_EQ(Items(dialog, Types), (std::vector<std::string>{"2-color fractal", "3-color fractal", "4-color fractal",
                                                              "5-color fractal", "Craters", "Perturbation"}));
    EXPECT_EQ(Items(dialog, BubbleShape), (std::vector<std::string>{"Ellipse", "Fuzzy", "Luminous", "Sphere"}));
    for (int type = 5; type >= 0; --type) {
      ASSERT_TRUE(Choose(dialog, Types, type));
      EXPECT_EQ(ShownParameters(dialog), wanted[type]) << type;
    }
    Choose(dialog, Types, 4);
    Click(dialog, Ok);
  });
  EXPECT_TRUE(accepted);
  EXPECT_EQ(+texture.TextureType, 4u);
}

TEST_F(TextureWindow, EveryParameterShowsItsFieldAndSetsIt) {
  const struct {
    int type, id;
    const char *shown, *typed;
    std::int64_t kept;
  } rows[] = {{3, Power1, "75", "30", 30},    {3, 510, "75", "5000", 1000},       {3, Seed1, "10000", "7", 7},
              {3, 515, "10003", "", 0},       {3, Matrix, "64", "0", 1},          {3, 521, "215", "229", 229},
              {4, Craters, "5000", "12", 12}, {4, CraterDepth, "150", "57", 57},  {5, Bubbles, "64", "2000", 1024},
              {5, BubbleSize, "4", "9", 9},   {5, BubblePower, "25", "-40", -40}, {5, Perturbation, "100", "230", 230}};
  Use([&](Dialog& dialog) {
    for (const auto& row : rows) {
      Choose(dialog, Types, row.type);
      EXPECT_EQ(GetText(dialog, row.id), row.shown) << row.id;
      ASSERT_TRUE(Type(dialog, row.id, row.typed)) << row.id;
    }
    Choose(dialog, BubbleShape, 2);
    colour = 0x123456;
    ASSERT_TRUE(Click(dialog, Ok));
  });
  ASSERT_TRUE(accepted);
  for (const auto& row : rows) EXPECT_EQ(TextureControlValue(texture, row.id), row.kept) << row.id;
  EXPECT_EQ(+texture.BubbleShape, 2u);
  EXPECT_EQ(+texture.Power[1], 0.75f) << "what was only looked at stays";
}

TEST_F(TextureWindow, EveryHundredthComesBackAsTyped) {
  for (int value = -1000; value <= 1000; ++value) {
    SetTextureControl(texture, BubblePower, value);
    ASSERT_EQ(TextureControlValue(texture, BubblePower), value);
  }
  // Also from a file, which keeps six decimals.
  TextureLibrary group;
  for (int value = 0; value <= 1000; ++value) {
    SetTextureControl(texture, Perturbation, value);
    group.textures.push_back({"t", texture});
  }
  ASSERT_TRUE(WriteTextureLibrary(Data("Many.fft"), group, {}));
  const TextureLibrary read = FileOf("Many.fft");
  for (int value = 0; value <= 1000; ++value) {
    ASSERT_EQ(TextureControlValue(read.textures[static_cast<std::size_t>(value)].parameters, Perturbation), value);
  }
}

TEST_F(TextureWindow, ColoursComeFromTheChooserAndCancelKeepsEverything) {
  Use([&](Dialog& dialog) {
    colour = 0x0000FF;
    ASSERT_TRUE(Click(dialog, Background));
    EXPECT_EQ(ReadColour(dialog, Background), 0x0000FFu);
    colour.reset();
    ASSERT_TRUE(Click(dialog, Colour1));
    EXPECT_EQ(ReadColour(dialog, Colour1), 0xFFFFFFu);
    Type(dialog, Seed1, "5");
    Click(dialog, Cancel);
  });
  EXPECT_FALSE(accepted);
  EXPECT_EQ(+texture.BackColour, 0xFF0000u);
  EXPECT_EQ(+texture.SeedValue[0], 10000u);
}

TEST_F(TextureWindow, ThePictureFollowsWhatIsTyped) {
  Use([&](Dialog& dialog) {
    const Face before = Paint(dialog, Preview);
    Type(dialog, Seed1, "5");
    const Face after = Paint(dialog, Preview);
    EXPECT_NE(before, after);
    EXPECT_EQ(after.At(0, 0), GetSystemColour(SystemColour::DarkShadow)) << "a sunken edge";
    // A flat field mixes both colours by half, but for the last column: 2 pixels of edge aside.
    Choose(dialog, Types, 4);
    Type(dialog, Craters, "0");
    const Face flat = Paint(dialog, Preview);
    EXPECT_EQ(flat.At(50, 50), Blend(0xFF0000, 0xFFFFFF, 128));
  });
}

TEST_F(TextureWindow, CurvesAreDraggedAndMovedWithKeys) {
  DefaultTextureSpec(texture);
  texture.TextureType = 5;
  Use([&](Dialog& dialog) {
    const ControlRectangle place = RectangleOf(dialog, RedCurve);
    const int width = place.right - place.left, height = place.bottom - place.top;
    const Face before = Paint(dialog, RedCurve);
    ASSERT_TRUE(Mouse(dialog, RedCurve, kMessageLeftDown, width - 8, 2));
    Mouse(dialog, RedCurve, kMessageMouseMove, 0, height + 40);  // beyond the edge, and no other point
    PressKey(dialog, RedCurve, kKeyLeft);
    Mouse(dialog, RedCurve, kMessageMouseMove, 0, height + 40);
    Mouse(dialog, RedCurve, kMessageLeftUp, 0, 0);
    Mouse(dialog, RedCurve, kMessageMouseMove, 0, 0);  // no longer held
    EXPECT_NE(Paint(dialog, RedCurve), before);
    for (const KeyCode key : {kKeyLeft, kKeyLeft, kKeyLeft, kKeyLeft, kKeyUp}) PressKey(dialog, GreenCurve, key);
    HoldShift(true);
    PressKey(dialog, GreenCurve, kKeyUp);
    HoldShift(false);
    PressKey(dialog, GreenCurve, kKeyRight);
    for (int i = 0; i < 50; ++i) PressKey(dialog, GreenCurve, kKeyDown);
    Mouse(dialog, BlueCurve, kMessageLeftDown, 0, 7);
    Mouse(dialog, BlueCurve, kMessageLeftUp, 0, 7);
    Mouse(dialog, BlueCurve, kMessageDoubleClick, 0, 7);
    Click(dialog, Ok);
  });
  const auto red = TextureCurveValues(texture, RedCurve), green = TextureCurveValues(texture, GreenCurve);
  EXPECT_EQ(red, (std::array<float, 4>{0.0f, 0.33f, 0.67f, 0.0f}));
  EXPECT_NEAR(green[0], 0.11, 1e-6);
  EXPECT_EQ(green[1], 0.0f);
  EXPECT_EQ(TextureCurveValues(texture, BlueCurve)[0], 0.0f) << "a double click puts the point back";
}

TEST_F(TextureWindow, ThePrimaryGroupIsProtected) {
  Use([&](Dialog& dialog) {
    ASSERT_GT(ItemCount(dialog, List), 5);
    const std::string refusal =
        "This file cannot be edited or overwritten.\n\nThe default texture set cannot be modified. To edit this file, "
        "save it to a new name. Hold down the Shift key and click on the + button.";
    Choose(dialog, List, 2);
    Click(dialog, Add);
    EXPECT_EQ(LastMessage(), refusal);
    Click(dialog, Delete);
    EXPECT_EQ(messages, (std::vector<std::string>{refusal, refusal}));
    DoubleClick(dialog, List, 2);
    PressKey(dialog, List, kKeyF2);
    EXPECT_EQ(messages, std::vector<std::string>(4, refusal)) << "F2 renames as a double click does";
    PressKey(dialog, List, kKeyMenu);
    EXPECT_EQ(menuItems, (std::vector<std::string>{"&Rename", "&Delete"}));
    ShiftClick(dialog, Delete);
    EXPECT_EQ(LastMessage(), "The primary texture group cannot be deleted.");
    newName = "TLMplgm4";
    ShiftClick(dialog, Add);
    EXPECT_EQ(LastMessage(), refusal);
    // A changed texture is no longer its entry, which can be chosen again.
    const std::string seed = GetText(dialog, Seed1);
    EXPECT_EQ(GetSelection(dialog, List), 2);
    Type(dialog, Seed1, "4711");
    EXPECT_EQ(GetSelection(dialog, List), -1);
    Choose(dialog, List, 2);
    EXPECT_EQ(GetText(dialog, Seed1), seed);
    Click(dialog, Ok);
  });
  EXPECT_FALSE(FileOf("tlmplgm4.fft").writeable);
  EXPECT_FALSE(std::filesystem::exists(Data("tlmplgm4.fft"))) << "the primary group is never written";
}

TEST_F(TextureWindow, AGroupOfTheUsersIsEditedAndWrittenOnOk) {
  std::size_t shipped = 0;
  Use([&](Dialog& dialog) {
    shipped = static_cast<std::size_t>(ItemCount(dialog, List));
    StartGroup(*this, dialog);
    EXPECT_EQ(Items(dialog, Group), (std::vector<std::string>{"tlmplgm4", "Mine"}));
    EXPECT_EQ(GetText(dialog, Group), "Mine");
    SetFocus(dialog, Seed1);
    Type(dialog, Seed1, "0099x");
    SetFocus(dialog, List);
    EXPECT_EQ(GetText(dialog, Seed1), "99") << "a field that is left shows what is used";
    Click(dialog, Add);
    EXPECT_EQ(GetSelection(dialog, List), static_cast<int>(shipped));
    EXPECT_EQ(GetText(dialog, List), "Untitled (double-click to edit)");
    Type(dialog, Seed1, "100");  // goes into the entry
    newName = "Fog";
    DoubleClick(dialog, List, static_cast<int>(shipped));
    EXPECT_EQ(GetText(dialog, List), "Fog");
    Choose(dialog, List, 0);
    Click(dialog, Delete);
    EXPECT_EQ(GetSelection(dialog, List), 0);
    menuChoice = Delete;
    RightClick(dialog, List, 1);
    EXPECT_EQ(menuItems, (std::vector<std::string>{"&Rename", "&Delete"}));
    PressKey(dialog, List, kKeyDelete);
    EXPECT_EQ(ItemCount(dialog, List), static_cast<int>(shipped) - 2);
    EXPECT_EQ(FileOf("Mine.FFT").textures.size(), shipped) << "nothing is written before OK";
    Click(dialog, Ok);
  });
  const TextureLibrary group = FileOf("Mine.FFT");
  ASSERT_EQ(group.textures.size(), shipped - 2);
  EXPECT_TRUE(group.writeable);
  EXPECT_EQ(group.textures.back().name, "Fog");
  EXPECT_EQ(+group.textures.back().parameters.SeedValue[0], 100u);
  EXPECT_TRUE(messages.empty()) << LastMessage();

  // The group is still current, and what the material has is selected in it.
  texture = group.textures[3].parameters;
  Use([&](Dialog& dialog) {
    EXPECT_EQ(GetText(dialog, Group), "Mine");
    EXPECT_EQ(GetSelection(dialog, List), 3);
    Click(dialog, Delete);
    Click(dialog, Cancel);
  });
  EXPECT_EQ(FileOf("Mine.FFT").textures.size(), shipped - 2) << "Cancel leaves the file";
}

TEST_F(TextureWindow, ChangesWaitWhileAnotherGroupIsLookedAt) {
  Use([&](Dialog& dialog) {
    StartGroup(*this, dialog);
    Click(dialog, Add);
    const int count = ItemCount(dialog, List);
    Choose(dialog, Group, 0);
    EXPECT_EQ(GetText(dialog, Group), "tlmplgm4");
    EXPECT_EQ(ItemCount(dialog, List), count - 1);
    Choose(dialog, Group, 1);
    EXPECT_EQ(ItemCount(dialog, List), count);
    Choose(dialog, Group, 0);
    Click(dialog, Ok);
  });
  EXPECT_EQ(FileOf("Mine.FFT").textures.size(), FileOf("tlmplgm4.fft").textures.size() + 1);
}

TEST_F(TextureWindow, GroupsAreReplacedAndDeletedOnlyAfterAYes) {
  Use([&](Dialog& dialog) {
    StartGroup(*this, dialog);
    Click(dialog, Add);
    yes = false;
    ShiftClick(dialog, Add);
    EXPECT_EQ(LastMessage(),
              "There is a group named Mine already.\n\nClick on Yes to replace it, or No to choose another name.");
    ShiftClick(dialog, Delete);
    EXPECT_EQ(LastMessage(),
              "Do you want to delete the Mine texture group?\n\nClick on Yes to delete this file, or No to abort.");
    EXPECT_EQ(buttons, MessageButtons::YesNoKeep) << "Enter alone deletes no group";
    EXPECT_TRUE(std::filesystem::exists(Data("Mine.FFT")));
    yes = true;
    ShiftClick(dialog, Delete);
    EXPECT_FALSE(std::filesystem::exists(Data("Mine.FFT")));
    EXPECT_EQ(Items(dialog, Group), std::vector<std::string>{"tlmplgm4"});
    EXPECT_EQ(GetText(dialog, Group), "tlmplgm4");
    EXPECT_EQ(ItemCount(dialog, List), static_cast<int>(FileOf("tlmplgm4.fft").textures.size()));
    for (const char* nothing : {"", "///"}) {
      newName = nothing;
      ShiftClick(dialog, Add);
    }
    newName.reset();
    ShiftClick(dialog, Add);
    Click(dialog, Ok);
  });
  EXPECT_EQ(messages.size(), 3u);
  EXPECT_FALSE(std::filesystem::exists(Data("Mine.FFT"))) << "a deleted group does not come back on OK";
  EXPECT_FALSE(std::filesystem::exists(Data(".FFT")));
}

TEST_F(TextureWindow, DamagedGroupsAreReportedAndThePreviousOneStays) {
  const std::string damaged = "There has been an error importing the selected texture file. The file may be damaged.";
  std::filesystem::copy_file(OwnCopy("tlmplgm4.fft"), Data("Another.FFT"));
  std::filesystem::resize_file(Data("tlmplgm4.fft"), 5);
  std::filesystem::resize_file(Data("Another.FFT"), 2000);
  Use([&](Dialog& dialog) {
    EXPECT_EQ(LastMessage(), damaged);
    EXPECT_EQ(ItemCount(dialog, List), 0);
    Choose(dialog, Group, 1);
    EXPECT_EQ(ItemCount(dialog, List), 1) << "the items before the break";
    Choose(dialog, Group, 0);
    EXPECT_EQ(messages.size(), 2u);
    EXPECT_EQ(GetText(dialog, Group), "Another");
    EXPECT_EQ(ItemCount(dialog, List), 1);
  });
}

TEST_F(TextureWindow, AnEmptiedGroupIsReportedNextTimeAndCanBeReplaced) {
  Use([&](Dialog& dialog) {
    StartGroup(*this, dialog);
    while (ItemCount(dialog, List)) {
      Choose(dialog, List, 0);
      PressKey(dialog, List, kKeyDelete);
    }
    Click(dialog, Ok);
  });
  EXPECT_TRUE(messages.empty()) << LastMessage();
  EXPECT_EQ(std::filesystem::file_size(Data("Mine.FFT")), 0u);
  Use([&](Dialog& dialog) {
    EXPECT_EQ(LastMessage(), "There has been an error importing the selected texture file. The file may be damaged.");
    EXPECT_EQ(ItemCount(dialog, List), 0);
    // A list notifies only when the selection changes.
    ASSERT_EQ(GetText(dialog, Group), "Mine");
    Choose(dialog, Group, 0);
    EXPECT_EQ(GetText(dialog, Group), "tlmplgm4");
    EXPECT_EQ(ItemCount(dialog, List), static_cast<int>(FileOf("tlmplgm4.fft").textures.size()));
  });
  EXPECT_EQ(messages.size(), 1u);
}

TEST_F(TextureWindow, AWriteThatFailsIsReportedAndTheTextureIsTaken) {
  Use([&](Dialog& dialog) {
    StartGroup(*this, dialog);
    Type(dialog, Seed1, "321");
    Click(dialog, Add);
    std::filesystem::remove(Data("Mine.FFT"));
    std::filesystem::create_directory(Data("Mine.FFT"));
    Click(dialog, Ok);
  });
  EXPECT_EQ(LastMessage(), LoadText(kTextDocumentNotCreated));
  EXPECT_TRUE(accepted);
  EXPECT_EQ(+texture.SeedValue[0], 321u);
}

TEST_F(TextureWindow, ThePreviewWindowShowsTheTextureBehindAndInAText) {
  ASSERT_TRUE(StartTextEngine());
  bool opened = false;
  scripts[9994] = [&](Dialog& dialog) {
    opened = true;
    const std::uint32_t flat = Blend(0xFF0000, 0xFFFFFF, 128);
    const Face background = Paint(dialog, AsBackground), text = Paint(dialog, AsText);
    EXPECT_EQ(background.At(100, 100), flat);
    int inked = 0, empty = 0;
    for (int y = 2; y < text.height - 2; ++y) {
      for (int x = 2; x < text.width - 3; ++x) {
        inked += text.At(x, y) == flat;
        empty += text.At(x, y) == 0xFFFFFF;
      }
    }
    EXPECT_GT(inked, text.width * text.height / 12);
    EXPECT_GT(empty, text.width * text.height / 3);
    EXPECT_TRUE(Click(dialog, Cancel) && HasEnded(dialog));
  };
  Use([](Dialog& dialog) {
    Choose(dialog, Types, 4);
    Type(dialog, Craters, "0");
    Click(dialog, ShowPreview);
  });
  StopTextEngine();
  EXPECT_TRUE(opened);
}

TEST_F(TextureWindow, ThePreviewWindowWearsTheSkinOfTheOthers) {
  bool skinned = false;
  scripts[9994] = [&](Dialog& dialog) {
    std::vector<std::uint8_t> pixels(3 * 40 * 20);
    skinned = PaintControl(dialog, Cancel, {pixels.data(), 40, 20, 120});
  };
  UseSkin(true);
  Use([](Dialog& dialog) { Click(dialog, ShowPreview); });
  UseSkin(false);
  EXPECT_TRUE(skinned);
}

TEST_F(TextureWindow, EveryAllocationMayFail) {
  texture.TextureType = 5;
  const auto session = [&](Dialog& dialog) {
    Choose(dialog, List, 3);
    ShiftClick(dialog, Add);
    Click(dialog, Add);
    Choose(dialog, Types, 2);
    Type(dialog, Matrix, "32");
    Click(dialog, ShowPreview);
    Click(dialog, Ok);
  };
  FailEachAllocation([&] { Use(session); });
}

}  // namespace
}  // namespace glyphmotion
