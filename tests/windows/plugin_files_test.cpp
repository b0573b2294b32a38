// SPDX-License-Identifier: MIT
// Files that are damaged, of another kind, unreadable or read-only, opened as a user does: at most one message, the
// dialog continues, and the files on disk are unchanged.
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <random>

#include "plugin_host.h"
#include "plugin_user.h"

namespace glyphmotion::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kFolder = "C:\\glyphmotion files\\";
constexpr const char* kNotOpened = "There has been an error opening the requested file.";
constexpr const char* kNotCreated = "There has been an error creating the requested file.";
constexpr const char* kDamaged = "This file has been damaged.";

std::string Data(const std::string& name) {
  return fs::path(SettingsPath()).parent_path().string() + "\\data\\" + name;
}

/// A library that ships beside the plug-in.
std::string Shipped(const std::string& name) {
  return (fs::path(LibraryPath()).parent_path() / "share" / "glyphmotion" / name).string();
}

std::string BytesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void Put(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

/// 50 MB that mean nothing, with line ends among them.
const std::string& Noise() {
  static const std::string noise = [] {
    std::minstd_rand random(7);
    std::string bytes(50 << 20, '\0');
    for (char& c : bytes) c = static_cast<char>(random() >> 8);
    return bytes;
  }();
  return noise;
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

/// Opens a document; the message that comes, if one is expected, is this one.
void OpenAnd(HWND dialog, const std::string& path, const char* message) {
  Command(dialog, kOpen);
  GivePath("Open", path);
  if (message) {
    EXPECT_EQ(AnswerMessage(), message) << path;
  }
  Settle(dialog);
  EXPECT_EQ(FindMessage(), nullptr) << path;
}

TEST_F(Files, ForeignFilesAreReportedAndUnchanged) {
  const std::string folder = kFolder;
  RunDialog(kBothFormats, [&](HWND dialog) {
    Type(dialog, kText, "Of the document");
    SaveAs(dialog, folder + "good.GM4");
    Settle(dialog);
    const std::string good = BytesOf(folder + "good.GM4");
    const std::string firstLine = good.substr(0, good.find('\n') + 1);
    const struct {
      const char* name;
      std::string bytes;
      const char* message;
    } cases[] = {{"empty.GM4", "", nullptr},
                 {"half.GM4", good.substr(0, good.size() / 2), nullptr},
                 {"head.GM4", firstLine.substr(0, 40), kDamaged},
                 {"zeros.GM4", std::string(1000, '\0'), kDamaged},
                 {"noise.GM4", Noise(), kDamaged},
                 {"noise behind the head.GM4", firstLine + Noise(), nullptr},
                 {"too large.GM4", firstLine + std::string(65 << 20, ' '), kNotOpened},
                 {"a texture group.GM4", "TESSALOOM E-DRAPE TEXTURE FILE\r\n", kDamaged}};
    for (const auto& [name, bytes, message] : cases) {
      Put(folder + name, bytes);
      Type(dialog, kText, "Typed");
      OpenAnd(dialog, folder + name, message);
      EXPECT_EQ(TextOf(dialog, kText), bytes.find("TXTFLD52=") == std::string::npos ? "Typed" : "Of the document")
          << name;
      EXPECT_TRUE(BytesOf(folder + name) == bytes) << name;
    }
    {
      const InUse lock(folder + "good.GM4");
      OpenAnd(dialog, folder + "good.GM4", kNotOpened);
    }
    OpenAnd(dialog, folder + "good.GM4", nullptr);
    EXPECT_EQ(TextOf(dialog, kText), "Of the document");
    ExpectWorkingTest(dialog);
  });
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
  int editor, list, group, add;
  const char *extension, *primary, *other, *notRead;
};
constexpr GroupEditor kGroupEditors[] = {
    {1, 102, 103, kAddTexture, ".FFT", "tlmplgm4.fft", "tlmplgm4.mtx",
     "There has been an error importing the selected texture file. The file may be damaged."},
    {2, 102, 108, kAddTile, ".MTX", "tlmplgm4.mtx", "tlmplgm4.fft",
     "There has been an error loading the matrix element file."}};

int EntriesOf(HWND editor, const GroupEditor& kind) {
  return static_cast<int>(SendDlgItemMessageA(editor, kind.list, LB_GETCOUNT, 0, 0));
}

/// Chooses a group without waiting, since a message may be open before the choice is done.
void ChooseGroup(HWND editor, const GroupEditor& kind, const std::string& name) {
  const HWND combo = GetDlgItem(editor, kind.group);
  const LRESULT index =
      SendMessageA(combo, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(name.c_str()));
  ASSERT_GE(index, 0) << name << " is not in the list";
  SendMessageA(combo, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
  PostMessageA(editor, WM_COMMAND, MAKEWPARAM(kind.group, CBN_SELCHANGE), reinterpret_cast<LPARAM>(combo));
}

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

TEST_F(Files, GroupsThatCannotBeReadAreReported) {
  for (const GroupEditor& kind : kGroupEditors) {
    ForgetSettings();
    RunDialog(kBothFormats, [&](HWND dialog) {
      for (int editor = 1; editor < 3; ++editor) CloseEditor(OpenEditor(dialog, editor), IDCANCEL);
      const std::string good = BytesOf(Shipped(kind.primary));
      ASSERT_GT(good.size(), 1000u);
      fs::create_directories(Data(""));
      const auto file = [&](const char* name) { return Data(name) + kind.extension; };
      Put(file("Empty"), "");
      Put(file("Foreign"), BytesOf(Shipped(kind.other)));
      Put(file("Head"), good.substr(0, 20));
      Put(file("Noise"), Noise());
      Put(file("Vanished"), good);
      Put(file("Locked"), good);
      fs::create_directory(file("Folder"));
      const HWND editor = OpenEditor(dialog, kind.editor);
      fs::remove(file("Vanished"));
      const auto before = Contents(Data(""), kind.extension);
      const InUse lock(file("Locked"));
      for (const char* name : {"Empty", "Foreign", "Head", "Noise", "Vanished", "Locked", "Folder"}) {
        ChooseGroup(editor, kind, name);
        EXPECT_EQ(AnswerMessage(), kind.notRead) << name;
        EXPECT_EQ(FindMessage(), nullptr) << name;
        EXPECT_TRUE(IsWindow(editor) && IsWindowEnabled(editor)) << name;
      }
      ChooseGroup(editor, kind, "tlmplgm4");
      EXPECT_TRUE(WaitUntil([&] { return EntriesOf(editor, kind) > 5; })) << "the shipped group is still to be had";
      CloseEditor(editor, IDOK);
      EXPECT_TRUE(Contents(Data(""), kind.extension).size() == before.size());
      ExpectWorkingTest(dialog);
    });
    EXPECT_TRUE(BytesOf(Data("Noise") + kind.extension) == Noise());
  }
}

// What was added to a group that cannot be written is lost with the dialog, but not the group.
TEST_F(Files, AGroupThatCannotBeWrittenStaysAsItWas) {
  for (const GroupEditor& kind : kGroupEditors) {
    ForgetSettings();
    OfferPicture();
    const std::string path = Data("Untitled") + kind.extension;
    RunDialog(kBothFormats, [&](HWND dialog) {
      const auto addOne = [&](HWND editor) {
        const int count = EntriesOf(editor, kind);
        Press(editor, kind.add);
        EXPECT_TRUE(WaitUntil([&] { return EntriesOf(editor, kind) == count + 1; }));
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

TEST_F(Files, AForeignFountainLibraryIsReportedAndKept) {
  constexpr int kMultiColour = 119, kList = 101, kDelete = 105;
  constexpr const char* kNotLoaded = "There has been an error loading the fountain library.";
  constexpr const char* kNotAdded = "There has been an error adding this library entry.";
  constexpr const char* kNotUpdated = "There has been an error updating the fountain library.";
  RunDialog(kBothFormats, [&](HWND dialog) {
    const HWND gradient = OpenEditor(dialog, 0);
    Press(gradient, kMultiColour);
    const auto open = [&] {
      ChooseOfBar(gradient, 1);
      return WaitForDialog("Fountain", kList);
    };
    CloseEditor(open(), IDCANCEL);
    const std::string good = BytesOf(Shipped(kLibrary));
    ASSERT_GT(good.size(), 1000u);
    EXPECT_FALSE(fs::exists(Data(kLibrary))) << "reading never writes";
    fs::create_directories(Data(""));
    for (const std::string& bytes : {std::string(), good.substr(0, 50), BytesOf(Shipped("tlmplgm4.mtx")), Noise()}) {
      Put(Data(kLibrary), bytes);
      ChooseOfBar(gradient, 0);
      EXPECT_EQ(AnswerMessage(), kNotAdded) << bytes.size();
      ChooseOfBar(gradient, 1);
      EXPECT_EQ(AnswerMessage(), kNotLoaded) << bytes.size();
      CloseEditor(WaitForDialog("Fountain", kList), IDOK);
      EXPECT_TRUE(BytesOf(Data(kLibrary)) == bytes) << bytes.size();
    }
    fs::remove(Data(kLibrary));
    fs::create_directory(Data(kLibrary));
    ChooseOfBar(gradient, 0);
    EXPECT_EQ(AnswerMessage(), kNotAdded) << "a folder";
    fs::remove(Data(kLibrary));
    Put(Data(kLibrary), good);
    {
      const ReadOnly attribute(Data(kLibrary));
      ChooseOfBar(gradient, 0);
      EXPECT_EQ(AnswerMessage(), kNotAdded) << "read only";
      const HWND library = open();
      const LRESULT count = SendDlgItemMessageA(library, kList, LB_GETCOUNT, 0, 0);
      SendDlgItemMessageA(library, kList, LB_SETCURSEL, 0, 0);
      SendMessageA(library, WM_COMMAND, MAKEWPARAM(kList, LBN_SELCHANGE),
                   reinterpret_cast<LPARAM>(GetDlgItem(library, kList)));
      Press(library, kDelete);
      EXPECT_EQ(SendDlgItemMessageA(library, kList, LB_GETCOUNT, 0, 0), count - 1);
      PostMessageA(library, WM_COMMAND, IDOK, 0);
      EXPECT_EQ(AnswerMessage(), kNotUpdated);
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

// --- What each fill remembers ---

TEST_F(Files, AFillWithAForeignFileStartsWithItsDefaults) {
  constexpr int kSimple = 17;
  const std::string name = "Material00100.mtrl", document = std::string(kFolder) + "fill.GM4";
  // The line of the fill in a document of a dialog that has just begun.
  const auto lineOfFill = [&] {
    std::string line;
    RunDialog(kBothFormats, [&](HWND dialog) {
      EXPECT_EQ(FindMessage(), nullptr);
      Choose(dialog, kEffect, kSimple);
      SaveAs(dialog, document);
      Settle(dialog);
      const std::string text = BytesOf(document);
      const std::size_t start = text.find("\nMATLBT100=");
      line = start == std::string::npos ? "" : text.substr(start, text.find('\n', start + 1) - start);
      ExpectWorkingTest(dialog);
    });
    return line;
  };
  const std::string fresh = lineOfFill();
  ASSERT_GT(fresh.size(), 2000u);
  const std::string good = BytesOf(Data(name));
  ASSERT_EQ(good.size(), 1270u);
  for (const std::string& bytes : {std::string(), good.substr(0, 600), "X" + good, Noise()}) {
    Put(Data(name), bytes);
    EXPECT_EQ(lineOfFill(), fresh) << bytes.size() << " bytes";
    EXPECT_EQ(BytesOf(Data(name)).size(), 1270u) << "it is remembered again";
  }
  {
    Put(Data(name), "of another program");
    const ReadOnly attribute(Data(name));
    EXPECT_EQ(lineOfFill(), fresh);
    EXPECT_EQ(BytesOf(Data(name)), "of another program");
  }
  fs::remove(Data(name));
  fs::create_directory(Data(name));
  EXPECT_EQ(lineOfFill(), fresh);
  EXPECT_TRUE(fs::is_directory(Data(name)));
}

}  // namespace
}  // namespace glyphmotion::test
