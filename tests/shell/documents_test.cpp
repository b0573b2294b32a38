// SPDX-License-Identifier: MIT
#include "shell/documents.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>

#include "controls/families.h"
#include "platform/dialog_driver.h"
#include "platform/encoding.h"
#include "platform/files.h"
#include "platform/shell_ui.h"
#include "shell/main_controls.h"
#include "temporary_folder.h"

namespace glyphmotion {
namespace {

using Folder = TemporaryFolder;

constexpr char kHead[] = ";This is a document created by Glyphmotion 4 Plugin by Tessaloom - do not edit.\n";
constexpr char kCreateError[] = "There has been an error creating the requested file.";
constexpr char kOpenError[] = "There has been an error opening the requested file.";
constexpr char kDamaged[] = "This file has been damaged.";

constexpr ControlTemplate kControls[] = {
    {ControlKind::Label, -1, "Label"}, {ControlKind::Edit, 300, "third"},   {ControlKind::Edit, 52, "text"},
    {ControlKind::Button, 1, "Build"}, {ControlKind::Edit, 100, "hundred"}, {ControlKind::Edit, 53, "Some Family"},
};
constexpr DialogTemplate kTemplate{1000, "", 100, 100, kControls};
constexpr int kTextIds[] = {300, 52, 100, 53};

/// What the dialog and its controls got while a test ran.
struct Log {
  std::vector<std::string> messages, lines;
  int refreshes = 0;
} seen;

std::int64_t Procedure(Dialog&, const Message& message) {
  seen.refreshes += message.number == kMessageRefresh;
  return 0;
}

/// A control that keeps its text under the stem TXTFLD (the font's under FNTBOX, and never takes it back).
std::int64_t TextControl(Dialog& dialog, int id, const Message& message) {
  const std::string stem = id == 53 ? "FNTBOX" : "TXTFLD";
  if (message.number == kMessageSaveControl) {
    *PointerOf<std::string>(message.b) += stem + std::to_string(id) + "=" + GetText(dialog, id) + "\n";
  } else if (message.number == kMessageLoadControl) {
    const std::string& line = *PointerOf<const std::string>(message.b);
    seen.lines.push_back(std::to_string(id) + ": " + line);
    if (!line.starts_with(stem) || id == 53) return 0;
    SetText(dialog, id, line.substr(std::min(line.find('='), line.size() - 1) + 1));
    return 1;
  }
  return 0;
}

/// Runs `test` on a dialog of five controls, in a folder of its own.
void WithDialog(const std::function<void(Dialog&, const Folder&)>& test) {
  seen = {};
  const Folder folder;
  UiResponder responder;
  responder.message = [](Dialog*, const std::string& text, MessageButtons) {
    seen.messages.push_back(text);
    return true;
  };
  responder = SetUiResponder(std::move(responder));
  const ModalDriver before = SetModalDriver([&](Dialog& dialog, int) {
    for (int id : kTextIds) SetControlProcedure(dialog, id, TextControl, nullptr);
    test(dialog, folder);
  });
  RunModal(kTemplate, nullptr, Procedure, nullptr);
  SetModalDriver(before);
  SetUiResponder(std::move(responder));
}

/// Loads a document of these bytes; the messages that came.
std::vector<std::string> LoadBytes(Dialog& dialog, const Folder& folder, const std::string& bytes) {
  EXPECT_TRUE(AtomicWriteFile(folder / "a.gm4", bytes));
  seen = {};
  const int loaded = LoadDocument(dialog, folder / "a.gm4");
  EXPECT_EQ(loaded, seen.messages.empty());
  return seen.messages;
}

using Texts = std::vector<std::string>;

TEST(Documents, ADocumentIsALineForEachControlInTheOrderOfTheDialog) {
  WithDialog([](Dialog& dialog, const Folder& folder) {
    const std::string path = folder / "a.gm4";
    ASSERT_EQ(SaveDocument(dialog, path), 1);
    EXPECT_EQ(ReadWholeFile(path), kHead + std::string(";Start of document\nTXTFLD300=third\nTXTFLD52=text\n"
                                                       "TXTFLD100=hundred\nFNTBOX53=Some Family\n;End of document\n"));
    EXPECT_EQ(SummariseDocument(path).font, "Some Family");
    for (int id : kTextIds) SetText(dialog, id, "changed");
    LoadDocument(dialog, path);
    EXPECT_EQ(GetText(dialog, 300), "third");
    EXPECT_EQ(GetText(dialog, 52), "text");
    EXPECT_EQ(GetText(dialog, 100), "hundred");
    EXPECT_EQ(GetText(dialog, 53), "changed");
    EXPECT_EQ(seen.refreshes, 1);
    EXPECT_EQ(seen.messages, Texts{});
  });
}

TEST(Documents, LinesGoToTheirControlsAndToNoOthers) {
  const struct {
    std::string line;
    Texts got;
  } rows[] = {
      {"TXTFLD52=a", {"52: TXTFLD52=a"}},
      {"CHKBOX52=1", {"52: CHKBOX52=1"}},  // it is for the control's family to refuse it
      {"TXTFLD 52=a", {"52: TXTFLD 52=a"}},
      {"TXTFLD+52 tail", {"52: TXTFLD+52 tail"}},
      {"TXTFLD52=a\rrest", {"52: TXTFLD52=a"}},
      {std::string("TXTFLD52=a\0rest", 15), {"52: TXTFLD52=a"}},
      {"TXTFLD52=a\nTXTFLD100=b", {"52: TXTFLD52=a", "100: TXTFLD100=b"}},
      {"TXTFLD52=a\nTXTFLD52=b", {"52: TXTFLD52=a", "52: TXTFLD52=b"}},
      {"TXTFLD52=" + std::string(3000000, 'F'), {"52: TXTFLD52=" + std::string(3000000, 'F')}},
      {"TXTFLD52=caf\xE9", {"52: TXTFLD52=caf\xC3\xA9"}},
      {";XTFLD52=a", {}},
      {"", {}},
      {"TXTFLD", {}},
      {"TXTFLD=52", {}},
      {"TXTFLD0=a", {}},
      {"TXTFLD-52=a", {}},
      {"TXTFLD+-52=a", {}},
      {"TXTFLD51=a", {}},
      {"TXTFLD4294967348=a", {}},  // 2^32 + 52
      {"TXTFLD99999999999999999999=a", {}},
      {"TXT52=a", {}},
  };
  WithDialog([&](Dialog& dialog, const Folder& folder) {
    for (const auto& row : rows) {
      for (const char* tail : {"", "\n", "\r\n;End of document\r\n"}) {
        EXPECT_EQ(LoadBytes(dialog, folder, kHead + row.line + tail), Texts{});
        EXPECT_EQ(seen.lines, row.got) << row.line.substr(0, 40) << tail;
        EXPECT_EQ(seen.refreshes, 1);
      }
    }
  });
}

TEST(Documents, OnlyTheFirstLineIdentifiesADocument) {
  const std::string line = "\nTXTFLD52=new\n", names = "Tessaloom's Glyphmotion 4 Plugin";
  const struct {
    std::string bytes;
    bool isDocument;
  } rows[] = {
      {names + line, true},
      {names + "\r" + line, true},
      {std::string(8192 - names.size(), ' ') + names + line, true},
      {std::string(8193 - names.size(), ' ') + names + line, false},
      {"Glyphmotion 4 Plugin" + line, false},
      {"Tessaloom" + line, false},
      {line + names, false},
      {"\n" + names + line, false},
      {std::string(";\0", 2) + names + line, false},
      {"\x89PNG\r\n\x1A\n", false},
      {std::string(100000, '\xFF'), false},
  };
  WithDialog([&](Dialog& dialog, const Folder& folder) {
    for (const auto& row : rows) {
      SetText(dialog, 52, "old");
      EXPECT_EQ(LoadBytes(dialog, folder, row.bytes), row.isDocument ? Texts{} : Texts{kDamaged});
      EXPECT_EQ(GetText(dialog, 52), row.isDocument ? "new" : "old") << row.bytes.substr(0, 40);
      EXPECT_EQ(seen.refreshes, row.isDocument);
    }
    EXPECT_EQ(LoadBytes(dialog, folder, ""), Texts{}) << "an empty file has nothing to load";
    EXPECT_EQ(seen.refreshes, 1);
  });
}

TEST(Documents, FilesThatCannotBeOpenedOrCreatedAreReported) {
  WithDialog([](Dialog& dialog, const Folder& folder) {
    for (const std::string& path : {std::string(), folder.path.string(), folder / "no/file.gm4"}) {
      seen = {};
      EXPECT_EQ(SaveDocument(dialog, path), 0);
      EXPECT_EQ(seen.messages, Texts{kCreateError}) << path;
      seen = {};
      LoadDocument(dialog, path);
      EXPECT_EQ(seen.messages, Texts{kOpenError}) << path;
      EXPECT_EQ(seen.refreshes, 0);
      EXPECT_EQ(SummariseDocument(path).font, "");
    }
    EXPECT_EQ(folder.Entries(), 0u);
  });
}

TEST(Documents, AnyTextStaysOneLine) {
  WithDialog([](Dialog& dialog, const Folder& folder) {
    const std::string path = folder / "a.gm4";
    const struct {
      std::string text, back;
    } rows[] = {
        {"one\r\nTXTFLD100=two", "one  TXTFLD100=two"},
        {std::string("a\0b", 3), "a b"},
        {"ends\n", "ends"},
        {"broken \xC3( caf\xE9", "broken \xC3\x83( caf\xC3\xA9"},
        {"caf\xC3\xA9 \xE2\x82\xAC;=", "caf\xC3\xA9 \xE2\x82\xAC;="},
    };
    for (const auto& row : rows) {
      SetText(dialog, 52, row.text);
      SetText(dialog, 300, "caf\xC3\xA9");
      ASSERT_EQ(SaveDocument(dialog, path), 1);
      LoadDocument(dialog, path);
      EXPECT_EQ(GetText(dialog, 52), row.back);
      EXPECT_EQ(GetText(dialog, 300), "caf\xC3\xA9");
      EXPECT_EQ(GetText(dialog, 100), "hundred");
    }
  });
}

}  // namespace
}  // namespace glyphmotion
