// SPDX-License-Identifier: MIT
// The fountain library's window, from the bar's menu to the file.
// A plus before a field of a packed record makes a value of it, as the test macros bind references.
#include "controls/fountain_library_dialog.h"

#include <fstream>

#include "controls/fountain_control.h"
#include "editor_fixture.h"
#include "materials/library_file.h"
#include "platform/files.h"
#include "resources/strings.h"

namespace glyphmotion {
namespace {

constexpr int kLibraryDialog = 9997, kFountainId = 120;
constexpr int kOk = 1, kCancel = 2, kList = 101, kUse = 102, kMoveUp = 103, kMoveDown = 104, kDelete = 105;
constexpr ControlTemplate kOwnerControls[] = {{ControlKind::FountainButton, kFountainId, "", 0, 0, 132, 31}};
constexpr DialogTemplate kOwner{1, "Owner", 200, 100, kOwnerControls};

int changes = 0;
std::int64_t OwnerProcedure(Dialog&, const Message& message) {
  changes += message.number == kMessageFillChanged;
  return 0;
}

class FountainLibrary : public EditorDialog {
 protected:
  std::string path;
  void SetUp() override {
    EditorDialog::SetUp();
    changes = 0;
    path = Data(kFountainLibraryName);
    std::vector<FountainSpec> fountains(4);
    for (std::uint32_t i = 0; i < 4; ++i) {
      DefaultFountain(fountains[i], static_cast<int>(i % 3));
      fountains[i].StartColour = 0x100 + i;
    }
    ASSERT_TRUE(WriteFountainLibrary(path, fountains, 5));
    RemoveFile(path + ".bak");
    SetFountainWindows({nullptr, ManageFountainLibrary});
  }
  void TearDown() override {
    SetFountainWindows({});
    EditorDialog::TearDown();
  }
  /// Opens the library as a person does, from the bar's menu, and gives back the control's fountain.
  FountainSpec Manage(const Script& script, const std::function<void(FountainSpec&)>& prepare = {}) {
    scripts[kLibraryDialog] = script;
    FountainSpec result;
    menuChoice = 104;
    WithOwner(
        [&](Dialog& owner) {
          InstallFamily(owner, kFountainId, kFountainFamily, nullptr);
          InitialiseFountain(owner, kFountainId, false, nullptr);
          if (const auto fountain = LockFountain(owner, kFountainId); fountain && prepare) prepare(*fountain);
          SendToControl(owner, kFountainId, {kMessageBarMenu, 0, 0});
          Pump(owner);
          if (const auto fountain = LockFountain(owner, kFountainId); fountain) result = *fountain;
        },
        kOwner, OwnerProcedure);
    return result;
  }
  /// The start colours of what the file holds, less 0x100: the order of the four.
  std::string Order() const {
    std::vector<FountainSpec> fountains;
    EXPECT_TRUE(ReadFountainLibrary(path, fountains));
    std::string order;
    for (const FountainSpec& fountain : fountains) order += static_cast<char>('0' + (fountain.StartColour - 0x100));
    return order;
  }
  static std::string BytesOf(const std::string& file) { return ReadWholeFile(file).value_or(""); }
};

TEST_F(FountainLibrary, EveryDeleteCommandDeletesAndOnlyOkWrites) {
  const std::string before = BytesOf(path);
  const auto change = [&](Dialog& dialog) {
    EXPECT_EQ(ItemCount(dialog, kList), 4);
    Choose(dialog, kList, 0);
    Click(dialog, kDelete);
    EXPECT_EQ(GetSelection(dialog, kList), 0) << "the next one is selected";
    Choose(dialog, kList, 2);
    PressKey(dialog, kList, kKeyDelete);
    EXPECT_EQ(GetSelection(dialog, kList), 1) << "at the end, the one before";
    menuChoice = kDelete;
    RightClick(dialog, kList, 1);
    EXPECT_EQ(ItemCount(dialog, kList), 1);
    SetSelection(dialog, kList, -1);
  };
  Manage([&](Dialog& dialog) {
    change(dialog);
    Click(dialog, kCancel);
  });
  EXPECT_EQ(BytesOf(path), before);
  EXPECT_FALSE(FileExists(path + ".bak"));
  Manage([&](Dialog& dialog) {
    change(dialog);
    Click(dialog, kOk);
  });
  EXPECT_EQ(Order(), "1");
  EXPECT_EQ(BytesOf(path + ".bak"), before);
  EXPECT_EQ(changes, 0) << "the control that opened it was none of this";
  Manage([&](Dialog& dialog) {
    Choose(dialog, kList, 0);
    Click(dialog, kDelete);
    for (const int id : {kUse, kMoveUp, kMoveDown, kDelete}) EXPECT_FALSE(IsEnabled(dialog, id)) << id;
    PressKey(dialog, kList, kKeyDelete);
    Click(dialog, kOk);
  });
  EXPECT_EQ(Order(), "");
  EXPECT_TRUE(messages.empty());
}

TEST_F(FountainLibrary, FountainsMoveUpAndDown) {
  Manage([&](Dialog& dialog) {
    EXPECT_EQ(GetSelection(dialog, kList), -1) << "the control's fountain is none of these";
    PressKey(dialog, kList, kKeyMenu);
    EXPECT_EQ(menus, 1) << "only the bar's";
    Choose(dialog, kList, 0);
    EXPECT_FALSE(IsEnabled(dialog, kMoveUp));
    Click(dialog, kMoveDown);
    Click(dialog, kMoveDown);
    EXPECT_EQ(GetSelection(dialog, kList), 2) << "the selection goes with it";
    Choose(dialog, kList, 3);
    EXPECT_FALSE(IsEnabled(dialog, kMoveDown));
    menuChoice = kMoveUp;
    PressKey(dialog, kList, kKeyMenu);
    EXPECT_EQ(menuItems, (std::vector<std::string>{"&Use", "Move u&p", "&Delete"})) << "only what can be done";
    Click(dialog, kOk);
  });
  EXPECT_EQ(Order(), "1230");
}

TEST_F(FountainLibrary, UseAndOkLoadTheSelectedFountainIntoTheControl) {
  const FountainSpec untouched = Manage([](Dialog& dialog) { Click(dialog, kOk); });
  EXPECT_EQ(+untouched.MarkerCount, 7u);
  EXPECT_EQ(changes, 0);
  EXPECT_FALSE(FileExists(path + ".bak")) << "nothing changed, nothing written";
  const auto looped = [](FountainSpec& fountain) { fountain.Flags |= kFountainLooped; };
  const FountainSpec taken = Manage([](Dialog& dialog) {
    Choose(dialog, kList, 2);
    Click(dialog, kOk);
  });
  EXPECT_EQ(+taken.StartColour, 0x102u);
  changes = 0;
  const FountainSpec used = Manage([](Dialog& dialog) { DoubleClick(dialog, kList, 1); }, looped);
  EXPECT_EQ(+used.StartColour, 0x101u);
  EXPECT_EQ(+used.MarkerCount, 1u);
  EXPECT_EQ(+used.Markers[0], 0x80808080u);
  EXPECT_EQ(+used.Flags, kFountainLooped) << "the control's own flags stay";
  EXPECT_NE(+used.Preview, 0u);
  EXPECT_EQ(changes, 1);
  Manage(
      [&](Dialog& dialog) {
        EXPECT_EQ(GetSelection(dialog, kList), 1) << "the control's fountain is found again";
        Click(dialog, kDelete);
        Click(dialog, kUse);
      },
      [&](FountainSpec& fountain) {
        const std::uint64_t preview = fountain.Preview;
        fountain = used;
        fountain.Preview = preview;
      });
  EXPECT_EQ(Order(), "023") << "Use keeps what was arranged";
}

TEST_F(FountainLibrary, ItemsShowTheFountainAtTheirWidth) {
  Manage([&](Dialog& dialog) {
    for (const int width : {180, 150, 200}) {
      const Face item = Paint(dialog, kList, width, 32, 2, true, true);
      EXPECT_LT(item.At(3, 16) & 0xFF, 0x10u);
      EXPECT_GT(item.At(width - 4, 16) & 0xFF, 0xF0u) << "up to the white end at the right";
      EXPECT_EQ(item.At(1, 16), GetSystemColour(SystemColour::Selection));
      EXPECT_EQ(Paint(dialog, kList, width, 32, 2).At(1, 16), GetSystemColour(SystemColour::Window));
    }
  });
}

TEST_F(FountainLibrary, ReadAndWriteErrorsAreReportedAndNothingIsLost) {
  std::string bytes = BytesOf(path);
  bytes[80 + 2 * 340] = 'X';  // the third item's signature
  std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  Manage([&](Dialog& dialog) {
    EXPECT_EQ(messages, std::vector{LoadText(kTextFountainsNotLoaded)});
    EXPECT_EQ(ItemCount(dialog, kList), 2) << "what came before the damage";
    Click(dialog, kOk);
  });
  EXPECT_EQ(BytesOf(path), bytes) << "nothing was changed";
  messages.clear();
  Manage([&](Dialog& dialog) {
    messages.clear();
    Choose(dialog, kList, 0);
    Click(dialog, kDelete);
    std::filesystem::remove(path);
    std::filesystem::create_directory(path);  // which no file can replace
    Click(dialog, kOk);
    EXPECT_EQ(messages, std::vector{LoadText(kTextFountainsNotUpdated)});
    EXPECT_FALSE(HasEnded(dialog));
    EXPECT_EQ(ItemCount(dialog, kList), 1);
    std::filesystem::remove(path);
    Click(dialog, kOk);
    EXPECT_TRUE(HasEnded(dialog));
  });
  EXPECT_EQ(Order(), "1");
}

// The data folder is not writable: the shipped library is shown, which all users of the machine share.
TEST_F(FountainLibrary, TheShippedOneIsReadButNeverWritten) {
  std::filesystem::remove(path);
  std::filesystem::create_directory(path);
  const std::string shipped = FountainLibraryPath(), before = BytesOf(shipped);
  ASSERT_NE(shipped, path);
  Manage([&](Dialog& dialog) {
    EXPECT_GT(ItemCount(dialog, kList), 10);
    Choose(dialog, kList, 0);
    Click(dialog, kDelete);
    Click(dialog, kOk);
    EXPECT_EQ(messages, std::vector{LoadText(kTextFountainsNotUpdated)});
    Click(dialog, kCancel);
  });
  messages.clear();
  WithOwner(
      [&](Dialog& owner) {
        InstallFamily(owner, kFountainId, kFountainFamily, nullptr);
        InitialiseFountain(owner, kFountainId, false, nullptr);
        menuChoice = 103;
        SendToControl(owner, kFountainId, {kMessageBarMenu, 0, 0});
      },
      kOwner, OwnerProcedure);
  EXPECT_EQ(messages, std::vector{LoadText(kTextFountainNotAdded)});
  EXPECT_EQ(BytesOf(shipped), before);
  EXPECT_FALSE(FileExists(shipped + ".bak"));
}

TEST_F(FountainLibrary, EveryAllocationMayFailAndNothingLeaks) {
  FailEachAllocation([&] {
    Manage([&](Dialog& dialog) {
      if (ItemCount(dialog, kList) > 0) Paint(dialog, kList, 100, 32, 0);
      DoubleClick(dialog, kList, 1);
    });
  });
  EXPECT_EQ(Order(), "0123");
}

}  // namespace
}  // namespace glyphmotion
