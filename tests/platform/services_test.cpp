// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <vector>

#include "platform/clock.h"
#include "platform/folders.h"
#include "platform/memory.h"
#include "platform/shell_ui.h"

namespace glyphmotion {
namespace {

/// Sets variables for one test and puts the old values back.
class Services : public testing::Test {
 protected:
  void Set(const char* name, const char* value) {
    const char* old = std::getenv(name);
    saved_.emplace_back(name, old ? std::optional<std::string>(old) : std::nullopt);
    value ? setenv(name, value, 1) : unsetenv(name);
  }
  void TearDown() override {
    for (auto i = saved_.rbegin(); i != saved_.rend(); ++i) {
      i->second ? setenv(i->first.c_str(), i->second->c_str(), 1) : unsetenv(i->first.c_str());
    }
    SetFolderOverrides({});
  }
  std::vector<std::pair<std::string, std::optional<std::string>>> saved_;
};

TEST_F(Services, FoldersFollowTheEnvironment) {
  Set("GLYPHMOTION_HOME", nullptr);
  Set("HOME", "/home/someone");
  Set("XDG_CONFIG_HOME", nullptr);
  Set("XDG_DATA_HOME", "relative/is/ignored");
  EXPECT_EQ(SettingsFolder(), "/home/someone/.config/glyphmotion/");
  EXPECT_EQ(DataFolder(), "/home/someone/.local/share/glyphmotion/");
  Set("XDG_CONFIG_HOME", "/cfg/");
  EXPECT_EQ(SettingsFilePath(), "/cfg/glyphmotion/tlmplgm4.ini");
  Set("GLYPHMOTION_HOME", "/elsewhere");
  EXPECT_EQ(SettingsFolder(), "/elsewhere/");
  EXPECT_EQ(PerControlFolder(), "/elsewhere/data/");
  SetFolderOverrides({.settingsFile = "", .perControlFolder = "", .dataFolder = "/d"});
  EXPECT_EQ(SettingsFilePath(), "");
  EXPECT_EQ(PerControlFolder(), "");
  EXPECT_EQ(DataFolder(), "/d/");
  EXPECT_EQ(JoinPath("", "x"), "");
}

TEST_F(Services, NoHomeAndNoPermissionAreNoPlaceNotACrash) {
  Set("GLYPHMOTION_HOME", nullptr);
  Set("HOME", nullptr);
  Set("XDG_CONFIG_HOME", nullptr);
  SettingsFolder();
  DocumentsFolder();
  RegisteredOwner();
  const auto place = std::filesystem::temp_directory_path() / ("glyphmotion-" + std::to_string(getpid()));
  EXPECT_TRUE(EnsureFolder((place / "a" / "b").string() + "/"));
  EXPECT_TRUE(std::filesystem::is_directory(place / "a" / "b"));
  std::ofstream(place / "file") << "x";
  EXPECT_FALSE(EnsureFolder((place / "file").string()));
  EXPECT_FALSE(EnsureFolder((place / "file" / "below").string() + "/"));
  EXPECT_FALSE(EnsureFolder(""));
  std::filesystem::remove_all(place);
}

TEST_F(Services, DocumentsFolderIsTheUsersOwnChoice) {
  const auto home = std::filesystem::temp_directory_path() / ("glyphmotion-home-" + std::to_string(getpid()));
  std::filesystem::create_directories(home / ".config");
  std::filesystem::create_directories(home / "Texte");
  Set("HOME", home.c_str());
  Set("XDG_CONFIG_HOME", nullptr);
  Set("XDG_DOCUMENTS_DIR", nullptr);
  EXPECT_EQ(DocumentsFolder(), home.string() + "/");
  std::ofstream(home / ".config" / "user-dirs.dirs") << "# comment\nXDG_DOCUMENTS_DIR=\"$HOME/Texte\"\n";
  EXPECT_EQ(DocumentsFolder(), home.string() + "/Texte/");
  std::filesystem::remove_all(home);
}

TEST_F(Services, OwnFolderHoldsTheRunningProgram) {
  EXPECT_TRUE(std::filesystem::exists(OwnFolder() + "test_platform")) << OwnFolder();
}

TEST_F(Services, SourceDateOverridesTheClock) {
  Set("TZ", "America/New_York");
  Set("SOURCE_DATE_EPOCH", "1795248468");
  EXPECT_EQ(CurrentTime(), 1795248468);
  EXPECT_EQ(CurrentTimeText(), "Sat Nov 21 08:07:48 2026");
  Set("SOURCE_DATE_EPOCH", "0");
  EXPECT_EQ(CurrentTimeText(), "Thu Jan  1 00:00:00 1970");
  Set("SOURCE_DATE_EPOCH", "12monkeys");
  EXPECT_GT(CurrentTime(), 1700000000);
  EXPECT_EQ(CurrentTimeText().size(), 24u);
}

TEST_F(Services, WithoutAResponderEverythingIsCancelled) {
  UiResponder old = SetUiResponder({});
  FileQuestion question;
  EXPECT_TRUE(ShowMessage(nullptr, "text"));
  EXPECT_FALSE(ShowMessage(nullptr, "text", MessageButtons::YesNo));
  EXPECT_FALSE(AskFile(nullptr, question) || AskColour(nullptr, 0) || AskName(nullptr, "", ""));
  EXPECT_EQ(PopupMenu(nullptr, 0, 0, 0, {}), 0);
  // An answer may replace the responder while it runs.
  UiResponder once;
  once.message = [](Dialog*, const std::string& text, MessageButtons) {
    SetUiResponder({});
    return text == "sure?";
  };
  SetUiResponder(std::move(once));
  EXPECT_TRUE(ShowMessage(nullptr, "sure?", MessageButtons::YesNo));
  EXPECT_FALSE(ShowMessage(nullptr, "sure?", MessageButtons::YesNo));
  SetUiResponder(std::move(old));
}

// Windows gives handles out again; here a late use of a freed one never meets another block.
TEST(PortableMemory, AFreedHandleStaysNothingWhenItsPlaceIsTaken) {
  const BlockHandle freed = AllocateBlock(8);
  FreeBlock(freed);
  const MovableBlock next(AllocateBlock(8));
  EXPECT_EQ(LockBlock(freed), nullptr);
  FreeBlock(freed);
  EXPECT_EQ(BlockSize(next.Handle()), 8u);
}

}  // namespace
}  // namespace glyphmotion
