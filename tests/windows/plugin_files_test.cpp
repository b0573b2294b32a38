// SPDX-License-Identifier: MIT
// Files that are read-only, or in use by another program, as a user meets them: at most one message, the dialog
// continues, and the files on disk are unchanged.
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>

#include "plugin_host.h"
#include "plugin_user.h"

namespace glyphmotion::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kFolder = "C:\\glyphmotion files\\";
constexpr const char* kNotCreated = "There has been an error creating the requested file.";

std::string Data(const std::string& name) {
  return fs::path(SettingsPath()).parent_path().string() + "\\data\\" + name;
}

std::string BytesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// What lies in a folder: names, and what the files hold. Folders hold "a folder".
std::map<std::string, std::string> Contents(const std::string& folder, const std::string& extension) {
  std::map<std::string, std::string> contents;
  for (const auto& entry : fs::directory_iterator(folder)) {
    const std::string name = entry.path().filename().string();
    if (name.find(extension) == std::string::npos) continue;
    contents[name] = entry.is_directory() ? "a folder" : BytesOf(entry.path().string());
  }
  return contents;
}

struct ReadOnly {
  std::string path;
  explicit ReadOnly(std::string file) : path(std::move(file)) {
    SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_READONLY);
  }
  ReadOnly(const ReadOnly&) = delete;
  ReadOnly& operator=(const ReadOnly&) = delete;
  ~ReadOnly() { SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL); }
};

/// Another program has the file open, exclusively or as `share` says.
struct InUse {
  HANDLE file;
  explicit InUse(const std::string& path, DWORD share = 0)
      : file(CreateFileA(path.c_str(), GENERIC_READ | (share ? 0 : GENERIC_WRITE), share, nullptr, OPEN_EXISTING, 0,
                         nullptr)) {
    EXPECT_NE(file, INVALID_HANDLE_VALUE) << path;
  }
  InUse(const InUse&) = delete;
  InUse& operator=(const InUse&) = delete;
  ~InUse() { CloseHandle(file); }
};

/// Another program reads the file; it may be read and written beside it, but not go.
struct BeingRead : InUse {
  explicit BeingRead(const std::string& path) : InUse(path, FILE_SHARE_READ | FILE_SHARE_WRITE) {}
};

class Files : public testing::Test {
 protected:
  void SetUp() override { fs::create_directories(kFolder); }
  void TearDown() override { fs::remove_all(kFolder); }
};

void ExpectWorkingTest(HWND dialog) {
  EXPECT_EQ(FindMessage(), nullptr) << "one message at most";
  AskForLittle(dialog);
  host = {};
  PressTest(dialog);
  EXPECT_EQ(host.ended, 1);
}

// --- Documents ---

void SaveAs(HWND dialog, const std::string& path) {
  Command(dialog, kSaveAs);
  GivePath("Save", path);
}

TEST_F(Files, ADocumentThatCannotBeWrittenStaysAsItWas) {
  const std::string path = std::string(kFolder) + "mine.GM4";
  RunDialog(kBothFormats, [&](HWND dialog) {
    SaveAs(dialog, path);
    Settle(dialog);
    const auto before = Contents(kFolder, "");
    ASSERT_EQ(before.size(), 1u);
    Type(dialog, kText, "Changed since");
    const auto refused = [&](const char* what) {
      EXPECT_EQ(AnswerMessage(), kNotCreated) << what;
      Settle(dialog);
      EXPECT_EQ(FindMessage(), nullptr) << what;
      EXPECT_TRUE(Contents(kFolder, "") == before) << what << ": another file, or another content";
    };
    {
      const ReadOnly attribute(path);
      Command(dialog, kSave);
      refused("saved over a file that may not be written");
      SaveAs(dialog, path);
      refused("named over a file that may not be written");
    }
    {
      const InUse lock(path);
      Command(dialog, kSave);
      EXPECT_EQ(AnswerMessage(), kNotCreated);
    }
    EXPECT_TRUE(BytesOf(path) == before.at("mine.GM4"));
    EXPECT_TRUE(Contents(kFolder, ".glyphmotion").empty()) << "a file that was begun is left";
    fs::remove(path);
    fs::create_directory(path);
    Command(dialog, kSave);
    EXPECT_EQ(AnswerMessage(), kNotCreated);
    EXPECT_TRUE(fs::is_directory(path) && Contents(kFolder, ".glyphmotion").empty());
    SaveAs(dialog, std::string(kFolder) + "elsewhere.GM4");
    Settle(dialog);
    EXPECT_NE(BytesOf(std::string(kFolder) + "elsewhere.GM4").find("TXTFLD52=Changed since"), std::string::npos);
    ExpectWorkingTest(dialog);
  });
}

// --- Groups of textures and tiles ---

struct GroupEditor {
  int editor, add;
  const char* extension;
};
constexpr int kEntries = 102;  // the list of both
constexpr GroupEditor kGroupEditors[] = {{1, kAddTexture, ".FFT"}, {2, kAddTile, ".MTX"}};

int EntriesOf(HWND editor) { return static_cast<int>(SendDlgItemMessageA(editor, kEntries, LB_GETCOUNT, 0, 0)); }

/// A host that has a picture for the tile editor.
void OfferPicture() {
  host.instead = [](void*, std::uint32_t operation, std::uint64_t, std::uint64_t b) -> std::optional<std::uint64_t> {
    if (operation == HostOpChooseImageFile) {
      std::strcpy(reinterpret_cast<char*>(b), "picture.png");
      return 1;
    }
    if (operation != HostOpLoadImage) return std::nullopt;
    const HGLOBAL block = GlobalAlloc(GHND, sizeof(BITMAPINFOHEADER) + 4 * 4 * 3);
    *static_cast<BITMAPINFOHEADER*>(GlobalLock(block)) = {40, 4, 4, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    GlobalUnlock(block);
    return reinterpret_cast<std::uintptr_t>(block);
  };
}

// What was added to a group that cannot be written is lost with the dialog, but not the group.
TEST_F(Files, AGroupThatCannotBeWrittenStaysAsItWas) {
  for (const GroupEditor& kind : kGroupEditors) {
    ForgetSettings();
    OfferPicture();
    const std::string path = Data("Untitled") + kind.extension;
    RunDialog(kBothFormats, [&](HWND dialog) {
      const auto addOne = [&](HWND editor) {
        const int count = EntriesOf(editor);
        Press(editor, kind.add);
        EXPECT_TRUE(WaitUntil([&] { return EntriesOf(editor) == count + 1; }));
      };
      const HWND first = OpenEditor(dialog, kind.editor);
      StartGroup(first, kind.add);
      addOne(first);
      CloseEditor(first, IDOK);
      const std::string before = BytesOf(path);
      ASSERT_FALSE(before.empty());
      {
        const ReadOnly attribute(path);
        const HWND editor = OpenEditor(dialog, kind.editor);
        addOne(editor);
        PostMessageA(editor, WM_COMMAND, IDOK, 0);
        if (kind.editor == 1) {
          EXPECT_EQ(AnswerMessage(), kNotCreated);
        }
        EXPECT_TRUE(WaitUntil([&] { return !IsWindow(editor); }));
        EXPECT_TRUE(BytesOf(path) == before);
      }
      // Once it may be written again, so may the copy that is kept of it.
      for (int i = 0; i < 2; ++i) {
        const std::string last = BytesOf(path);
        const HWND editor = OpenEditor(dialog, kind.editor);
        addOne(editor);
        CloseEditor(editor, IDOK);
        EXPECT_FALSE(BytesOf(path) == last);
        EXPECT_TRUE(BytesOf(path + ".bak") == last) << "the copy is the file before";
      }
      host.instead = nullptr;
      ExpectWorkingTest(dialog);
    });
  }
}

// --- The fountain library ---

constexpr const char* kLibrary = "FountainLibrary.fll";

/// The bar's menu: 0 adds to the library, 1 opens it.
void ChooseOfBar(HWND gradient, int item) {
  constexpr int kFountain = 120;
  constexpr UINT kBarMenu = 1439;
  const HWND fountain = GetDlgItem(gradient, kFountain);
  PostMessageA(fountain, kBarMenu, 0, 0);
  ChooseFromMenu(fountain, item);
}

TEST_F(Files, AFountainLibraryThatCannotBeWrittenStaysAsItWas) {
  constexpr int kMultiColour = 119, kList = 101, kDelete = 105;
  RunDialog(kBothFormats, [&](HWND dialog) {
    const HWND gradient = OpenEditor(dialog, 0);
    Press(gradient, kMultiColour);
    EXPECT_FALSE(fs::exists(Data(kLibrary))) << "reading never writes";
    ChooseOfBar(gradient, 0);
    ASSERT_TRUE(WaitUntil([] { return fs::exists(Data(kLibrary)); }));
    const std::string good = BytesOf(Data(kLibrary));
    ASSERT_GT(good.size(), 1000u);
    {
      const ReadOnly attribute(Data(kLibrary));
      ChooseOfBar(gradient, 0);
      EXPECT_EQ(AnswerMessage(), "There has been an error adding this library entry.");
      ChooseOfBar(gradient, 1);
      const HWND library = WaitForDialog("Fountain", kList);
      SendDlgItemMessageA(library, kList, LB_SETCURSEL, 0, 0);
      SendMessageA(library, WM_COMMAND, MAKEWPARAM(kList, LBN_SELCHANGE),
                   reinterpret_cast<LPARAM>(GetDlgItem(library, kList)));
      Press(library, kDelete);
      PostMessageA(library, WM_COMMAND, IDOK, 0);
      EXPECT_EQ(AnswerMessage(), "There has been an error updating the fountain library.");
      EXPECT_TRUE(IsWindow(library)) << "what was arranged is not lost";
      CloseEditor(library, IDCANCEL);
      EXPECT_TRUE(BytesOf(Data(kLibrary)) == good);
    }
    {
      const BeingRead scanner(Data(kLibrary));
      ChooseOfBar(gradient, 0);
      Sleep(50);
    }
    EXPECT_TRUE(WaitUntil([&] { return FindMessage() || BytesOf(Data(kLibrary)).size() > good.size(); }));
    CloseEditor(gradient, IDCANCEL);
    ExpectWorkingTest(dialog);
  });
}

}  // namespace
}  // namespace glyphmotion::test
