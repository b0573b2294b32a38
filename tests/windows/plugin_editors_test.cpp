// SPDX-License-Identifier: MIT
// The editors behind the main dialog's fills, on real windows: what they leave behind, what becomes of them when the
// dialog below goes, and what a host's picture may be.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <cstring>

#include "plugin_host.h"
#include "plugin_resources.h"
#include "plugin_user.h"

namespace glyphmotion::test {
namespace {

constexpr int kTileList = 102, kTileSize = 105;

TEST(Editors, NothingIsLeftOfThem) {
  const char* wanted = std::getenv("GLYPHMOTION_CYCLES");
  const int cycles = wanted ? std::atoi(wanted) : 3;
  const auto open = [](int times) {
    RunDialog(kBothFormats, [=](HWND dialog) {
      for (int i = 0; i < times; ++i) {
        for (int editor = 0; editor < 3; ++editor) {
          const HWND window = OpenEditor(dialog, editor);
          WaitForPainting(window);
          CloseEditor(window, i % 2 ? IDOK : IDCANCEL);
        }
      }
    });
  };
  const StaticsCount statics;
  open(2);
  const Resources before = CountResources();
  open(cycles);
  const Resources after = CountResources();
  ReportResources(3 * cycles, before, after);
  ExpectNothingLeft(before, after);
}

// Grey text would otherwise be painted over the black text.
TEST(Editors, ALabelThatIsDisabledOrEnabledLeavesNothingOfWhatWasThere) {
  constexpr int kTwoColour = 118, kMultiColour = 119, kStartLabel = 207;
  constexpr COLORREF kInk = 0x0000FF;
  RunDialog(kBothFormats, [&](HWND dialog) {
    const HWND gradient = OpenEditor(dialog, 0), label = GetDlgItem(gradient, kStartLabel);
    RECT place{};
    GetClientRect(label, &place);
    for (const int choice : {kMultiColour, kTwoColour}) {
      WaitForPainting(gradient);
      const HDC context = GetDC(label);
      const HBRUSH ink = CreateSolidBrush(kInk);
      FillRect(context, &place, ink);
      DeleteObject(ink);
      EXPECT_EQ(GetPixel(context, 1, 1), kInk);
      Press(gradient, choice);
      EXPECT_EQ(IsEnabled(gradient, kStartLabel), choice == kTwoColour);
      WaitForPainting(gradient);
      int left = 0;
      for (int y = 0; y < place.bottom; ++y) {
        for (int x = 0; x < place.right; ++x) left += GetPixel(context, x, y) == kInk;
      }
      EXPECT_EQ(left, 0) << choice;
      ReleaseDC(label, context);
    }
    CloseEditor(gradient, IDCANCEL);
  });
}

// The host's window is closed, or the dialog itself is destroyed, while an editor is open over it.
TEST(Editors, GoWithTheWindowsBelow) {
  for (const bool owners : {true, false}) {
    for (int editor = 0; editor < 3; ++editor) {
      const HWND owner = CreateWindowA("Static", "Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 300, 200, nullptr,
                                       nullptr, nullptr, nullptr);
      const HostCallTable table = TableOf(kBothFormats);
      const auto user = [&](HWND dialog) {
        const HWND window = OpenEditor(dialog, editor);
        if (owners) {
          SendMessageA(owner, WM_CLOSE, 0, 0);
          EXPECT_FALSE(IsWindow(window) || IsWindow(dialog));
        } else {
          SendMessageA(dialog, WM_COMMAND, kCancel, 0);
          CloseEditor(window, IDOK);
        }
      };
      EXPECT_EQ(RunDialog(table, user, owner), 1) << kEditors[editor];
      if (IsWindow(owner)) DestroyWindow(owner);
    }
  }
  host = {};
  RunDialog(kBothFormats, [](HWND dialog) {
    AskForLittle(dialog);
    PressTest(dialog);
  });
  EXPECT_EQ(host.ended, 1);
}

TEST(Editors, EscapeAndTheSystemMenuCloseThem) {
  RunDialog(kBothFormats, [](HWND dialog) {
    for (int editor = 0; editor < 3; ++editor) {
      const HWND escaped = OpenEditor(dialog, editor);
      PressKey(escaped, IDCANCEL, VK_ESCAPE);
      EXPECT_TRUE(WaitUntil([&] { return !IsWindow(escaped); })) << kEditors[editor];
      const HWND closed = OpenEditor(dialog, editor);
      PostMessageA(closed, WM_SYSCOMMAND, SC_CLOSE, 0);
      EXPECT_TRUE(WaitUntil([&] { return !IsWindow(closed); })) << kEditors[editor];
      EXPECT_TRUE(IsWindow(dialog) && IsWindowEnabled(dialog));
    }
  });
}

// --- Pictures of the host ---

/// A block with a header of these fields and `bytes` bytes of colours and pixels behind it.
HGLOBAL Picture(std::int32_t width, std::int32_t height, std::uint16_t bits, std::size_t bytes,
                std::uint32_t compression = BI_RGB, std::uint32_t headerSize = 40) {
  const HGLOBAL block = GlobalAlloc(GHND, sizeof(BITMAPINFOHEADER) + bytes);
  auto* header = static_cast<BITMAPINFOHEADER*>(GlobalLock(block));
  *header = {headerSize, width, height, 1, bits, compression, 0, 0, 0, 0, 0};
  std::memset(header + 1, 0x5A, bytes);
  GlobalUnlock(block);
  return block;
}

HGLOBAL Freed() {
  const HGLOBAL block = Picture(8, 8, 24, 192);
  GlobalFree(block);
  return block;
}

int TilesIn(HWND tiles) { return static_cast<int>(SendDlgItemMessageA(tiles, kTileList, LB_GETCOUNT, 0, 0)); }

// A user presses + in the tile dialog, and the host answers with valid and invalid blocks.
TEST(Editors, PicturesOfTheHostAreCheckedBeforeTheyAreRead) {
  const struct {
    const char* what;
    HGLOBAL picture;
    const char* size;  ///< as the dialog shows it; null: refused
  } answers[] = {
      {"nothing", nullptr, nullptr},
      {"a number", reinterpret_cast<HGLOBAL>(std::uintptr_t{0xDEADBEEF}), nullptr},
      {"an odd number", reinterpret_cast<HGLOBAL>(std::uintptr_t{3}), nullptr},
      {"a block that was freed", Freed(), nullptr},
      {"an empty block", GlobalAlloc(GHND, 0), nullptr},
      {"a block smaller than a header", GlobalAlloc(GHND, 12), nullptr},
      {"no pixels", Picture(20, 10, 24, 0), nullptr},
      {"half the pixels", Picture(20, 10, 24, 300), nullptr},
      {"an area beyond all numbers", Picture(0x7FFFFFFF, 0x7FFFFFFF, 24, 600), nullptr},
      {"no width", Picture(0, 10, 24, 600), nullptr},
      {"a width below zero", Picture(-20, 10, 24, 600), nullptr},
      {"a header that says it is longer", Picture(20, 10, 24, 600, BI_RGB, 5000), nullptr},
      {"a compression", Picture(20, 10, 24, 600, BI_RLE8), nullptr},
      {"1 bit", Picture(20, 10, 1, 8 + 40), "20 x 10"},
      {"8 bits", Picture(20, 10, 8, 1024 + 200), "20 x 10"},
      {"32 bits", Picture(20, 10, 32, 800), "20 x 10"},
      {"24 bits", Picture(20, 10, 24, 600), "20 x 10"},
      {"a broad one", Picture(600, 100, 24, 1800 * 100), "600 x 100"},
      {"a large one", Picture(600, 600, 24, 1800 * 600), nullptr},
  };
  HGLOBAL answer = nullptr;
  std::atomic<bool> answered = false;  // with nothing, without a message
  host.instead = [&](void*, std::uint32_t operation, std::uint64_t, std::uint64_t b) -> std::optional<std::uint64_t> {
    if (operation == HostOpChooseImageFile) {
      std::strcpy(reinterpret_cast<char*>(b), "picture.png");
      return 1;
    }
    if (operation == HostOpLoadImage) {
      answered = !answer;
      return reinterpret_cast<std::uintptr_t>(answer);
    }
    return std::nullopt;
  };
  RunDialog(kBothFormats, [&](HWND dialog) {
    const HWND tiles = OpenEditor(dialog, 2);
    StartGroup(tiles, kAddTile);
    for (const auto& [what, picture, size] : answers) {
      answer = picture;
      answered = false;
      const int before = TilesIn(tiles);
      PostMessageA(tiles, WM_COMMAND, kAddTile, 0);
      WaitUntil([&] { return FindMessage() || TilesIn(tiles) > before || answered; });
      if (!picture) continue;  // the host's chooser was cancelled
      EXPECT_EQ(FindMessage() == nullptr, size != nullptr) << what;
      if (FindMessage()) AnswerMessage();
      EXPECT_EQ(TilesIn(tiles), before + (size ? 1 : 0)) << what;
      EXPECT_TRUE(!size || TextOf(tiles, kTileSize) == size) << what;
      ASSERT_TRUE(IsWindow(tiles)) << what;
    }
    CloseEditor(tiles, IDCANCEL);
  });
}

// Another program, as clipboards' histories do, looks into the clipboard at that very moment.
TEST(Editors, CtrlCCopiesAMessage) {
  RunDialog(kBothFormats, [](HWND dialog) {
    host.refuseTask = true;
    Command(dialog, kTest);
    HWND message = nullptr;
    ASSERT_TRUE(WaitUntil([&] { return (message = FindMessage()) != nullptr; }));
    const DWORD before = GetClipboardSequenceNumber();
    const HWND looker = CreateWindowA("STATIC", "", 0, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
    ASSERT_TRUE(OpenClipboard(looker));
    {
      const KeyHeldFor control(message, VK_CONTROL, VK_LCONTROL);
      PostMessageA(GetDlgItem(message, IDOK), WM_KEYDOWN, 'C', 1);
      Sleep(50);
      CloseClipboard();
      ASSERT_TRUE(WaitUntil([&] { return GetClipboardSequenceNumber() != before; }));
    }
    std::string copied;
    ASSERT_TRUE(WaitUntil([&] { return OpenClipboard(looker) != FALSE; }));
    if (const HANDLE data = GetClipboardData(CF_TEXT)) {
      copied = static_cast<const char*>(GlobalLock(data));
      GlobalUnlock(data);
    }
    CloseClipboard();
    DestroyWindow(looker);
    EXPECT_NE(copied.find("Error creating new task."), std::string::npos) << copied;
  });
}

}  // namespace
}  // namespace glyphmotion::test
