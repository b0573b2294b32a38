// SPDX-License-Identifier: MIT
#include "controls/families.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>

#include "controls/direction_pickers.h"
#include "controls/read_controls.h"
#include "platform/dialog_driver.h"
#include "platform/memory.h"
#include "platform/shell_ui.h"

namespace glyphmotion {
namespace {

using Kind = ControlKind;

constexpr ControlTemplate kControls[] = {
    {Kind::ColourButton, 101, "", 0, 0, 40, 14},
    {Kind::NumberEdit, 102, "", 0, 0, 30, 12},
    {Kind::UpDown, 10102, "4,144,24", 0, 0, 8, 12},
    {Kind::NumberEdit, 103, "", 0, 0, 30, 12},
    {Kind::UpDown, 10103, "-360,360,0", 0, 0, 8, 12},
    {Kind::Check, 104, "Check", 0, 0, 30, 12},
    {Kind::Edit, 105, "", 0, 0, 30, 12},
    {Kind::Combo, 106, "a;b;c", 0, 0, 30, 12},
    {Kind::List, 107, "a;b;c", 0, 0, 30, 12},
    {Kind::SortedCombo, 108, "Arial;Times", 0, 0, 30, 12},
    {Kind::ShadowDirection, 109, "", 0, 0, 50, 46},
    {Kind::ScrollFour, 110, "", 0, 0, 50, 46},
    {Kind::ScrollTwo, 111, "", 0, 0, 34, 15},
    {Kind::ScrollAxis, 112, "", 0, 0, 34, 15},
};
constexpr DialogTemplate kTemplate{1, "", 100, 100, kControls};

const std::map<int, const ControlFamily*> kFamilies = {
    {101, &kColourFamily},     {102, &kNumberFamily},    {103, &kSignedNumberFamily},
    {104, &kCheckFamily},      {105, &kTextFamily},      {106, &kSelectionFamily},
    {107, &kSelectionFamily},  {108, &kFontFamily},      {109, &kShadowDirectionFamily},
    {110, &kScrollFourFamily}, {111, &kScrollTwoFamily}, {112, &kScrollAxisFamily},
};

/// Commands that the dialog got, and whether it stores changes, as the main dialog does.
std::vector<int> commands;
bool storing = false;

std::int64_t Procedure(Dialog& dialog, const Message& message) {
  if (message.number != kMessageCommand) return 0;
  commands.push_back(static_cast<int>(message.a));
  if (storing) SendToControl(dialog, static_cast<int>(message.a), {kMessageStoreControl, 0, 0});
  return 1;
}

/// Runs `body` in a dialog with every family tied to a variable of its own.
void WithFamilies(const std::function<void(Dialog&, std::map<int, Variable>&)>& body) {
  const BlockCounters before = LiveBlocks();
  std::map<int, Variable> variables;
  for (const auto& [id, family] : kFamilies) variables[id].number = 1;
  variables[103].text = "-30";
  variables[105].text = "Hello";
  variables[108].text = "times";
  storing = false;
  const ModalDriver driver = SetModalDriver([&](Dialog& dialog, int) {
    for (const auto& [id, family] : kFamilies) InstallFamily(dialog, id, *family, &variables[id]);
    for (int id : {10102, 10103}) InstallFamily(dialog, id, kUpDownFamily, nullptr);
    commands.clear();
    body(dialog, variables);
  });
  RunModal(kTemplate, nullptr, Procedure, nullptr);
  SetModalDriver(driver);
  EXPECT_EQ(LiveBlocks().blocks, before.blocks) << "a picker's block goes with its dialog";
  EXPECT_EQ(LiveBlocks().locks, before.locks);
}

std::string LineOf(Dialog& dialog, int id) {
  std::string line;
  EXPECT_EQ(SendToControl(dialog, id, {kMessageSaveControl, 0, PointerArgument(&line)}), 0);
  return line;
}

bool Load(Dialog& dialog, int id, const std::string& line) {
  return SendToControl(dialog, id, {kMessageLoadControl, 0, PointerArgument(&line)}) == 1;
}

std::string ValueOf(const Variable& variable) {
  return variable.text.empty() ? std::to_string(variable.number) : variable.text;
}

TEST(Families, EachValueComesBackFromItsLine) {
  const struct {
    int id;
    const char *first, *line, *variable;
  } cases[] = {
      {101, "CLRBTN101=1\n", "CLRBTN101=16777215", "16777215"},
      {102, "SPNBTN102=4\n", "SPNBTN102=144", "144"},
      {103, "SPNSGN103=-30\n", "SPNSGN103=-360", "-360"},
      {104, "CHKBOX104=1\n", "CHKBOX104=0", "0"},
      {105, "TXTFLD105=Hello\n", "TXTFLD105=a=b ==c ", "a=b ==c "},
      {106, "CMBBOX106=1\n", "CMBBOX106=2", "2"},
      {107, "CMBBOX107=1\n", "CMBBOX107=0", "0"},
      {109, "SDWDIR109=1\n", "SDWDIR109=7", "7"},
      {110, "SCRL4D110=1\n", "SCRL4D110=3", "3"},
      {111, "SCRL2D111=1\n", "SCRL2D111=0", "0"},
      {112, "SCRLHV112=1\n", "SCRLHV112=0", "0"},
  };
  WithFamilies([&](Dialog& dialog, std::map<int, Variable>& variables) {
    for (const auto& each : cases) {
      EXPECT_EQ(VariableOfControl(dialog, each.id), &variables[each.id]);
      EXPECT_EQ(LineOf(dialog, each.id), each.first) << "the variable is shown when it is tied";
      EXPECT_TRUE(Load(dialog, each.id, each.line));
      EXPECT_EQ(LineOf(dialog, each.id), std::string(each.line) + "\n");
      EXPECT_EQ(ValueOf(variables[each.id]), each.variable);
      SendToControl(dialog, each.id, {kMessageStoreControl, 0, 0});
      EXPECT_EQ(ValueOf(variables[each.id]), each.variable);
    }
    EXPECT_EQ(ReadDirection(dialog, 109), 7);
    EXPECT_EQ(LineOf(dialog, 10102), "");
  });
}

TEST(Families, WithoutAVariableTheControlIsSetAndThatIsAll) {
  WithFamilies([](Dialog& dialog, std::map<int, Variable>& variables) {
    for (const auto& [id, family] : kFamilies) {
      InstallFamily(dialog, id, *family, nullptr);
      const std::string before = LineOf(dialog, id), value = ValueOf(variables[id]);
      EXPECT_TRUE(Load(dialog, id, family->stem + std::to_string(id) + "=0")) << id;
      EXPECT_EQ(LineOf(dialog, id) != before, id != 102 && id != 108) << id;
      SendToControl(dialog, id, {kMessageStoreControl, 0, 0});
      EXPECT_EQ(ValueOf(variables[id]), value) << id;
    }
  });
}

TEST(Families, ForeignAndBrokenLinesAreRefused) {
  WithFamilies([](Dialog& dialog, std::map<int, Variable>&) {
    for (const auto& [id, family] : kFamilies) {
      const std::string stem = family->stem, number = std::to_string(id), before = LineOf(dialog, id);
      for (const std::string& line : {std::string(), std::string("X"), stem, stem + number, stem + "999=0",
                                      "XXXXXX" + number + "=0", stem.substr(0, 5) + number + "=0", "=0" + stem}) {
        EXPECT_FALSE(Load(dialog, id, line)) << line;
      }
      EXPECT_EQ(LineOf(dialog, id), before);
    }
    EXPECT_FALSE(Load(dialog, 10102, "SPNBTN10102=5"));
    EXPECT_TRUE(Load(dialog, 104, "chkBOX104 =0")) << "case does not count";
  });
}

TEST(Families, HostileValuesStayInBounds) {
  const struct {
    const char *line, *variable, *saved;
  } cases[] = {
      {"SPNBTN102=9999", "9999", "SPNBTN102=144\n"},
      {"SPNBTN102=-5", "4294967291", "SPNBTN102=144\n"},
      {"SPNBTN102=99999999999999999999", "2147483647", "SPNBTN102=144\n"},
      {"SPNBTN102=== = 30 and more", "30", "SPNBTN102=30\n"},
      {"SPNBTN102=", "0", "SPNBTN102=4\n"},
      {"SPNSGN103=-99999999999", "-2147483648", "SPNSGN103=-360\n"},
      {"CHKBOX104=2", "1", "CHKBOX104=1\n"},
      {"CHKBOX104=-1", "1", "CHKBOX104=1\n"},
      {"CMBBOX106=3", "0", "CMBBOX106=-1\n"},
      {"CMBBOX107=-7", "0", "CMBBOX107=-1\n"},
      {"SDWDIR109=8", "0", "SDWDIR109=0\n"},
      {"SCRL4D110=-1", "0", "SCRL4D110=0\n"},
      {"SCRL2D111=2147483648", "0", "SCRL2D111=0\n"},
  };
  WithFamilies([&](Dialog& dialog, std::map<int, Variable>& variables) {
    for (const auto& each : cases) {
      const int id = std::atoi(each.line + 6);
      EXPECT_TRUE(Load(dialog, id, each.line));
      EXPECT_EQ(ValueOf(variables[id]), each.variable) << each.line;
      EXPECT_EQ(LineOf(dialog, id), each.saved) << each.line;
    }
  });
}

TEST(Families, TextsAreCutAndStayInTheirLine) {
  WithFamilies([](Dialog& dialog, std::map<int, Variable>& variables) {
    SetText(dialog, 105, "one\r\ntwo\nTXTFLD52=three");
    EXPECT_EQ(LineOf(dialog, 105), "TXTFLD105=one  two TXTFLD52=three\n");
    // Limits count characters, each 'é' as one.
    std::string longText = "x";
    for (int i = 0; i < 5000; ++i) longText += "\xC3\xA9";
    EXPECT_TRUE(Load(dialog, 105, "TXTFLD105=" + longText));
    EXPECT_EQ(GetText(dialog, 105), longText);
    EXPECT_EQ(variables[105].text, longText.substr(0, 1 + 2 * 259));
    EXPECT_EQ(LineOf(dialog, 105), "TXTFLD105=" + longText.substr(0, 1 + 2 * 4095) + "\n");
  });
}

TEST(Families, FontOfADocumentIsNotApplied) {
  WithFamilies([](Dialog& dialog, std::map<int, Variable>& variables) {
    EXPECT_EQ(LineOf(dialog, 108), "FNTBOX108=Times\n");
    EXPECT_TRUE(Load(dialog, 108, "FNTBOX108=Arial"));
    EXPECT_EQ(GetText(dialog, 108), "Times");
    EXPECT_EQ(variables[108].text, "Times");
  });
}

TEST(Families, WhatAPersonChangesReachesTheVariable) {
  WithFamilies([](Dialog& dialog, std::map<int, Variable>& variables) {
    storing = true;
    Type(dialog, 102, "500");
    EXPECT_EQ(variables[102].number, 144u);
    EXPECT_EQ(GetText(dialog, 102), "500") << "what is being typed is left alone";
    Click(dialog, 104);
    EXPECT_EQ(variables[104].number, 0u);
    Choose(dialog, 106, 2);
    EXPECT_EQ(variables[106].number, 2u);
    storing = false;
    Type(dialog, 103, "-45");
    SendToControl(dialog, 10103, {kMessageStoreControl, 0, 0});
    EXPECT_EQ(variables[103].text, "-45") << "an up-down stores its edit";
  });
}

TEST(DirectionPickers, EachCellIsHitInsideItsSquareOnly) {
  const struct {
    Kind kind;
    int cells[9];  // row by row, -1 where there is none
  } grids[] = {{Kind::ShadowDirection, {0, 1, 2, 4, -1, 3, 5, 6, 7}},
               {Kind::ScrollFour, {-1, 0, -1, 2, -1, 1, -1, 3, -1}},
               {Kind::ScrollTwo, {0, 1, -1, -1, -1, -1, -1, -1, -1}},
               {Kind::ScrollAxis, {0, 1, -1, -1, -1, -1, -1, -1, -1}},
               {Kind::Check, {-1, -1, -1, -1, -1, -1, -1, -1, -1}}};
  for (const auto& grid : grids) {
    for (int y = -30; y < 105; ++y) {
      for (int x = -30; x < 105; ++x) {
        const bool inside = x >= 0 && y >= 0 && x < 75 && y < 75;
        ASSERT_EQ(PickerCellAt(grid.kind, x, y), inside ? grid.cells[y / 25 * 3 + x / 25] : -1) << x << "," << y;
      }
    }
  }
}

TEST(DirectionPickers, PressesAndArrowKeysChooseAndNotify) {
  WithFamilies([](Dialog& dialog, std::map<int, Variable>& variables) {
    storing = true;
    Mouse(dialog, 109, kMessageLeftDown, 74, 74);
    EXPECT_EQ(ReadDirection(dialog, 109), 7);
    EXPECT_EQ(variables[109].number, 7u);
    EXPECT_EQ(FocusOf(dialog), 109);
    Mouse(dialog, 109, kMessageLeftDown, 30, 30);
    EXPECT_EQ(ReadDirection(dialog, 109), 7) << "the centre is not a cell";
    Mouse(dialog, 109, kMessageLeftDown, 74, 74);
    EXPECT_EQ(commands, std::vector<int>{109}) << "only changes notify";
    const struct {
      int id, from;
      KeyCode key;
      int to;
    } keys[] = {{109, 7, kKeyRight, 7}, {109, 7, kKeyDown, 7},  {109, 7, kKeyLeft, 6}, {109, 6, kKeyUp, 1},
                {109, 4, kKeyRight, 3}, {109, 3, kKeyUp, 2},    {109, 0, kKeyLeft, 0}, {109, 0, kKeyDown, 4},
                {110, 0, kKeyDown, 3},  {110, 0, kKeyRight, 1}, {110, 0, kKeyUp, 0},   {110, 1, kKeyLeft, 2},
                {111, 0, kKeyRight, 1}, {111, 1, kKeyRight, 1}, {111, 0, kKeyUp, 0},   {112, 1, kKeyLeft, 0}};
    for (const auto& each : keys) {
      SetDirection(dialog, each.id, each.from);
      PressKey(dialog, each.id, each.key);
      EXPECT_EQ(ReadDirection(dialog, each.id), each.to) << each.id << " from " << each.from << " by " << each.key;
    }
    Enable(dialog, 109, false);
    EXPECT_FALSE(Mouse(dialog, 109, kMessageLeftDown, 1, 1));
  });
}

TEST(DirectionPickers, WithoutMemoryAPickerReadsAsZero) {
  WithFamilies([](Dialog& dialog, std::map<int, Variable>& variables) {
    SendToControl(dialog, 109, {kMessageDestroy, 0, 0});
    FailAllocation(1);
    InstallFamily(dialog, 109, kShadowDirectionFamily, &variables[109]);
    FailAllocation(0);
    EXPECT_EQ(LineOf(dialog, 109), "SDWDIR109=0\n");
    EXPECT_TRUE(Load(dialog, 109, "SDWDIR109=3"));
    EXPECT_EQ(VariableOfControl(dialog, 109), nullptr);
    Mouse(dialog, 109, kMessageLeftDown, 74, 74);
    EXPECT_EQ(ReadDirection(dialog, 109), 0);
  });
}

/// A control's face, with a guard column and row that painting must not touch.
std::vector<std::uint8_t> FaceOf(Dialog& dialog, int id, int width, int height) {
  std::vector<std::uint8_t> pixels(static_cast<std::size_t>((width + 1) * (height + 1) * 3), 0x5A);
  EXPECT_TRUE(PaintControl(dialog, id, {pixels.data(), width, height, (width + 1) * 3}));
  for (int y = 0; y < height; ++y) EXPECT_EQ(pixels[static_cast<std::size_t>((y * (width + 1) + width) * 3)], 0x5A);
  EXPECT_EQ(pixels[static_cast<std::size_t>(height * (width + 1) * 3)], 0x5A);
  return pixels;
}

TEST(DrawnFaces, ShowTheirStateAndStayInsideAnySize) {
  WithFamilies([](Dialog& dialog, std::map<int, Variable>&) {
    for (int id : {101, 109, 110, 111, 112}) {
      for (int size : {1, 2, 5, 26, 90}) FaceOf(dialog, id, size, size);
    }
    for (int id : {109, 110, 111, 112}) {
      SetDirection(dialog, id, 0);
      const auto first = FaceOf(dialog, id, 75, 75);
      SetDirection(dialog, id, 1);
      const auto second = FaceOf(dialog, id, 75, 75);
      const auto shows = [&](std::uint32_t colour) {
        for (std::size_t i = 0; i + 2 < second.size(); ++i) {
          if (second[i] == (colour >> 16 & 0xFF) && second[i + 1] == (colour >> 8 & 0xFF) &&
              second[i + 2] == (colour & 0xFF)) {
            return true;
          }
        }
        return false;
      };
      EXPECT_TRUE(shows(GetSystemColour(SystemColour::Selection))) << "the desktop's own mark of a choice";
      Enable(dialog, id, false);
      EXPECT_NE(first, second);
      EXPECT_NE(second, FaceOf(dialog, id, 75, 75));
    }
    SetNumber(dialog, 101, 0x332211);
    const auto face = FaceOf(dialog, 101, 21, 21);
    const std::size_t middle = (10 * 22 + 10) * 3;
    EXPECT_EQ(face[middle], 0x33);
    EXPECT_EQ(face[middle + 1], 0x22);
    EXPECT_EQ(face[middle + 2], 0x11);
  });
}

}  // namespace
}  // namespace glyphmotion
