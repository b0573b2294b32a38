// SPDX-License-Identifier: MIT
// The dialog of real windows, driven from inside: what its text, numbers, menus and file dialogs do there.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "effects/effect_table.h"
#include "plugin_host.h"
#include "plugin_user.h"
// After windows.h:
#include <commctrl.h>

namespace glyphmotion::test {
namespace {

constexpr int kUpDownOffset = 10000;
constexpr const char* kFolder = "C:\\glyphmotion documents";

std::string FileText(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

bool SettingsHold(const std::string& line) {
  return FileText(SettingsPath()).find("\n" + line + "\n") != std::string::npos;
}

std::set<int> VisibleOptions(HWND dialog) {
  std::set<int> visible;
  for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    const int id = GetDlgCtrlID(child);
    if (id >= 100 && id <= 1198 && IsWindowVisible(child)) visible.insert(id);
  }
  return visible;
}

TEST(Effects, EachHasItsOptionsAndBuilds) {
  std::set<std::set<int>> panels;
  for (int effect = 0; effect < kEffectCount; ++effect) {
    host = {};
    std::string name;
    EXPECT_EQ(RunDialog(effect % 2 ? kTrueColour : kBothFormats,
                        [&](HWND dialog) {
                          EXPECT_EQ(SendDlgItemMessageA(dialog, kEffect, CB_GETCOUNT, 0, 0), kEffectCount);
                          AskForLittle(dialog);
                          Choose(dialog, kEffect, effect);
                          EXPECT_TRUE(panels.insert(VisibleOptions(dialog)).second)
                              << "the options of another effect show";
                          name = TextOf(dialog, kEffect);
                          PressBuild(dialog);
                        }),
              1);
    EXPECT_EQ(host.ended, 1) << name;
    ASSERT_GT(host.images.size(), 1u) << name;
    std::set<Bytes> different;
    for (const ReceivedImage& image : host.images) different.insert(image.dib);
    EXPECT_GT(different.size(), 2u) << name;
  }
}

// A character is a character, whether it takes one unit of UTF-16 or two, and however it comes.
TEST(Options, TheTextTakes260CharactersOfAnyKind) {
  RunDialog(kPalette, [](HWND dialog) {
    const auto text = [&] {
      wchar_t units[1024] = L"";
      return std::wstring(units, GetDlgItemTextW(dialog, kText, units, 1024));
    };
    const auto send = [&](UINT message, WPARAM a = 0, LPARAM b = 0) {
      SendDlgItemMessageW(dialog, kText, message, a, b);
    };
    std::wstring faces, expected = L"x";
    for (int i = 0; i < 300; ++i) faces += L"\xD83D\xDE00";
    Type(dialog, kText, "x");
    send(EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(faces.c_str()));
    expected += faces.substr(0, std::size_t{2} * 259);
    EXPECT_EQ(text(), expected);
    send(WM_CHAR, 'z', 1);
    EXPECT_EQ(text(), expected) << "it is full";
    send(EM_SETSEL, 0, 1);
    for (const wchar_t unit : {0xD83D, 0xDC68, 0xD83D, 0xDC69}) send(WM_CHAR, unit, 1);
    expected.replace(0, 1, L"\xD83D\xDC68");
    EXPECT_EQ(text().substr(0, expected.size()), expected) << "one more of two units fits";
    send(EM_SETSEL, 0, -1);
    send(WM_COPY);
    Type(dialog, kText, "yes");
    send(WM_PASTE);
    EXPECT_EQ(text(), L"yes" + expected.substr(0, std::size_t{2} * 257));
  });
}

// Letters of more than one unit, of every direction, and half of one; and a person who steps through the effects
// without waiting for the sample.
TEST(Options, AnyTextIsBuiltHoweverItIsEntered) {
  const std::wstring texts[] = {L"\xD83D\xDE00\xD83D\xDC68\x200D\xD83D\xDC69", L"\x05E9\x05DC \x0645\x0631 ab",
                                L"\xD83D", L"  "};
  RunDialog(kBothFormats, [&](HWND dialog) {
    Type(dialog, kSize, "10");
    for (const std::wstring& text : texts) {
      SendDlgItemMessageW(dialog, kText, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
      for (int effect = 0; effect < kEffectCount; ++effect) {
        const HWND combo = GetDlgItem(dialog, kEffect);
        SendMessageA(combo, CB_SETCURSEL, static_cast<WPARAM>(effect), 0);
        PostMessageA(dialog, WM_COMMAND, MAKEWPARAM(kEffect, CBN_SELCHANGE), reinterpret_cast<LPARAM>(combo));
      }
      Settle(dialog);
      Choose(dialog, kEffect, 15);
      host = {};
      PressTest(dialog);
      EXPECT_EQ(host.ended, 1) << "of " << text.size() << " units, the first " << +text[0];
    }
  });
}

TEST(Numbers, ArrowsKeepToTheRangeAndWhatIsTypedIsClampedWhenRead) {
  RunDialog(kPalette, [](HWND dialog) {
    AskForLittle(dialog);
    Type(dialog, kDelay, "24");
    for (int i = 0; i < 3; ++i) PressKey(dialog, kDelay, VK_UP);
    EXPECT_EQ(TextOf(dialog, kDelay), "25") << "1 to 25 in a format of palettes";
    Type(dialog, kPad, "1");
    for (int i = 0; i < 3; ++i) PressKey(dialog, kPad, VK_DOWN);
    EXPECT_EQ(TextOf(dialog, kPad), "0");
    // Letters and signs are refused; whatever gets in is replaced by the number that is used.
    SendDlgItemMessageA(dialog, kPad, EM_SETSEL, 0, -1);
    for (const char c : {'a', '-', '4', '.', '2'})
      SendDlgItemMessageA(dialog, kPad, WM_CHAR, static_cast<WPARAM>(c), 1);
    EXPECT_EQ(TextOf(dialog, kPad), "42");
    for (const auto& [typed, used] : {std::pair{"abc-9999", "0"}, {"9999", "512"}, {"007", "7"}}) {
      SendMessageA(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(dialog, kPad)), TRUE);
      Type(dialog, kPad, typed);
      EXPECT_EQ(TextOf(dialog, kPad), typed);
      SendMessageA(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(dialog, kBuild)), TRUE);
      EXPECT_EQ(TextOf(dialog, kPad), used);
    }
    Type(dialog, kPad, "0");
    Type(dialog, kDelay, "9999");
    PressTest(dialog);
    ASSERT_FALSE(host.images.empty());
    EXPECT_EQ(At<std::uint32_t>(host.images[0].record, 32), 25u);
    const HWND upDown = GetDlgItem(dialog, kDelay + kUpDownOffset);
    int low = 0, high = 0;
    SendMessageA(upDown, UDM_GETRANGE32, reinterpret_cast<WPARAM>(&low), reinterpret_cast<LPARAM>(&high));
    EXPECT_EQ(low, 1);
    EXPECT_EQ(high, 25);
  });
}

// --- Documents ---

class Documents : public testing::Test {
 protected:
  void SetUp() override { std::filesystem::create_directories(kFolder); }
  void TearDown() override { std::filesystem::remove_all(kFolder); }
};

TEST_F(Documents, WhatWasSavedIsThereAgainWhenOpened) {
  const std::string path = std::string(kFolder) + "\\mine.GM4";
  RunDialog(kPalette, [&](HWND dialog) {
    Type(dialog, kText, "Kept = kept");
    Type(dialog, kDelay, "9");
    Choose(dialog, kEffect, 13);
    SetChecked(dialog, kBold, false);
    Command(dialog, kSaveAs);
    GivePath("Save", std::string(kFolder) + "\\mine");
    Settle(dialog);
    const std::string document = FileText(path);
    EXPECT_NE(document.find("Glyphmotion 4 Plugin"), std::string::npos) << "the extension is added";
    EXPECT_NE(document.find("\nTXTFLD52=Kept = kept\n"), std::string::npos);
    EXPECT_NE(document.find("\nCMBBOX58=13\n"), std::string::npos);
    Type(dialog, kDelay, "11");
    Command(dialog, kSave);
    Settle(dialog);
    EXPECT_NE(FileText(path).find("\nSPNBTN11=11\n"), std::string::npos) << "Save knows the name by now";
    Type(dialog, kText, "Other");
    Choose(dialog, kEffect, 2);
    SetChecked(dialog, kBold, true);
    Command(dialog, kOpen);
    GivePath("Open", path);
    Settle(dialog);
    EXPECT_EQ(TextOf(dialog, kText), "Kept = kept");
    EXPECT_EQ(TextOf(dialog, kDelay), "11");
    EXPECT_FALSE(IsChecked(dialog, kBold));
    EXPECT_EQ(SelectionOf(dialog, kEffect), 13);
    SetChecked(dialog, kCommentCheck, false);
    std::ofstream(path, std::ios::app) << "CHKBOX54=-1\nCHKBOX20=2\n";
    Command(dialog, kOpen);
    GivePath("Open", path);
    Settle(dialog);
    EXPECT_TRUE(IsChecked(dialog, kBold) && IsChecked(dialog, kCommentCheck)) << "whatever is not 0 is a check";
  });
  EXPECT_TRUE(SettingsHold("MainText = Kept = kept"));
  EXPECT_TRUE(SettingsHold("CurrentFileName = " + path));
}

TEST_F(Documents, TheMenuOffersThemBelowTheButtonWhenThePointerIsElsewhere) {
  RunDialog(kPalette, [](HWND dialog) {
    SetCursorPos(1, 1);
    PostMessageA(GetDlgItem(dialog, kOpenSave), BM_CLICK, 0, 0);
    HWND menu = nullptr;
    ASSERT_TRUE(WaitUntil([&] { return (menu = FindWindowA("#32768", nullptr)) != nullptr && IsWindowVisible(menu); }));
    RECT place{}, button{};
    GetWindowRect(menu, &place);
    GetWindowRect(GetDlgItem(dialog, kOpenSave), &button);
    EXPECT_EQ(place.left, button.left);
    EXPECT_EQ(place.top, button.bottom);
    const auto handle = reinterpret_cast<HMENU>(SendMessageA(menu, MN_GETHMENU, 0, 0));
    EXPECT_EQ(GetMenuItemCount(handle), 3);
    for (const int id : {kOpen, kSave, kSaveAs})
      EXPECT_EQ(GetMenuState(handle, static_cast<UINT>(id), MF_BYCOMMAND) & MF_GRAYED, 0u);
    PostMessageA(dialog, WM_CANCELMODE, 0, 0);
    EXPECT_TRUE(WaitUntil([&] { return !IsWindow(menu) || !IsWindowVisible(menu); }));
  });
}

TEST_F(Documents, AFileDialogOfTheHostsSizeLaysOutItsContents) {
  constexpr int kWidth = 900, kHeight = 640, kNearby = 140;
  host.instead = [](void*, std::uint32_t operation, std::uint64_t, std::uint64_t b) -> std::optional<std::uint64_t> {
    if (operation != HostOpGetFileDialogSize) return std::nullopt;
    auto* size = reinterpret_cast<std::int32_t*>(b);
    size[0] = kWidth;
    size[1] = kHeight;
    return 1;
  };
  RunDialog(kPalette, [&](HWND dialog) {
    Command(dialog, kSaveAs);
    const HWND files = WaitForDialog("Save", IDCANCEL);
    RECT whole{}, cancel{};
    WaitUntil([&] { return GetWindowRect(files, &whole) && whole.right - whole.left == kWidth; });
    EXPECT_EQ(whole.bottom - whole.top, kHeight);
    WaitUntil([&] {
      GetWindowRect(GetDlgItem(files, IDCANCEL), &cancel);
      return whole.bottom - cancel.bottom < kNearby;
    });
    EXPECT_LT(whole.right - cancel.right, kNearby) << "Cancel stays in its corner";
    EXPECT_LT(whole.bottom - cancel.bottom, kNearby);
    PostMessageA(files, WM_COMMAND, IDCANCEL, 0);
    EXPECT_TRUE(WaitUntil([&] { return !IsWindow(files); }));
  });
}

}  // namespace
}  // namespace glyphmotion::test
