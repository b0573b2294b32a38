// SPDX-License-Identifier: MIT
#include "shell/settings.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <random>

#include "platform/encoding.h"
#include "platform/files.h"
#include "platform/folders.h"
#include "platform/shell_ui.h"
#include "temporary_folder.h"

namespace glyphmotion {
namespace {

/// Every variable as text, by key.
std::map<std::string, std::string> AllValues(bool withNeverRead = true) {
  std::map<std::string, std::string> values;
  for (std::size_t i = 0; i < SettingsTable().size(); ++i) {
    const Variable& variable = VariableAt(i);
    if (!withNeverRead && variable.row->flags & kSettingNeverRead) continue;
    values[variable.row->key] = variable.row->flags & kSettingText ? variable.text : std::to_string(variable.number);
  }
  return values;
}

std::map<std::string, std::string> Defaults() {
  ResetVariables();
  return AllValues();
}

/// Text as a person could have it: any characters, but none that a line cannot keep (a blank or "=" in front).
std::string RandomText(std::mt19937& random) {
  constexpr const char* kPieces[] = {
      "a", "Z", " ", "=", ";", "%s", "\\", "[", "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"};
  std::string text;
  const std::size_t length = random() % 261;
  while (text.size() < length) text += kPieces[random() % std::size(kPieces)];
  const std::size_t start = text.find_first_not_of(" =");
  return std::string(CutText(start == std::string::npos ? "" : text.substr(start), 260));
}

void Randomise(std::mt19937& random) {
  for (std::size_t i = 0; i < SettingsTable().size(); ++i) {
    Variable& variable = VariableAt(i);
    if (variable.row->flags & kSettingText) {
      variable.text = RandomText(random);
    } else {
      variable.number = variable.row->flags & kSettingSwitch ? random() % 2 : static_cast<std::uint32_t>(random());
    }
  }
}

/// A folder for the settings file and the machine's answers, as long as a test runs.
struct SettingsInFolder {
  TemporaryFolder folder;
  FolderOverrides before = CurrentFolderOverrides();
  UiResponder responder = SetUiResponder({});
  SettingsInFolder() {
    UseFile(folder / "tlmplgm4.ini");
    ResetVariables();
  }
  ~SettingsInFolder() {
    SetFolderOverrides(before);
    SetUiResponder(responder);
    ResetVariables();
  }
  void UseFile(const std::string& path) const {
    FolderOverrides overrides = before;
    overrides.settingsFile = path;
    SetFolderOverrides(overrides);
  }
  static void HoldShift(bool down) {
    UiResponder shift;
    shift.shiftDown = down;
    SetUiResponder(shift);
  }
};

TEST(Settings, TheFileHasItsHeadAndALineForEveryKeyInOrder) {
  ResetVariables();
  FindVariable("MainText")->text = "two  words = three ";
  const std::string text = SettingsText();
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < text.size(); at = text.find('\n', at) + 1) {
    lines.push_back(text.substr(at, text.find('\n', at) - at));
  }
  ASSERT_EQ(lines.size(), 5 + SettingsTable().size());
  EXPECT_EQ(lines[0], ";Tessaloom animtion plugin configuration file");
  EXPECT_EQ(lines[1], ";Edit this at your own risk");
  EXPECT_EQ(lines[2].substr(0, 14), ";Last updated ");
  EXPECT_EQ(lines[2].size(), 38u);
  EXPECT_EQ(lines[3] + lines[4], ";[PlugIn]");
  EXPECT_EQ(lines[5], "AddDescriptiveCommentBlock = 1");
  EXPECT_EQ(lines[5 + 27], "MainText = two  words = three ");
  EXPECT_EQ(lines[5 + 33], "PatchLevel = 1");
  EXPECT_EQ(lines[5 + 34], "RegistrationCode = ");
  EXPECT_TRUE(lines.back().starts_with(std::string(SettingsTable().back().key) + " = ")) << lines.back();
}

TEST(Settings, OnlyWholeKeysInTheirCaseNameTheirVariables) {
  for (std::size_t i = 0; i < SettingsTable().size(); ++i)
    ASSERT_EQ(FindVariable(SettingsTable()[i].key), &VariableAt(i)) << SettingsTable()[i].key;
  for (const char* key : {"", "Main", "MainTex", "MainText ", "mainText", "Style000", "Style999Soft", "~", " "})
    EXPECT_TRUE(!FindVariable(key) && !NumberVariable(key) && TextVariable(key).empty()) << key;
}

TEST(Settings, RandomValuesComeBack) {
  std::mt19937 random(4);
  for (int round = 0; round < 50; ++round) {
    Randomise(random);
    const auto values = AllValues(false);
    const std::string text = SettingsText();
    ResetVariables();
    ApplySettings(text, false);
    ASSERT_EQ(AllValues(false), values) << "round " << round;
    EXPECT_EQ(NumberVariable("PatchLevel"), 1u);
    EXPECT_EQ(NumberVariable("VersionNumber"), 512u);
  }
}

TEST(Settings, LinesAreReadByTheirRules) {
  const struct {
    const char *line, *key, *value;
  } rows[] = {
      {"MainFontSize=12", "MainFontSize", "12"},
      {"MainFontSize  ==  12 points", "MainFontSize", "12"},
      {"MainFontSize 12", "MainFontSize", "12"},
      {"MainFontSize", "MainFontSize", "0"},
      {"MainFontSize = +9\r", "MainFontSize", "9"},
      {"MainFontSize = 4294967295", "MainFontSize", "4294967295"},
      {"MainFontSize = -1", "MainFontSize", "4294967295"},
      {"MainFontSize = 4294967297", "MainFontSize", "1"},
      {"MainFontSize = 999", "MainFontSize", "999"},  // beyond its control's range
      {"MainPadding = 512", "MainPadding", "512"},    // a number in the dialog
      {"MainDither = 7", "MainDither", "7"},
      {"A = 0", "AddDescriptiveCommentBlock", "0"},  // the first key it is a beginning of
      {"Main = 1", "MainAlphaTrans", "1"},
      {"MainFont = 0", "MainFontBold", "0"},
      {"MainFontS = 5", "MainFontSize", "5"},
      {"Style0 = 1", "Style000FillOpacity", "1"},
      {"MainText = = x =y", "MainText", "= x =y"},  // only one run of "=" is skipped
      {"MainText =   a  b ", "MainText", "a  b "},
      {"MainText = a\tb", "MainText", "a"},
      {"MainText =", "MainText", ""},
      {"MainText = ;kept", "MainText", ";kept"},
  };
  for (const auto& row : rows) {
    auto expected = Defaults();
    expected[row.key] = row.value;
    ApplySettings(row.line, false);
    EXPECT_EQ(AllValues(), expected) << row.line;
  }
}

TEST(Settings, LinesThatMeanNothingChangeNothing) {
  for (const char* line : {"", "\n\n\r\n", "= 5", " = 5", " MainFontSize = 5", ";MainFontSize = 5", "[PlugIn]",
                           "PatchLevel = 9", "Patch = 9", "VersionNumber = 9", "V = 9", "mainfontsize = 5",
                           "MainFontSizes = 5", "\tMainFontSize = 5", "Style999Soft = 1", "\x01\x02"}) {
    const auto expected = Defaults();
    ApplySettings(line, false);
    EXPECT_EQ(AllValues(), expected) << line;
  }
}

TEST(Settings, LongLinesAreOneLine) {
  ResetVariables();
  const std::string text(260, 'x');
  ApplySettings("MainText = " + text + "\nMainDelay = 9\n", false);
  EXPECT_EQ(TextVariable("MainText"), text);
  EXPECT_EQ(NumberVariable("MainDelay"), 9u);
  // What lies beyond must not be taken for a line of its own, and no character is cut in two.
  ApplySettings("MainText = " + std::string(259, 'y') + "\xE2\x82\xAC" + std::string(3000000, 'z') +
                    "MainDelay = 5\nMainPause = 8",
                false);
  EXPECT_EQ(TextVariable("MainText"), std::string(259, 'y') + "\xE2\x82\xAC");
  EXPECT_EQ(NumberVariable("MainDelay"), 9u);
  EXPECT_EQ(NumberVariable("MainPause"), 8u);
}

TEST(Settings, LegacyFilesAreWindows1252) {
  ResetVariables();
  ApplySettings("MainText = caf\xE9 \x80 5\r\nMainDelay = 9\r\n", false);
  EXPECT_EQ(TextVariable("MainText"), "caf\xC3\xA9 \xE2\x82\xAC 5");
  EXPECT_EQ(NumberVariable("MainDelay"), 9u);
  ApplySettings("\xEF\xBB\xBFMainText = \xC3\xA9", false);
  EXPECT_EQ(TextVariable("MainText"), "\xC3\xA9");
}

TEST(Settings, NoValueCanBreakTheFile) {
  ResetVariables();
  FindVariable("MainText")->text = std::string("one\r\nMainDelay = 77\nMainPause\0= 1", 33);
  FindVariable("OpenPath")->text = "broken \xC3( bytes";
  FindVariable("MainFontName")->text = "caf\xC3\xA9";
  FindVariable("RegistrationName")->text = "a\nb";
  const std::string text = SettingsText();
  ResetVariables();
  ApplySettings(text, false);
  EXPECT_EQ(TextVariable("MainText"), "one  MainDelay = 77 MainPause = 1");
  EXPECT_EQ(TextVariable("MainFontName"), "caf\xC3\xA9");
  EXPECT_EQ(TextVariable("OpenPath"), "broken \xC3\x83( bytes");
  EXPECT_EQ(TextVariable("RegistrationName"), "a b");
  EXPECT_EQ(NumberVariable("MainDelay"), 4u);
}

TEST(Settings, RegistrationIsStoredUnreadablyAndComesBack) {
  std::mt19937 random(12);
  for (int round = 0; round < 300; ++round) {
    const std::string text = RandomText(random);
    const std::string stored = EncodeRegistration(text);
    ASSERT_EQ(DecodeRegistration(stored), text);
    EXPECT_TRUE(text.size() < 4 || stored.find(text.substr(0, 4)) == std::string::npos) << text;
    EXPECT_EQ(stored.find_first_not_of("0123456789ABCDEF"), std::string::npos);
  }
  EXPECT_EQ(EncodeRegistration(""), "");
  for (const char* foreign : {"", "4", "41", "Jane Doe", "ABCDEFGH", "zz00", "00000000", "ABC"}) {
    EXPECT_EQ(DecodeRegistration(foreign), "") << foreign;
  }
  FindVariable("RegistrationName")->text = "Jane Doe";
  EXPECT_EQ(SettingsText().find("Jane"), std::string::npos);
  EXPECT_EQ(TextVariable("RegistrationName"), "Jane Doe") << "the variable itself stays plain";
}

TEST(Settings, ShiftKeepsDefaultsButForTheRegistration) {
  SettingsInFolder place;
  std::mt19937 random(2);
  Randomise(random);
  FindVariable("RegistrationName")->text = "Jane Doe";
  FindVariable("RegistrationCode")->text = "1234";
  SaveSettings();
  auto expected = Defaults();
  expected["RegistrationName"] = "Jane Doe";
  expected["RegistrationCode"] = "1234";
  FindVariable("MainDelay")->number = 99;  // what an earlier run of the same process left
  place.HoldShift(true);
  LoadSettings();
  EXPECT_EQ(AllValues(), expected);
  ApplySettings("R = " + EncodeRegistration("5678"), true);
  EXPECT_EQ(TextVariable("RegistrationCode"), "5678");
}

TEST(Settings, WithoutAFileThereAreDefaultsAndTheFolderOfTheStart) {
  SettingsInFolder place;
  const auto check = [&](const std::string& path) {
    place.UseFile(path);
    auto expected = Defaults();
    expected["OpenPath"] = "/documents/";
    std::mt19937 random(3);
    Randomise(random);
    FindVariable("OpenPath")->text = "/documents/";
    SaveSettings();
    LoadSettings();
    EXPECT_EQ(AllValues(), expected) << path;
  };
  check("");
  check(place.folder / "no/such/folder");
  check(place.folder.path.string());
  EXPECT_EQ(place.folder.Entries(), 0u);
}

/// Damages a text: truncates, repeats, swaps pieces and inserts random bytes.
std::string Damage(std::string text, std::mt19937& random) {
  for (int change = 1 + static_cast<int>(random() % 30); change > 0 && !text.empty(); --change) {
    const std::size_t at = random() % text.size();
    switch (random() % 4) {
      case 0:
        text[at] = static_cast<char>(random());
        break;
      case 1:
        text.erase(at, random() % 40);
        break;
      case 2:
        text.insert(at, text.substr(random() % text.size(), random() % 400));
        break;
      default:
        text.insert(at, 1, "\n\r=; \0\x1A\x80"[random() % 8]);
    }
  }
  return text;
}

TEST(Settings, DamagedFilesDoNoHarm) {
  std::mt19937 random(20);
  for (int round = 0; round < 400; ++round) {
    ResetVariables();
    Randomise(random);
    std::string bytes = SettingsText();
    ResetVariables();
    if (round % 4 == 0) {
      for (char& byte : bytes) byte = static_cast<char>(random());
    }
    ApplySettings(Damage(bytes, random), round % 3 == 0);
    for (std::size_t i = 0; i < SettingsTable().size(); ++i) {
      const std::string& text = VariableAt(i).text;
      ASSERT_LE(CountCharacters(text), 260u);
      ASSERT_TRUE(IsUtf8(text)) << text;
    }
    // What has been taken is something that can be kept.
    const auto values = AllValues();
    const std::string saved = SettingsText();
    ResetVariables();
    ApplySettings(saved, false);
    ASSERT_EQ(AllValues(), values) << "round " << round;
  }
  ResetVariables();
}

}  // namespace
}  // namespace glyphmotion
